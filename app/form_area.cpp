#include "app/form_area.h"

#include "app/program_state.h"
#include "app/screen.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/sip_state.h"

void extendForm() {
  HandheldMoveWindow(formWrapperWindow, 0, 0, screen::kPageAreaWidth,
                     screen::kPageAreaHeight - screen::kTabRowHeight - sipState.height, TRUE);
}
