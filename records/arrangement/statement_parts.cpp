#include "records/arrangement/statement_parts.h"

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
  const std::size_t last = sql.find_last_not_of(L" \t\r\n\f;");
  return last == sql.npos ? std::wstring() : std::wstring(sql.substr(0, last + 1));
}
