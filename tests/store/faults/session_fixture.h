#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/store/store_fixture.h"

namespace store {

/// All operations on a database, one after the other, and what has to be in the file after them whatever
/// became of each.
class SessionTest : public StoreTest {
 protected:
  void remake(const std::string& mode) {
    backend_.reset();
    for (const char* suffix : {"", "-journal", "-wal", "-shm"})
      std::filesystem::remove(utf8Of(path_) + suffix);
    if (mode != madeMode_) {
      prepare(
          "PRAGMA journal_mode = " + mode +
          "; CREATE TABLE t (a Integer, b Text); CREATE TABLE k (x Text PRIMARY KEY, y Integer) WITHOUT "
          "ROWID;"
          "INSERT INTO t VALUES (1, 'one'), (2, 'two'), (3, 'three'); INSERT INTO k VALUES ('p', 1), "
          "('q', 2); CREATE TABLE taken (a Text); CREATE TABLE noted (a Text); INSERT INTO taken VALUES "
          "('begun'); CREATE TRIGGER note AFTER UPDATE ON taken BEGIN INSERT INTO noted VALUES (new.a); END");
      made_ = bytesOf(path_);
      madeMode_ = mode;
    }
    writeBytes(path_, made_);
  }

  /// What a whole run is to leave behind, as far as it was acknowledged.
  struct Acknowledged {
    bool inserted = false;
    bool updated = false;
    bool removed = false;
    bool keyMoved = false;
    bool byStatement = false;
    bool created = false;
    bool all() const { return inserted && updated && removed && keyMoved && byStatement && created; }
  };

  Acknowledged runAll() {
    Acknowledged done;
    runAll(&done);
    return done;
  }
  /// All operations, one after the other; each goes on whatever became of those before it. Where memory is
  /// refused to the program itself the rest is left out, by std::bad_alloc.
  void runAll(Acknowledged* acknowledged) {
    Acknowledged& done = *acknowledged;
    std::unique_ptr<Backend> opened;
    if (!openDatabase(utf8Of(path_), {.lockWait = 0}, &opened)) return;
    backend_ = std::move(opened);
    std::unique_ptr<Recordset> rows;
    if (tryOpen("SELECT a, b FROM t ORDER BY a", &rows)) {
      walk(*rows, {"1", "2", "3"});
      done.updated = rows->moveFirst() && rows->setValue(1, std::string(9000, 'u')) && rows->update();
      static_cast<void>(rows->cancelUpdate());
      done.removed = rows->moveNext() && textOf(*rows, 0) == "2" && rows->remove();
      done.inserted = rows->addNew() && rows->setValue(0, std::int64_t{10}) && rows->update();
      static_cast<void>(rows->cancelUpdate());
      EXPECT_EQ(3 - (done.removed ? 1 : 0) + (done.inserted ? 1 : 0), rows->recordCount());
    }
    std::unique_ptr<Recordset> keyed;
    if (tryOpen("Select * from [k]", &keyed)) {
      done.keyMoved = keyed->moveFirst() && keyed->setValue(0, std::string("moved")) && keyed->update();
      if (done.keyMoved) {
        // The record is followed, or can't be read at all at the moment.
        const std::string shown = textOf(*keyed, 1);
        EXPECT_TRUE(shown == "1" || shown.starts_with("(failed")) << shown;
      }
    }
    std::unique_ptr<Recordset> counted;
    if (tryOpen("SELECT a, count(*) FROM t GROUP BY a ORDER BY a", &counted)) walk(*counted, {});
    std::unique_ptr<Recordset> catalogue;
    if (tryOpen("MSysFields", &catalogue, SourceKind::table)) walk(*catalogue, {});
    std::int64_t affected = -1;
    done.byStatement = static_cast<bool>(tryRun("UPDATE t SET a = 30 WHERE a = 3", &affected));
    if (done.byStatement) {
      EXPECT_EQ(1, affected);
    }
    done.created = static_cast<bool>(tryRun("CREATE TABLE 'made' (Id Integer ,'Full name' Text)"));
    rows.reset();
    keyed.reset();
    counted.reset();
    catalogue.reset();
    backend_.reset();
  }

  /// Reads all records. A value is read rightly or not at all.
  void walk(Recordset& rows, const std::vector<std::string>& expected) {
    for (std::size_t index = 0; !rows.isEof(); ++index) {
      const std::string shown = textOf(rows, 0);
      if (!expected.empty()) {
        EXPECT_TRUE(shown == expected[index] || shown.starts_with("(failed")) << shown;
      }
      if (!rows.moveNext()) break;
    }
  }

  /// Each change is in the file whole or not at all, and an acknowledged one is.
  void expectSound(const Acknowledged& done) {
    OtherProgram other(path_);
    ASSERT_EQ("ok", other.ask("PRAGMA integrity_check"));
    const auto expect = [&](bool acknowledged, const std::string& sql) {
      const std::string answer = other.ask(sql);
      EXPECT_TRUE(answer == "1" || (answer == "0" && !acknowledged)) << sql << ": " << answer;
    };
    expect(done.updated, "SELECT count(*) FROM t WHERE a = 1 AND b = printf('%.*c', 9000, 'u')");
    expect(done.updated, "SELECT 1 - count(*) FROM t WHERE b = 'one'");
    expect(done.removed, "SELECT 1 - count(*) FROM t WHERE a = 2");
    expect(done.inserted, "SELECT count(*) FROM t WHERE a = 10");
    expect(done.keyMoved, "SELECT count(*) FROM k WHERE x = 'moved' AND y = 1");
    expect(done.byStatement, "SELECT count(*) FROM t WHERE a = 30");
    expect(done.created, "SELECT count(*) FROM sqlite_schema WHERE name = 'made'");
    EXPECT_EQ("2", other.ask("SELECT count(*) FROM k"));
  }

 private:
  std::string made_;
  std::string madeMode_;
};

}  // namespace store
