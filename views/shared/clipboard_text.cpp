#include "views/shared/clipboard_text.h"

#include <cstring>

namespace {

/// The clipboard, while it is open.
class OpenedClipboard {
 public:
  /// Another program that looks at it has it open for some moments.
  explicit OpenedClipboard(HWND window) : isOpen_(OpenClipboard(window) != FALSE) {
    constexpr int kTrials = 30;
    constexpr DWORD kBetween = 10;
    for (int trial = 1; !isOpen_ && trial < kTrials; ++trial) {
      Sleep(kBetween);
      isOpen_ = OpenClipboard(window) != FALSE;
    }
  }
  ~OpenedClipboard() {
    if (isOpen_) CloseClipboard();
  }
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;

  bool isOpen() const { return isOpen_; }

 private:
  bool isOpen_;
};

/// The memory of a handle, while it is locked.
class LockedText {
 public:
  explicit LockedText(HANDLE handle)
      : handle_(handle), text_(handle ? static_cast<const wchar_t*>(GlobalLock(handle)) : nullptr) {}
  ~LockedText() {
    if (text_) GlobalUnlock(handle_);
  }
  LockedText(const LockedText&) = delete;
  LockedText& operator=(const LockedText&) = delete;

  std::wstring text() const {
    return text_ ? std::wstring(text_, wcsnlen(text_, GlobalSize(handle_) / sizeof(wchar_t)))
                 : std::wstring();
  }

 private:
  HANDLE handle_;
  const wchar_t* text_;
};

}  // namespace

std::wstring clipboardText(HWND window) {
  const OpenedClipboard clipboard(window);
  if (!clipboard.isOpen()) return {};
  return LockedText(GetClipboardData(CF_UNICODETEXT)).text();
}

bool setClipboardText(HWND window, const std::wstring& text) {
  const OpenedClipboard clipboard(window);
  const std::size_t length = (text.size() + 1) * sizeof(wchar_t);
  if (!clipboard.isOpen() || !EmptyClipboard()) return false;
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, length);
  if (!memory) return false;
  if (void* const place = GlobalLock(memory)) {
    std::memcpy(place, text.c_str(), length);
    GlobalUnlock(memory);
    // The system's from here on.
    if (SetClipboardData(CF_UNICODETEXT, memory)) return true;
  }
  GlobalFree(memory);
  return false;
}
