#pragma once

#include <windows.h>

#include <string>
#include <vector>

/// Goes through a dialog of a running Quivane, or a page of it, by the Tab key alone.
namespace focuswalk {

/// The controls that a user can work, in the order in which the eye reads them: line by line, and from left
/// to right in each. Of radio buttons that belong together the first stands for all.
std::vector<HWND> controlsAsRead(HWND window);

/// The control below a window that has the keyboard, in the same sense; null when none has.
HWND controlWithFocus(HWND window);

struct Stop {
  HWND control;
  /// Whether it looks otherwise than without the keyboard, or has a caret.
  bool isSeen;
};

/// Where the keyboard goes by the Tab key, with VK_SHIFT backwards, from where it is until it is there again;
/// that place comes last. Throws std::runtime_error when it stays somewhere or never comes back.
std::vector<Stop> walk(HWND window, WORD held = 0);

/// The number and the class of a control, for the report of a failure.
std::string described(HWND control);

}  // namespace focuswalk
