#pragma once

#include <string>
#include <vector>

namespace cdbtool {

/// Reads the arguments (UTF-8, without the program's name), runs the sub-command that they name and returns
/// the exit code.
int runCommandLine(std::vector<std::string> arguments);

}  // namespace cdbtool
