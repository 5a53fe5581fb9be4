#include "tests/ui/page_actions.h"

#include <cstddef>
#include <string>

#include "app/window/program_state.h"
#include "tests/ui/dialog_script.h"

void openMissing(Pages& pages) {
  PromptAnswers::setFile(L"C:\\nowhere\\missing.cdb");
  pagewindow::command(ID_DATABASE_OPEN);
  pages.model.closeOnly();
}

void cancelNew(Pages& pages) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_NEW);
  pages.model.closeOnly();
}

void panel(Pages& pages) {
  pagewindow::pressPanelButton();
  pages.model.panelMoved();
}

namespace {

template <int kIndex>
void tap(Pages& pages) {
  pages.tapName(kIndex);
}

void tapLast(Pages& pages) {
  pages.tapName(pages.model.nameCount() - 1);
}

void tapSelected(Pages& pages) {
  pages.tapName(pages.model.selectedName());
}

/// A command that changes nothing of what is compared.
template <int kCommand>
void stray(Pages&) {
  pagewindow::command(kCommand);
}

template <int kCommand, void (PageModel::*kMove)()>
void does(Pages& pages) {
  pagewindow::command(kCommand);
  (pages.model.*kMove)();
}

template <int kCommand, int kStep>
void turns(Pages& pages) {
  const bool panelUp = pagewindow::isPanelUp();
  pagewindow::command(kCommand);
  pages.model.turnFormPage(kStep, panelUp);
}

template <int kCommand, int kStep>
void slides(Pages& pages) {
  pagewindow::command(kCommand);
  pages.model.slideColumns(kStep);
}

void edit(Pages& pages) {
  pagewindow::command(ID_RECORD_EDIT);
  pages.model.showPage(kForm);
}

/// Asks nothing where deletions need no warning.
void deleteRecord(Pages& pages) {
  if (pages.model.isRecordsetOpen() && !pages.model.canChangeRecords()) return;
  pagewindow::command(ID_RECORD_DELETE);
  pages.model.deleteRecord();
}

template <int kRow>
void row(Pages& pages) {
  if (pages.model.page() != kList || pages.model.recordCount() <= kRow) return;
  pagewindow::tapRow(kRow);
  pages.model.tapRow(kRow);
}

template <WORD kKey, int kStep>
void arrow(Pages& pages) {
  if (pages.model.page() != kList || pages.model.recordCount() == 0) return;
  pagewindow::pressKeyInGrid(kKey);
  pages.model.arrowKey(kStep);
}

/// A dialog that is left by Cancel may have had the panel up meanwhile.
template <int kCommand>
void cancels(Pages& pages) {
  const bool before = pagewindow::isPanelUp();
  {
    const DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); });
    pagewindow::command(kCommand);
    dispatchPosted();
  }
  if (!before) pages.model.panelMoved();
}

void cancelFind(Pages& pages) {
  cancels<ID_FIND>(pages);
  pages.model.openFind();
}

template <int kCommand, int kAnswer, void (PageModel::*kDone)()>
void answers(Pages& pages) {
  PromptAnswers::setBox(kAnswer);
  pagewindow::command(kCommand);
  PromptAnswers::setBox(IDOK);
  if constexpr (kAnswer == IDYES) (pages.model.*kDone)();
}

void openOther(Pages& pages) {
  pages.openAgain();
}

void cancelOpen(Pages&) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_OPEN);
}

void cancelDelete(Pages&) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_DELETE);
}

void createTable(Pages& pages) {
  if (!pages.model.isOpen() || pages.model.page() != kTables) return;
  static int number = 0;
  const std::wstring name = L"Made" + std::to_wstring(++number);
  theDocument->createTable(name.c_str(), L"a Integer");
  pages.model.createTable(name);
}

/// What the query dialog does before it confirms, or is left.
void checkStatement(Pages& pages) {
  if (!pages.model.isOpen() || pages.model.page() != kQueries) return;
  String reason;
  theDocument->returnsRecords(kBig, reason);
  pages.model.checkStatement();
}

void addQuery(Pages& pages) {
  if (!pages.model.isOpen() || pages.model.page() != kQueries) return;
  static int number = 0;
  const std::wstring name = L"added" + std::to_wstring(++number);
  String reason;
  theDocument->returnsRecords(kBig, reason);
  theDocument->addQuery({name.c_str(), kBig});
  pages.model.addQuery(name, kBig);
}

constexpr Action kActions[] = {
    {"tab Tables", tab<kTables>},
    {"tab Form", tab<kForm>},
    {"tab List", tab<kList>},
    {"tab Queries", tab<kQueries>},
    {"tap 0", tap<0>},
    {"tap 1", tap<1>},
    {"tap 2", tap<2>},
    {"tap last", tapLast},
    {"tap selected", tapSelected},
    {"First", does<ID_RECORD_FIRST, &PageModel::moveFirst>},
    {"Last", does<ID_RECORD_LAST, &PageModel::moveLast>},
    {"Next", does<ID_RECORD_NEXT, &PageModel::moveNext>},
    {"Previous", does<ID_RECORD_PREVIOUS, &PageModel::movePrevious>},
    {"New", [](Pages& pages) { pages.newRecord(); }},
    {"Delete", deleteRecord},
    {"type", [](Pages& pages) { pages.type(); }},
    {"Edit", edit},
    {"Next page", turns<ID_PAGE_NEXT, 1>},
    {"Previous page", turns<ID_PAGE_PREVIOUS, -1>},
    {"Next column", slides<ID_COLUMN_NEXT, 1>},
    {"Previous column", slides<ID_COLUMN_PREVIOUS, -1>},
    {"row 0", row<0>},
    {"row 2", row<2>},
    {"arrow up", arrow<VK_UP, -1>},
    {"arrow down", arrow<VK_DOWN, 1>},
    {"panel", panel},
    {"Close DB", does<ID_DATABASE_CLOSE, &PageModel::close>},
    {"Open DB", openOther},
    {"Open DB of a missing file", openMissing},
    {"Open DB cancelled", cancelOpen},
    {"New DB cancelled", cancelNew},
    {"Delete DB cancelled", cancelDelete},
    {"Delete table", answers<ID_TABLE_DELETE, IDYES, &PageModel::deleteTable>},
    {"Delete table, No", answers<ID_TABLE_DELETE, IDNO, &PageModel::deleteTable>},
    {"Delete query", answers<ID_QUERY_DELETE, IDYES, &PageModel::deleteQuery>},
    {"Delete query, No", answers<ID_QUERY_DELETE, IDNO, &PageModel::deleteQuery>},
    {"new table", createTable},
    {"new query", addQuery},
    {"query tried out", checkStatement},
    {"New table cancelled", cancels<ID_TABLE_NEW>},
    {"New query cancelled", cancels<ID_QUERY_NEW>},
    {"Edit query cancelled", cancels<ID_QUERY_EDIT>},
    {"Find cancelled", cancelFind},
    {"Number cancelled", cancels<ID_RECORD_NUMBER>},
    {"DB Info", cancels<ID_DATABASE_INFO>},
    {"About", cancels<ID_ABOUT>},
    {"Options cancelled", cancels<ID_OPTIONS>},
    {"Change password cancelled", cancels<ID_PASSWORD_CHANGE>},
    {"Copy", stray<ID_COPY>},
    {"Large Icons", stray<ID_VIEW_LARGE_ICONS>},
    {"Small Icons", stray<ID_VIEW_SMALL_ICONS>},
    {"View List", stray<ID_VIEW_LIST>},
    {"Report", stray<ID_VIEW_REPORT>},
    {"Fit columns", stray<ID_COLUMNS_FIT>},
    {"scroll range", stray<ID_FORM_SCROLL_RANGE>},
    {"Enter", stray<ID_ENTER>},
};

}  // namespace

std::span<const Action> pageActions() {
  return kActions;
}
