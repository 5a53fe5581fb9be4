#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>
#include <vector>

#include "owners/handles.h"

/// The windows in which bars are tested in this process: a main window as large as the handheld leaves
/// it, in it a tab control with the form's window. They are hidden.
class BarHost {
 public:
  BarHost();
  ~BarHost();
  BarHost(const BarHost&) = delete;
  BarHost& operator=(const BarHost&) = delete;

  HWND main() const { return main_; }
  HWND tab() const { return tab_; }
  HWND form() const { return form_; }

  /// The commands that arrived since the last call, in order.
  std::vector<int> takeCommands();
  /// Called for every command from now on, after it was written down.
  void onCommand(std::function<void(int)> handler) { handler_ = std::move(handler); }
  /// Answers WM_CTLCOLORSTATIC from now on.
  void onColor(std::function<HBRUSH(HWND)> answer) { color_ = std::move(answer); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND main_ = nullptr;
  HWND tab_ = nullptr;
  HWND form_ = nullptr;
  std::vector<int> commands_;
  std::function<void(int)> handler_;
  std::function<HBRUSH(HWND)> color_;
};

/// The module of the test, which has the program's resources.
inline HINSTANCE ownInstance() {
  return GetModuleHandleW(nullptr);
}

/// The buttons of a toolbar.
std::vector<TBBUTTON> toolbarButtons(HWND bar);
std::vector<int> toolbarCommands(HWND bar);
/// The state of a button, -1 when there is none.
int buttonState(HWND bar, int command);
/// In the client area of the toolbar.
RECT buttonPlace(HWND bar, int command);
/// Presses the left mouse button on a toolbar button and lets it go.
void clickButton(HWND bar, int command);

/// What a toolbar shows for a button on which the pointer rests.
std::wstring buttonTip(HWND bar, int command);

/// All windows of this thread, children included.
int windowCount();
