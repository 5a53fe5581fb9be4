#include "dialogs/input_panel_state.h"

#include "platform/pocketshell/aygshell.h"

bool inputPanelIsUp() {
  SIPINFO panel{};
  panel.cbSize = sizeof(panel);
  return SHSipInfo(SPI_GETSIPINFO, 0, &panel, 0) && (panel.fdwFlags & SIPF_ON) != 0;
}
