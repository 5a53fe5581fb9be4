#include "dialogs/table/field_list.h"

#include <cstddef>
#include <string>

#include "base/showable_text.h"
#include "dialogs/table/table_design.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/shared/list_view.h"

namespace {

constexpr int kNameColumn = 0;
constexpr int kTypeColumn = 1;
constexpr int kNameWidth = 110;
constexpr int kTypeWidth = 120;

void setColumnWidth(HWND list, int column, int width) {
  SendMessageW(list, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(width, 0));
}

/// The whole text, however long.
String cellText(HWND list, int row, int column) {
  std::wstring text(128, L'\0');
  LVITEMW cell{};
  cell.iSubItem = column;
  while (true) {
    cell.pszText = text.data();
    cell.cchTextMax = static_cast<int>(text.size());
    const auto length = static_cast<std::size_t>(
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell)));
    if (length + 1 < text.size()) return cell.pszText;
    text.resize(text.size() * 2);
  }
}

void setCellText(HWND list, int row, int column, const String& text) {
  LVITEMW cell{};
  cell.iSubItem = column;
  std::wstring shown = showableText(text.text());
  cell.pszText = shown.data();
  SendMessageW(list, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
}

}  // namespace

void FieldList::attach(HWND list) {
  list_ = list;
  listview::insertColumn(list_, kNameColumn, L"Field", HandheldToMonitor(kNameWidth));
  listview::insertColumn(list_, kTypeColumn, L"Type", HandheldToMonitor(kTypeWidth));
  listview::setExtendedStyle(list_, LVS_EX_FULLROWSELECT);
}

void FieldList::fitColumns() const {
  setColumnWidth(list_, kNameColumn, HandheldToMonitor(kNameWidth));
  setColumnWidth(list_, kTypeColumn, HandheldToMonitor(kTypeWidth));
}

int FieldList::count() const {
  return listview::itemCount(list_);
}

int FieldList::selected() const {
  return listview::nextItem(list_, listview::kFirstOfAll, LVNI_SELECTED);
}

std::vector<NewField> FieldList::fields() const {
  const int rows = count();
  std::vector<NewField> all;
  all.reserve(static_cast<std::size_t>(rows));
  for (int row = 0; row < rows; ++row) all.push_back(field(row));
  return all;
}

void FieldList::insert(int row, const NewField& field) const {
  constexpr int kNoImage = 0;
  listview::insertItem(list_, row, field.name.text(), kNoImage);
  setCellText(list_, row, kTypeColumn, field.sqlType);
  listview::ensureVisible(list_, row);
}

void FieldList::removeSelected() const {
  if (const int row = selected(); row >= 0) listview::deleteItem(list_, row);
}

void FieldList::removeAll() const {
  listview::deleteAllItems(list_);
}

void FieldList::moveSelectedUp() const {
  if (const int row = selected(); row > 0) move(row, row - 1);
}

void FieldList::moveSelectedDown() const {
  if (const int row = selected(); row >= 0 && row + 1 < count()) move(row, row + 1);
}

NewField FieldList::field(int row) const {
  return {cellText(list_, row, kNameColumn), cellText(list_, row, kTypeColumn), false};
}

void FieldList::move(int from, int to) const {
  constexpr std::size_t kNameLimit = 100;
  constexpr std::size_t kTypeLimit = 50;
  constexpr UINT kChosen = LVIS_SELECTED | LVIS_FOCUSED;
  NewField moved = field(from);
  moved.name = cutText(moved.name, kNameLimit);
  moved.sqlType = cutText(moved.sqlType, kTypeLimit);
  listview::deleteItem(list_, from);
  insert(to, moved);
  listview::setItemState(list_, to, kChosen, kChosen);
  SetFocus(list_);
}
