#include "views/form/form_layout.h"

#include <algorithm>

namespace {

constexpr int kSmallScreenWidth = 240;   // and below
constexpr int kMediumScreenWidth = 480;  // and below
constexpr std::uint32_t kFieldsOnLargeScreen = 11;
constexpr std::uint32_t kFieldsOnMediumScreen = 10;

/// The height that a field is counted with. The rows themselves lie closer together.
constexpr int kCountedFieldHeight = 28;

constexpr int kRowHeight = 18;
constexpr int kRowGap = 5;

constexpr std::uint32_t kLongName = 16;
constexpr int kLongLabelWidth = 119;
constexpr int kCharacterWidth = 7;

constexpr int kLeft = 3;
constexpr int kEditorGap = 13;
constexpr int kCheckBoxWidth = 170;
constexpr int kMaxDateWidth = 80;

ScreenSize screenSize(int width) {
  if (width <= kSmallScreenWidth) return ScreenSize::small;
  return width <= kMediumScreenWidth ? ScreenSize::medium : ScreenSize::large;
}

std::uint32_t fieldsPerPage(ScreenSize screen, int panelHeight) {
  if (screen == ScreenSize::large) return kFieldsOnLargeScreen;
  if (screen == ScreenSize::medium) return kFieldsOnMediumScreen;
  return fieldsAbovePanel(kHandheldPageArea.height, panelHeight);
}

int labelWidth(std::uint32_t longestName) {
  if (longestName > kLongName) return kLongLabelWidth;
  return (static_cast<int>(longestName) + 1) * kCharacterWidth;
}

int editorWidth(ScreenSize screen, int screenWidth, int besideLabel) {
  if (screen == ScreenSize::small) return screenWidth - 17 - besideLabel;
  return (screenWidth - 2 * (besideLabel + 25)) / 2 - 7;
}

}  // namespace

FormMetrics formMetrics(int screenWidth, int panelHeight, std::uint32_t longestName) {
  FormMetrics metrics;
  metrics.screen = screenSize(screenWidth);
  metrics.fieldsPerPage = fieldsPerPage(metrics.screen, panelHeight);
  metrics.labelWidth = labelWidth(longestName);
  metrics.editorWidth = editorWidth(metrics.screen, screenWidth, metrics.labelWidth);
  return metrics;
}

FormMetrics windowFormMetrics(PageArea area, int panelHeight, std::uint32_t longestName) {
  FormMetrics metrics;
  metrics.fieldsPerPage = fieldsAbovePanel(area.height, panelHeight);
  metrics.labelWidth = labelWidth(longestName);
  metrics.editorWidth = editorWidth(ScreenSize::small, area.width, metrics.labelWidth);
  return metrics;
}

std::uint32_t fieldsAbovePanel(int pageAreaHeight, int panelHeight) {
  return static_cast<std::uint32_t>(std::max((pageAreaHeight - panelHeight) / kCountedFieldHeight, 1));
}

std::uint32_t formPageCount(std::uint32_t fieldCount, std::uint32_t fieldsPerPage) {
  return fieldCount / fieldsPerPage + (fieldCount % fieldsPerPage != 0 ? 1 : 0);
}

FieldRange formPageRange(std::uint32_t page, std::uint32_t fieldsPerPage, std::uint32_t fieldCount) {
  const std::uint32_t first = page * fieldsPerPage;
  return {first, std::min(first + fieldsPerPage, fieldCount)};
}

int formRowTop(std::uint32_t row, int topMargin) {
  return topMargin + static_cast<int>(row) * (kRowHeight + kRowGap);
}

ControlPlace labelPlace(int y, const FormMetrics& metrics) {
  return {kLeft, y, metrics.labelWidth, kRowHeight};
}

ControlPlace checkBoxPlace(int y) {
  return {kLeft, y, kCheckBoxWidth, kRowHeight};
}

ControlPlace dateEditorPlace(int y, const FormMetrics& metrics) {
  return {metrics.labelWidth + kEditorGap, y, std::min(metrics.editorWidth, kMaxDateWidth), kRowHeight};
}

ControlPlace textEditorPlace(int y, const FormMetrics& metrics) {
  return {metrics.labelWidth + kEditorGap, y, metrics.editorWidth, kRowHeight};
}
