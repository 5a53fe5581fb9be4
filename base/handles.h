#pragma once

#include <windows.h>

#include "base/unique_resource.h"

/// Owners of the system's handles. What they promise is in unique_resource.h; COM's are in
/// com_handles.h and those of the common controls in control_handles.h.

namespace handles {

template <ResourceKind kind>
struct KernelTraits {
  using Value = HANDLE;
  static constexpr ResourceKind kKind = kind;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { CloseHandle(value); }
};

/// CreateFileW and its like say INVALID_HANDLE_VALUE where all else says null.
struct FileTraits {
  using Value = HANDLE;
  static constexpr ResourceKind kKind = ResourceKind::file;
  static Value invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void close(Value value) noexcept { CloseHandle(value); }
};

struct RegistryKeyTraits {
  using Value = HKEY;
  static constexpr ResourceKind kKind = ResourceKind::registryKey;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { RegCloseKey(value); }
};

struct ModuleTraits {
  using Value = HMODULE;
  static constexpr ResourceKind kKind = ResourceKind::module;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { FreeLibrary(value); }
};

template <typename Handle, ResourceKind kind>
struct GdiObjectTraits {
  using Value = Handle;
  static constexpr ResourceKind kKind = kind;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { DeleteObject(value); }
};

struct IconTraits {
  using Value = HICON;
  static constexpr ResourceKind kKind = ResourceKind::icon;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { DestroyIcon(value); }
};

struct MenuTraits {
  using Value = HMENU;
  static constexpr ResourceKind kKind = ResourceKind::menu;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { DestroyMenu(value); }
};

/// A device context goes back to the window that lent it.
struct WindowDc {
  HWND window = nullptr;
  HDC dc = nullptr;
  bool operator==(const WindowDc&) const = default;
};

struct WindowDcTraits {
  using Value = WindowDc;
  static constexpr ResourceKind kKind = ResourceKind::deviceContext;
  static Value invalid() noexcept { return {}; }
  static void close(Value value) noexcept { ReleaseDC(value.window, value.dc); }
};

struct MemoryDcTraits {
  using Value = HDC;
  static constexpr ResourceKind kKind = ResourceKind::deviceContext;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { DeleteDC(value); }
};

struct WindowTraits {
  using Value = HWND;
  static constexpr ResourceKind kKind = ResourceKind::window;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { DestroyWindow(value); }
};

struct HookTraits {
  using Value = HHOOK;
  static constexpr ResourceKind kKind = ResourceKind::hook;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { UnhookWindowsHookEx(value); }
};

}  // namespace handles

using UniqueFile = UniqueResource<handles::FileTraits>;
/// Processes, threads, events, file mappings.
using UniqueKernelObject = UniqueResource<handles::KernelTraits<ResourceKind::kernelObject>>;
/// Closes the handle; a mutex that the thread has acquired is abandoned by it, not released.
using UniqueMutex = UniqueResource<handles::KernelTraits<ResourceKind::mutex>>;
using UniqueRegistryKey = UniqueResource<handles::RegistryKeyTraits>;
using UniqueModule = UniqueResource<handles::ModuleTraits>;
using UniqueFont = UniqueResource<handles::GdiObjectTraits<HFONT, ResourceKind::font>>;
using UniqueBrush = UniqueResource<handles::GdiObjectTraits<HBRUSH, ResourceKind::brush>>;
using UniqueBitmap = UniqueResource<handles::GdiObjectTraits<HBITMAP, ResourceKind::bitmap>>;
using UniqueIcon = UniqueResource<handles::IconTraits>;
/// Not for a menu that a window or a menu bar destroys itself.
using UniqueMenu = UniqueResource<handles::MenuTraits>;
/// From CreateCompatibleDC; objects selected into it are put back by their user before its end.
using UniqueMemoryDc = UniqueResource<handles::MemoryDcTraits>;
/// Destroyed by the thread that created it. A window whose parent destroys it is released first.
using UniqueWindow = UniqueResource<handles::WindowTraits>;
using UniqueHook = UniqueResource<handles::HookTraits>;

/// The device context of a window's client area (of the screen for a null window).
class UniqueWindowDc : public UniqueResource<handles::WindowDcTraits> {
 public:
  UniqueWindowDc() noexcept = default;
  /// Holds nothing when the system has no context to give.
  explicit UniqueWindowDc(HWND window) noexcept {
    if (const HDC lent = GetDC(window)) reset({window, lent});
  }

  HDC dc() const noexcept { return get().dc; }
};
