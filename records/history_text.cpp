#include "records/history_text.h"

#include "records/count_text.h"

namespace {

/// A menu as narrow as the smallest window has room for no more.
constexpr std::size_t kMostLetters = 24;

std::wstring shortened(const String& name) {
  std::wstring text = name.text();
  if (text.size() <= kMostLetters) return text;
  std::size_t length = kMostLetters;
  const bool isPair = text[length - 1] >= 0xD800 && text[length - 1] < 0xDC00;
  if (isPair) --length;
  text.resize(length);
  return text + L"\u2026";
}

std::wstring quoted(const String& name) {
  return L"'" + shortened(name) + L"'";
}

const wchar_t* actionOf(HistoryStep::Kind kind) {
  switch (kind) {
    case HistoryStep::Kind::added:
      return L" addition of ";
    case HistoryStep::Kind::deleted:
      return L" deletion of ";
    case HistoryStep::Kind::imported:
      return L" import of ";
    default:
      return L" change of ";
  }
}

std::wstring objectOf(const HistoryStep& step) {
  if (step.records == 1 && !step.record.isEmpty()) return quoted(step.record);
  std::wstring text = step.records == 1 ? std::wstring(L"a record") : countOfRecords(step.records);
  if (!step.table.isEmpty()) text += L" in " + quoted(step.table);
  return text;
}

}  // namespace

std::wstring historyText(HistoryWay way, const HistoryStep& step) {
  const std::wstring text = way == HistoryWay::back ? L"Undo" : L"Redo";
  return step.kind == HistoryStep::Kind::none ? text : text + actionOf(step.kind) + objectOf(step);
}
