#include "dialogs/table/table_design.h"

#include <cwchar>
#include <string>

#include "data/database/sql_names.h"

bool hasForbiddenCharacter(const String& name) {
  constexpr wchar_t kForbidden[] = L"`.!\u2019[]\"*?";
  return std::wcspbrk(name.text(), kForbidden) != nullptr;
}

bool isNameTaken(const String& name, const NameList& names) {
  String wanted = name;
  wanted.toUpperCase();
  for (std::uint32_t i = 0; i < names.size(); ++i) {
    String each = names[i];
    each.toUpperCase();
    if (std::wcscmp(each.text(), wanted.text()) == 0) return true;
  }
  return false;
}

String columnDefinition(const std::vector<NewField>& fields) {
  constexpr std::size_t kLimit = 64;
  std::wstring columns;
  for (const NewField& field : fields) {
    const String name = cutText(field.name, kLimit);
    if (!columns.empty()) columns += L" ,";
    columns.append(columnName(name));
    columns.append(L" ").append(cutText(field.sqlType, kLimit).text());
  }
  return columns.c_str();
}

String cutText(const String& text, std::size_t limit) {
  const std::size_t length = text.length();
  if (length <= limit) return text;
  const bool cutsPair = limit > 0 && IS_SURROGATE_PAIR(text.text()[limit - 1], text.text()[limit]);
  String cut;
  text.left(cutsPair ? limit - 1 : limit, cut);
  return cut;
}
