#pragma once

#include <windows.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/ui/remote/running_program.h"
#include "tests/ui/remote/user_menu.h"

/// Someone who uses the running program with the mouse alone or with the keyboard alone; texts are typed
/// in either case. Each operation waits until the program has come to where it can be done, and until it
/// shows that it was done; std::runtime_error says what did not come.
class User {
 public:
  enum class Hand { mouse, keyboard };

  User(Hand hand, const RunningProgram& program);

  bool hasMouse() const { return hand_ == Hand::mouse; }
  HWND main() const { return main_; }

  // ---- The main window

  /// Chooses a command of the present page's menu bar.
  void choose(int command);
  /// Chooses a command of the desktop menu.
  void chooseDesktop(int command);
  /// Clicks a button of the bands or of the menu bar, or presses the key that does the same.
  void useButton(int command, WORD key, WORD held = 0);
  void showPage(int page);
  /// Chooses an item of the list of names or a row of the grid.
  void pickItem(int index);
  /// Types into a text editor of the form, in the place of what stands there.
  void fillEditor(int id, const std::wstring& text);
  /// Goes to a control of the form.
  void goTo(int id);
  /// Clicks a control of the form, or goes to it and presses the space bar.
  void pressEditor(int id);

  // ---- Dialogs and message boxes

  /// The dialog or message box with this title, once it takes input.
  HWND dialog(const wchar_t* title) const;
  /// The same for a message box, whose text is as given; what it is closed with.
  void answer(const wchar_t* caption, const std::wstring& text, int button);
  void fill(HWND dialog, int id, const std::wstring& text);
  void press(HWND dialog, int id);
  /// Chooses an entry of a drop-down list, a list box or a list of rows.
  void pick(HWND dialog, int id, int index);
  /// Chooses one of several radio buttons.
  void pickRadio(HWND dialog, int id);
  void showSheetPage(HWND sheet, int page);
  /// Ends a dialog with its OK, by Enter if that does not mean something else where the focus is.
  void accept(HWND dialog);
  /// Leaves a dialog without its OK: by its Cancel or else the cross of its title bar, or by Esc.
  void leave(HWND dialog);
  /// Names a file in the file dialog.
  void chooseFile(const std::filesystem::path& path);

  /// Leaves the program by its menu; the exit code is in `RunningProgram`.
  void exit();

 private:
  const RunningProgram& program_;
  Hand hand_;
  HWND main_ = nullptr;

  void walkMenu(const std::vector<MenuStep>& way, std::size_t first) const;
  void waitForInput(HWND window) const;
  void reach(HWND root, HWND control) const;
  void replaceText(HWND edit, const std::wstring& text) const;
  void waitForEnd(HWND dialog) const;
};
