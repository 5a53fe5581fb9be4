#pragma once

#include <filesystem>

namespace testsupport {

/// The absolute path of the running program. Throws std::system_error if the system doesn't tell it.
std::filesystem::path programPath();

/// The number by which the system knows the running process.
unsigned long processNumber();

/// Makes a crash end the process at once with its exit code, without a dialog.
void endQuietlyOnCrash();

}  // namespace testsupport
