#pragma once

#include <windows.h>

/// The dialog procedures of the options sheet's pages. Each works on the page object of its type
/// (base/settings/options_pages.h), which the lParam of the page's description names.
INT_PTR CALLBACK generalOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK securityOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK viewOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
INT_PTR CALLBACK colorOptionsProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

/// To the Color page, private: the swatch shows the colour of the list's present selection from now on.
inline constexpr UINT kRedrawSwatchMessage = WM_USER + 207;
