#pragma once

#include <windows.h>

#include <string>

/// The mouse and the keyboard of the desktop that the test runs on: what they do reaches whatever window
/// is there, as with a user's.
namespace userinput {

/// Presses and releases a key, with Ctrl, Shift or Alt (VK_CONTROL, VK_SHIFT, VK_MENU) held when one is
/// given.
void press(WORD key, WORD held = 0);
/// Types a text that is free of line breaks.
void type(const std::wstring& text);

/// Clicks a point of the screen with the left button.
void click(POINT screen);
/// The same with the right button.
void rightClick(POINT screen);
/// Presses the left button there and holds it until release.
void hold(POINT screen);
void release();
/// Clicks the middle of a rectangle in a window's client area.
void click(HWND window, const RECT& place);
/// Clicks the middle of a window.
void click(HWND window);

}  // namespace userinput
