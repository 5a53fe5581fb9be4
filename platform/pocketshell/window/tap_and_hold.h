#pragma once

#include <windows.h>

#include "owners/window_layer.h"

namespace pocketshell {

/// Lets a list view report taps that are held, right clicks and the context menu's keys to its parent as
/// GN_CONTEXTMENU.
///
/// The list gets a press only when it has turned out to be a tap or a drag, so that a press that is held
/// is neither.
class TapAndHold : public WindowLayer<TapAndHold> {
 public:
  /// The timer that ends a press which is held, and how long that takes in milliseconds.
  static constexpr UINT_PTR kTimer = 0x5441;
  static constexpr UINT kHoldTime = 700;

  explicit TapAndHold(HWND list) : WindowLayer(list) {}

  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  enum class State { idle, pressed, held };

  LRESULT pressed(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT moved(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT released(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT timePassed(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT captureLost(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT rightPressed(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT rightReleased(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT menuAsked(UINT message, WPARAM wParam, LPARAM lParam);

  void endPress(State next);
  int selectAt(POINT client);
  /// The window may be gone afterwards.
  void report(POINT screen, int item);

  State state_ = State::idle;
  WPARAM keys_ = 0;
  LPARAM place_ = 0;
};

}  // namespace pocketshell
