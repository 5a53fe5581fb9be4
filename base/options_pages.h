#pragma once

#include <windows.h>

#include <cstdint>

/// What the pages of the options dialog work on. A property sheet gives its pages no context, so each
/// object registers itself at construction in the program-wide pointer behind its type, through which
/// the page's dialog procedure finds it, and clears that pointer at its end. One of each type lives at
/// a time: the Options record owns it.

struct GeneralOptionsPage {
  GeneralOptionsPage() noexcept;
  ~GeneralOptionsPage();
  GeneralOptionsPage(const GeneralOptionsPage&) = delete;
  GeneralOptionsPage& operator=(const GeneralOptionsPage&) = delete;

  std::uint32_t updateRights = 0;
  std::uint32_t openLastTable = 0;
  HWND window = nullptr;
};
extern GeneralOptionsPage* theGeneralOptionsPage;

struct SecurityOptionsPage {
  SecurityOptionsPage() noexcept;
  ~SecurityOptionsPage();
  SecurityOptionsPage(const SecurityOptionsPage&) = delete;
  SecurityOptionsPage& operator=(const SecurityOptionsPage&) = delete;

  std::uint32_t usePassword = 0;
  std::uint32_t warningOnDeletion = 0;
};
extern SecurityOptionsPage* theSecurityOptionsPage;

struct ViewOptionsPage {
  ViewOptionsPage() noexcept;
  ~ViewOptionsPage();
  ViewOptionsPage(const ViewOptionsPage&) = delete;
  ViewOptionsPage& operator=(const ViewOptionsPage&) = delete;

  std::uint32_t rebarsAtTop = 0;
  std::uint32_t tabLabelStyle = 0;
};
extern ViewOptionsPage* theViewOptionsPage;

/// Edits the live colour table directly and so holds no values.
struct ColorOptionsPage {
  ColorOptionsPage() noexcept;
  ~ColorOptionsPage();
  ColorOptionsPage(const ColorOptionsPage&) = delete;
  ColorOptionsPage& operator=(const ColorOptionsPage&) = delete;

  HWND window = nullptr;
  int selectedIndex = -1;  ///< the colour chosen in the list; -1 for none
};
extern ColorOptionsPage* theColorOptionsPage;
