#include "records/arrangement/statement_parts.h"

namespace {

constexpr std::wstring_view kLineComment = L"--";
constexpr std::wstring_view kComment = L"/*";
constexpr std::wstring_view kCommentEnd = L"*/";

/// Behind what begins so, or at the end of a statement in which that does not end.
std::size_t endBehind(std::wstring_view sql, std::wstring_view end, std::size_t from) {
  const std::size_t found = sql.find(end, from);
  return found == sql.npos ? sql.size() : found + end.size();
}

/// Of the text, the name in quotes or brackets, the comment or the single character that begins at `at`. What
/// is quoted with a doubled quote in it are two parts, which makes no difference here.
std::size_t endOfPart(std::wstring_view sql, std::size_t at) {
  const std::wstring_view rest = sql.substr(at);
  if (rest.starts_with(kLineComment)) return endBehind(sql, L"\n", at);
  if (rest.starts_with(kComment)) return endBehind(sql, kCommentEnd, at + kComment.size());
  switch (rest.front()) {
    case L'\'':
    case L'"':
    case L'`':
      return endBehind(sql, rest.substr(0, 1), at + 1);
    case L'[':
      return endBehind(sql, L"]", at + 1);
    default:
      return at + 1;
  }
}

/// Whether the part that begins at `at` may be left out at the end of a statement.
bool isNothing(std::wstring_view sql, std::size_t at) {
  constexpr std::wstring_view kBlanksAndSemicolon = L" \t\r\n\f;";
  const std::wstring_view rest = sql.substr(at);
  return kBlanksAndSemicolon.find(rest.front()) != kBlanksAndSemicolon.npos ||
         rest.starts_with(kLineComment) || rest.starts_with(kComment);
}

}  // namespace

std::wstring fieldName(std::wstring_view name) {
  if (name.find(L']') == name.npos) return L"[" + std::wstring(name) + L"]";
  std::wstring text = L"`";
  for (const wchar_t unit : name) {
    text += unit;
    if (unit == L'`') text += unit;
  }
  return text + L"`";
}

std::wstring withoutEnd(std::wstring_view sql) {
  std::size_t end = 0;
  for (std::size_t at = 0; at < sql.size();) {
    const std::size_t next = endOfPart(sql, at);
    if (!isNothing(sql, at)) end = next;
    at = next;
  }
  return std::wstring(sql.substr(0, end));
}
