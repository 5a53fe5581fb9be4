#include "benchmarks/find_bench.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <psapi.h>
#include <vector>

#include "benchmarks/bare_database.h"
#include "benchmarks/find_measures.h"
#include "benchmarks/outside.h"
#include "dialogs/find/find_dialog_ids.h"
#include "tests/ui/remote/remote_window.h"
#include "views/form/form_ids.h"

namespace outside {

using bench::secondsOf;

namespace {

constexpr double kMostMemory = 8;                // MB more while a search runs
constexpr double kMostLargeRatio = 12;           // with ten times the records
constexpr double kLongestWithoutProgress = 600;  // milliseconds
constexpr double kMostDelay = 100;  // milliseconds until Esc is obeyed, and until a window is painted

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

/// What the searches of a program take over what it has when this is made.
class MemoryWatch {
 public:
  explicit MemoryWatch(const OpenProgram& program)
      : processId_(program.id()), before_(memoryOf(processId_)), most_(before_.now) {}

  void look() { most_ = std::max(most_, memoryOf(processId_).now); }
  void report(const char* name) const {
    // Before, when the records were put in order, it may have had more than the searches take.
    const double peak = memoryOf(processId_).peak;
    const double more = (peak > before_.peak ? peak : most_) - before_.now;
    std::printf("  %-30s %10.1f MB   (at most %.0f)%s\n", name, more, kMostMemory,
                more <= kMostMemory ? "" : "   OVER THE LIMIT");
    isOver = isOver || more > kMostMemory;
  }

 private:
  DWORD processId_;
  Memory before_;
  double most_;
};

std::wstring wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
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

/// Each of the searches some times in one run of the program.
void searchAll(const std::wstring& program, const std::wstring& database,
               const std::vector<bench::BareSearch>& searches, std::vector<std::vector<double>>& seconds) {
  constexpr int kTurnsOfRun = 3;
  OpenProgram open(program, database);
  const HWND dialog = openFind(open);
  for (std::size_t search = 0; search < searches.size(); ++search) {
    setBox(dialog, IDC_FIND_MATCH_CASE, searches[search].matchCase);
    for (int turn = 0; turn < kTurnsOfRun; ++turn)
      seconds[search].push_back(secondsToFind(open, dialog, wide(searches[search].text).c_str()));
  }
}

/// What one press of Next takes, in seconds.
struct Press {
  double done;     ///< until the next match is shown and the program takes messages again
  double painted;  ///< until the last of its texts is painted, too
};

/// The program itself is asked what it shows: it answers between two messages, so that no time is lost by
/// looking. `last` of the editors is painted last. The program is at rest when this returns: a user presses
/// again when he has seen what was found.
Press pressNext(HWND dialog, HWND number, HWND last, const std::wstring& wanted) {
  constexpr DWORD kAtOnce = 0;
  constexpr int kMostDigits = 16;
  wchar_t shown[kMostDigits] = L"";
  const auto isShown = [&] {
    SendMessageW(number, WM_GETTEXT, kMostDigits, reinterpret_cast<LPARAM>(shown));
    return wanted == shown;
  };
  Press press{};
  press.done = secondsOf([&] {
    PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
    // Asked at once it would answer before it takes what was posted, and be kept from it.
    Sleep(1);
    waitFor(isShown, "the next match is not shown", kAtOnce);
  });
  press.painted = press.done + secondsOf([&] {
                    waitFor([&] { return GetUpdateRect(last, nullptr, FALSE) == FALSE && answers(dialog); },
                            "the next match is not painted", kAtOnce);
                  });
  return press;
}

}  // namespace

void measureFind(const std::wstring& program, const std::wstring& database, const std::string& bareDatabase) {
  OpenProgram open(program, database);
  const HWND dialog = openFind(open);
  MemoryWatch memory(open);
  bench::BareDatabase bare(bareDatabase);
  for (const bench::BareSearch& search : bench::bareSearches()) {
    setBox(dialog, IDC_FIND_MATCH_CASE, search.matchCase);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int turn = 0; turn < kTurns; ++turn) {
      ours.push_back(secondsToFind(open, dialog, wide(search.text).c_str()));
      memory.look();
      theirs.push_back(secondsOf([&] { bare.runToEnd(search.statement); }));
    }
    report(search.name.c_str(), ours, theirs, search.limit);
  }
  memory.report("memory more while it searches");
}

void measureMemory(const std::wstring& program, const std::wstring& database,
                   const std::string& bareDatabase) {
  bench::prepareFind(bareDatabase);
  struct Records {
    const char* title;
    int page;
    const char* name;
  };
  constexpr Records kRecords[] = {{"memory, in an order of its own", kQueriesPage, bench::kSortedQuery},
                                  {"memory, without row ids", kTablesPage, bench::kKeyedTable}};
  constexpr int kSearches = 3;
  for (const Records& records : kRecords) {
    OpenProgram open(program, database);
    open.choose(records.page, records.name);
    const HWND dialog = openFindInChosen(open);
    MemoryWatch memory(open);
    for (int search = 0; search < kSearches; ++search) {
      const std::wstring text = wide(bench::bareSearches().front().text);
      secondsToFind(open, dialog, text.c_str(), [&] { memory.look(); });
    }
    memory.report(records.title);
  }
}

void measureLarge(const std::wstring& program, const std::wstring& database, const std::wstring& large) {
  const std::vector<bench::BareSearch> searches = bench::bareSearches();
  std::vector<std::vector<double>> tenfold(searches.size());
  std::vector<std::vector<double>> once(searches.size());
  // The program runs once at a time.
  constexpr int kRuns = 3;
  for (int run = 0; run < kRuns; ++run) {
    searchAll(program, large, searches, tenfold);
    searchAll(program, database, searches, once);
  }
  for (std::size_t search = 0; search < searches.size(); ++search) {
    report((searches[search].name + ", ten times as many").c_str(), tenfold[search], once[search],
           kMostLargeRatio);
  }
}

void measureMatches(const std::wstring& program, const std::wstring& database,
                    const std::string& bareDatabase) {
  // The first two are not counted, and behind the last record the search would begin anew.
  constexpr int kUncounted = 3;
  bench::BareDatabase bare(bareDatabase);
  const auto presses = static_cast<int>(bare.runToEnd("SELECT 1 FROM Measurements LIMIT " +
                                                      std::to_string(bench::kMatches + kUncounted))) -
                       kUncounted;
  require(presses > 0, "there are too few records");
  OpenProgram open(program, database);
  const HWND dialog = openFind(open);
  setBox(dialog, IDC_FIND_MATCH_CASE, false);
  SendMessageW(GetDlgItem(dialog, IDC_FIND_TEXT), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(wide(bench::kTextOfEveryRecord).c_str()));
  const HWND number = remote::control(open.main(), kFirstTextEditorId);
  require(number != nullptr, "there is no editor of the record's number");
  // The controls are painted in their order.
  HWND last = number;
  for (int id = kFirstTextEditorId; const HWND editor = remote::control(open.main(), id); ++id) {
    if (IsWindowVisible(editor)) last = editor;
  }
  // The first match is in the record that is shown already, and can't be told from none.
  PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
  int shown = 2;
  pressNext(dialog, number, last, std::to_wstring(shown));
  std::vector<double> seconds;
  std::vector<double> untilPainted;
  for (int press = 0; press < presses; ++press) {
    const Press one = pressNext(dialog, number, last, std::to_wstring(++shown));
    seconds.push_back(one.done);
    untilPainted.push_back(one.painted);
  }
  const double each = std::accumulate(seconds.begin(), seconds.end(), 0.0) / presses;
  const auto over = std::count_if(seconds.begin(), seconds.end(),
                                  [](double one) { return one > bench::kMostSecondsOfMatch; });
  const bool within = each <= bench::kMostSecondsOfMatch;
  std::printf("  %-30s %10.3f ms each of %d   (at most %.0f)%s\n", "Next, a match in every record",
              1e3 * each, presses, 1e3 * bench::kMostSecondsOfMatch, within ? "" : "   OVER THE LIMIT");
  std::printf("  %30s median %.3f ms, at the longest %.3f ms, %d of them longer than %.0f ms\n", "",
              1e3 * medianOf(seconds), 1e3 * *std::max_element(seconds.begin(), seconds.end()),
              static_cast<int>(over), 1e3 * bench::kMostSecondsOfMatch);
  std::printf("  %30s median %.3f ms until the last text is painted, too\n", "",
              1e3 * medianOf(untilPainted));
  isOver = isOver || !within;
}

/// In the midst of a search for a text that does not occur.
void measureStop(const std::wstring& program, const std::wstring& database) {
  OpenProgram open(program, database);
  const HWND dialog = openFind(open);
  SendMessageW(GetDlgItem(dialog, IDC_FIND_TEXT), WM_SETTEXT, 0,
               reinterpret_cast<LPARAM>(wide(bench::bareSearches().front().text).c_str()));
  std::vector<double> silences;
  std::vector<double> paintings;
  std::vector<double> stops;
  for (int turn = 0; turn < kTurns; ++turn) {
    HWND line = nullptr;
    HWND box = nullptr;
    PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
    silences.push_back(secondsOf([&] {
      waitFor(
          [&] {
            line = progressLine(open.id());
            box = boxOver(dialog, open.id());
            return line != nullptr || box != nullptr;
          },
          "the search does not begin");
    }));
    if (line != nullptr) {
      paintings.push_back(secondsOf([&] {
        InvalidateRect(open.main(), nullptr, FALSE);
        waitFor([&] { return GetUpdateRect(open.main(), nullptr, FALSE) == FALSE; },
                "the window is not painted");
      }));
      stops.push_back(secondsOf([&] {
        PostMessageW(dialog, WM_KEYDOWN, VK_ESCAPE, 0);
        waitFor([&] { return !IsWindow(line) && answers(dialog); }, "the search does not stop");
      }));
      box = boxOver(dialog, open.id());
    }
    if (box != nullptr) {
      std::printf(
          "  a search was over after %.3f s, before Esc could stop it: too few records   OVER THE LIMIT\n",
          silences.back());
      isOver = true;
      return;
    }
  }
  reportDelay("how far it is, is shown", silences, kLongestWithoutProgress);
  reportDelay("the window is painted", paintings, kMostDelay);
  reportDelay("Esc is obeyed", stops, kMostDelay);
}

}  // namespace outside
