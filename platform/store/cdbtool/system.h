#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace cdbtool {

/// What differs between systems.

/// The arguments of the program, without its name, as UTF-8.
std::vector<std::string> argumentsOf(int argc, char** argv);

/// Makes the standard streams carry bytes as they are, and a closed pipe a failure to write instead of the
/// program's end.
void prepareStreams();

/// Whether a person reads the stream.
bool isTerminal(std::FILE* stream);

/// Has the person at the terminal type something that is not shown, and ends at the line's end. Nothing when
/// the standard input is no terminal, when it ends before, and when it is interrupted.
std::optional<std::string> askSecret(const std::string& question);

/// From now on an interrupt (Ctrl+C, the request to end) is only noted; the second one ends the program.
void noteInterrupts();
/// Whether there was one.
bool wasInterrupted();

/// The unit that stands for `unit` where letter case makes no difference.
char16_t foldedUnit(char16_t unit);

}  // namespace cdbtool
