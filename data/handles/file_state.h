#pragma once

#include <cstdint>

/// Whether the file that is open still stands under its name.
enum class FileState : std::uint8_t {
  present,   ///< it does, as far as the system tells
  gone,      ///< it was deleted or renamed
  replaced,  ///< another file has taken its place
};
