#pragma once

#include <windows.h>

#include <map>
#include <oleacc.h>
#include <string>

namespace pocketshell {

/// The names of a control (child CHILDID_SELF) and of what it has inside.
using AccessibleNames = std::map<LONG, std::wstring>;

/// The system's own description of a control, with names in the place of the system's. Null when the system
/// has none or there is no memory; else it has one reference, which is the caller's. It may be called from
/// every thread.
IAccessible* describeWithNames(HWND control, const AccessibleNames& names);

}  // namespace pocketshell
