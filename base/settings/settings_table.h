#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// All that the program remembers from one start to the next. Each value is named once, here; whatever keeps
/// them can go through the table.
enum class Setting : std::uint8_t {
  usePassword,
  warningOnDeletion,
  updateRights,
  openLastTable,
  rebarsAtTop,
  tabLabelStyle,
  colors,
  checkAllFields,
  matchCase,
  lastDatabase,
  lastTable,
  lastQuery,
  lastSql,
  openQuery,
  recentFind,  ///< the newest; the older ones follow
  recentFind2,
  recentFind3,
  recentFind4,
  recentFind5,
  password,
  columnWidths,
  arrangements,
};

enum class SettingKind : std::uint8_t { number, text, words };

struct SettingRow {
  Setting setting;
  SettingKind kind;
  const wchar_t* subkey;
  const wchar_t* name;
};

namespace settings {

inline constexpr const wchar_t* kOptions = L"Options";
inline constexpr const wchar_t* kRecentUserFinds = L"RecentUserFinds";
inline constexpr const wchar_t* kPassword = L"Password";
inline constexpr const wchar_t* kColumnWidths = L"ColumnWidths";
inline constexpr const wchar_t* kArrangements = L"Arrangements";

/// In the order of their numbers.
inline constexpr std::array kTable = {
    SettingRow{Setting::usePassword, SettingKind::number, kOptions, L"UsePassword"},
    SettingRow{Setting::warningOnDeletion, SettingKind::number, kOptions, L"WarningOnDeletion"},
    SettingRow{Setting::updateRights, SettingKind::number, kOptions, L"GenUpdateRights"},
    SettingRow{Setting::openLastTable, SettingKind::number, kOptions, L"OpenLastTableOnStartup"},
    SettingRow{Setting::rebarsAtTop, SettingKind::number, kOptions, L"RebarsAtTop"},
    SettingRow{Setting::tabLabelStyle, SettingKind::number, kOptions, L"TabLabelStyle"},
    SettingRow{Setting::colors, SettingKind::words, kOptions, L"GeneralAppColors"},
    SettingRow{Setting::checkAllFields, SettingKind::number, kOptions, L"CheckAllFields"},
    SettingRow{Setting::matchCase, SettingKind::number, kOptions, L"MatchCase"},
    SettingRow{Setting::lastDatabase, SettingKind::text, kOptions, L"LastDBOnStartup"},
    SettingRow{Setting::lastTable, SettingKind::text, kOptions, L"LastTableOnStartup"},
    SettingRow{Setting::lastQuery, SettingKind::text, kOptions, L"LastQueryOnStartup"},
    SettingRow{Setting::lastSql, SettingKind::text, kOptions, L"LastSQLQuery"},
    SettingRow{Setting::openQuery, SettingKind::number, kOptions, L"OpenQueryOnStartup"},
    SettingRow{Setting::recentFind, SettingKind::text, kRecentUserFinds, L"FI1"},
    SettingRow{Setting::recentFind2, SettingKind::text, kRecentUserFinds, L"FI2"},
    SettingRow{Setting::recentFind3, SettingKind::text, kRecentUserFinds, L"FI3"},
    SettingRow{Setting::recentFind4, SettingKind::text, kRecentUserFinds, L"FI4"},
    SettingRow{Setting::recentFind5, SettingKind::text, kRecentUserFinds, L"FI5"},
    SettingRow{Setting::password, SettingKind::text, kPassword, L"PasswordItem"},
    SettingRow{Setting::columnWidths, SettingKind::words, kColumnWidths, L"Widths"},
    SettingRow{Setting::arrangements, SettingKind::text, kArrangements, L"Latest"},
};

constexpr const SettingRow& rowOf(Setting setting) {
  return kTable[static_cast<std::size_t>(setting)];
}

static_assert([] {
  for (std::size_t i = 0; i < kTable.size(); ++i) {
    if (kTable[i].setting != static_cast<Setting>(i)) return false;
  }
  return kTable.size() == static_cast<std::size_t>(Setting::arrangements) + 1;
}());

}  // namespace settings
