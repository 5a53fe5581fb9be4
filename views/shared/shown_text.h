#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// How values get into edit controls: at most as much as a control lays out at once, and only what it can
/// show. What is not shown exactly is not to be edited there.

/// The most characters that any edit control gets.
inline constexpr std::size_t kMostShownCount = 100'000;

/// The most runs of one kind (of letters of a script, of digits, of signs) in a single line: some systems
/// draw nothing at all of a line of more than 256.
inline constexpr std::size_t kMostLineRunCount = 250;

struct ShownText {
  std::wstring text;
  std::size_t shownCount = 0;  ///< of the value's characters
  std::size_t wholeCount = 0;  ///< of the value
  bool isExact = true;         ///< the value can be had back from the control
  bool hasSoftBreaks = false;  ///< withoutSoftBreaks takes them out again

  bool isCut() const { return shownCount < wholeCount; }
};

/// For one line: "\r\n" becomes a comma, which counts as exact. It holds kMostLineRunCount runs, and of
/// digits and of letters that change their shapes fewer in a row, because such a row is slow to lay out.
ShownText textForLine(std::wstring_view value);

/// A line end that counts as none.
inline constexpr std::wstring_view kSoftBreak = L"\r\r\n";

/// For many lines. A long paragraph is broken by kSoftBreak: a control takes very
/// long to break it itself.
ShownText textForLines(std::wstring_view value);

/// `text` with such line ends where a paragraph is long. Exact as withoutSoftBreaks takes them out again,
/// unless there were some in it.
std::wstring withSoftBreaks(std::wstring_view text);
std::wstring withoutSoftBreaks(std::wstring_view text);

/// Beyond this many characters a paragraph is broken.
inline constexpr std::size_t kLongParagraphCount = 1000;
