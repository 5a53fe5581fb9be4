#include "views/shared/word_breaks.h"

#include <algorithm>

#include "base/showable_text.h"

namespace {

/// The first of the combining marks; the halves of pairs of surrogates lie behind it.
constexpr wchar_t kFirstMark = 0x0300;

/// From here on the scripts have wide letters, and many of them no blanks.
constexpr wchar_t kFirstWideScript = 0x0900;

/// Longer words may be too wide for the narrowest editor, at whose width a line has room for about this many
/// of the widest letters.
constexpr std::size_t kLongWordCount = 20;
constexpr std::size_t kLongWideWordCount = 10;

bool isBlank(wchar_t unit) {
  return unit == L' ' || unit == L'\t' || unit == L'\r' || unit == L'\n';
}

bool isJoiner(wchar_t unit) {
  return unit == 0x200C || unit == 0x200D;
}

bool isInLongWord(std::wstring_view text, std::size_t place) {
  std::size_t start = place;
  const std::size_t first = place - std::min(place, kLongWordCount);
  while (start > first && !isBlank(text[start - 1])) --start;
  std::size_t end = place;
  const std::size_t last = std::min(text.size(), place + kLongWordCount);
  while (end < last && !isBlank(text[end])) ++end;
  const std::wstring_view word = text.substr(start, end - start);
  const bool isWide =
      std::any_of(word.begin(), word.end(), [](wchar_t unit) { return unit >= kFirstWideScript; });
  return word.size() > (isWide ? kLongWideWordCount : kLongWordCount);
}

bool canBreakBefore(std::wstring_view text, std::size_t place) {
  if (isBlank(text[place]) || wholeCharacterPlace(text, place) != place) return false;
  return isBlank(text[place - 1]) || isInLongWord(text, place);
}

}  // namespace

bool needsWordBreaks(std::wstring_view text) noexcept {
  return std::any_of(text.begin(), text.end(), [](wchar_t unit) { return unit >= kFirstMark; });
}

std::size_t wholeCharacterPlace(std::wstring_view text, std::size_t place) noexcept {
  for (; place > 0 && place < text.size(); ++place) {
    const wchar_t unit = text[place];
    const bool isParted = endOfMarks(text, place) != place || (unit >= 0xDC00 && unit < 0xE000) ||
                          unit == L'\r' || unit == L'\n' || isJoiner(unit) || isJoiner(text[place - 1]) ||
                          text[place - 1] == L'\r';
    if (!isParted) break;
  }
  return std::min(place, text.size());
}

int CALLBACK breakWords(wchar_t* text, int place, int count, int code) {
  if (!text || count <= 0) return 0;
  const std::wstring_view line(text, static_cast<std::size_t>(count));
  auto found = static_cast<std::size_t>(std::clamp(place, 0, count));
  switch (code) {
    case WB_LEFT:
      if (found > 0) --found;
      while (found > 0 && !canBreakBefore(line, found)) --found;
      return static_cast<int>(found);
    case WB_RIGHT:
      while (found < line.size() && (found == 0 || !canBreakBefore(line, found))) ++found;
      return static_cast<int>(found);
    case WB_ISDELIMITER:
      return found < line.size() && isBlank(line[found]) ? TRUE : FALSE;
    default:
      return 0;
  }
}
