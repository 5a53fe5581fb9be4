#include "views/shared/escaped_exception.h"

#include <new>
#include <utility>

namespace {

const wchar_t* textOfException() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return L"There is not enough memory.";
  } catch (...) {
    return L"This can't be done, for a reason that is not known.";
  }
}

}  // namespace

void tellEscapedException(HWND window) noexcept {
  static bool isTelling = false;
  if (std::exchange(isTelling, true)) return;
  MessageBoxW(GetAncestor(window, GA_ROOT), textOfException(), L"Quivane", MB_ICONEXCLAMATION);
  isTelling = false;
}
