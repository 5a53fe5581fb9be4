#pragma once

#include <windows.h>

#include "base/string.h"
#include "data/outcome.h"

/// Why the data-access call that failed last in this thread did so, in the components' own words; empty
/// when they left none. Asking takes the reason away: ask at once after the failure.
String takeLastErrorText();

/// What a data-access call came to that returned `result`, with the reason that it left. To be asked at
/// once after the call.
Outcome outcomeOf(HRESULT result);
