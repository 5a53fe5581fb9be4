#pragma once

/// The input panel as it was last asked about, for the whole program.

inline constexpr int kNoSipTop = -1;

struct SipState {
  int top = kNoSipTop;  ///< in the handheld's screen; kNoSipTop while no docked panel is up
  int height = 0;       ///< 0 then
};
extern SipState sipState;

/// Asks the shell anew. When it does not answer, the state stays as it was.
void refreshSipState();
