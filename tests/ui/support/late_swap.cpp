#include "tests/ui/support/late_swap.h"

#include <map>
#include <optional>
#include <string>

#include "tests/ui/support/import_swap.h"

extern "C" decltype(&GetProcAddress) __imp_GetProcAddress;  // NOLINT(bugprone-reserved-identifier)

namespace {

std::map<std::string, FARPROC, std::less<>>& replacements() {
  static std::map<std::string, FARPROC, std::less<>> all;
  return all;
}

const decltype(&GetProcAddress) realFind = __imp_GetProcAddress;

FARPROC WINAPI find(HMODULE module, const char* name) {
  const auto replacement = IS_INTRESOURCE(name) ? replacements().end() : replacements().find(name);
  return replacement != replacements().end() ? replacement->second : realFind(module, name);
}

}  // namespace

void replaceLateFunction(const char* name, FARPROC replacement) {
  replacements()[name] = replacement;
  static const ImportSwap<decltype(&GetProcAddress)> swap(__imp_GetProcAddress, find);
}
