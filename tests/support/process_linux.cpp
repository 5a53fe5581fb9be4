#include <unistd.h>

#include "tests/support/process.h"

namespace testsupport {

std::filesystem::path programPath() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

unsigned long processNumber() {
  return static_cast<unsigned long>(getpid());
}

void endQuietlyOnCrash() {}

}  // namespace testsupport
