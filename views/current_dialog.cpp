#include "views/current_dialog.h"

HWND currentDialog = nullptr;
