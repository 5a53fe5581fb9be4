#pragma once

#include <windows.h>

#include <cstdint>

/// What the pages of the options dialog work on. The sheet's description of a page names its object, by which
/// the page's dialog procedure finds it. The Options record owns one of each.

struct GeneralOptionsPage {
  std::uint32_t updateRights = 0;
  std::uint32_t openLastTable = 0;
  HWND window = nullptr;
};

struct SecurityOptionsPage {
  std::uint32_t usePassword = 0;
  std::uint32_t warningOnDeletion = 0;
};

struct ViewOptionsPage {
  std::uint32_t rebarsAtTop = 0;
  std::uint32_t tabLabelStyle = 0;
};

/// Edits the live colour table directly and so holds no values.
struct ColorOptionsPage {
  HWND window = nullptr;
  int selectedIndex = -1;  ///< the colour chosen in the list; -1 for none
};
