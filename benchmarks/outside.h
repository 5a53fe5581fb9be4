#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "benchmarks/turns.h"

/// The measuring of the real program from outside, by its windows alone.
namespace outside {

constexpr int kTurns = 9;
constexpr int kTablesPage = 0;
constexpr int kFormPage = 1;
constexpr int kListPage = 2;
constexpr int kQueriesPage = 3;
/// Each look at the windows costs the program some of the time that is measured.
constexpr DWORD kBetweenLooks = 5;

/// A figure was over its limit.
extern bool isOver;

/// Ends the program with a message.
[[noreturn]] void fail(const char* what);
void require(bool done, const char* what);

/// Looks more often than tests do: what is measured takes milliseconds.
void waitFor(const std::function<bool()>& condition, const char* what, DWORD between = 1);
/// Whether the window's thread answers.
bool answers(HWND window);

/// One run of a program, ended with the object.
class Program {
 public:
  explicit Program(std::wstring commandLine);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  DWORD id() const { return process_.dwProcessId; }

 private:
  PROCESS_INFORMATION process_{};
};

/// The program with a database, its tables shown.
class OpenProgram {
 public:
  OpenProgram(const std::wstring& program, const std::wstring& database);

  HWND main() const { return main_; }
  DWORD id() const { return program_.id(); }

  bool isShown(int page) const;
  void show(int page);
  void choose(int table);
  /// By its name on the page of tables or that of queries.
  void choose(int page, const std::string& name);
  /// Chooses a command of any menu, and doesn't wait for it.
  void command(int id) const;
  /// The dialog with this title, once it takes input.
  HWND dialog(const wchar_t* title) const;

 private:
  Program program_;
  HWND main_ = nullptr;
};

/// The find dialog over the first record of the first table, set to all fields.
HWND openFind(OpenProgram& program);
/// The same over what is chosen.
HWND openFindInChosen(OpenProgram& program);
/// From the press of Next to the message that says that all was searched; meanwhile `look` is called every
/// few milliseconds.
double secondsToFind(
    const OpenProgram& program, HWND dialog, const wchar_t* text, const std::function<void()>& look = [] {});
void setBox(HWND dialog, int id, bool checked);
/// The box over a dialog, null when there is none. While it is there the dialog itself takes no input.
HWND boxOver(HWND dialog, DWORD processId);

using bench::medianOf;
/// Prints both medians and their ratio beside its limit.
void report(const char* name, const std::vector<double>& ours, const std::vector<double>& theirs,
            double limit);
/// Prints the median and the longest beside the most that the longest may be.
void reportDelay(const char* name, const std::vector<double>& seconds, double mostMilliseconds);

}  // namespace outside
