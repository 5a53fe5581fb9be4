#include "dialogs/query/query_dialog.h"

#include <commctrl.h>

#include <string>
#include <utility>

#include "data/database/sql_names.h"
#include "dialogs/controls/combo_box.h"
#include "dialogs/query/query_dialog_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/dialog/dialog_place.h"
#include "views/shared/child_control.h"
#include "views/shared/paragraph_breaks.h"
#include "views/shared/shown_text.h"
#include "views/shared/sip_state.h"

namespace {

constexpr ControlGrowth kGrowth[] = {
    {.id = IDC_QUERY_NAME, .wider = true},         {.id = IDC_QUERY_TABLES, .wider = true},
    {.id = IDC_QUERY_INSERT_TABLE, .right = true}, {.id = IDC_QUERY_FIELDS, .wider = true},
    {.id = IDC_QUERY_INSERT_FIELD, .right = true},
};

constexpr int kSqlLeft = 2;
constexpr int kSqlTop = 120;
constexpr int kSqlWidthLess = 6;
constexpr int kSqlHeight = 140;
constexpr int kSqlHeightAbovePanel = 60;

constexpr wchar_t kNotASelect[] = L"Queries must begin with a SELECT keyword!";

bool beginsWithSelect(const String& sql) {
  constexpr std::wstring_view kKeyword = L"SELECT";
  String begin;
  if (!sql.left(kKeyword.size(), begin)) throw std::bad_alloc();
  begin.toUpperCase();
  return begin.text() == kKeyword;
}

/// A dialog selects all of an edit that is reached by the Tab key. Of this one the next key, or a name
/// inserted from the lists, would then replace the whole statement.
LRESULT CALLBACK sqlProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                              DWORD_PTR) noexcept {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(edit, sqlProcedure, id);
  const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
  return message == WM_GETDLGCODE ? result & ~LRESULT{DLGC_HASSETSEL} : result;
}

/// Shows a text of any length, the caret behind it.
void showText(HWND edit, const wchar_t* text) {
  SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
  SetWindowTextW(edit, text);
  const int end = GetWindowTextLengthW(edit);
  SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(end), end);
  SendMessageW(edit, EM_SCROLLCARET, 0, 0);
}

}  // namespace

QueryDialog::QueryDialog(QueryDialogHost host) : host_(std::move(host)), growth_(kGrowth) {}

int QueryDialog::run(HWND owner) {
  return runTemplate(IDD_QUERY, owner);
}

bool QueryDialog::command(WORD id, WORD notification) {
  static constexpr DialogCommand<QueryDialog> kCommands[] = {
      {IDOK, BN_CLICKED, &QueryDialog::confirm},
      {IDCANCEL, BN_CLICKED, &QueryDialog::cancel},
      {IDC_QUERY_CHECK, BN_CLICKED, &QueryDialog::check},
      {IDC_QUERY_HELP, BN_CLICKED, &QueryDialog::help},
      {IDC_QUERY_INSERT_TABLE, BN_CLICKED, &QueryDialog::insertTable},
      {IDC_QUERY_INSERT_FIELD, BN_CLICKED, &QueryDialog::insertField},
      {IDC_QUERY_TABLES, CBN_SELCHANGE, &QueryDialog::fillFields},
  };
  return answerCommand<QueryDialog>(*this, kCommands, id, notification);
}

void QueryDialog::opened() {
  panel_.lower(window());
  growth_.begin(window());
  fillScreen(window(), SHIDIF_SIPDOWN);
  SetWindowSubclass(control(IDC_QUERY_SQL), sqlProcedure, 0, 0);
  HandheldNameControl(control(IDC_QUERY_SQL), 0, L"SQL text");
  HandheldNameControl(control(IDC_QUERY_INSERT_TABLE), 0, L"Insert table");
  HandheldNameControl(control(IDC_QUERY_INSERT_FIELD), 0, L"Insert field");
  showName();
  showSql();
  layOutSql();
  ShowWindow(control(IDC_QUERY_FILTER), SW_HIDE);
  SetFocus(control(IDC_QUERY_NAME));
  combobox::fill(control(IDC_QUERY_TABLES), host_.tableNames);
  fillFields();
}

/// A text that can't be shown as it is can't be edited, and stays what it is.
void QueryDialog::showName() {
  const ShownText shown = textForLine(name.text());
  isNameShown_ = shown.isExact;
  showText(control(IDC_QUERY_NAME), shown.text.c_str());
  SendMessageW(control(IDC_QUERY_NAME), EM_SETREADONLY, !isNameShown_, 0);
}

void QueryDialog::showSql() {
  const ShownText shown = textForLines(sql.text());
  isSqlShown_ = shown.isExact;
  showText(control(IDC_QUERY_SQL), shown.text.c_str());
  SendMessageW(control(IDC_QUERY_SQL), EM_SETREADONLY, !isSqlShown_, 0);
  hasOwnBreaks_ = !shown.hasSoftBreaks && shown.text.find(kSoftBreak) != std::wstring::npos;
  if (!hasOwnBreaks_) breakLongParagraphs(control(IDC_QUERY_SQL));
}

String QueryDialog::writtenName() const {
  return isNameShown_ ? windowText(control(IDC_QUERY_NAME)) : name;
}

String QueryDialog::writtenSql() const {
  if (!isSqlShown_) return sql;
  const String text = windowText(control(IDC_QUERY_SQL));
  return hasOwnBreaks_ ? text : String(withoutSoftBreaks(text.text()).c_str());
}

void QueryDialog::layOutSql() {
  refreshSipState();
  const int height = sipState.height != 0 ? kSqlHeightAbovePanel : kSqlHeight;
  HandheldMoveWindow(control(IDC_QUERY_SQL), kSqlLeft, kSqlTop,
                     HandheldGetSystemMetrics(SM_CXSCREEN) - kSqlWidthLess,
                     height + static_cast<int>(screenExcess().cy), TRUE);
}

void QueryDialog::sized() {
  growth_.layOut();
  layOutSql();
}

void QueryDialog::fillFields() {
  NameList names;
  if (combobox::selection(control(IDC_QUERY_TABLES)) != combobox::kNoSelection) {
    host_.listFieldNames((L"Select * from " + selectedName(selectedTable())).c_str(), names);
  }
  combobox::clear(control(IDC_QUERY_FIELDS));
  fieldNames_.swap(names);
  combobox::fill(control(IDC_QUERY_FIELDS), fieldNames_);
}

String QueryDialog::selectedTable() const {
  return combobox::selectedName(control(IDC_QUERY_TABLES), host_.tableNames);
}

void QueryDialog::insertTable() {
  const String table = selectedTable();
  insert(table.isEmpty() ? L"" : (std::wstring(L"[") + table.text() + L"]").c_str());
}

void QueryDialog::insertField() {
  insert(combobox::selectedName(control(IDC_QUERY_FIELDS), fieldNames_).text());
}

/// The empty text inserts nothing, and spares what is selected.
void QueryDialog::insert(const wchar_t* text) const {
  const HWND edit = control(IDC_QUERY_SQL);
  if (*text != L'\0' && isSqlShown_) SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
  SetFocus(edit);
}

void QueryDialog::check() {
  const String text = writtenSql();
  if (!beginsWithSelect(text)) {
    tell(kNotASelect);
  } else if (returnsRecords(text)) {
    tell(L"Query is OK");
  }
}

/// Where it does not, the user has been told.
bool QueryDialog::returnsRecords(const String& text) const {
  String reason;
  if (host_.returnsRecords(text, reason)) return true;
  if (!reason.isEmpty()) tell(reason.text());
  tell(L"Query does not return records");
  return false;
}

// NOLINTNEXTLINE(readability-make-member-function-const): a handler of the table
void QueryDialog::help() {
  host_.showHelp(kHelpTopic);
}

void QueryDialog::confirm() {
  if (GetWindowTextLengthW(control(IDC_QUERY_NAME)) == 0) {
    tell(L"Please enter a query name!");
    SetFocus(control(IDC_QUERY_NAME));
    return;
  }
  name = writtenName();
  String text = writtenSql();
  if (!beginsWithSelect(text)) {
    tell(kNotASelect);
  } else if (returnsRecords(text)) {
    sql = std::move(text);
    leave(IDOK);
  }
}

void QueryDialog::cancel() {
  leave(IDCANCEL);
}

void QueryDialog::leave(int result) {
  panel_.release(window());
  close(result);
}
