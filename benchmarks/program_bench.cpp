// Measures the real program from outside, by its windows alone, beside what the system can do: the List page
// of a large table beside that of a small one, and the start beside that of an empty window; with
// find_bench.cpp the search, and with session_bench.cpp what a user does between.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <functional>
#include <sqlite3.h>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/find_bench.h"
#include "benchmarks/outside.h"
#include "benchmarks/session_bench.h"
#include "tests/ui/remote/remote_window.h"

namespace {

using bench::secondsOf;
using namespace outside;

constexpr double kMostStart = 40;       // milliseconds more than an empty window
constexpr double kMostListRatio = 1.5;  // with ten times the rows

/// The visible window of a process that lies over no other.
HWND topWindow(DWORD processId) {
  std::pair<DWORD, HWND> search{processId, nullptr};
  EnumWindows(
      [](HWND window, LPARAM asked) -> BOOL {
        auto& wanted = *reinterpret_cast<std::pair<DWORD, HWND>*>(asked);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner != wanted.first || !IsWindowVisible(window) || GetWindow(window, GW_OWNER)) return TRUE;
        wanted.second = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.second;
}

double secondsToStart(const std::wstring& commandLine) {
  const auto begin = std::chrono::steady_clock::now();
  const Program program(commandLine);
  waitFor([&] { return answers(topWindow(program.id())); }, "no window appears");
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double secondsToList(OpenProgram& program, int table, int rows) {
  program.choose(table);
  // The records are opened with the first page that shows them.
  program.show(kFormPage);
  return secondsOf([&] {
    remote::clickTab(remote::tabControl(program.main()), kListPage);
    waitFor(
        [&] {
          const HWND list = remote::shownPage(program.main());
          return list != nullptr && remote::isList(list) && remote::itemCount(list) == rows &&
                 answers(program.main());
        },
        "the rows are not shown");
  });
}

/// The tables Large, of so many rows, and Small, of a tenth.
void makeLists(const std::string& path, int rows) {
  sqlite3* opened = nullptr;
  bool isDone = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) ==
                SQLITE_OK;
  for (const auto& [name, count] : {std::pair{"Large", rows}, std::pair{"Small", rows / 10}}) {
    const std::string table = std::string("CREATE TABLE ") + name + " (N Integer)";
    const std::string fill = std::string("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ") +
                             std::to_string(count) + ") INSERT INTO " + name + " SELECT i FROM n";
    for (const std::string& sql : {table, fill}) {
      isDone = isDone && sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    }
  }
  sqlite3_close_v2(opened);
  require(isDone, "the tables can't be made");
}

void measureList(const std::wstring& program, const std::wstring& database, const std::string& bareDatabase,
                 int rows) {
  makeLists(bareDatabase, rows);
  OpenProgram open(program, database);
  std::vector<double> large;
  std::vector<double> small;
  for (int turn = 0; turn < kTurns; ++turn) {
    large.push_back(secondsToList(open, 0, rows));
    small.push_back(secondsToList(open, 1, rows / 10));
  }
  report("List page, ten times the rows", large, small, kMostListRatio);
}

void measureStart(const std::wstring& program, const std::wstring& database, const std::wstring& empty) {
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int turn = 0; turn < 2 * kTurns + 1; ++turn) {
    ours.push_back(secondsToStart(L"\"" + program + L"\" \"" + database + L"\""));
    theirs.push_back(secondsToStart(L"\"" + empty + L"\""));
  }
  std::vector<double> differences;
  for (std::size_t turn = 0; turn < ours.size(); ++turn)
    differences.push_back(1e3 * (ours[turn] - theirs[turn]));
  const double median = medianOf(differences);
  std::printf("  %-30s %10.1f ms   beside %10.1f ms   %.1f ms more (%.1f to %.1f)   (at most %.0f)%s\n",
              "start to a window that answers", 1e3 * medianOf(ours), 1e3 * medianOf(theirs), median,
              *std::min_element(differences.begin(), differences.end()),
              *std::max_element(differences.begin(), differences.end()), kMostStart,
              median <= kMostStart ? "" : "   OVER THE LIMIT");
  isOver = isOver || median > kMostStart;
}

std::string narrow(const std::wstring& path) {
  std::string utf8(path.size() * 3 + 1, '\0');
  utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, path.data(),
                                                           static_cast<int>(path.size()), utf8.data(),
                                                           static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::wstring what = argc > 1 ? argv[1] : L"";
  if (argc == 4 && what == L"find") {
    measureFind(argv[2], argv[3], narrow(argv[3]));
  } else if (argc == 4 && what == L"memory") {
    measureMemory(argv[2], argv[3], narrow(argv[3]));
  } else if (argc == 5 && what == L"large") {
    measureLarge(argv[2], argv[3], argv[4]);
  } else if (argc == 4 && what == L"matches") {
    measureMatches(argv[2], argv[3], narrow(argv[3]));
  } else if (argc == 4 && what == L"stop") {
    measureStop(argv[2], argv[3]);
  } else if (argc == 5 && what == L"list") {
    measureList(argv[2], argv[3], narrow(argv[3]),
                std::max(10, static_cast<int>(std::wcstol(argv[4], nullptr, 10))));
  } else if (argc == 4 && what == L"session") {
    outside::measureSession(argv[2], argv[3], narrow(argv[3]));
  } else if (argc == 5 && what == L"start") {
    measureStart(argv[2], argv[3], argv[4]);
  } else {
    std::fputs(
        "usage: program_bench find PROGRAM DATABASE | memory PROGRAM DATABASE | "
        "large PROGRAM DATABASE LARGE-DATABASE | matches PROGRAM DATABASE | stop PROGRAM DATABASE | "
        "list PROGRAM EMPTY-DATABASE ROWS | session PROGRAM SCRATCH-DATABASE | "
        "start PROGRAM DATABASE EMPTY-PROGRAM\n",
        stderr);
    return 2;
  }
  return isOver ? 3 : 0;
}
