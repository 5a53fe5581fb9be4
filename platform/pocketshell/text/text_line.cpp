#include "platform/pocketshell/text/text_line.h"

#include <algorithm>
#include <usp10.h>
#include <vector>

#include "owners/late_function.h"

namespace pocketshell {

namespace {

constexpr wchar_t kEllipsis[] = L"...";

/// A line holds no more of a text than controls draw of it.
constexpr std::size_t kMostDrawnCount = 1024;

constinit const LateFunction<decltype(ScriptStringAnalyse), E_NOTIMPL> scriptStringAnalyse{
    L"usp10.dll", "ScriptStringAnalyse"};
constinit const LateFunction<decltype(ScriptString_pSize), nullptr> scriptStringSize{L"usp10.dll",
                                                                                     "ScriptString_pSize"};
constinit const LateFunction<decltype(ScriptStringOut), E_NOTIMPL> scriptStringOut{L"usp10.dll",
                                                                                   "ScriptStringOut"};
constinit const LateFunction<decltype(ScriptStringFree), E_NOTIMPL> scriptStringFree{L"usp10.dll",
                                                                                     "ScriptStringFree"};

bool isHalfOfPair(wchar_t unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}

/// The text as the system has laid it out; nothing when it refuses to.
class LaidOutText {
 public:
  LaidOutText(HDC dc, std::wstring_view text) {
    if (text.empty()) return;
    const auto count = static_cast<int>(text.size());
    constexpr DWORD kFlags = SSA_GLYPHS | SSA_FALLBACK | SSA_LINK;
    if (scriptStringAnalyse(dc, text.data(), count, count * 3 / 2 + 16, -1, kFlags, 0, nullptr, nullptr,
                            nullptr, nullptr, nullptr, &analysis_) != S_OK) {
      analysis_ = nullptr;
    }
  }
  ~LaidOutText() {
    if (analysis_) scriptStringFree(&analysis_);
  }
  LaidOutText(const LaidOutText&) = delete;
  LaidOutText& operator=(const LaidOutText&) = delete;

  int width() const {
    const SIZE* const size = analysis_ ? scriptStringSize(analysis_) : nullptr;
    return size ? static_cast<int>(size->cx) : 0;
  }

  void draw(int x, int y, const RECT& clip) const {
    if (analysis_) scriptStringOut(analysis_, x, y, ETO_CLIPPED, &clip, 0, 0, FALSE);
  }

 private:
  SCRIPT_STRING_ANALYSIS analysis_ = nullptr;
};

std::wstring cutWithEllipsis(std::wstring_view text, std::size_t count) {
  if (count > 0 && count < text.size() && isHalfOfPair(text[count - 1]) && isHalfOfPair(text[count])) --count;
  return std::wstring(text.substr(0, count)) + kEllipsis;
}

/// As many characters as fit before an ellipsis, one at least.
std::wstring fittingLine(HDC dc, std::wstring_view text, int room) {
  text = text.substr(0, kMostDrawnCount);
  if (textLineWidth(dc, text) <= room) return std::wstring(text);
  std::size_t fits = 1;
  std::size_t tooMany = text.size();
  while (tooMany - fits > 1) {
    const std::size_t middle = (fits + tooMany) / 2;
    (textLineWidth(dc, cutWithEllipsis(text, middle)) <= room ? fits : tooMany) = middle;
  }
  return cutWithEllipsis(text, fits);
}

/// Where letters are laid out one by one they stand a little apart from those of the controls around.
void drawAsControlsDo(HDC dc, std::wstring_view text, RECT place, LinePlace where) {
  text = text.substr(0, kMostDrawnCount);
  DrawTextW(dc, text.data(), static_cast<int>(text.size()), &place,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS |
                static_cast<UINT>(where == LinePlace::centre ? DT_CENTER : DT_LEFT));
}

}  // namespace

bool needsOtherFonts(HDC dc, std::wstring_view text) {
  constexpr wchar_t kLastOfAllFonts = 0x7E;
  if (std::all_of(text.begin(), text.end(), [](wchar_t unit) { return unit <= kLastOfAllFonts; }))
    return false;
  constexpr WORD kMissing = 0xFFFF;
  std::vector<WORD> glyphs(text.size());
  if (GetGlyphIndicesW(dc, text.data(), static_cast<int>(text.size()), glyphs.data(),
                       GGI_MARK_NONEXISTING_GLYPHS) == GDI_ERROR) {
    return false;
  }
  return std::find(glyphs.begin(), glyphs.end(), kMissing) != glyphs.end();
}

std::wstring onOneLine(std::wstring_view text) {
  std::wstring line;
  line.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isInsideLineEnd = text[i] == L'\n' && i > 0 && text[i - 1] == L'\r';
    if (!isInsideLineEnd) line += text[i] < L' ' ? L' ' : text[i];
  }
  return line;
}

int textLineWidth(HDC dc, std::wstring_view text) {
  return LaidOutText(dc, text).width();
}

void drawTextLine(HDC dc, std::wstring_view text, const RECT& place, LinePlace where) {
  const int room = static_cast<int>(place.right - place.left);
  TEXTMETRICW metrics{};
  if (text.empty() || room <= 0 || !GetTextMetricsW(dc, &metrics)) return;
  if (!needsOtherFonts(dc, text)) {
    drawAsControlsDo(dc, text, place, where);
    return;
  }
  const std::wstring line = fittingLine(dc, text, room);
  const LaidOutText laidOut(dc, line);
  const int spare = std::max(0, room - laidOut.width());
  const int x = static_cast<int>(place.left) + (where == LinePlace::centre ? spare / 2 : 0);
  // Fonts differ in what they have above the line on which their letters stand. Half a pixel goes where it
  // goes in texts that controls draw.
  const int top = static_cast<int>(place.top + (place.bottom - place.top) / 2 - metrics.tmHeight / 2);
  const UINT alignment = SetTextAlign(dc, TA_BASELINE | TA_LEFT | TA_NOUPDATECP);
  laidOut.draw(x, top + static_cast<int>(metrics.tmAscent), place);
  SetTextAlign(dc, alignment);
}

}  // namespace pocketshell
