#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <unordered_map>
#include <utility>

/// Behaviour that is laid over a window's procedure until the window dies: `class Mine : public
/// WindowLayer<Mine>` has a constructor that takes the window, and
///
///   LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
///
/// which calls passOn for what lies below. The layer is never taken off, so other layers may come over it
/// and go again. A window has at most one layer of each class. Belongs to the window's thread.
///
/// As SetWindowSubclass, which keeps what it knows with the window: under Wine each message to the window
/// asks another process for that several times.
template <typename Layer>
class WindowLayer {
 public:
  WindowLayer(const WindowLayer&) = delete;
  WindowLayer& operator=(const WindowLayer&) = delete;

  /// The layer of a window, null when it has none. Valid as long as the window.
  static Layer* of(HWND window) {
    const auto found = layers().find(window);
    return found == layers().end() ? nullptr : found->second.get();
  }

  /// Lays one over the window, or finds the one that is there.
  template <typename... Arguments>
  static Layer& attach(HWND window, Arguments&&... arguments) {
    if (Layer* const present = of(window)) return *present;
    const auto made = std::make_shared<Layer>(window, std::forward<Arguments>(arguments)...);
    layers()[window] = made;
    made->below_ = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    return *made;
  }

  /// How many windows have one.
  static std::size_t count() { return layers().size(); }

  HWND window() const { return window_; }

  /// To what lies below the layer of a window, or the system when that died while it answered.
  static LRESULT passOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    Layer* const layer = of(window);
    return layer ? layer->passOn(message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
  }

 protected:
  explicit WindowLayer(HWND window) : window_(window) {}
  ~WindowLayer() = default;

  LRESULT passOn(UINT message, WPARAM wParam, LPARAM lParam) const {
    return CallWindowProcW(below_, window_, message, wParam, lParam);
  }

 private:
  using Layers = std::unordered_map<HWND, std::shared_ptr<Layer>>;

  static Layers& layers() {
    static Layers all;
    return all;
  }

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto found = layers().find(window);
    if (found == layers().end()) return DefWindowProcW(window, message, wParam, lParam);
    // Kept alive here: the window may be destroyed while it answers.
    const std::shared_ptr<Layer> layer = found->second;
    if (message != WM_NCDESTROY) return layer->answer(message, wParam, lParam);
    layers().erase(found);
    return layer->passOn(message, wParam, lParam);
  }

  HWND window_;
  WNDPROC below_ = nullptr;
};
