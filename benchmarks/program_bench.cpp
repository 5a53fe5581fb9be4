// Measures the real program from outside, by its windows alone, beside what the system can do: a search
// beside the bare statement and how soon it can be stopped, the List page of a large table beside that of a
// small one, and the start beside that of an empty window.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <functional>
#include <psapi.h>
#include <sqlite3.h>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/bare_database.h"
#include "benchmarks/find_measures.h"
#include "dialogs/find/find_dialog_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/remote_window.h"

namespace {

using bench::secondsOf;

constexpr int kTurns = 9;
constexpr std::chrono::seconds kPatience{60};
constexpr double kMostStart = 40;       // milliseconds more than an empty window
constexpr double kMostMemory = 8;       // MB more while a search runs
constexpr double kMostListRatio = 1.5;  // with ten times the rows
constexpr double kMostDelay = 100;      // milliseconds until Esc is obeyed, and until a window is painted
/// Each look at the windows costs the program some of the time that is measured.
constexpr DWORD kBetweenLooks = 5;
constexpr int kFormPage = 1;
constexpr int kListPage = 2;
constexpr int kTablesPage = 0;

/// A figure is over its limit.
bool isOver = false;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "bench: %s\n", what);
  std::exit(1);
}

void require(bool done, const char* what) {
  if (!done) fail(what);
}

/// Looks more often than tests do: what is measured takes milliseconds.
void waitFor(const std::function<bool()>& condition, const char* what, DWORD between = 1) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    require(std::chrono::steady_clock::now() < end, what);
    Sleep(between);
  }
}

/// One run of a program, ended with the object.
class Program {
 public:
  explicit Program(std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    require(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &startup, &process_) != FALSE,
            "the program does not start");
  }
  ~Program() {
    TerminateProcess(process_.hProcess, 0);
    WaitForSingleObject(process_.hProcess, INFINITE);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  DWORD id() const { return process_.dwProcessId; }

 private:
  PROCESS_INFORMATION process_{};
};

bool answers(HWND window) {
  DWORD_PTR result = 0;
  return window != nullptr && SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 10'000, &result) != 0;
}

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

struct Memory {
  double now;   ///< in MB
  double peak;  ///< the most that it has been
};

/// What the program has in the machine's memory. Of what it has for itself Wine tells no peak: what it calls
/// that of another process is what that has at present.
Memory memoryOf(DWORD processId) {
  const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
  PROCESS_MEMORY_COUNTERS counters{};
  const bool isRead = process && GetProcessMemoryInfo(process, &counters, sizeof counters);
  CloseHandle(process);
  require(isRead, "the memory of the program can't be read");
  return {static_cast<double>(counters.WorkingSetSize) / 1e6,
          static_cast<double>(counters.PeakWorkingSetSize) / 1e6};
}

double medianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void report(const char* name, const std::vector<double>& ours, const std::vector<double>& theirs,
            double limit) {
  std::vector<double> ratios;
  for (std::size_t turn = 0; turn < ours.size(); ++turn) ratios.push_back(ours[turn] / theirs[turn]);
  const double ratio = medianOf(ours) / medianOf(theirs);
  std::printf(
      "  %-30s %10.1f ms   beside %10.1f ms   ratio %5.2f (%.2f to %.2f)   (at most %.1f)%s\n", name,
      1e3 * medianOf(ours), 1e3 * medianOf(theirs), ratio, *std::min_element(ratios.begin(), ratios.end()),
      *std::max_element(ratios.begin(), ratios.end()), limit, ratio <= limit ? "" : "   OVER THE LIMIT");
  isOver = isOver || ratio > limit;
}

/// The program with a database, its tables shown.
class OpenProgram {
 public:
  OpenProgram(const std::wstring& program, const std::wstring& database)
      : program_(L"\"" + program + L"\" \"" + database + L"\"") {
    waitFor([&] { return (main_ = remote::mainWindow(program_.id())) != nullptr; }, "no main window");
    waitFor([&] { return isShown(kTablesPage); }, "the tables are not shown");
  }

  HWND main() const { return main_; }
  DWORD id() const { return program_.id(); }

  bool isShown(int page) const {
    const HWND shown = remote::shownPage(main_);
    return shown != nullptr && remote::selectedTab(remote::tabControl(main_)) == page &&
           (page != kTablesPage || (remote::isList(shown) && remote::itemCount(shown) > 0));
  }

  void show(int page) {
    remote::clickTab(remote::tabControl(main_), page);
    waitFor([&] { return isShown(page); }, "the page is not shown");
  }

  void choose(int table) {
    show(kTablesPage);
    const HWND list = remote::shownPage(main_);
    remote::selectItem(list, table);
    waitFor([&] { return remote::selectedItem(list) == table; }, "the table is not chosen");
  }

 private:
  Program program_;
  HWND main_ = nullptr;
};

HWND findDialog(DWORD processId) {
  return remote::dialog(processId, L"Find");
}

void setBox(HWND dialog, int id, bool checked) {
  if ((SendDlgItemMessageW(dialog, id, BM_GETCHECK, 0, 0) == BST_CHECKED) != checked) {
    SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0);
  }
}

/// The box over the dialog, null when there is none. While it is there the dialog itself takes no input.
HWND boxOver(HWND dialog, DWORD processId) {
  const HWND found = remote::dialog(processId, nullptr);
  return found == dialog ? nullptr : found;
}

/// From the press of Next to the message that says that all was searched.
double secondsToFind(const OpenProgram& program, HWND dialog, const wchar_t* text) {
  SendMessageW(GetDlgItem(dialog, IDC_FIND_TEXT), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  HWND box = nullptr;
  const double seconds = secondsOf([&] {
    PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
    waitFor([&] { return (box = boxOver(dialog, program.id())) != nullptr; }, "the search does not end",
            kBetweenLooks);
  });
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  waitFor([&] { return !IsWindow(box) && IsWindowEnabled(dialog) && answers(dialog); },
          "the message does not go");
  return seconds;
}

/// The dialog over the first record, set to all fields.
HWND openFind(OpenProgram& program) {
  program.choose(0);
  program.show(kFormPage);
  PostMessageW(program.main(), WM_COMMAND, ID_FIND, 0);
  HWND dialog = nullptr;
  waitFor([&] { return (dialog = findDialog(program.id())) != nullptr; }, "the dialog does not open");
  setBox(dialog, IDC_FIND_ALL_FIELDS, true);
  return dialog;
}

void measureFind(const std::wstring& program, const std::wstring& database, const std::string& bareDatabase) {
  OpenProgram open(program, database);
  const HWND dialog = openFind(open);
  const double memoryBefore = memoryOf(open.id()).now;
  bench::BareDatabase bare(bareDatabase);
  for (const bench::BareSearch& search : bench::bareSearches()) {
    setBox(dialog, IDC_FIND_MATCH_CASE, search.matchCase);
    const std::wstring text(search.text.begin(), search.text.end());
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int turn = 0; turn < kTurns; ++turn) {
      ours.push_back(secondsToFind(open, dialog, text.c_str()));
      theirs.push_back(secondsOf([&] { bare.runToEnd(search.statement); }));
    }
    report(search.name.c_str(), ours, theirs, search.limit);
  }
  const double more = memoryOf(open.id()).peak - memoryBefore;
  std::printf("  %-30s %10.1f MB   (at most %.0f)%s\n", "memory more while it searches", more, kMostMemory,
              more <= kMostMemory ? "" : "   OVER THE LIMIT");
  isOver = isOver || more > kMostMemory;
}

/// What the program shows while a search takes its time; null when it does not.
HWND progressLine(DWORD processId) {
  HWND line = nullptr;
  while ((line = FindWindowExW(nullptr, line, L"STATIC", nullptr)) != nullptr) {
    DWORD owner = 0;
    GetWindowThreadProcessId(line, &owner);
    if (owner == processId && IsWindowVisible(line)) return line;
  }
  return nullptr;
}

void reportDelay(const char* name, const std::vector<double>& seconds) {
  const double longest = 1e3 * *std::max_element(seconds.begin(), seconds.end());
  std::printf("  %-30s %10.1f ms, at the longest %10.1f ms   (at most %.0f)%s\n", name,
              1e3 * medianOf(seconds), longest, kMostDelay, longest <= kMostDelay ? "" : "   OVER THE LIMIT");
  isOver = isOver || longest > kMostDelay;
}

/// In the midst of a search for a text that does not occur.
void measureStop(const std::wstring& program, const std::wstring& database) {
  OpenProgram open(program, database);
  const HWND dialog = openFind(open);
  const std::string text = bench::bareSearches().front().text;
  SendMessageW(GetDlgItem(dialog, IDC_FIND_TEXT), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(std::wstring(text.begin(), text.end()).c_str()));
  std::vector<double> paintings;
  std::vector<double> stops;
  for (int turn = 0; turn < kTurns; ++turn) {
    HWND line = nullptr;
    HWND box = nullptr;
    PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
    waitFor(
        [&] {
          line = progressLine(open.id());
          box = boxOver(dialog, open.id());
          return line != nullptr || box != nullptr;
        },
        "the search does not begin");
    if (box != nullptr) {
      std::printf("  the search is over before it says how far it is\n");
      return;
    }
    paintings.push_back(secondsOf([&] {
      InvalidateRect(open.main(), nullptr, FALSE);
      waitFor([&] { return GetUpdateRect(open.main(), nullptr, FALSE) == FALSE; },
              "the window is not painted");
    }));
    stops.push_back(secondsOf([&] {
      PostMessageW(dialog, WM_KEYDOWN, VK_ESCAPE, 0);
      waitFor([&] { return !IsWindow(line) && answers(dialog); }, "the search does not stop");
    }));
    require(boxOver(dialog, open.id()) == nullptr, "the search came to its end");
  }
  reportDelay("the window is painted", paintings);
  reportDelay("Esc is obeyed", stops);
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
  } else if (argc == 4 && what == L"stop") {
    measureStop(argv[2], argv[3]);
  } else if (argc == 5 && what == L"list") {
    measureList(argv[2], argv[3], narrow(argv[3]),
                std::max(10, static_cast<int>(std::wcstol(argv[4], nullptr, 10))));
  } else if (argc == 5 && what == L"start") {
    measureStart(argv[2], argv[3], argv[4]);
  } else {
    std::fputs(
        "usage: program_bench find PROGRAM DATABASE | stop PROGRAM DATABASE | "
        "list PROGRAM EMPTY-DATABASE ROWS | start PROGRAM DATABASE EMPTY-PROGRAM\n",
        stderr);
    return 2;
  }
  return isOver ? 3 : 0;
}
