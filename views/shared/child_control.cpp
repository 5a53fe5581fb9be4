#include "views/shared/child_control.h"

#include <array>
#include <string>

#include "base/showable_text.h"
#include "platform/pocketshell/handheld_windows.h"

bool ChildControl::create(const wchar_t* className, const wchar_t* text, const ControlCreation& creation) {
  destroy();
  const ControlPlace& place = creation.place;
  // Names come out of files.
  const std::wstring shown = showableText(text);
  window_.reset(HandheldCreateWindow(0, className, shown.c_str(), creation.style & ~DWORD{WS_VISIBLE},
                                     place.x, place.y, place.width, place.height, creation.parent,
                                     reinterpret_cast<HMENU>(static_cast<INT_PTR>(creation.identifier)),
                                     GetModuleHandleW(nullptr), nullptr));
  return static_cast<bool>(window_);
}

void ChildControl::destroy() noexcept {
  if (!IsWindow(window())) static_cast<void>(window_.release());
  window_.reset();
}

bool ChildControl::position(const ControlPlace& place, UINT flags) const {
  return HandheldSetWindowPos(window(), nullptr, place.x, place.y, place.width, place.height, flags) != 0;
}

void ChildControl::show(bool visible) const {
  ShowWindow(window(), visible ? SW_SHOW : SW_HIDE);
}

String windowText(HWND window) {
  // Most are short: then the control is asked once.
  std::array<wchar_t, 128> beginning{};
  const int count = GetWindowTextW(window, beginning.data(), static_cast<int>(beginning.size()));
  if (count + 1 < static_cast<int>(beginning.size())) return beginning.data();
  const auto length = static_cast<std::size_t>(GetWindowTextLengthW(window));
  if (length == 0) return {};
  std::wstring text(length + 1, L'\0');
  GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return text.c_str();
}
