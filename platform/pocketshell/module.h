#pragma once

#include <windows.h>

namespace pocketshell {

/// The module that this code is linked into.
HINSTANCE thisModule();

}  // namespace pocketshell
