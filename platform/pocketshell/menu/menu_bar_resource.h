#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace pocketshell {

/// A drop-down button as the resource of a menu bar describes it.
struct MenuBarButton {
  int image = I_IMAGENONE;
  int command = 0;
  BYTE state = 0;
  BYTE style = 0;
  UINT label = 0;  ///< a string resource
  int popup = 0;   ///< index in the menu

  bool operator==(const MenuBarButton&) const = default;
};

struct MenuBarResource {
  WORD menu = 0;  ///< a menu resource
  std::vector<MenuBarButton> buttons;
};

/// The resource's 16-bit numbers in order: menu, count, and for each button image, command, state, style,
/// label, 0 and popup. Nothing when they are too few or the zero is none; the system may have added
/// bytes at the end.
std::optional<MenuBarResource> readMenuBarResource(std::span<const std::byte> bytes);

}  // namespace pocketshell
