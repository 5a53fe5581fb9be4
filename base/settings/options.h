#pragma once

#include <cstdint>

#include "base/settings/options_pages.h"

/// The values of "GenUpdateRights". A stored value outside the three is kept as it is.
enum UpdateRights : std::uint32_t {
  kNoNewRecordsOrDeletions = 0,
  kNewRecords = 1,
  kNewRecordsAndDeletions = 2,
};

/// The values of "TabLabelStyle".
enum TabLabels : std::uint32_t {
  kTabTextOnly = 0,
  kTabIconOnly = 1,
  kTabTextAndIcon = 2,
};

/// The user's preferences while the program runs, and the pages of the dialog that edits them. Created
/// with every value 0: no new records or deletions, no password, no warnings, text on the tabs.
/// The accessors are named as the values are in the registry.
class Options {
 public:
  Options() = default;
  ~Options() = default;
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;

  /// Reads the six values and the live colour table from the registry. A value that is missing reads
  /// as 0, colours that can't be read become the defaults; with no "Options" key at all the values
  /// stay as they are. Returns true in every case.
  bool load() noexcept;

  /// Writes the six values and the live colour table. Returns the result of the last write.
  bool save() const noexcept;

  /// Copies the default colours into the live table.
  void resetColors() noexcept;

  std::uint32_t genUpdateRights() const noexcept { return genUpdateRights_; }
  std::uint32_t warningOnDeletion() const noexcept { return warningOnDeletion_; }
  std::uint32_t usePassword() const noexcept { return usePassword_; }
  std::uint32_t openLastTableOnStartup() const noexcept { return openLastTableOnStartup_; }
  std::uint32_t rebarsAtTop() const noexcept { return rebarsAtTop_; }
  std::uint32_t tabLabelStyle() const noexcept { return tabLabelStyle_; }

  void setGenUpdateRights(std::uint32_t value) noexcept { genUpdateRights_ = value; }
  void setWarningOnDeletion(std::uint32_t value) noexcept { warningOnDeletion_ = value; }
  void setUsePassword(std::uint32_t value) noexcept { usePassword_ = value; }
  void setOpenLastTableOnStartup(std::uint32_t value) noexcept { openLastTableOnStartup_ = value; }
  void setRebarsAtTop(std::uint32_t value) noexcept { rebarsAtTop_ = value; }
  void setTabLabelStyle(std::uint32_t value) noexcept { tabLabelStyle_ = value; }

  GeneralOptionsPage& generalPage() noexcept { return generalPage_; }
  SecurityOptionsPage& securityPage() noexcept { return securityPage_; }
  ViewOptionsPage& viewPage() noexcept { return viewPage_; }
  ColorOptionsPage& colorPage() noexcept { return colorPage_; }

 private:
  struct Row;
  static const Row kRows[6];

  std::uint32_t genUpdateRights_ = 0;
  std::uint32_t warningOnDeletion_ = 0;
  std::uint32_t usePassword_ = 0;
  std::uint32_t openLastTableOnStartup_ = 0;
  std::uint32_t rebarsAtTop_ = 0;
  std::uint32_t tabLabelStyle_ = 0;
  GeneralOptionsPage generalPage_;
  SecurityOptionsPage securityPage_;
  ViewOptionsPage viewPage_;
  ColorOptionsPage colorPage_;
};
