#pragma once

#include <windows.h>

#include "owners/unique_resource.h"

/// Owners of the system's handles. What they promise is in unique_resource.h; COM's are in
/// com_handles.h and those of the common controls in control_handles.h.

namespace handles {

template <ResourceKind kind>
struct KernelTraits : NullTraits<HANDLE, kind> {
  static void close(HANDLE value) noexcept { CloseHandle(value); }
};

/// CreateFileW and its like say INVALID_HANDLE_VALUE where all else says null.
struct FileTraits {
  using Value = HANDLE;
  static constexpr ResourceKind kKind = ResourceKind::file;
  static Value invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void close(Value value) noexcept { CloseHandle(value); }
};

struct RegistryKeyTraits : NullTraits<HKEY, ResourceKind::registryKey> {
  static void close(HKEY value) noexcept { RegCloseKey(value); }
};

struct ModuleTraits : NullTraits<HMODULE, ResourceKind::module> {
  static void close(HMODULE value) noexcept { FreeLibrary(value); }
};

template <typename Handle, ResourceKind kind>
struct GdiObjectTraits : NullTraits<Handle, kind> {
  static void close(Handle value) noexcept { DeleteObject(value); }
};

struct IconTraits : NullTraits<HICON, ResourceKind::icon> {
  static void close(HICON value) noexcept { DestroyIcon(value); }
};

struct MenuTraits : NullTraits<HMENU, ResourceKind::menu> {
  static void close(HMENU value) noexcept { DestroyMenu(value); }
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

struct MemoryDcTraits : NullTraits<HDC, ResourceKind::deviceContext> {
  static void close(HDC value) noexcept { DeleteDC(value); }
};

struct WindowTraits : NullTraits<HWND, ResourceKind::window> {
  static void close(HWND value) noexcept { DestroyWindow(value); }
};

struct HookTraits : NullTraits<HHOOK, ResourceKind::hook> {
  static void close(HHOOK value) noexcept { UnhookWindowsHookEx(value); }
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
