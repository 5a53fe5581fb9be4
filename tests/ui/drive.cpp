// Drives a running Quivane from outside. Every verb waits until what it names has happened, ten
// seconds at most; if it does not happen, one line on stderr says so and the exit code is 1.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/ui/remote_window.h"

namespace {

constexpr int kUsageError = 2;

int usage() {
  std::fputs(
      "usage: drive VERB\n"
      "  wait-window      waits for the main window\n"
      "  tab N            clicks the tab of page N (0 Tables, 1 Form, 2 List, 3 Queries) and waits for the "
      "page\n"
      "  select-table N   selects item N of the list of names that is shown\n"
      "  rect             prints the main window's rectangle: x y width height\n"
      "  texts            waits for a list and prints its texts, a grid's as far as they are in view\n"
      "  close            closes the program and waits for its end; its exit code is printed\n",
      stderr);
  return kUsageError;
}

int fail(const char* what) {
  std::fprintf(stderr, "drive: %s\n", what);
  return 1;
}

HWND waitForMainWindow() {
  HWND main = nullptr;
  remote::waitUntil([&] { return (main = remote::mainWindow()) != nullptr; });
  return main;
}

int switchPage(HWND main, int page) {
  return remote::switchToPage(main, page) ? 0 : fail("the page is not shown");
}

int selectTable(HWND main, int item) {
  HWND list = nullptr;
  const bool found = remote::waitUntil([&] {
    list = remote::shownPage(main);
    return list != nullptr && remote::isList(list) && remote::itemCount(list) > item;
  });
  if (!found) return fail("there is no such item");
  return remote::selectItem(list, item) && remote::selectedItem(list) == item
             ? 0
             : fail("the item can't be selected");
}

int printRectangle(HWND main) {
  RECT place{};
  if (!GetWindowRect(main, &place)) return fail("the window has no rectangle");
  std::printf("%ld %ld %ld %ld\n", place.left, place.top, place.right - place.left, place.bottom - place.top);
  return 0;
}

void printText(const std::wstring& text) {
  std::string utf8(text.size() * 3, '\0');
  utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(),
                                                           static_cast<int>(text.size()), utf8.data(),
                                                           static_cast<int>(utf8.size()), nullptr, nullptr)));
  std::fwrite(utf8.data(), 1, utf8.size(), stdout);
}

int printTexts(HWND main) {
  HWND list = nullptr;
  const bool found = remote::waitUntil([&] {
    list = remote::shownPage(main);
    return list != nullptr && remote::isList(list);
  });
  if (!found) return fail("no list is shown");
  const int columns = remote::columnCount(list);
  const int first = columns == 0 ? 0 : remote::topRow(list);
  for (int row = first; row < remote::itemCount(list); ++row) {
    if (columns != 0 && !remote::isRowInView(list, row)) break;
    for (int column = 0; column < std::max(columns, 1); ++column) {
      if (column != 0) std::fputc('\t', stdout);
      printText(remote::itemText(list, row, column));
    }
    std::fputc('\n', stdout);
  }
  return 0;
}

int closeProgram(HWND main) {
  const std::optional<DWORD> exitCode = remote::close(main);
  if (!exitCode) return fail("the program does not end");
  std::printf("%lu\n", *exitCode);
  return 0;
}

/// A whole number from 0; -1 for anything else.
int parseNumber(const char* text) {
  char* end = nullptr;
  const long number = std::strtol(text, &end, 10);
  return *text == '\0' || *end != '\0' || number < 0 || number > 1'000'000 ? -1 : static_cast<int>(number);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage();
  const std::string verb = argv[1];
  const bool takesNumber = verb == "tab" || verb == "select-table";
  const bool known =
      takesNumber || verb == "wait-window" || verb == "rect" || verb == "texts" || verb == "close";
  const int number = takesNumber && argc == 3 ? parseNumber(argv[2]) : -1;
  if (!known || (takesNumber ? number < 0 : argc != 2)) return usage();

  const HWND main = waitForMainWindow();
  if (!main) return fail("there is no main window");
  if (verb == "tab") return switchPage(main, number);
  if (verb == "select-table") return selectTable(main, number);
  if (verb == "rect") return printRectangle(main);
  if (verb == "texts") return printTexts(main);
  if (verb == "close") return closeProgram(main);
  return 0;
}
