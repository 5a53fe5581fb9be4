#pragma once

#include <windows.h>

#include "platform/store/automation/objects/outcome.h"

namespace automation {

class ErrorsObject;

/// Tells the caller of a failed method why: leaves the description in the thread's IErrorInfo and, when
/// `errors` is not null, as the only entry of that collection. `source` names the object, the way a
/// script spells it. Returns the outcome's result.
HRESULT reportFailure(const Outcome& outcome, REFIID interfaceId, const wchar_t* source,
                      ErrorsObject* errors) noexcept;

/// The same for an exception that is being handled: E_OUTOFMEMORY for std::bad_alloc, else E_FAIL.
/// To be called from a catch clause.
HRESULT reportException(REFIID interfaceId, const wchar_t* source, ErrorsObject* errors) noexcept;

}  // namespace automation
