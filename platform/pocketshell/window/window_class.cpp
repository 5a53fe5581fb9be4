#include "platform/pocketshell/window/window_class.h"

namespace pocketshell {

bool isOfClass(HWND window, const wchar_t* wanted) {
  wchar_t name[64];
  const int length = GetClassNameW(window, name, ARRAYSIZE(name));
  return length > 0 && CompareStringOrdinal(name, length, wanted, -1, TRUE) == CSTR_EQUAL;
}

}  // namespace pocketshell
