// The statement that calculates a column.
#include "records/arrangement/column_figures.h"
#include "records/arrangement/statement_parts.h"

namespace {

/// The first value by `key`, with the type of its field: what a function gives has none.
std::wstring firstBy(const std::wstring& from, const std::wstring& name, const wchar_t* condition,
                     const std::wstring& key, const wchar_t* direction) {
  return L", (SELECT " + name + from + L" WHERE typeof(" + name + L") IN (" + condition + L") ORDER BY " +
         key + direction + L" LIMIT 1)";
}

}  // namespace

std::wstring figuresSql(std::wstring_view sql, std::wstring_view field, ColumnKind kind) {
  const std::wstring from = L" FROM (" + withoutEnd(sql) + L"\n)";
  const std::wstring name = fieldName(field);
  const std::wstring type = L"typeof(" + name + L")";
  std::wstring all =
      L"SELECT count(*), count(CASE WHEN ifnull(" + name + L", '') NOT IN ('', x'') THEN 1 END)";
  const auto ofInteger = [&](const wchar_t* function, const wchar_t* operation) {
    return std::wstring(L", ") + function + L"(CASE " + type + L" WHEN 'integer' THEN " + name + operation +
           L" END)";
  };
  switch (kind) {
    case ColumnKind::values: {
      const std::wstring number = L"CASE WHEN " + type + L" IN ('integer', 'real') THEN " + name + L" END";
      // The halves of the numbers are added up by themselves: their sums fit where the sum of the whole may
      // not.
      all += ofInteger(L"count", L"") + ofInteger(L"sum", L" >> 32") + ofInteger(L"sum", L" & 4294967295");
      all += L", count(CASE " + type + L" WHEN 'real' THEN 1 END), printf('%!.15g', total(" + number +
             L")), printf('%!.15g', avg(" + number + L"))";
      const std::wstring letters = L"quivane_fold(" + name + L")";
      for (const wchar_t* direction : {L"", L" DESC"}) {
        all += firstBy(from, name, L"'integer', 'real'", name, direction);
      }
      for (const wchar_t* direction : {L"", L" DESC"})
        all += firstBy(from, name, L"'text'", letters, direction);
      break;
    }
    case ColumnKind::dates:
      for (const wchar_t* direction : {L"", L" DESC"}) all += firstBy(from, name, L"'text'", name, direction);
      break;
    case ColumnKind::truth:
      all += L", count(CASE WHEN ifnull(" + name + L", 0) <> 0 THEN 1 END)";
      break;
  }
  return all + from;
}
