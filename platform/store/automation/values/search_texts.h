#pragma once

#include "platform/store/rows/case_folding.h"
#include "platform/store/rows/text_test.h"

namespace automation {

/// What a search takes from the system. Each is made on the first call and kept; to be called under the
/// module's lock. The first call of each may throw std::bad_alloc.

/// Capital letters, the same for every user: those of the C library in any locale but "C".
const store::CaseFolding& upperCase();

/// The texts that the automation makes of values in the user's language, as it is set when this is called.
store::ValueTexts& systemTexts();

}  // namespace automation
