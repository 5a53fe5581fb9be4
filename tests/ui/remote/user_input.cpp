#include "tests/ui/remote/user_input.h"

#include <stdexcept>

namespace userinput {
namespace {

void send(INPUT input) {
  if (SendInput(1, &input, sizeof(input)) != 1) throw std::runtime_error("the desktop takes no input");
}

void sendKey(WORD key, WORD character, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = key != 0 ? static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC)) : character;
  input.ki.dwFlags = flags;
  send(input);
}

void sendButton(DWORD flags) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  send(input);
}

}  // namespace

void press(WORD key, WORD held) {
  if (held != 0) sendKey(held, 0, 0);
  sendKey(key, 0, 0);
  sendKey(key, 0, KEYEVENTF_KEYUP);
  if (held != 0) sendKey(held, 0, KEYEVENTF_KEYUP);
}

void type(const std::wstring& text) {
  for (const wchar_t character : text) {
    sendKey(0, static_cast<WORD>(character), KEYEVENTF_UNICODE);
    sendKey(0, static_cast<WORD>(character), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

void click(POINT screen) {
  if (!SetCursorPos(screen.x, screen.y)) throw std::runtime_error("the mouse can't be moved");
  sendButton(MOUSEEVENTF_LEFTDOWN);
  sendButton(MOUSEEVENTF_LEFTUP);
}

void rightClick(POINT screen) {
  if (!SetCursorPos(screen.x, screen.y)) throw std::runtime_error("the mouse can't be moved");
  sendButton(MOUSEEVENTF_RIGHTDOWN);
  sendButton(MOUSEEVENTF_RIGHTUP);
}

void hold(POINT screen) {
  if (!SetCursorPos(screen.x, screen.y)) throw std::runtime_error("the mouse can't be moved");
  sendButton(MOUSEEVENTF_LEFTDOWN);
}

void release() {
  sendButton(MOUSEEVENTF_LEFTUP);
}

void click(HWND window, const RECT& place) {
  POINT middle = {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
  ClientToScreen(window, &middle);
  click(middle);
}

void click(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  click(window, client);
}

}  // namespace userinput
