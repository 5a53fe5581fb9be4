#include "app/window/other_programs.h"

#include "app/window/program_state.h"
#include "records/parts/former_states.h"
#include "records/parts/others_changes.h"

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kBetweenLooks = 1000;  // milliseconds
/// So long nothing has come from the user.
constexpr ULONGLONG kLeftAlone = 1500;
/// However long a look takes: of the time the looks take no larger part than one in so many.
constexpr ULONGLONG kShareOfTime = 20;

ULONGLONG lastUse = 0;
ULONGLONG noLookBefore = 0;

bool isUse(UINT message) {
  const auto isAmong = [message](UINT first, UINT last) { return message >= first && message <= last; };
  return isAmong(WM_KEYFIRST, WM_KEYLAST) || isAmong(WM_MOUSEFIRST, WM_MOUSELAST) ||
         isAmong(WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK) || message == WM_COMMAND || message == WM_SYSCOMMAND;
}

/// A menu is open, the window is being moved, or something is dragged or held.
bool isInTheMidstOfSomething() {
  GUITHREADINFO state{};
  state.cbSize = sizeof(state);
  if (!GetGUIThreadInfo(GetCurrentThreadId(), &state)) return false;
  constexpr DWORD kBusy = GUI_INMENUMODE | GUI_INMOVESIZE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE;
  return (state.flags & kBusy) != 0 || state.hwndCapture != nullptr || thePrompts.isInputWaiting();
}

}  // namespace

void beginLookingForChanges(HWND window) {
  lastUse = GetTickCount64();
  noLookBefore = 0;
  SetTimer(window, kTimer, kBetweenLooks, nullptr);
}

void noteMessage(const MSG& message) {
  if (isUse(message.message)) lastUse = GetTickCount64();
}

void lookForChanges(HWND window) {
  const bool canBeSeen = IsWindowVisible(window) != FALSE && IsIconic(window) == FALSE;
  // As long as a dialog is open the window is disabled.
  if (!theDocument || !canBeSeen || !IsWindowEnabled(window) || isInTheMidstOfSomething()) return;
  const ULONGLONG begin = GetTickCount64();
  if (begin < noLookBefore) return;
  theDocument->othersChanges().show();
  theDocument->formerStates().tellNotKept();
  const ULONGLONG end = GetTickCount64();
  noLookBefore = end + (end - begin) * kShareOfTime;
}

LRESULT timeToLook(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (wParam != kTimer) return DefWindowProcW(window, message, wParam, lParam);
  if (GetTickCount64() - lastUse >= kLeftAlone) lookForChanges(window);
  return 0;
}
