#include "benchmarks/outside.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "benchmarks/measures.h"
#include "dialogs/find/find_dialog_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/remote_window.h"

namespace outside {

using bench::secondsOf;

namespace {

constexpr std::chrono::seconds kPatience{60};

}  // namespace

bool isOver = false;

[[noreturn]] void fail(const char* what) {
  std::fprintf(stderr, "bench: %s\n", what);
  std::exit(1);
}

void require(bool done, const char* what) {
  if (!done) fail(what);
}

void waitFor(const std::function<bool()>& condition, const char* what, DWORD between) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) {
      std::fprintf(stderr, "bench: in front stands: %ls\n",
                   remote::messageBoxText(GetForegroundWindow()).c_str());
      fail(what);
    }
    Sleep(between);
  }
}

Program::Program(std::wstring commandLine) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  require(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                         &process_) != FALSE,
          "the program does not start");
}

Program::~Program() {
  TerminateProcess(process_.hProcess, 0);
  WaitForSingleObject(process_.hProcess, INFINITE);
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

bool answers(HWND window) {
  DWORD_PTR result = 0;
  return window != nullptr && SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 10'000, &result) != 0;
}

OpenProgram::OpenProgram(const std::wstring& program, const std::wstring& database)
    : program_(L"\"" + program + L"\" \"" + database + L"\"") {
  waitFor([&] { return (main_ = remote::mainWindow(program_.id())) != nullptr; }, "no main window");
  waitFor([&] { return isShown(kTablesPage); }, "the tables are not shown");
}

bool OpenProgram::isShown(int page) const {
  const HWND shown = remote::shownPage(main_);
  return shown != nullptr && remote::selectedTab(remote::tabControl(main_)) == page &&
         (page != kTablesPage || (remote::isList(shown) && remote::itemCount(shown) > 0));
}

void OpenProgram::show(int page) {
  remote::clickTab(remote::tabControl(main_), page);
  waitFor([&] { return isShown(page); }, "the page is not shown");
}

void OpenProgram::choose(int table) {
  show(kTablesPage);
  const HWND list = remote::shownPage(main_);
  remote::selectItem(list, table);
  waitFor([&] { return remote::selectedItem(list) == table; }, "the table is not chosen");
}

void OpenProgram::choose(int page, const std::string& name) {
  show(page);
  const HWND list = remote::shownPage(main_);
  const std::wstring wanted(name.begin(), name.end());
  std::ptrdiff_t place = 0;
  waitFor(
      [&] {
        const std::vector<std::wstring> names = remote::itemTexts(list);
        place = std::find(names.begin(), names.end(), wanted) - names.begin();
        return place < static_cast<std::ptrdiff_t>(names.size());
      },
      "a table or query is not listed");
  remote::selectItem(list, static_cast<int>(place));
  waitFor([&] { return remote::selectedItem(list) == place; }, "a table or query is not chosen");
}

void OpenProgram::command(int id) const {
  PostMessageW(main_, WM_COMMAND, static_cast<WPARAM>(id), 0);
}

HWND OpenProgram::dialog(const wchar_t* title) const {
  HWND found = nullptr;
  waitFor([&] { return (found = remote::dialog(program_.id(), title)) != nullptr; },
          "a dialog does not open");
  return found;
}

void setBox(HWND dialog, int id, bool checked) {
  if ((SendDlgItemMessageW(dialog, id, BM_GETCHECK, 0, 0) == BST_CHECKED) != checked) {
    SendDlgItemMessageW(dialog, id, BM_CLICK, 0, 0);
  }
}

HWND boxOver(HWND dialog, DWORD processId) {
  const HWND found = remote::dialog(processId, nullptr);
  return found == dialog ? nullptr : found;
}

double secondsToFind(const OpenProgram& program, HWND dialog, const wchar_t* text,
                     const std::function<void()>& look) {
  SendMessageW(GetDlgItem(dialog, IDC_FIND_TEXT), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
  HWND box = nullptr;
  const double seconds = secondsOf([&] {
    PostMessageW(dialog, WM_COMMAND, IDC_FIND_NEXT, 0);
    waitFor(
        [&] {
          look();
          return (box = boxOver(dialog, program.id())) != nullptr;
        },
        "the search does not end", kBetweenLooks);
  });
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  waitFor([&] { return !IsWindow(box) && IsWindowEnabled(dialog) && answers(dialog); },
          "the message does not go");
  return seconds;
}

HWND openFind(OpenProgram& program) {
  program.choose(0);
  return openFindInChosen(program);
}

HWND openFindInChosen(OpenProgram& program) {
  program.show(kFormPage);
  program.command(ID_FIND);
  const HWND dialog = program.dialog(L"Find");
  setBox(dialog, IDC_FIND_ALL_FIELDS, true);
  return dialog;
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

void reportDelay(const char* name, const std::vector<double>& seconds, double mostMilliseconds) {
  const double longest = 1e3 * *std::max_element(seconds.begin(), seconds.end());
  std::printf("  %-30s %10.1f ms, at the longest %10.1f ms   (at most %.0f)%s\n", name,
              1e3 * medianOf(seconds), longest, mostMilliseconds,
              longest <= mostMilliseconds ? "" : "   OVER THE LIMIT");
  isOver = isOver || longest > mostMilliseconds;
}

}  // namespace outside
