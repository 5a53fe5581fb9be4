#pragma once

#include <windows.h>

namespace automation {

/// Writes the class table into the registry, with the path at which this DLL lies now: for the current
/// user, which needs no rights, and, where the system does not look there, for all users as well.
/// SELFREG_E_CLASS, with nothing left behind, when the classes can't be found afterwards.
HRESULT registerClasses();

/// Takes out all that registerClasses wrote, in both places. SELFREG_E_CLASS when something stayed.
HRESULT unregisterClasses();

}  // namespace automation
