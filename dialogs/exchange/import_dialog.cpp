#include "dialogs/exchange/import_dialog.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <string>
#include <vector>

#include "base/showable_text.h"
#include "dialogs/controls/choices.h"
#include "dialogs/controls/list_box.h"
#include "dialogs/exchange/import_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/check_box.h"
#include "views/shared/child_control.h"
#include "views/shared/list_view.h"

namespace {

constexpr std::uint32_t kMostRecords = 20;
constexpr std::size_t kMostColumns = 50;
constexpr int kColumnWidth = 75;
constexpr wchar_t kLeftOut[] = L"(left out)";

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_IMPORT_TABLE, .wider = true},
    {.id = IDC_IMPORT_COLUMNS, .wider = true, .halfHigher = true},
    {.id = IDC_IMPORT_TYPE_LABEL, .halfDown = true},
    {.id = IDC_IMPORT_TYPE, .wider = true, .halfDown = true},
    {.id = IDC_IMPORT_PREVIEW_LABEL, .halfDown = true},
    {.id = IDC_IMPORT_DOUBT, .wider = true, .halfDown = true},
    {.id = IDC_IMPORT_PREVIEW, .wider = true, .higher = true, .halfDown = true},
    {.id = IDC_IMPORT_MORE, .down = true},
    {.id = IDCANCEL, .right = true, .down = true},
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

std::wstring columnText(const ImportColumn& column) {
  std::wstring text = column.source.text();
  if (std::wcscmp(column.source.text(), column.target.text()) != 0 && !column.target.isEmpty()) {
    text += std::wstring(L" \u2192 ") + column.target.text();
  }
  // It parts the columns of the list.
  std::replace(text.begin(), text.end(), L'\t', L' ');
  text += L'\t';
  text += column.target.isEmpty() ? kLeftOut : column.type.text();
  return showableText(text);
}

/// What the user is to look at twice.
const wchar_t* doubtText(const ImportFile& file) {
  if (file.isEncodingInDoubt()) {
    return file.isHeaderInDoubt() ? L"Check letters and first line!" : L"Check the letters!";
  }
  return file.isHeaderInDoubt() ? L"Check the first line!" : L"";
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
      {IDC_IMPORT_TABLE, CBN_EDITCHANGE, &ImportDialog::tableTyped},
      {IDC_IMPORT_TABLE, CBN_KILLFOCUS, &ImportDialog::focusLeavesTable},
      {IDC_IMPORT_TABLE_LEFT, BN_CLICKED, &ImportDialog::tableLeft},
      {IDC_IMPORT_ENCODING, CBN_SELCHANGE, &ImportDialog::encodingChosen},
      {IDC_IMPORT_DELIMITER, CBN_SELCHANGE, &ImportDialog::delimiterChosen},
      {IDC_IMPORT_HEADER, BN_CLICKED, &ImportDialog::headerChosen},
      {IDC_IMPORT_REPLACE, BN_CLICKED, &ImportDialog::replaceChosen},
      {IDC_IMPORT_COLUMNS, LBN_SELCHANGE, &ImportDialog::showType},
      {IDC_IMPORT_TYPE, CBN_SELCHANGE, &ImportDialog::typeChosen},
      {IDC_IMPORT_MORE, BN_CLICKED, &ImportDialog::moreChosen},
  };
  return answerCommand<ImportDialog>(*this, kCommands, id, notification);
}

void ImportDialog::opened() {
  panel_.lower(window());
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  fillLists();
  checkbox::check(control(IDC_IMPORT_KEEP_GOOD), keepsGoodRecords);
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
  nameTable(file_.table());
  fillChoices(control(IDC_IMPORT_ENCODING), kEncodings);
  fillChoices(control(IDC_IMPORT_DELIMITER), kDelimiters);
  listview::setExtendedStyle(control(IDC_IMPORT_PREVIEW), LVS_EX_FULLROWSELECT);
}

/// What the controls show holds afterwards. False, and the user was told why, when the file can't go into the
/// table so.
bool ImportDialog::examine() {
  isExamined_ = tryToExamine();
  showFound();
  return isExamined_;
}

/// What was found before still holds where the choice is taken back.
void ImportDialog::examineOr(const std::function<void()>& takeBack) {
  const bool wasExamined = isExamined_;
  isExamined_ = tryToExamine();
  if (!isExamined_) {
    takeBack();
    isExamined_ = wasExamined;
  }
  showFound();
}

/// For the table that the control names.
bool ImportDialog::tryToExamine() {
  const String table = namedTable();
  if (table.isEmpty()) return false;
  file_.setTable(table);
  const Outcome examined = file_.examine();
  if (examined) {
    isFoundForNewTable_ = file_.isNewTable();
  } else if (!examined.reason().isEmpty()) {
    tell(examined.reason().text());
  }
  return static_cast<bool>(examined);
}

void ImportDialog::showFound() {
  const bool isSeparated = std::wcscmp(file_.format().text(), L"json") != 0;
  selectChoice(control(IDC_IMPORT_ENCODING), kEncodings, file_.encoding());
  selectChoice(control(IDC_IMPORT_DELIMITER), kDelimiters, file_.delimiter());
  checkbox::check(control(IDC_IMPORT_HEADER), file_.hasHeader());
  checkbox::check(control(IDC_IMPORT_REPLACE), file_.replaces());
  EnableWindow(control(IDC_IMPORT_DELIMITER), isSeparated);
  EnableWindow(control(IDC_IMPORT_HEADER), isSeparated);
  SetWindowTextW(control(IDC_IMPORT_DOUBT), isExamined_ ? doubtText(file_) : L"");
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
  listview::deleteAllColumns(list);
  if (!isExamined_) return;
  const std::vector<ImportColumn> columns = file_.columns();
  const std::size_t count = std::min(columns.size(), kMostColumns);
  for (std::size_t i = 0; i < count; ++i) {
    listview::insertColumn(list, static_cast<int>(i), showableText(columns[i].source.text()).c_str(),
                           HandheldToMonitor(kColumnWidth));
  }
  std::vector<std::vector<String>> records;
  if (const Outcome read = file_.preview(kMostRecords, records); !read) {
    tell(read.reason().text());
    return;
  }
  for (std::size_t row = 0; row < records.size(); ++row) {
    const auto index = static_cast<int>(row);
    listview::insertItem(list, index, L"", 0);
    for (std::size_t i = 0; i < std::min(count, records[row].size()); ++i) {
      listview::setItemText(list, index, static_cast<int>(i), records[row][i].text());
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
  combobox::selectText(combo, column.target.isEmpty() ? String(kLeftOut) : column.type);
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

void ImportDialog::nameTable(const String& name) {
  givenTable_ = name;
  SetWindowTextW(control(IDC_IMPORT_TABLE), showableText(name.text()).c_str());
}

/// What the control shows of a name is not always all of it.
String ImportDialog::namedTable() const {
  String shown = windowText(control(IDC_IMPORT_TABLE));
  return showableText(givenTable_.text()) == shown.text() ? givenTable_ : shown;
}

bool ImportDialog::isTableTaken() const {
  return isExamined_ && std::wcscmp(namedTable().text(), file_.table().text()) == 0;
}

/// Unless that was done. False as examine().
bool ImportDialog::takeTable() {
  return isTableTaken() || examine();
}

/// What was found for the former table means nothing for the one that is being typed.
void ImportDialog::tableTyped() {
  if (!isExamined_ || isTableTaken()) return;
  isExamined_ = false;
  showFound();
}

/// Looking through the file and telling what is wrong with it have to wait until the focus has come to its
/// place.
void ImportDialog::focusLeavesTable() {
  PostMessageW(window(), WM_COMMAND, MAKEWPARAM(IDC_IMPORT_TABLE_LEFT, BN_CLICKED), 0);
}

/// Nothing happens on the way to the buttons that end the dialog, and to another program.
void ImportDialog::tableLeft() {
  const HWND focus = GetFocus();
  const HWND table = control(IDC_IMPORT_TABLE);
  const bool isLeft = focus && IsChild(window(), focus) && focus != table && !IsChild(table, focus);
  if (isLeft && focus != control(IDOK) && focus != control(IDCANCEL)) takeTable();
}

void ImportDialog::tableChosen() {
  // The edit has it only after this.
  nameTable(combobox::selectedName(control(IDC_IMPORT_TABLE), tables_));
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
  file_.setHeader(checkbox::isChecked(control(IDC_IMPORT_HEADER)));
  examine();
}

void ImportDialog::replaceChosen() {
  const bool former = file_.replaces();
  file_.setReplaces(checkbox::isChecked(control(IDC_IMPORT_REPLACE)));
  examineOr([this, former] { file_.setReplaces(former); });
}

void ImportDialog::moreChosen() {
  const ImportDetails former = details();
  ImportMoreDialog more;
  more.details = former;
  if (more.run(window()) != IDOK) return;
  setDetails(more.details);
  examineOr([this, &former] { setDetails(former); });
}

ImportDetails ImportDialog::details() const {
  ImportDetails found;
  found.format = file_.format();
  found.nullText = file_.nullText();
  if (!isExamined_ || file_.isNewTable()) return found;
  const std::vector<ImportColumn> columns = file_.columns();
  for (std::uint32_t index = 0; index < columns.size(); ++index) {
    if (columns[index].target.isEmpty()) continue;
    found.columns.push_back({index, columns[index].target, file_.isKey(index)});
  }
  return found;
}

void ImportDialog::setDetails(const ImportDetails& wanted) {
  file_.setFormat(wanted.format);
  file_.setNullText(wanted.nullText);
  for (const ImportDetails::KeyColumn& column : wanted.columns) file_.setKey(column.index, column.isKey);
}

void ImportDialog::confirm() {
  if (windowText(control(IDC_IMPORT_TABLE)).isEmpty()) {
    tell(L"Please enter a table name!");
    SetFocus(control(IDC_IMPORT_TABLE));
    return;
  }
  const bool isSeen = isTableTaken();
  const bool wasForNewTable = isFoundForNewTable_;
  if (!takeTable()) return;
  // The user sees how the columns go into a table that is there before it is changed.
  if (!isSeen && !(wasForNewTable && file_.isNewTable())) return;
  keepsGoodRecords = checkbox::isChecked(control(IDC_IMPORT_KEEP_GOOD));
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
