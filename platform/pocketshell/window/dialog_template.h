#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace pocketshell {

/// Where a control of a dialog is, in dialog units.
struct DialogItem {
  DWORD id = 0;
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const DialogItem&) const = default;
};

/// A dialog resource, of either kind, taken apart.
struct DialogTemplate {
  bool extended = false;
  DWORD style = 0;
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  std::vector<DialogItem> items;

  std::span<const std::byte> bytes;  ///< the whole resource
  std::size_t headLength = 0;        ///< up to the font
  std::vector<std::span<const std::byte>> itemBytes;
};

/// Nothing when the bytes are no dialog. The result refers to `bytes`.
std::optional<DialogTemplate> readDialogTemplate(std::span<const std::byte> bytes);

/// The same dialog with another font, in memory that is aligned as dialogs are.
std::vector<DWORD> dialogWithFont(const DialogTemplate& dialog, int points, std::wstring_view face);

/// Dialog units as the handheld's pixels: those of Tahoma 8 point, whatever font is installed.
RECT handheldPlaceOf(const DialogItem& item);

}  // namespace pocketshell
