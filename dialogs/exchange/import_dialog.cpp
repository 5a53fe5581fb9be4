#include "dialogs/exchange/import_dialog.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "base/showable_text.h"
#include "dialogs/controls/combo_box.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/exchange/import_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"
#include "views/shared/list_view.h"

namespace {

constexpr std::uint32_t kMostRecords = 20;
constexpr std::size_t kMostColumns = 50;
constexpr int kColumnWidth = 75;
constexpr wchar_t kLeftOut[] = L"(left out)";

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_IMPORT_TABLE, .wider = true},       {.id = IDC_IMPORT_COLUMNS, .wider = true},
    {.id = IDC_IMPORT_TYPE, .wider = true},        {.id = IDC_IMPORT_PREVIEW, .wider = true, .higher = true},
    {.id = IDCANCEL, .right = true, .down = true},
};

/// A choice as the user reads it and as the file takes it.
struct Choice {
  const wchar_t* shown;
  const wchar_t* value;
};

constexpr Choice kEncodings[] = {
    {L"UTF-8", L"utf-8"},
    {L"Windows-1252", L"windows-1252"},
    {L"UTF-16", L"utf-16le"},
    {L"UTF-16, big-endian", L"utf-16be"},
};
constexpr Choice kDelimiters[] = {
    {L"Comma", L","},
    {L"Semicolon", L";"},
    {L"Tab", L"\t"},
    {L"Bar", L"|"},
};
/// Of a new table.
constexpr std::array kTypes = {L"Text", L"Integer", L"Bigint", L"Float", L"Bit", L"Date", L"Datetime"};

template <std::size_t Count>
void fillChoices(HWND combo, const Choice (&choices)[Count]) {
  combobox::clear(combo);
  for (const Choice& choice : choices) combobox::add(combo, choice.shown);
  combobox::fitHeight(combo);
}

template <std::size_t Count>
void selectChoice(HWND combo, const Choice (&choices)[Count], const String& value) {
  const auto* const found = std::find_if(std::begin(choices), std::end(choices), [&](const Choice& choice) {
    return std::wcscmp(choice.value, value.text()) == 0;
  });
  const int index = found != std::end(choices) ? static_cast<int>(found - choices) : combobox::kNoSelection;
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

template <std::size_t Count>
const wchar_t* chosenValue(HWND combo, const Choice (&choices)[Count]) {
  const int index = combobox::selection(combo);
  return index == combobox::kNoSelection ? L"" : choices[index].value;
}

std::wstring columnText(const ImportColumn& column) {
  std::wstring text = column.source.text();
  if (std::wcscmp(column.source.text(), column.target.text()) != 0 && !column.target.isEmpty()) {
    text += std::wstring(L" \u2192 ") + column.target.text();
  }
  // The list has its own use for it.
  std::replace(text.begin(), text.end(), L'\t', L' ');
  text += L'\t';
  text += column.target.isEmpty() ? kLeftOut : column.type.text();
  return showableText(text);
}

bool isChecked(HWND box) {
  return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void check(HWND box, bool checked) {
  SendMessageW(box, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

}  // namespace

ImportDialog::ImportDialog(ImportFile& file, const NameList& tables)
    : file_(file), tables_(tables), growth_(kGrowth) {}

int ImportDialog::run(HWND owner) {
  return runTemplate(IDD_IMPORT, owner);
}

bool ImportDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<ImportDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &ImportDialog::confirm},
      {IDCANCEL, BN_CLICKED, &ImportDialog::cancel},
      {IDC_IMPORT_TABLE, CBN_SELENDOK, &ImportDialog::tableChosen},
      {IDC_IMPORT_ENCODING, CBN_SELCHANGE, &ImportDialog::encodingChosen},
      {IDC_IMPORT_DELIMITER, CBN_SELCHANGE, &ImportDialog::delimiterChosen},
      {IDC_IMPORT_HEADER, BN_CLICKED, &ImportDialog::headerChosen},
      {IDC_IMPORT_REPLACE, BN_CLICKED, &ImportDialog::replaceChosen},
      {IDC_IMPORT_COLUMNS, LBN_SELCHANGE, &ImportDialog::showType},
      {IDC_IMPORT_TYPE, CBN_SELCHANGE, &ImportDialog::typeChosen},
  };
  return answerCommand<ImportDialog>(*this, kCommands, id, notification);
}

void ImportDialog::opened() {
  panel_.lower(window());
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  fillLists();
  check(control(IDC_IMPORT_KEEP_GOOD), keepsGoodRecords);
  SetFocus(control(IDC_IMPORT_TABLE));
  if (isExamined_) {
    showFound();
  } else {
    examine();
  }
}

void ImportDialog::fillLists() {
  const HWND table = control(IDC_IMPORT_TABLE);
  combobox::fill(table, tables_);
  combobox::removeTextLimit(table);
  combobox::fitHeight(table);
  SetWindowTextW(table, file_.table().text());
  fillChoices(control(IDC_IMPORT_ENCODING), kEncodings);
  fillChoices(control(IDC_IMPORT_DELIMITER), kDelimiters);
  combobox::fitHeight(control(IDC_IMPORT_TYPE));
  listview::setExtendedStyle(control(IDC_IMPORT_PREVIEW), LVS_EX_FULLROWSELECT);
  int tabStop = 100;  // in dialog units
  SendMessageW(control(IDC_IMPORT_COLUMNS), LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
}

/// What the controls show holds afterwards. False, and the user was told why, when the file can't go into the
/// table so.
bool ImportDialog::examine() {
  const Outcome examined = file_.examine();
  isExamined_ = static_cast<bool>(examined);
  if (!examined && !examined.reason().isEmpty()) tell(examined.reason().text());
  showFound();
  return isExamined_;
}

void ImportDialog::showFound() {
  const bool isSeparated = !file_.delimiter().isEmpty();
  selectChoice(control(IDC_IMPORT_ENCODING), kEncodings, file_.encoding());
  selectChoice(control(IDC_IMPORT_DELIMITER), kDelimiters, file_.delimiter());
  check(control(IDC_IMPORT_HEADER), file_.hasHeader());
  check(control(IDC_IMPORT_REPLACE), file_.replaces());
  EnableWindow(control(IDC_IMPORT_DELIMITER), isSeparated);
  EnableWindow(control(IDC_IMPORT_HEADER), isSeparated);
  showColumns();
  showPreview();
}

void ImportDialog::showColumns() {
  const HWND list = control(IDC_IMPORT_COLUMNS);
  const int selected = std::max(listbox::selectedIndex(list), 0);
  listbox::clear(list);
  if (isExamined_) {
    for (const ImportColumn& column : file_.columns()) listbox::append(list, columnText(column).c_str());
  }
  listbox::select(list, selected);
  showType();
}

void ImportDialog::showPreview() {
  const HWND list = control(IDC_IMPORT_PREVIEW);
  listview::deleteAllItems(list);
  while (SendMessageW(list, LVM_DELETECOLUMN, 0, 0)) {
  }
  if (!isExamined_) return;
  const std::vector<ImportColumn> columns = file_.columns();
  const std::size_t count = std::min(columns.size(), kMostColumns);
  for (std::size_t i = 0; i < count; ++i) {
    listview::insertColumn(list, static_cast<int>(i), showableText(columns[i].source.text()).c_str(),
                           HandheldToMonitor(kColumnWidth));
  }
  std::vector<std::vector<String>> records;
  if (!file_.preview(kMostRecords, records)) return;
  for (std::size_t row = 0; row < records.size(); ++row) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = static_cast<int>(row);
    for (std::size_t i = 0; i < std::min(count, records[row].size()); ++i) {
      std::wstring text = showableText(records[row][i].text());
      item.iSubItem = static_cast<int>(i);
      item.pszText = text.data();
      SendMessageW(list, i == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
  }
}

/// The types that the selected column can have, its own chosen.
void ImportDialog::showType() {
  const HWND combo = control(IDC_IMPORT_TYPE);
  combobox::clear(combo);
  const int index = listbox::selectedIndex(control(IDC_IMPORT_COLUMNS));
  const std::vector<ImportColumn> columns = isExamined_ ? file_.columns() : std::vector<ImportColumn>();
  const bool hasPlace = index >= 0 && static_cast<std::size_t>(index) < columns.size() &&
                        columns[static_cast<std::size_t>(index)].hasPlace;
  EnableWindow(combo, hasPlace);
  if (!hasPlace) return;
  const ImportColumn& column = columns[static_cast<std::size_t>(index)];
  if (file_.isNewTable()) {
    for (const wchar_t* const type : kTypes) combobox::add(combo, type);
  } else {
    combobox::add(combo, column.type);
  }
  combobox::add(combo, kLeftOut);
  const String shown = column.target.isEmpty() ? String(kLeftOut) : column.type;
  const LRESULT place = SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                     reinterpret_cast<LPARAM>(shown.text()));
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(place), 0);
}

void ImportDialog::typeChosen() {
  const int index = listbox::selectedIndex(control(IDC_IMPORT_COLUMNS));
  const String chosen = combobox::selectedText(control(IDC_IMPORT_TYPE));
  if (index < 0 || chosen.isEmpty()) return;
  const bool leavesOut = std::wcscmp(chosen.text(), kLeftOut) == 0;
  const Outcome set = file_.setType(static_cast<std::uint32_t>(index), leavesOut ? String() : chosen);
  if (!set) tell(set.reason().text());
  showColumns();
}

/// Examines the file for the table that the control names, unless that was done. False as examine().
bool ImportDialog::takeTable() {
  const String named = windowText(control(IDC_IMPORT_TABLE));
  if (isExamined_ && std::wcscmp(named.text(), file_.table().text()) == 0) return true;
  file_.setTable(named);
  return examine();
}

void ImportDialog::tableChosen() {
  const String chosen = combobox::selectedText(control(IDC_IMPORT_TABLE));
  // The edit has it only after this.
  SetWindowTextW(control(IDC_IMPORT_TABLE), chosen.text());
  takeTable();
}

void ImportDialog::encodingChosen() {
  file_.setEncoding(chosenValue(control(IDC_IMPORT_ENCODING), kEncodings));
  examine();
}

void ImportDialog::delimiterChosen() {
  file_.setDelimiter(chosenValue(control(IDC_IMPORT_DELIMITER), kDelimiters));
  examine();
}

void ImportDialog::headerChosen() {
  file_.setHeader(isChecked(control(IDC_IMPORT_HEADER)));
  examine();
}

void ImportDialog::replaceChosen() {
  file_.setReplaces(isChecked(control(IDC_IMPORT_REPLACE)));
  examine();
}

void ImportDialog::confirm() {
  const bool wasNew = isExamined_ && file_.isNewTable();
  const bool wasExamined = isExamined_;
  if (windowText(control(IDC_IMPORT_TABLE)).isEmpty()) {
    tell(L"Please enter a table name!");
    SetFocus(control(IDC_IMPORT_TABLE));
    return;
  }
  if (!takeTable()) return;
  // The user sees how the columns go into a table that is there before it is changed.
  if (!wasExamined || wasNew != file_.isNewTable()) return;
  keepsGoodRecords = isChecked(control(IDC_IMPORT_KEEP_GOOD));
  leave(IDOK);
}

void ImportDialog::zoomChanged() {
  const HWND list = control(IDC_IMPORT_PREVIEW);
  for (WPARAM column = 0;
       SendMessageW(list, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(HandheldToMonitor(kColumnWidth), 0));
       ++column) {
  }
}

void ImportDialog::leave(int result) {
  panel_.release(window());
  close(result);
}
