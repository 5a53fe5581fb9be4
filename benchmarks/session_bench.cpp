#include "benchmarks/session_bench.h"

#include <windows.h>

#include <cstdint>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "benchmarks/bare_database.h"
#include "benchmarks/find_measures.h"
#include "benchmarks/outside.h"
#include "dialogs/find/everywhere_ids.h"
#include "dialogs/small/ask_text_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/remote_window.h"
#include "views/lookup/look_up_ids.h"

namespace outside {

using bench::secondsOf;

namespace {

constexpr double kMostFilter = 1.2;      // times the bare statement
constexpr double kMostEverywhere = 1.2;  // times a step of Find
constexpr double kMostNarrowing = 1.2;   // times the bare statement
constexpr double kMostLook = 2.0;        // times the bare walk over the row ids
constexpr double kMostWait = 250;        // milliseconds, at the longest, for what nobody is to wait for
constexpr int kSecondEditor = 1201;
constexpr int kLevel = 4711;

void setText(HWND dialog, int id, const std::string& text) {
  SendMessageW(GetDlgItem(dialog, id), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(std::wstring(text.begin(), text.end()).c_str()));
}

void awaitEnd(const OpenProgram& program, HWND dialog) {
  waitFor([&] { return !IsWindow(dialog) && IsWindowEnabled(program.main()) && answers(program.main()); },
          "a dialog does not end");
}

void leave(const OpenProgram& program, HWND dialog) {
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  awaitEnd(program, dialog);
}

// ---- A filter, from the OK of its dialog to the rows

double secondsToFilter(const OpenProgram& program, const std::string& text) {
  program.command(ID_FILTER_ALL);
  const HWND dialog = program.dialog(L"Containing");
  setText(dialog, IDC_ASKED_TEXT, text);
  const HWND grid = remote::recordGrid(program.main());
  const double seconds = secondsOf([&] {
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    waitFor([&] { return remote::itemCount(grid) == 0 && answers(program.main()); }, "the rows do not come");
  });
  awaitEnd(program, dialog);
  program.command(ID_ARRANGEMENT_CLEAR);
  waitFor([&] { return remote::itemCount(grid) != 0 && answers(program.main()); }, "not all rows come back");
  return seconds;
}

void measureFilter(OpenProgram& program, bench::BareDatabase& bare) {
  program.choose(0);
  program.show(kListPage);
  const bench::BareSearch search = bench::bareSearches().front();
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int turn = 0; turn < kTurns; ++turn) {
    ours.push_back(secondsToFilter(program, search.text));
    theirs.push_back(secondsOf([&] { bare.runToEnd(search.statement); }));
  }
  report("filter, all columns, to the rows", ours, theirs, kMostFilter);
}

// ---- The search of all tables, beside a step of Find

double secondsEverywhere(const OpenProgram& program, const std::string& text) {
  program.command(ID_FIND_EVERYWHERE);
  const HWND dialog = program.dialog(L"Find in All Tables");
  setText(dialog, IDC_EVERYWHERE_TEXT, text);
  const HWND state = GetDlgItem(dialog, IDC_EVERYWHERE_STATE);
  const double seconds = secondsOf([&] {
    PostMessageW(dialog, WM_COMMAND, IDC_EVERYWHERE_SEARCH, 0);
    waitFor([&] { return !remote::text(state).empty(); }, "the search does not end", kBetweenLooks);
  });
  leave(program, dialog);
  return seconds;
}

void measureEverywhere(OpenProgram& program) {
  const std::string text = bench::bareSearches().front().text;
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int turn = 0; turn < kTurns; ++turn) {
    ours.push_back(secondsEverywhere(program, text));
    const HWND dialog = openFind(program);
    theirs.push_back(secondsToFind(program, dialog, std::wstring(text.begin(), text.end()).c_str()));
    leave(program, dialog);
  }
  report("all tables, beside Find", ours, theirs, kMostEverywhere);
}

// ---- A change of a record

/// Types over the second field and goes to the next record, which stores it.
double secondsToChange(const OpenProgram& program, HWND station, const std::wstring& text) {
  // What is typed goes by the editor that was focused last.
  SendMessageW(station, WM_SETFOCUS, 0, 0);
  SendMessageW(station, EM_SETSEL, 0, -1);
  for (const wchar_t letter : text) SendMessageW(station, WM_CHAR, letter, 1);
  const double seconds = secondsOf([&] {
    SendMessageW(program.main(), WM_COMMAND, ID_RECORD_NEXT, 0);
    require(answers(program.main()), "the window does not answer");
  });
  require(remote::text(station) != text, "the change was not stored");
  return seconds;
}

/// The first change of a session has the file's former state copied before.
void measureFirstChange(const std::wstring& program, const std::wstring& database) {
  constexpr int kSessions = 5;
  constexpr int kChanges = 4;
  std::vector<double> first;
  std::vector<double> next;
  for (int session = 0; session < kSessions; ++session) {
    OpenProgram open(program, database);
    open.choose(0);
    open.show(kFormPage);
    const HWND station = remote::control(open.main(), kSecondEditor);
    for (int change = 0; change < kChanges; ++change) {
      const std::wstring text = L"changed " + std::to_wstring(session) + L"." + std::to_wstring(change);
      (change == 0 ? first : next).push_back(secondsToChange(open, station, text));
    }
  }
  reportDelay("the first change of a session", first, kMostWait);
  reportDelay("a next change", next, kMostWait);
}

// ---- Undo of one change of a record, to the record as it was

void measureUndo(OpenProgram& program) {
  program.choose(0);
  program.show(kFormPage);
  const HWND station = remote::control(program.main(), kSecondEditor);
  std::vector<double> seconds;
  for (int turn = 0; turn < kTurns; ++turn) {
    const std::wstring before = remote::text(station);
    secondsToChange(program, station, L"changed");
    seconds.push_back(secondsOf([&] {
      program.command(ID_HISTORY_UNDO);
      waitFor([&] { return remote::text(station) == before && answers(program.main()); },
              "nothing is undone");
    }));
    SendMessageW(program.main(), WM_COMMAND, ID_RECORD_NEXT, 0);
  }
  reportDelay("undo of one change", seconds, kMostWait);
}

// ---- One look at what another program has changed

/// Another program, which waits for this one.
class Writer {
 public:
  explicit Writer(const std::string& path) {
    require(sqlite3_open_v2(path.c_str(), &connection_, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK,
            "the file does not open");
    sqlite3_busy_timeout(connection_, 10'000);
  }
  ~Writer() { sqlite3_close_v2(connection_); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  void run(const std::string& sql) {
    require(sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, sql.c_str());
  }

 private:
  sqlite3* connection_ = nullptr;
};

void measureLook(OpenProgram& program, bench::BareDatabase& bare, const std::string& path) {
  Writer writer(path);
  constexpr DWORD kBetweenTries = 100;
  program.choose(0);
  program.show(kFormPage);
  constexpr int kLevelEditor = 1205;  // of the sixth field
  const HWND level = remote::control(program.main(), kLevelEditor);
  require(level != nullptr, "there is no editor of the level");
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int change = 0; ours.size() < kTurns; ++change) {
    writer.run("UPDATE Measurements SET Level = " + std::to_string(kLevel + change) + " WHERE rowid = 1");
    const std::wstring wanted = std::to_wstring(kLevel + change);
    // It looks again only after some time. What it has seen by itself does not count.
    waitFor(
        [&] {
          PostMessageW(program.main(), WM_MOUSEMOVE, 0, 0);
          if (remote::text(level) == wanted) return true;
          const double seconds = secondsOf([&] {
            SendMessageW(program.main(), WM_ACTIVATE, WA_INACTIVE, 0);
            SendMessageW(program.main(), WM_ACTIVATE, WA_ACTIVE, 0);
          });
          if (remote::text(level) != wanted) return false;
          ours.push_back(seconds);
          theirs.push_back(secondsOf([&] { bare.scanRowIds(); }));
          return true;
        },
        "the change is not shown", kBetweenTries);
  }
  report("a look at others' changes", ours, theirs, kMostLook);
}

// ---- A look-up's list

void makeNamed(const std::string& path, std::int64_t rows) {
  Writer writer(path);
  writer.run("CREATE TABLE Refers (Note Text, Number Integer REFERENCES Named (Id))");
  writer.run("INSERT INTO Refers VALUES ('note', NULL)");
  writer.run("CREATE TABLE Named (Id Integer PRIMARY KEY, Name Text)");
  writer.run("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + std::to_string(rows) +
             ") INSERT INTO Named SELECT i, 'a name of number ' || i FROM n");
}

void measureNarrowing(const std::wstring& program, const std::wstring& database,
                      const std::string& bareDatabase, int rows) {
  constexpr int kRefersTable = 1;
  OpenProgram open(program, database);
  open.choose(kRefersTable);
  open.show(kFormPage);
  const HWND number = remote::control(open.main(), kSecondEditor);
  require(number != nullptr, "there is no editor of the reference");
  // It has no value: what stands beside it tells that the record has come.
  const HWND beside = remote::control(open.main(), kSecondEditor - 1);
  waitFor([&] { return remote::text(beside) == L"note"; }, "the record is not shown");
  PostMessageW(number, WM_KEYDOWN, VK_F4, 1);
  const HWND dialog = open.dialog(L"Number");
  const HWND list = remote::control(dialog, IDC_LOOK_UP_RECORDS);
  const HWND note = remote::control(dialog, IDC_LOOK_UP_NOTE);
  bench::BareDatabase bare(bareDatabase);
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int turn = 0; turn < kTurns; ++turn) {
    setText(dialog, IDC_LOOK_UP_TEXT, "");
    waitFor([&] { return remote::itemCount(list) == rows && answers(dialog); }, "not all records are listed");
    ours.push_back(secondsOf([&] {
      setText(dialog, IDC_LOOK_UP_TEXT, "no name like that");
      waitFor([&] { return remote::itemCount(list) == 0 && remote::text(note) == L"0 records"; },
              "the list does not narrow");
    }));
    theirs.push_back(secondsOf([&] {
      bare.runToEnd(
          "SELECT Id FROM Named WHERE Name LIKE '%no name like that%' OR Id LIKE '%no name like that%'");
    }));
  }
  report("look-up narrowed to nothing", ours, theirs, kMostNarrowing);
}

}  // namespace

void measureSession(const std::wstring& program, const std::wstring& database,
                    const std::string& bareDatabase) {
  std::int64_t rows = 0;
  {
    OpenProgram open(program, database);
    bench::BareDatabase bare(bareDatabase);
    rows = bare.runToEnd("SELECT 1 FROM Measurements");
    measureFilter(open, bare);
    measureEverywhere(open);
    measureUndo(open);
    measureLook(open, bare, bareDatabase);
  }
  measureFirstChange(program, database);
  makeNamed(bareDatabase, rows);
  measureNarrowing(program, database, bareDatabase, static_cast<int>(rows));
}

}  // namespace outside
