#pragma once

#include <filesystem>
#include <new>
#include <string>

#include "platform/store/exchange/import.h"
#include "platform/store/sqlite/copies/copy_folder.h"
#include "platform/store/sqlite/files/file_path.h"
#include "tests/store/faults/session_fixture.h"

namespace store {

/// A session from the making of a database to its reopening: a new file is made and filled; in another one
/// records are changed, added, deleted and asked for (SessionTest), a file of values is imported, a copy is
/// saved, a change is taken back and done again, and all of it is opened and read anew.
class WholeSessionTest : public SessionTest, private exchange::ImportObserver {
 protected:
  /// How far it was acknowledged.
  struct Whole {
    bool fileMade = false;
    bool tableMade = false;
    int filled = 0;  ///< records, of kFilled
    Acknowledged records;
    bool imported = false;
    bool replaced = false;
    bool copied = false;
    bool undone = false;
    bool redone = false;
    bool reopened = false;
    bool all() const {
      return fileMade && tableMade && filled == kFilled && records.all() && imported && replaced && copied &&
             undone && redone && reopened;
    }
  };

  static constexpr int kFilled = 3;
  static constexpr int kImported = 40;

  void remakeWhole(const std::string& mode) {
    backend_.reset();
    for (const std::filesystem::path& path : {newPath(), copyPath()}) {
      for (const char* suffix : {"", "-journal", "-wal", "-shm"})
        std::filesystem::remove(utf8Of(path) + suffix);
    }
    testsupport::removeFolder(copiesPath());
    isStateMissing_ = false;
    remake(mode);
  }

  /// Each part goes on whatever became of those before it.
  Whole runWhole() {
    Whole done;
    attempt([&] { makeAndFill(&done); });
    attempt([&] { runAll(&done.records); });
    attempt([&] { importAndCopy(&done); });
    attempt([&] { undoAndRedo(&done); });
    attempt([&] { reopen(&done); });
    return done;
  }

  /// What was acknowledged is in the files, what was refused is not, nothing is there by halves, and the
  /// store works as if nothing had been.
  void expectWhole(const Whole& done) {
    ASSERT_NO_FATAL_FAILURE(expectSound(done.records));
    OtherProgram other(path_);
    const std::string imported = other.ask("SELECT count(*) FROM sqlite_schema WHERE name = 'imported'");
    EXPECT_TRUE(imported == "1" || (imported == "0" && !done.imported)) << imported;
    if (imported == "1") {
      EXPECT_EQ(std::to_string(kImported), other.ask("SELECT count(*) FROM imported"));
      const std::string replaced = other.ask("SELECT count(*) FROM imported WHERE text LIKE 'again%'");
      EXPECT_TRUE(replaced == std::to_string(kImported) || (replaced == "0" && !done.replaced)) << replaced;
    }
    expectTakenBack(done);
    expectNewFile(done);
    expectCopy(done);
    expectFormerStates(done);
    expectToWork();
  }

 private:
  std::filesystem::path newPath() const { return folder_.file("made anew.cdb"); }
  std::filesystem::path copyPath() const { return folder_.file("copy.cdb"); }
  std::filesystem::path copiesPath() const { return folder_.file("copies"); }

  bool goesOn(bool, std::int64_t, std::int64_t) override { return true; }
  Status rejected(const exchange::Record&, const std::string&) override { return {}; }

  /// Memory may be refused to the program itself, which the caller of the engine is told by an exception.
  template <typename Part>
  void attempt(Part part) {
    try {
      part();
    } catch (const std::bad_alloc&) {
    }
    if (backend_ != nullptr && backend_->formerStates() != nullptr &&
        !backend_->formerStates()->takeFailure()) {
      isStateMissing_ = true;
    }
    backend_.reset();
  }

  bool openFor(const std::filesystem::path& path) {
    std::unique_ptr<Backend> opened;
    const auto copies = std::make_shared<CopyFolder>(CopySettings{.folder = utf8Of(copiesPath())});
    if (!openDatabase(utf8Of(path), {.lockWait = 0, .copies = copies}, &opened)) return false;
    backend_ = std::move(opened);
    return true;
  }

  void makeAndFill(Whole* done) {
    done->fileMade = static_cast<bool>(createDatabase(utf8Of(newPath())));
    if (!done->fileMade || !openFor(newPath())) return;
    done->tableMade = static_cast<bool>(tryRun("CREATE TABLE 'filled' (Id Integer, Content Text)"));
    std::unique_ptr<Recordset> rows;
    if (!tryOpen("Select * from [filled]", &rows)) return;
    for (int number = 1; number <= kFilled; ++number) {
      if (rows->addNew() && rows->setValue(0, std::int64_t{number}) &&
          rows->setValue(1, std::string(3000, 'f')) && rows->update()) {
        ++done->filled;
      } else {
        static_cast<void>(rows->cancelUpdate());
      }
    }
  }

  static std::string fileOfValues(const std::string& text) {
    std::string values = "Id,Text\n";
    for (int number = 1; number <= kImported; ++number)
      values += std::to_string(number) + "," + text + std::string(300, 'v') + "\n";
    return values;
  }

  bool import(const std::string& values, bool replaces) {
    exchange::MemorySource source(values);
    exchange::ImportOptions options;
    options.table = "imported";
    options.replaces = replaces;
    if (replaces) options.keyColumns = {"Id"};
    exchange::ImportPlan plan;
    exchange::ImportResult result;
    return exchange::planImport(*backend_, source, options, *this, &plan) &&
           exchange::runImport(*backend_, source, plan, exchange::ImportMode::allOrNothing, *this, &result) &&
           result.isStored;
  }

  void importAndCopy(Whole* done) {
    if (!openFor(path_)) return;
    done->imported = import(fileOfValues("once"), false);
    if (done->imported) done->replaced = import(fileOfValues("again"), true);
    done->copied = static_cast<bool>(backend_->saveCopy(utf8Of(copyPath())));
  }

  /// A change with what a trigger does along, in the table "taken".
  void undoAndRedo(Whole* done) {
    if (!openFor(path_)) return;
    ChangeHistory& history = *backend_->history();
    history.keep(1'000'000);
    std::unique_ptr<Recordset> rows;
    if (!tryOpen("Select * from [taken]", &rows)) return;
    if (!rows->setValue(0, std::string("changed")) || !rows->update()) return;
    // Where memory was refused, the change is stored and can't be taken back.
    if (history.next(ChangeHistory::Way::back) == nullptr) return;
    done->undone = static_cast<bool>(history.take(ChangeHistory::Way::back));
    if (done->undone) done->redone = static_cast<bool>(history.take(ChangeHistory::Way::again));
  }

  /// Both rows of it or none, whatever was acknowledged.
  void expectTakenBack(const Whole& done) {
    OtherProgram other(path_);
    const std::string text = other.ask("SELECT a FROM taken");
    EXPECT_EQ(text == "changed" ? "1" : "0", other.ask("SELECT count(*) FROM noted")) << text;
    EXPECT_TRUE(text == "changed" || text == "begun") << text;
    if (done.undone) {
      EXPECT_EQ(done.redone ? "changed" : "begun", text);
    }
  }

  /// What is read now is what was acknowledged, or can't be read.
  void reopen(Whole* done) {
    if (!openFor(path_)) return;
    std::unique_ptr<Recordset> rows;
    if (!tryOpen("SELECT a FROM t ORDER BY a", &rows)) return;
    const Acknowledged& records = done->records;
    const std::string shown = columnOf(*rows);
    if (shown.find("(failed") != std::string::npos) return;
    EXPECT_TRUE(!records.inserted || (" " + shown + " ").find(" 10 ") != std::string::npos) << shown;
    EXPECT_TRUE(!records.removed || (" " + shown + " ").find(" 2 ") == std::string::npos) << shown;
    done->reopened = true;
  }

  void expectNewFile(const Whole& done) {
    ASSERT_EQ(done.fileMade, std::filesystem::exists(newPath()));
    if (!done.fileMade) return;
    OtherProgram other(newPath());
    ASSERT_EQ("ok", other.ask("PRAGMA integrity_check"));
    const std::string made = other.ask("SELECT count(*) FROM sqlite_schema WHERE name = 'filled'");
    EXPECT_TRUE(made == "1" || !done.tableMade);
    if (made != "1") return;
    const int rows = std::stoi(other.ask("SELECT count(*) FROM filled"));
    EXPECT_GE(rows, done.filled);
    EXPECT_LE(rows, kFilled);
    EXPECT_EQ("0", other.ask("SELECT count(*) FROM filled WHERE Content <> printf('%.*c', 3000, 'f')"));
  }

  void expectCopy(const Whole& done) {
    ASSERT_EQ(done.copied, std::filesystem::exists(copyPath()));
    if (!done.copied) return;
    OtherProgram copy(copyPath());
    ASSERT_EQ("ok", copy.ask("PRAGMA integrity_check"));
    EXPECT_EQ("2", copy.ask("SELECT count(*) FROM k"));
    if (done.records.inserted) {
      EXPECT_EQ("1", copy.ask("SELECT count(*) FROM t WHERE a = 10"));
    }
  }

  /// What has the name of a copy is one, whole, and none is missing that was not said to be.
  void expectFormerStates(const Whole& done) {
    CopyFolder copies({.folder = utf8Of(copiesPath())});
    for (const auto& path : {path_, newPath()}) {
      const std::vector<KeptCopy> kept = copies.copiesOf(utf8Of(path));
      for (const KeptCopy& copy : kept) {
        EXPECT_EQ("ok", OtherProgram(pathOf(copy.path)).ask("PRAGMA integrity_check")) << copy.path;
      }
      if (done.all() && !isStateMissing_) {
        EXPECT_FALSE(kept.empty());
      }
    }
  }

  void expectToWork() {
    ASSERT_TRUE(openFor(path_));
    const auto rows = records("Select * from [t]");
    ASSERT_TRUE(rows);
    EXPECT_TRUE(rows->addNew() && rows->setValue(0, std::int64_t{99}) && rows->update());
    EXPECT_EQ("99", columnOf("SELECT a FROM t WHERE a = 99"));
    backend_.reset();
  }

  bool isStateMissing_ = false;  // a former state could not be kept, and that was told
};

}  // namespace store
