#include "views/shared/shown_text.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <usp10.h>

#include "base/showable_text.h"
#include "owners/late_function.h"
#include "views/shared/word_breaks.h"

namespace {

constexpr std::wstring_view kLineBreak = L"\r\n";

/// Between two soft breaks.
constexpr std::size_t kSoftLineCount = 250;

constinit const LateFunction<decltype(ScriptItemize), E_NOTIMPL> scriptItemize{L"usp10.dll", "ScriptItemize"};

/// A run of digits, or of letters that change their shapes, takes a time that grows with the square of its
/// length. The squares of a line's runs add up to this at most.
constexpr std::size_t kMostShapingCost = 2000 * 2000;

enum class Run { plain, digits, shaped };

/// The kind of run that a character belongs to; blanks and signs stay in the run before them.
Run runOf(wchar_t unit, Run before) {
  if (unit >= L'0' && unit <= L'9') return Run::digits;
  if (unit < L'A') return before;
  const bool isShaped = (unit >= 0x0590 && unit < 0x1E00) || (unit >= 0xA800 && unit < 0xAC00) ||
                        (unit >= 0xD800 && unit < 0xE000) || (unit >= 0xFB1D && unit < 0xFF00);
  return isShaped ? Run::shaped : Run::plain;
}

/// The characters before the one with which the runs, as the system itself divides a text, become more than
/// a line draws.
std::size_t countInRuns(std::wstring_view text) {
  constexpr std::size_t kPieceCount = 500;
  // Of each character one, and the end.
  std::array<SCRIPT_ITEM, kPieceCount + 1> items;
  std::size_t left = kMostLineRunCount;
  for (std::size_t place = 0; place < text.size(); place += kPieceCount) {
    const std::wstring_view piece = text.substr(place, kPieceCount);
    int count = 0;
    if (FAILED(scriptItemize(piece.data(), static_cast<int>(piece.size()), static_cast<int>(items.size()),
                             nullptr, nullptr, items.data(), &count))) {
      // Of a text that can't be divided its first piece is shown, and not nothing, as if it were empty.
      return std::max(place, piece.size());
    }
    const auto found = static_cast<std::size_t>(count);
    if (found > left) return place + static_cast<std::size_t>(items[left].iCharPos);
    left -= found;
  }
  return text.size();
}

/// How much of the text a single line gets.
std::size_t lineCount(std::wstring_view text) {
  const std::size_t most = countInRuns(text.substr(0, kMostShownCount));
  Run run = Run::plain;
  std::size_t length = 0;
  std::size_t cost = 0;
  for (std::size_t place = 0; place < most; ++place) {
    const Run next = runOf(text[place], run);
    length = next == run ? length + 1 : 1;
    run = next;
    if (run != Run::plain) cost += 2 * length - 1;
    if (cost > kMostShapingCost) return place;
  }
  return most;
}

std::wstring withCommas(std::wstring_view text) {
  std::wstring shown;
  shown.reserve(text.size());
  std::size_t start = 0;
  for (std::size_t found; (found = text.find(kLineBreak, start)) != text.npos;
       start = found + kLineBreak.size()) {
    shown.append(text, start, found - start).append(L",");
  }
  return shown.append(text.substr(start));
}

bool hasLongParagraph(std::wstring_view text) {
  while (text.size() > kLongParagraphCount) {
    const std::size_t end = text.substr(0, kLongParagraphCount).rfind(kLineBreak);
    if (end == text.npos) return true;
    text.remove_prefix(end + kLineBreak.size());
  }
  return false;
}

/// Where a line that begins at the front of `rest` is best broken: behind its last blank, never inside what
/// belongs together.
std::size_t breakPlace(std::wstring_view rest) {
  const std::size_t blank = rest.substr(0, kSoftLineCount).rfind(L' ');
  return wholeCharacterPlace(rest, blank == rest.npos || blank == 0 ? kSoftLineCount : blank + 1);
}

ShownText cutTo(std::size_t count, std::wstring_view value) {
  // Not between the halves of a character or of a line end.
  if (count > 0 && count < value.size() &&
      ((value[count] >= 0xDC00 && value[count] < 0xE000) || value[count - 1] == L'\r')) {
    --count;
  }
  ShownText shown;
  shown.text = showableText(value.substr(0, count));
  shown.shownCount = count;
  shown.wholeCount = value.size();
  shown.isExact = !shown.isCut() && std::wstring_view(shown.text) == value;
  return shown;
}

}  // namespace

ShownText textForLine(std::wstring_view value) {
  ShownText shown = cutTo(lineCount(value), value);
  shown.text = withCommas(shown.text);
  // A mark behind a line end had no letter before, and has none now.
  return shown;
}

ShownText textForLines(std::wstring_view value) {
  ShownText shown = cutTo(std::min(value.size(), kMostShownCount), value);
  if (!hasLongParagraph(shown.text)) return shown;
  if (shown.text.find(kSoftBreak) != shown.text.npos) shown.isExact = false;
  shown.text = withSoftBreaks(shown.text);
  shown.hasSoftBreaks = true;
  return shown;
}

std::wstring withSoftBreaks(std::wstring_view text) {
  std::wstring broken;
  broken.reserve(text.size() + text.size() / kSoftLineCount * kSoftBreak.size() + kSoftBreak.size());
  while (!text.empty()) {
    const std::size_t end = text.find(kLineBreak);
    std::wstring_view paragraph = text.substr(0, end);
    if (paragraph.size() > kLongParagraphCount) {
      while (paragraph.size() > kSoftLineCount) {
        const std::size_t place = breakPlace(paragraph);
        if (place >= paragraph.size()) break;
        broken.append(paragraph.substr(0, place)).append(kSoftBreak);
        paragraph.remove_prefix(place);
      }
    }
    broken.append(paragraph);
    if (end == text.npos) break;
    broken.append(kLineBreak);
    text.remove_prefix(end + kLineBreak.size());
  }
  return broken;
}

std::wstring withoutSoftBreaks(std::wstring_view text) {
  std::wstring joined;
  joined.reserve(text.size());
  std::size_t start = 0;
  for (std::size_t found; (found = text.find(kSoftBreak, start)) != text.npos;
       start = found + kSoftBreak.size()) {
    joined.append(text, start, found - start);
  }
  return joined.append(text.substr(start));
}
