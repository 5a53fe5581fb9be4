#pragma once

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <utility>

namespace pocketshell {

/// How many handles all owners hold at this moment: the system's own counts can't be had everywhere.
inline std::atomic<long> ownedHandleCount = 0;

/// The owner of one handle, null for none; Closer::close ends it. Move-only.
template <typename Closer>
class Owned {
 public:
  using Handle = typename Closer::Handle;

  Owned() noexcept = default;
  /// Takes over `handle`, which may be null.
  explicit Owned(Handle handle) noexcept : handle_(handle) {
    if (handle_) ++ownedHandleCount;
  }
  Owned(Owned&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    Owned taken(std::move(other));
    std::swap(handle_, taken.handle_);
    return *this;
  }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() {
    if (const Handle last = release()) Closer::close(last);
  }

  Handle get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != nullptr; }

  /// Gives the handle to the caller and holds nothing.
  [[nodiscard]] Handle release() noexcept {
    if (handle_) --ownedHandleCount;
    return std::exchange(handle_, nullptr);
  }

 private:
  Handle handle_ = nullptr;
};

namespace closers {

template <typename Object>
struct Gdi {
  using Handle = Object;
  static void close(Handle object) noexcept { DeleteObject(object); }
};

struct MemoryDc {
  using Handle = HDC;
  static void close(Handle dc) noexcept { DeleteDC(dc); }
};

struct Menu {
  using Handle = HMENU;
  static void close(Handle menu) noexcept { DestroyMenu(menu); }
};

struct Icon {
  using Handle = HICON;
  static void close(Handle icon) noexcept { DestroyIcon(icon); }
};

struct ImageList {
  using Handle = HIMAGELIST;
  static void close(Handle images) noexcept { ImageList_Destroy(images); }
};

struct Key {
  using Handle = HKEY;
  static void close(Handle key) noexcept { RegCloseKey(key); }
};

struct Hook {
  using Handle = HHOOK;
  static void close(Handle hook) noexcept { UnhookWindowsHookEx(hook); }
};

struct Window {
  using Handle = HWND;
  static void close(Handle window) noexcept { DestroyWindow(window); }
};

}  // namespace closers

using OwnedFont = Owned<closers::Gdi<HFONT>>;
using OwnedBitmap = Owned<closers::Gdi<HBITMAP>>;
using OwnedBrush = Owned<closers::Gdi<HBRUSH>>;
using OwnedMemoryDc = Owned<closers::MemoryDc>;
using OwnedMenu = Owned<closers::Menu>;
using OwnedIcon = Owned<closers::Icon>;
using OwnedImageList = Owned<closers::ImageList>;
using OwnedKey = Owned<closers::Key>;
using OwnedHook = Owned<closers::Hook>;
/// Released first when somebody else has destroyed the window.
using OwnedWindow = Owned<closers::Window>;

}  // namespace pocketshell
