// The statement that calculates a column over a server, whose columns have one type each.
#include <algorithm>
#include <cwchar>
#include <iterator>

#include "records/arrangement/column_figures.h"
#include "records/arrangement/column_places.h"
#include "records/arrangement/statement_parts.h"

namespace {

constexpr wchar_t kNone[] = L", NULL";

std::wstring wholeFigures(const std::wstring& name) {
  const std::wstring number = L"CAST(" + name + L" AS bigint)";
  // The halves are added up by themselves, as in a file.
  return L"count(" + name + L"), count(" + name + L"), sum(" + number + L" >> 32), sum(" + number +
         L" & 4294967295), 0, CAST(sum(" + number + L") AS text), CAST(avg(" + number + L") AS text), min(" +
         number + L"), max(" + number + L")" + kNone + kNone;
}

/// What is no number in a column of numbers is a text, as it is shown. The numbers are added up by their
/// decimals, so that nothing is lost on the way, which no file loses either.
std::wstring realFigures(const std::wstring& name) {
  const std::wstring number =
      L"CASE WHEN " + name + L" NOT IN ('NaN', 'Infinity', '-Infinity') THEN " + name + L" END";
  const std::wstring decimal = L"CAST(CAST(" + number + L" AS text) AS numeric)";
  const std::wstring text =
      L"CASE WHEN " + name + L" IN ('NaN', 'Infinity', '-Infinity') THEN CAST(" + name + L" AS text) END";
  return L"count(" + name + L"), 0, 0, 0, count(" + number + L"), CAST(sum(" + decimal +
         L") AS text), CAST(avg(" + decimal + L") AS text), min(" + number + L"), max(" + number +
         L"), min(" + text + L"), max(" + text + L")";
}

/// Texts by their letters' numbers, whatever the order of the server's language is. Types that the handheld
/// lacks are texts here, and some of them numbers all the same: the server tells.
std::wstring textFigures(const std::wstring& name, const std::wstring& from) {
  const std::wstring text = L"CAST(" + name + L" AS text)";
  const std::wstring type = L"CAST(pg_typeof(" + name + L") AS text)";
  const std::wstring whole = L"CAST(CASE WHEN " + type + L" = 'bigint' THEN " + text + L" END AS bigint)";
  const std::wstring decimal = L"CAST(CASE WHEN " + type + L" = 'numeric' AND " + text +
                               L" NOT IN ('NaN', 'Infinity', '-Infinity') THEN " + text + L" END AS numeric)";
  const std::wstring number = L"coalesce(CAST(" + whole + L" AS numeric), " + decimal + L")";
  std::wstring all = L"count(NULLIF(" + text + L", '')), count(" + whole + L"), sum(" + whole +
                     L" >> 32), sum(" + whole + L" & 4294967295), count(" + decimal + L")";
  for (const wchar_t* function : {L"sum", L"avg", L"min", L"max"}) {
    all += std::wstring(L", CAST(") + function + L"(" + number + L") AS text)";
  }
  for (const wchar_t* direction : {L"", L" DESC"}) {
    all += L", (SELECT " + text + from + L" WHERE " + name + L" IS NOT NULL ORDER BY convert_to(upper(" +
           text + L"), 'UTF8')" + direction + L" LIMIT 1)";
  }
  return all;
}

std::wstring bytesFigures(const std::wstring& name) {
  std::wstring all = L"count(CASE WHEN octet_length(" + name + L") > 0 THEN 1 END), 0, 0, 0, 0";
  for (std::size_t place = kSum; place < kValuesCount; ++place) all += kNone;
  return all;
}

/// The number as a file writes it: of fifteen digits, with a point.
std::wstring fifteenDigits(const std::wstring& text) {
  if (text.empty()) return text;
  wchar_t digits[40] = L"";
  std::swprintf(digits, std::size(digits), L"%.15g", std::wcstod(text.c_str(), nullptr));
  std::wstring number = digits;
  if (number.find_first_of(L".n") != number.npos) return number;
  return number.insert(std::min(number.find(L'e'), number.size()), L".0");
}

}  // namespace

std::wstring serverFiguresSql(std::wstring_view sql, std::wstring_view field, ColumnKind kind,
                              ServerValues values) {
  const std::wstring from = L" FROM (" + withoutEnd(sql) + L"\n)";
  const std::wstring name = fieldName(field);
  const std::wstring all = L"SELECT count(*), ";
  switch (kind) {
    case ColumnKind::truth:
      return all + L"0, count(CASE WHEN " + name + L" THEN 1 END)" + from;
    case ColumnKind::dates:
      return all + L"count(" + name + L"), min(" + name + L"), max(" + name + L")" + from;
    case ColumnKind::values:
      break;
  }
  switch (values) {
    case ServerValues::whole:
      return all + wholeFigures(name) + from;
    case ServerValues::real:
      return all + realFigures(name) + from;
    case ServerValues::text:
      return all + textFigures(name, from) + from;
    case ServerValues::bytes:
      return all + bytesFigures(name) + from;
  }
  return {};
}

void writeFiguresAsFilesDo(ColumnKind kind, ServerValues serverValues, std::vector<std::wstring>& values) {
  if (kind != ColumnKind::values || values.size() < kValuesCount) return;
  if (serverValues != ServerValues::text) values[kSum] = fifteenDigits(values[kSum]);
  values[kMean] = fifteenDigits(values[kMean]);
}
