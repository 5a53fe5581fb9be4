#pragma once

#include <windows.h>

#include "platform/pocketshell/aygshell.h"

/// Whether what a program shows in colours of its own has to be in the system's instead, because it is next
/// to what the system draws in these: the user has high contrast on, or texts that are lighter than what is
/// behind them.
AYGSHELL_API BOOL HandheldWantsSystemColors();
