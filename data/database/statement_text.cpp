#include "data/database/statement_text.h"

#include <algorithm>
#include <cwchar>

bool joinStatement(std::initializer_list<const wchar_t*> parts, StatementText& statement) {
  std::size_t length = 0;
  for (const wchar_t* part : parts) length += std::wcslen(part);
  if (length >= statement.size()) return false;
  wchar_t* end = statement.data();
  for (const wchar_t* part : parts) end = std::copy_n(part, std::wcslen(part), end);
  *end = L'\0';
  return true;
}
