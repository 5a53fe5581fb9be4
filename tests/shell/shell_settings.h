#pragma once

#include <windows.h>

#include "gtest/gtest.h"
#include "platform/pocketshell/aygshell.h"

/// What the user sets for the shell, and the input panel that follows it.

inline constexpr wchar_t kShellSettings[] = L"Software\\MorvaleSoftware\\Pocket Shell";

/// The entries of the window's menu that set the zoom.
inline constexpr WPARAM kZoom100 = 0xE010;
inline constexpr WPARAM kZoom150 = 0xE020;
inline constexpr WPARAM kZoom200 = 0xE030;

/// As on the handheld, the panel comes when a program asks for it.
inline constexpr DWORD kPanelAlways = 1;
inline constexpr DWORD kPanelNever = 2;

inline void setPanelPolicy(DWORD policy) {
  EXPECT_EQ(
      RegSetKeyValueW(HKEY_CURRENT_USER, kShellSettings, L"InputPanel", REG_DWORD, &policy, sizeof(policy)),
      ERROR_SUCCESS);
}

/// Whether the window always has the handheld's size, as in every test that does not say otherwise.
inline void setHandheldSize(bool always) {
  const DWORD size = always ? 1 : 0;
  EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kShellSettings, L"Size", REG_DWORD, &size, sizeof(size)),
            ERROR_SUCCESS);
}

/// All but the size, which is the handheld's again.
inline void forgetShellSettings() {
  RegDeleteTreeW(HKEY_CURRENT_USER, kShellSettings);
  setHandheldSize(true);
}

inline bool isPanelUp() {
  SIPINFO info{};
  info.cbSize = sizeof(info);
  return SHSipInfo(SPI_GETSIPINFO, 0, &info, 0) != FALSE && (info.fdwFlags & SIPF_ON) != 0;
}
