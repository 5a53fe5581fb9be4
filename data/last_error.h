#pragma once

#include "base/string.h"

/// Why the data-access call that failed last in this thread did so, in the components' own words; empty
/// when they left none. Asking takes the reason away: ask at once after the failure.
String takeLastErrorText();
