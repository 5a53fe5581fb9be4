#include "platform/store/odbc/driver/odbc_functions.h"

namespace store {

void* findOdbcFunction(const char* name) {
  static const HMODULE library = LoadLibraryExW(L"odbc32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  return library != nullptr ? reinterpret_cast<void*>(GetProcAddress(library, name)) : nullptr;
}

}  // namespace store
