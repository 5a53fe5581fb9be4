#include "platform/pocketshell/text/text_lines.h"

#include <algorithm>
#include <vector>

namespace pocketshell {

namespace {

constexpr wchar_t kBlank = L' ';

/// As much of a paragraph as fits, to the end of a word; at least its first word.
std::wstring_view fittingWords(HDC dc, std::wstring_view paragraph, int width) {
  if (textLineWidth(dc, paragraph) <= width) return paragraph;
  std::wstring_view fits;
  for (std::size_t end = paragraph.find(kBlank); end != std::wstring_view::npos;
       end = paragraph.find(kBlank, end + 1)) {
    const std::wstring_view words = paragraph.substr(0, end);
    if (!fits.empty() && textLineWidth(dc, words) > width) break;
    if (end > 0) fits = words;
  }
  return fits.empty() ? paragraph : fits;
}

std::wstring_view withoutBlanks(std::wstring_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size()));
  return text;
}

std::vector<std::wstring_view> linesOf(HDC dc, std::wstring_view text, int width) {
  std::vector<std::wstring_view> lines;
  for (bool isLast = false; !isLast;) {
    const std::size_t end = text.find(L'\n');
    isLast = end == std::wstring_view::npos;
    std::wstring_view paragraph = text.substr(0, end);
    if (!isLast) text.remove_prefix(end + 1);
    if (paragraph.ends_with(L'\r')) paragraph.remove_suffix(1);
    do {
      lines.push_back(fittingWords(dc, paragraph, width));
      paragraph = withoutBlanks(paragraph.substr(lines.back().size()));
    } while (!paragraph.empty());
  }
  return lines;
}

int lineHeight(HDC dc) {
  TEXTMETRICW metrics{};
  return GetTextMetricsW(dc, &metrics) ? static_cast<int>(metrics.tmHeight) : 0;
}

}  // namespace

int textLinesWidth(HDC dc, std::wstring_view text) {
  int width = 0;
  for (const std::wstring_view line : linesOf(dc, text, INT_MAX))
    width = std::max(width, textLineWidth(dc, line));
  return width;
}

int textLinesHeight(HDC dc, std::wstring_view text, int width) {
  return static_cast<int>(linesOf(dc, text, width).size()) * lineHeight(dc);
}

void drawTextLines(HDC dc, std::wstring_view text, const RECT& place, LinePlace where) {
  const int height = lineHeight(dc);
  RECT line = place;
  for (const std::wstring_view words : linesOf(dc, text, static_cast<int>(place.right - place.left))) {
    line.bottom = std::min(place.bottom, line.top + height);
    if (line.top + height > place.bottom) return;
    drawTextLine(dc, words, line, where);
    line.top += height;
  }
}

}  // namespace pocketshell
