#pragma once

#include <windows.h>

#include <optional>

#include "base/settings/settings_file.h"

/// A program that leaves nothing in the registry, because a file "Quivane.portable" lies beside it: while
/// this object lives, all settings, the shell's too, are in "Quivane.settings" in the same folder, and the
/// data-access components beside the program are found without being registered. Without the file nothing
/// changes. To be made before anything reads a setting or makes a window, at most once at a time, and
/// destroyed on the same thread.
class PortableMode {
 public:
  PortableMode();
  ~PortableMode();
  PortableMode(const PortableMode&) = delete;
  PortableMode& operator=(const PortableMode&) = delete;

  bool isOn() const { return file_.has_value(); }

 private:
  void findComponentsBeside(const std::filesystem::path& folder);

  std::optional<SettingsFile> file_;
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR activation_ = 0;
};
