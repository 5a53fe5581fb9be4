#pragma once

#include <cstdint>
#include <memory>

#include "base/settings/options.h"
#include "base/string.h"

/// What the whole program shares of its settings. Construction creates the options record and loads it;
/// should that fail, the user is told and the program goes on. Throws std::bad_alloc.
class AppSettings {
 public:
  AppSettings();

  Options& options() noexcept { return *options_; }
  const Options& options() const noexcept { return *options_; }

 private:
  std::unique_ptr<Options> options_;

 public:
  // Plain values that guard nothing. NOLINTBEGIN(misc-non-private-member-variables-in-classes)
  String text;
  std::uint32_t databaseOpen = 0;  ///< 1 while a database is open
  // NOLINTEND(misc-non-private-member-variables-in-classes)
};

/// Null until start-up creates it, and again after shutdown has deleted it.
extern std::unique_ptr<AppSettings> theAppSettings;

/// Whether the user may use the program: cleared when the start-up password is asked for and not given.
extern bool appUnlocked;
