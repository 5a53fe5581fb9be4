#pragma once

#include <windows.h>

/// Puts a function of the test in the place of one that the program looks for by its name, as LateFunction
/// does. To be called before the program's first call of it: what is found once is kept as long as the
/// process lives, and so is `replacement`, which is cast back to the type of the function called `name`.
void replaceLateFunction(const char* name, FARPROC replacement);

template <typename Function>
void replaceLateFunction(const char* name, Function* replacement) {
  replaceLateFunction(name, reinterpret_cast<FARPROC>(reinterpret_cast<void*>(replacement)));
}
