#pragma once

#include <windows.h>

#include <span>
#include <vector>

/// What a control does with the room that the window has more than the handheld's screen.
struct ControlGrowth {
  int id;
  bool wider = false;
  bool higher = false;
  bool right = false;  ///< goes to the right with it
  bool down = false;
  /// Of two that share the height one gets so much of it, and what stands below that goes down by as much.
  bool halfHigher = false;
  bool halfDown = false;
};

/// How much wider and higher the screen is than the handheld's, in handheld pixels; 0 at its size.
SIZE screenExcess();

/// Lays the controls of a dialog out for a window that is larger than the handheld's screen. Those that are
/// not named stay where the template has them.
class DialogGrowth {
 public:
  /// Controls that the dialog does not have are passed over. `controls` outlives the object.
  explicit DialogGrowth(std::span<const ControlGrowth> controls) : controls_(controls) {}

  /// To be called while the controls are where the template has them.
  void begin(HWND dialog);
  /// For the window as it is now. Nothing happens before begin.
  void layOut() const;

 private:
  std::span<const ControlGrowth> controls_;
  HWND dialog_ = nullptr;
  std::vector<RECT> places_;  // by control, in the dialog's client area
};
