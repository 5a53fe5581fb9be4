#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <utility>

#include "base/settings/settings_text.h"

/// Settings in a file of their own instead of the registry. Each call reads the file, so that what another
/// program has written there counts. Nothing throws.
class SettingsFile {
 public:
  explicit SettingsFile(std::filesystem::path path) : path_(std::move(path)) {}

  enum class Found { unreadable, noKey, noValue, value };

  /// `value` is changed only when it was found. A file that is missing or holds something else or too much
  /// has no keys. One that another program keeps to itself is waited for, half a second at most and not again
  /// in the next seconds; then it is unreadable.
  Found read(const wchar_t* key, const wchar_t* name, settings::Value& value) const noexcept;

  /// Writes the whole file anew beside the old one, to the disk, and then gives it the name: at any moment
  /// one of the two is there in full. A file that holds something else, or too much, is kept as
  /// "NAME.damaged". False when the value could not be stored; a file that can't be read is left alone.
  bool write(const wchar_t* key, const wchar_t* name, DWORD type, const void* bytes,
             std::size_t byteCount) const noexcept;

 private:
  std::filesystem::path path_;
  mutable std::uint64_t waitedInVainAt_ = 0;  // in the system's milliseconds
};
