#include <dlfcn.h>

#include "platform/store/odbc/driver/odbc_functions.h"

namespace store {

void* findOdbcFunction(const char* name) {
  // Never unloaded: drivers leave threads and exit handlers behind.
  static void* const library = dlopen("libodbc.so.2", RTLD_NOW | RTLD_LOCAL);
  return library != nullptr ? dlsym(library, name) : nullptr;
}

}  // namespace store
