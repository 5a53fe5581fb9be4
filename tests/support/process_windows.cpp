#include <windows.h>

#include <string>
#include <system_error>

#include "tests/support/process.h"

namespace testsupport {

std::filesystem::path programPath() {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0) {
      throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                              "the name of the program");
    }
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    name.resize(name.size() * 2);
  }
}

unsigned long processNumber() {
  return GetCurrentProcessId();
}

void endQuietlyOnCrash() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

}  // namespace testsupport
