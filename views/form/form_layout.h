#pragma once

#include <cstdint>

/// Where the form puts what, as pure functions. All lengths are the handheld's pixels; pages, rows and
/// fields are 0-based.

struct ControlPlace {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const ControlPlace&) const = default;
};

enum class ScreenSize { large, medium, small };

/// What is decided once for all pages, when a form is built.
struct FormMetrics {
  ScreenSize screen = ScreenSize::small;
  std::uint32_t fieldsPerPage = 1;
  int labelWidth = 0;
  int editorWidth = 0;  ///< of a text editor
  bool operator==(const FormMetrics&) const = default;
};

/// What the pages have of the screen.
struct PageArea {
  int width = 0;
  int height = 0;
  bool operator==(const PageArea&) const = default;
};
inline constexpr PageArea kHandheldPageArea = {240, 269};

/// For a device with a screen of this width. `panelHeight` is that of the input panel, 0 while it does not
/// cover anything; `longestName` counts the characters of the longest field name.
FormMetrics formMetrics(int screenWidth, int panelHeight, std::uint32_t longestName);

/// For a window with this page area: by the rules of the small screen at every width, so that the editors
/// take what the labels leave and a higher page has more fields.
FormMetrics windowFormMetrics(PageArea area, int panelHeight, std::uint32_t longestName);

/// How many fields fit above the input panel by the rules of the small screen. A form that was built already
/// is laid out by this figure on every screen. At least 1.
std::uint32_t fieldsAbovePanel(int pageAreaHeight, int panelHeight);

/// No field, no page. `fieldsPerPage` is not 0.
std::uint32_t formPageCount(std::uint32_t fieldCount, std::uint32_t fieldsPerPage);

/// The fields of one page, from `first` to the one before `end`.
struct FieldRange {
  std::uint32_t first = 0;
  std::uint32_t end = 0;
  bool operator==(const FieldRange&) const = default;
};
FieldRange formPageRange(std::uint32_t page, std::uint32_t fieldsPerPage, std::uint32_t fieldCount);

/// Top of a row, `row` being counted from the first of its page and `topMargin` the top of that one.
int formRowTop(std::uint32_t row, int topMargin);

ControlPlace labelPlace(int y, const FormMetrics& metrics);
ControlPlace checkBoxPlace(int y);
ControlPlace dateEditorPlace(int y, const FormMetrics& metrics);
ControlPlace textEditorPlace(int y, const FormMetrics& metrics);
