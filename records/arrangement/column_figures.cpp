#include "records/arrangement/column_figures.h"

#include <algorithm>
#include <cwchar>

#include "records/arrangement/column_places.h"

namespace {

std::size_t countOf(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::values:
      return kValuesCount;
    case ColumnKind::dates:
      return kDatesCount;
    case ColumnKind::truth:
      return kTruthCount;
  }
  return 0;
}

long long numberOf(const std::wstring& text) {
  return std::wcstoll(text.c_str(), nullptr, 10);
}

/// high * 2^32 + low.
std::wstring exactSum(long long high, long long low) {
  using Wide = __int128;
  Wide sum = static_cast<Wide>(high) * (Wide{1} << 32) + low;
  const bool isNegative = sum < 0;
  std::wstring digits;
  do {
    const int digit = static_cast<int>(sum % 10);
    digits += static_cast<wchar_t>(L'0' + (digit < 0 ? -digit : digit));
    sum /= 10;
  } while (sum != 0);
  if (isNegative) digits += L'-';
  std::reverse(digits.begin(), digits.end());
  return digits;
}

void addLine(std::wstring& text, const wchar_t* what, const std::wstring& value) {
  if (!text.empty()) text += L"\n";
  text += what;
  text += L" ";
  text += value;
}

void addNumbers(std::wstring& text, const std::vector<std::wstring>& values) {
  const long long integers = numberOf(values[kIntegers]);
  const long long reals = numberOf(values[kReals]);
  const long long others = numberOf(values[kFilled]) - integers - reals;
  if (others != 0) addLine(text, L"Not numbers:", std::to_wstring(others));
  addLine(text, L"Sum:",
          reals == 0 ? exactSum(numberOf(values[kHighSum]), numberOf(values[kLowSum])) : values[kSum]);
  addLine(text, L"Mean:", values[kMean]);
  addLine(text, L"Least:", values[kLeastNumber]);
  addLine(text, L"Greatest:", values[kGreatestNumber]);
}

}  // namespace

std::wstring figuresText(ColumnKind kind, const std::vector<std::wstring>& values) {
  if (values.size() < countOf(kind)) return {};
  std::wstring text;
  addLine(text, L"Records:", values[kRecords]);
  if (kind == ColumnKind::truth) {
    addLine(text, L"True:", values[kTrue]);
    addLine(text, L"False:", std::to_wstring(numberOf(values[kRecords]) - numberOf(values[kTrue])));
    return text;
  }
  addLine(text, L"Not empty:", values[kFilled]);
  if (numberOf(values[kFilled]) == 0) return text;
  if (kind == ColumnKind::dates) {
    addLine(text, L"Least:", values[kLeastDate]);
    addLine(text, L"Greatest:", values[kGreatestDate]);
  } else if (numberOf(values[kIntegers]) + numberOf(values[kReals]) != 0) {
    addNumbers(text, values);
  } else {
    addLine(text, L"Least:", values[kLeastText]);
    addLine(text, L"Greatest:", values[kGreatestText]);
  }
  return text;
}
