#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>

/// The colours of the views, as indexes into the tables below. The order is that of the stored value
/// "GeneralAppColors" and of the options dialog's list.
enum AppColor : std::size_t {
  kTablesViewBackground,
  kTablesViewText,
  kFormViewBackground,
  kFormViewLabelBackground,
  kFormViewLabelForeground,
  kFormViewCheckBoxBackground,
  kFormViewCheckBoxForeground,
  kFormViewDateTextBackground,
  kFormViewDateTextForeground,
  kFormViewEditBoxBackground,
  kFormViewEditBoxForeground,
  kListViewBackground,
  kListViewText,
  kQueryViewBackground,
  kQueryViewText,
};

inline constexpr std::size_t kAppColorCount = kQueryViewText + 1;

/// The values are COLORREFs, 0x00BBGGRR, in 32 bits as they are stored.
using AppColorTable = std::array<std::uint32_t, kAppColorCount>;

struct AppColorDefault {
  const wchar_t* name;
  std::uint32_t color;
};

inline constexpr std::array<AppColorDefault, kAppColorCount> kAppColorDefaults = {{
    {L"Tables View Background", RGB(255, 255, 128)},
    {L"Tables View Text", RGB(0, 0, 255)},
    {L"Form View Background", RGB(255, 255, 0)},
    {L"Form View Label Background", RGB(255, 255, 0)},
    {L"Form View Label Foreground", RGB(0, 0, 255)},
    {L"Form View Check Box Background", RGB(255, 255, 0)},
    {L"Form View Check Box Foreground", RGB(0, 0, 0)},
    {L"Form View Date Text Background", RGB(255, 255, 255)},
    {L"Form View Date Text Foreground", RGB(255, 128, 0)},
    {L"Form View Edit Box Background", RGB(0, 255, 255)},
    {L"Form View Edit Box Foreground", RGB(0, 0, 0)},
    {L"List View Background", RGB(0, 255, 255)},
    {L"List View Text", RGB(0, 0, 0)},
    {L"Query View Background", RGB(255, 128, 0)},
    {L"Query View Text", RGB(0, 0, 0)},
}};

/// The table that the views paint with: the defaults until the options are loaded.
extern AppColorTable appColors;

/// Tables to start from.
enum class ColorSet {
  own,     ///< the defaults
  system,  ///< what the user has set for all programs, as it is at the moment
  dark,
};
AppColorTable colorsOfSet(ColorSet set) noexcept;

/// Copies the defaults into the live table.
void resetAppColors() noexcept;

/// The colour picker's own row of colours, white at start. Never stored.
inline constexpr std::size_t kCustomColorCount = 16;
extern std::array<COLORREF, kCustomColorCount> customColors;
