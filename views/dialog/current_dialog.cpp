#include "views/dialog/current_dialog.h"

HWND currentDialog = nullptr;
