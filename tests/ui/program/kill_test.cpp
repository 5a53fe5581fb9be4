// The program, and apart from it a script's way over the components, killed at random instants of its work:
// what it acknowledged is in the file, nothing is there by halves, and the file is sound. QUIVANE_KILLS says
// how often; 25 times otherwise.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "base/settings/settings_store.h"
#include "base/variant.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/support/process.h"
#include "tests/ui/support/ui_test.h"

using automationtest::SqliteFile;
using testing::ElementsAre;

namespace {

constexpr int kKills = 25;
/// Of five kills the program gets two.
constexpr int kProgramKills = 2;
constexpr int kAllKills = 5;

int wantedKills() {
  const char* wanted = std::getenv("QUIVANE_KILLS");
  return wanted != nullptr ? std::max(std::atoi(wanted), kAllKills) : kKills;
}

/// What was acknowledged: each is the number of the last record, which are numbered from 1, or of the last
/// step that made or dropped a table.
struct Acknowledged {
  volatile LONG isReady;
  volatile LONG added;
  volatile LONG changed;
  volatile LONG removed;
  volatile LONG tables;
};

/// Shared by the one who works and the one who kills.
class SharedAcknowledged {
 public:
  explicit SharedAcknowledged(const std::wstring& name)
      : mapping_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Acknowledged),
                                    name.c_str())),
        view_(
            static_cast<Acknowledged*>(MapViewOfFile(mapping_, FILE_MAP_WRITE, 0, 0, sizeof(Acknowledged)))) {
  }
  ~SharedAcknowledged() {
    if (view_) UnmapViewOfFile(view_);
    if (mapping_) CloseHandle(mapping_);
  }
  SharedAcknowledged(const SharedAcknowledged&) = delete;
  SharedAcknowledged& operator=(const SharedAcknowledged&) = delete;

  Acknowledged* operator->() const { return view_; }
  const Acknowledged& operator*() const { return *view_; }
  explicit operator bool() const { return view_ != nullptr; }

 private:
  HANDLE mapping_;
  Acknowledged* view_;
};

constexpr wchar_t kPathVariable[] = L"QUIVANE_TEST_KILLED_FILE";
constexpr wchar_t kNameVariable[] = L"QUIVANE_TEST_KILLED_NAME";

std::wstring variable(const wchar_t* name) {
  std::wstring value(32768, L'\0');
  value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

/// A record lives for so many others.
constexpr LONG kLife = 3;
constexpr std::size_t kNewLength = 3000;
constexpr std::size_t kChangedLength = 9000;

/// The part of the process that is killed. It runs only when the test below starts it by name.
TEST(KilledProcess, DISABLED_WorksWithoutEnd) {
  const SharedAcknowledged told(variable(kNameVariable));
  ConnectionHandle connection;
  ASSERT_TRUE(connection.open(variable(kPathVariable).c_str()));
  RecordsetHandle records;
  for (LONG number = 1; !HasFailure(); ++number) {
    // A table that was dropped ends the recordsets without a key of their own.
    ASSERT_TRUE(records.open(L"Select * from [T]", &connection, CursorType::keyset, SourceKind::text));
    told->isReady = 1;
    ASSERT_TRUE(records.addNew());
    ASSERT_TRUE(records.field(0).setValue(Variant::fromLong(number)));
    ASSERT_TRUE(records.field(1).setValue(Variant::fromText(std::wstring(kNewLength, L'n').c_str())));
    const Outcome added = records.update();
    ASSERT_TRUE(added) << added.reason().text();
    told->added = number;
    ASSERT_TRUE(records.field(1).setValue(Variant::fromText(std::wstring(kChangedLength, L'c').c_str())));
    const Outcome changed = records.update();
    ASSERT_TRUE(changed) << changed.reason().text();
    told->changed = number;
    if (number > kLife) {
      ASSERT_TRUE(records.moveFirst());
      ASSERT_TRUE(records.deleteCurrent());
      told->removed = number - kLife;
    }
    const bool makes = number % 2 == 1;
    const std::wstring table = L"made " + std::to_wstring(makes ? number : number - 1);
    const std::wstring statement =
        makes ? L"CREATE TABLE '" + table + L"' (a Integer, b Text)" : L"DROP TABLE '" + table + L"'";
    ASSERT_TRUE(connection.execute(statement.c_str()));
    told->tables = number;
  }
}

class KillTest : public UiTest {
 protected:
  /// Lets it work for a random time.
  void waitAtRandom(HANDLE process) {
    WaitForSingleObject(process, static_cast<DWORD>(std::uniform_int_distribution(0, 400)(random_)));
  }

  std::vector<std::string> asked(const std::filesystem::path& path, const std::string& sql) {
    return SqliteFile(path.wstring()).column(sql);
  }
  /// The numbers from `first` to `last`; `maybe` is one more that may be there too.
  static void expectNumbers(const std::vector<std::string>& found, LONG first, LONG last, LONG maybe) {
    std::vector<std::string> wanted;
    for (LONG number = first; number <= last; ++number) wanted.push_back(std::to_string(number));
    std::vector<std::string> others;
    std::copy_if(found.begin(), found.end(), std::back_inserter(others), [&](const std::string& number) {
      return number != std::to_string(maybe) || std::count(wanted.begin(), wanted.end(), number) != 0;
    });
    EXPECT_EQ(others, wanted);
  }

  std::mt19937 random_{std::random_device{}()};
};

class ComponentKillTest : public KillTest {
 protected:
  void killOnce(int number) {
    const std::filesystem::path path = file("killed " + std::to_string(number) + ".cdb");
    makeDatabase(path, {L"CREATE TABLE 'T' (N Integer, Content Text)"});
    if (number % 2 == 1) SqliteFile(path.wstring()).run("PRAGMA journal_mode = WAL");
    const std::wstring name = L"quivane-test-killed-" + std::to_wstring(testsupport::processNumber()) + L"-" +
                              std::to_wstring(number);
    const SharedAcknowledged told(name);
    ASSERT_TRUE(told);
    SetEnvironmentVariableW(kPathVariable, path.c_str());
    SetEnvironmentVariableW(kNameVariable, name.c_str());
    {
      const RunningProgram victim(
          testsupport::programPath(),
          L"--gtest_filter=KilledProcess.* --gtest_also_run_disabled_tests --gtest_brief=1");
      ASSERT_TRUE(remote::waitUntil([&] { return told->isReady != 0 || !victim.isRunning(); }));
      waitAtRandom(victim.processHandle());
      ASSERT_TRUE(victim.isRunning()) << "it ended by itself";
      // Its end kills it.
    }
    expectSound(path, *told);
    changes_ += told->added + told->changed + told->removed + told->tables;
  }

  void expectSound(const std::filesystem::path& path, const Acknowledged& told) {
    EXPECT_THAT(asked(path, "PRAGMA integrity_check"), ElementsAre("ok"));
    const auto removedLater = asked(path, "SELECT N FROM T ORDER BY N");
    // Of the one that was being deleted nobody knows.
    std::vector<std::string> found = removedLater;
    const std::string inDoubt = std::to_string(told.removed + 1);
    const bool mayBeGone = told.removed < told.changed - kLife;
    if (mayBeGone && (found.empty() || found.front() != inDoubt)) found.insert(found.begin(), inDoubt);
    expectNumbers(found, told.removed + 1, told.added, told.added + 1);
    EXPECT_THAT(
        asked(path, "SELECT N FROM T WHERE Content NOT IN (printf('%.*c', " + std::to_string(kNewLength) +
                        ", 'n'), printf('%.*c', " + std::to_string(kChangedLength) + ", 'c'))"),
        ElementsAre())
        << "records by halves";
    EXPECT_THAT(asked(path, "SELECT N FROM T WHERE length(Content) <> " + std::to_string(kChangedLength) +
                                " AND N <= " + std::to_string(told.changed)),
                ElementsAre())
        << "changes that were acknowledged and are gone";
    expectTables(path, told);
  }
  /// Steps with an odd number make a table, the next ones drop it.
  void expectTables(const std::filesystem::path& path, const Acknowledged& told) {
    const auto tables = asked(path, "SELECT name FROM sqlite_schema WHERE name LIKE 'made %'");
    const bool isMade = told.tables % 2 == 1;
    const std::vector made{"made " + std::to_string(isMade ? told.tables : told.tables + 1)};
    const std::vector<std::string> none;
    const bool mayBeNext = told.tables < told.changed;
    EXPECT_TRUE(tables == (isMade ? made : none) || (mayBeNext && tables == (isMade ? none : made)))
        << testing::PrintToString(tables) << " after step " << told.tables;
  }

  LONG changes_ = 0;
};

TEST_F(ComponentKillTest, WhatTheComponentsAcknowledgedIsThere) {
  const int kills = wantedKills() * (kAllKills - kProgramKills) / kAllKills;
  for (int number = 0; number < kills && !HasFailure(); ++number) {
    SCOPED_TRACE(number);
    killOnce(number);
  }
  std::printf("%d kills, %ld changes acknowledged\n", kills, changes_);
  EXPECT_GT(changes_, kills);
}

/// Works on the form as a user does, without looking up. Each step is acknowledged by what the form shows.
class ProgramKillTest : public KillTest {
 protected:
  static constexpr int kName = 1200;

  void SetUp() override {
    constexpr DWORD kAll = 2;
    constexpr DWORD kNone = 0;
    setOption(L"GenUpdateRights", kAll);
    setOption(L"WarningOnDeletion", kNone);
  }
  void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot); }

  static void setOption(const wchar_t* name, DWORD value) {
    SettingsStore::writeDword(SettingsStore::kOptions, name, value);
  }

  void killOnce(int number) {
    const std::filesystem::path path = file("program " + std::to_string(number) + ".cdb");
    makeDatabase(path, {L"CREATE TABLE 'T' (Name Text)", L"INSERT INTO T VALUES ('first')"});
    Acknowledged told{};
    {
      OpenedDatabase victim(path);
      ASSERT_TRUE(victim.tables());
      ASSERT_TRUE(remote::switchToPage(victim.main(), OpenedDatabase::kFormPage));
      std::thread user([&] { work(victim.main(), &told); });
      waitAtRandom(victim.program().processHandle());
      EXPECT_TRUE(victim.program().isRunning()) << "it ended by itself";
      TerminateProcess(victim.program().processHandle(), 99);
      user.join();
    }
    expectSound(path, told);
    changes_ += told.added + told.changed + told.removed;
  }

  static bool command(HWND main, int number) {
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(main, WM_COMMAND, static_cast<WPARAM>(number), 0, SMTO_NORMAL, 10'000,
                               &result) != 0;
  }
  static std::wstring shown(HWND main) { return remote::text(remote::control(main, kName)); }
  static bool type(HWND main, const std::wstring& text) {
    const HWND edit = remote::control(main, kName);
    DWORD_PTR result = 0;
    SendMessageTimeoutW(edit, EM_SETSEL, 0, -1, SMTO_NORMAL, 10'000, &result);
    for (const wchar_t c : text) SendMessageTimeoutW(edit, WM_CHAR, c, 0, SMTO_NORMAL, 10'000, &result);
    return shown(main) == text;
  }
  /// Back to the first record, which stores what was typed before it is shown.
  static bool store(HWND main) { return command(main, ID_RECORD_FIRST) && shown(main) == L"first"; }

  /// Until the program is gone.
  static void work(HWND main, Acknowledged* told) {
    for (LONG number = 1;; ++number) {
      const std::wstring text = std::to_wstring(number);
      if (!command(main, ID_RECORD_NEW) || !type(main, L"n" + text) || !store(main)) return;
      told->added = number;
      if (!command(main, ID_RECORD_LAST) || shown(main) != L"n" + text) return;
      if (!type(main, L"c" + text) || !store(main)) return;
      told->changed = number;
      if (number % kLife != 0) continue;
      if (!command(main, ID_RECORD_LAST) || shown(main) != L"c" + text) return;
      if (!command(main, ID_RECORD_DELETE) || shown(main) == L"c" + text || shown(main).empty()) return;
      told->removed = number;
    }
  }

  void expectSound(const std::filesystem::path& path, const Acknowledged& told) {
    EXPECT_THAT(asked(path, "PRAGMA integrity_check"), ElementsAre("ok"));
    std::vector<std::string> names = asked(path, "SELECT Name FROM T ORDER BY rowid");
    ASSERT_FALSE(names.empty());
    EXPECT_EQ(names.front(), "first");
    for (LONG number = 1; number <= told.added + 1; ++number) {
      const std::string text = std::to_string(number);
      const auto isNew = std::count(names.begin(), names.end(), "n" + text);
      const auto isChanged = std::count(names.begin(), names.end(), "c" + text);
      const bool isDeleted = number % kLife == 0 && number <= told.removed;
      const bool mayBeDeleted = number % kLife == 0 && number <= told.changed;
      const bool mayBeMissing = number > told.added || mayBeDeleted;
      EXPECT_LE(isNew + isChanged, isDeleted ? 0 : 1) << number;
      EXPECT_GE(isNew + isChanged, mayBeMissing ? 0 : 1) << number;
      if (number <= told.changed) {
        EXPECT_EQ(isNew, 0) << number;
      }
      std::erase_if(names, [&](const std::string& name) { return name == "n" + text || name == "c" + text; });
    }
    EXPECT_THAT(names, ElementsAre("first")) << "records that nobody made";
  }

  LONG changes_ = 0;
};

TEST_F(ProgramKillTest, WhatTheProgramShowedAsStoredIsThere) {
  const int kills = wantedKills() * kProgramKills / kAllKills;
  for (int number = 0; number < kills && !HasFailure(); ++number) {
    SCOPED_TRACE(number);
    killOnce(number);
  }
  std::printf("%d kills, %ld changes acknowledged\n", kills, changes_);
  EXPECT_GT(changes_, kills);
}

}  // namespace
