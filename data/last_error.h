#pragma once

#include "base/string.h"

/// Why the data-access call that failed last in this thread did so, in the components' own words; empty
/// when they left none. Asking takes the reason away: ask at once after the failure.
String takeLastErrorText();

/// Leaves a reason for takeLastErrorText where the components can't: when there are none.
void leaveLastErrorText(const wchar_t* text);
