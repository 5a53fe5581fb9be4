#include "tests/ui/program/states/page_actions.h"

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "app/window/program_state.h"
#include "records/parts/arranger.h"
#include "records/parts/record_history.h"
#include "resources/command_ids.h"
#include "tests/ui/program/states/page_window.h"
#include "tests/ui/support/dialog_script.h"

void openMissing(Pages& pages) {
  PromptAnswers::setFile(L"C:\\nowhere\\missing.cdb");
  pagewindow::command(ID_DATABASE_OPEN);
  if (pages.model.leaveRecord()) pages.model.closeOnly();
}

void cancelOpen(Pages&) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_OPEN);
}

void cancelNew(Pages& pages) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_NEW);
  if (pages.model.leaveRecord()) pages.model.closeOnly();
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
  pagewindow::command(kCommand);
  pages.model.turnFormPage(kStep);
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

void newRecord(Pages& pages) {
  pages.newRecord();
}

void type(Pages& pages) {
  pages.type();
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

template <WORD kKey>
void nameKey(Pages& pages) {
  pages.pressKeyInNames(kKey);
}

void panel(Pages& pages) {
  pages.pressPanelButton();
}

template <int kCommand>
void cancel() {
  const DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); });
  pagewindow::command(kCommand);
  dispatchPosted();
}

/// A dialog that leaves the panel alone, or is not of the form's page.
template <int kCommand>
void cancels(Pages&) {
  cancel<kCommand>();
}

template <int kCommand, bool kPanelUp>
void cancelsWithPanel(Pages& pages) {
  cancel<kCommand>();
  pages.model.holdPanel(kPanelUp);
}

template <int kCommand, void (PageModel::*kOpen)()>
void cancelsOf(Pages& pages) {
  cancel<kCommand>();
  (pages.model.*kOpen)();
}

/// The dialog of the search through all tables, before which what is typed is stored as before that of Find.
void everywhereCancelled(Pages& pages) {
  cancel<ID_FIND_EVERYWHERE>();
  if (pages.model.page() == kForm) {
    pages.model.openFind();
  } else if (pages.model.isOpen()) {
    pages.model.holdPanel(true);
  }
}

/// As Find it has what is typed stored before, and it lowers the panel for good, as the dialogs of files do.
/// Without a database there may be no copies of any.
void goBackCancelled(Pages& pages) {
  if (!pages.model.isOpen()) return;
  cancel<ID_GO_BACK_TO>();
  if (pages.model.page() != kForm || pages.model.leaveRecord()) pages.model.movePanel(false);
}

/// Of the first column, which is offered on the List page alone. Tells the figures and changes nothing.
void calculate(Pages& pages) {
  const bool isOffered = pages.model.page() == kList && pages.model.isRecordsetOpen();
  PromptAnswers::takeBoxes();
  theDocument->arranger().calculate(0);
  const std::vector<std::wstring> told = PromptAnswers::takeBoxes();
  const std::wstring count = L"\nRecords: " + std::to_wstring(pages.model.recordCount()) + L"\n";
  pages.expect(isOffered ? told.size() == 1 && told[0].find(count) != std::wstring::npos : told.empty(),
               "the figures of a column");
}

/// What was done here can't be told from the pages alone: only that nothing is undone where nothing was done.
void undoOfNothing(Pages&) {
  if (!theDocument->history().hasStep(HistoryWay::back)) pagewindow::command(ID_HISTORY_UNDO);
}

template <const wchar_t* kText>
void finds(Pages& pages) {
  pages.find(kText);
}

template <int kNumber>
void number(Pages& pages) {
  {
    const DialogScript script([](HWND dialog) { pagewindow::enterNumber(dialog, kNumber); });
    pagewindow::command(ID_RECORD_NUMBER);
    dispatchPosted();
  }
  pages.model.confirmNumber(kNumber);
}

/// What the user is asked about he discards. Only a record that the store refuses brings a question.
template <void (*kAction)(Pages&)>
void discarding(Pages& pages) {
  if (!pages.model.isRefused()) return;
  pages.setDiscards(true);
  kAction(pages);
  pages.setDiscards(false);
}

/// What would end the program does nothing where the store refuses the record.
template <UINT kMessage, WPARAM kParameter>
void staysOpen(Pages& pages) {
  if (pages.model.isRefused()) SendMessageW(mainWindow, kMessage, kParameter, 0);
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

void makeNew(Pages& pages) {
  pages.openNew();
}

void cancelDelete(Pages&) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_DELETE);
}

template <int kAnswer>
void deleteOther(Pages& pages) {
  const std::filesystem::path other = pages.file(L"other.cdb");
  constexpr BOOL kAlsoExisting = FALSE;
  CopyFileW(pages.file(L"bare.cdb.kept").c_str(), other.c_str(), kAlsoExisting);
  PromptAnswers::setFile(other.wstring());
  PromptAnswers::setBox(kAnswer);
  pagewindow::command(ID_DATABASE_DELETE);
  PromptAnswers::setBox(IDOK);
  pages.expect(std::filesystem::exists(other) == (kAnswer != IDYES), "the file that was to be deleted");
}

void deleteOpenOne(Pages& pages) {
  if (!pages.model.isOpen()) return;
  const std::wstring open = theDocument->databasePath().text();
  PromptAnswers::setFile(open);
  PromptAnswers::setBox(IDYES);
  pagewindow::command(ID_DATABASE_DELETE);
  PromptAnswers::setBox(IDOK);
  pages.expect(std::filesystem::exists(open), "the open file was deleted");
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

constexpr wchar_t kFirstMatch[] = L"r1";
constexpr wchar_t kMiddleMatch[] = L"r3";
constexpr wchar_t kNoMatch[] = L"zebra";

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
    {"New", newRecord},
    {"Delete", deleteRecord},
    {"type", type},
    {"Edit", edit},
    {"Next page", turns<ID_PAGE_NEXT, 1>},
    {"Previous page", turns<ID_PAGE_PREVIOUS, -1>},
    {"Next column", slides<ID_COLUMN_NEXT, 1>},
    {"Previous column", slides<ID_COLUMN_PREVIOUS, -1>},
    {"row 0", row<0>},
    {"row 2", row<2>},
    {"arrow up", arrow<VK_UP, -1>},
    {"arrow down", arrow<VK_DOWN, 1>},
    {"Home", nameKey<VK_HOME>},
    {"End", nameKey<VK_END>},
    {"arrow right", nameKey<VK_RIGHT>},
    {"arrow left", nameKey<VK_LEFT>},
    {"panel", panel},
    {"Close DB", does<ID_DATABASE_CLOSE, &PageModel::close>},
    {"Open DB", openOther},
    {"Open DB of a missing file", openMissing},
    {"Open DB cancelled", cancelOpen},
    {"New DB cancelled", cancelNew},
    {"New DB", makeNew},
    {"Delete DB cancelled", cancelDelete},
    {"Delete DB, No", deleteOther<IDNO>},
    {"Delete DB", deleteOther<IDYES>},
    {"Delete DB of the open one", deleteOpenOne},
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
    {"Find cancelled", cancelsOf<ID_FIND, &PageModel::openFind>},
    {"Find the first", finds<kFirstMatch>},
    {"Find the third", finds<kMiddleMatch>},
    {"Find nothing", finds<kNoMatch>},
    {"Number cancelled", cancelsOf<ID_RECORD_NUMBER, &PageModel::openNumber>},
    {"Number 1", number<1>},
    {"Number 2", number<2>},
    {"DB Info", cancels<ID_DATABASE_INFO>},
    {"About", cancelsWithPanel<ID_ABOUT, false>},
    {"Options cancelled", cancels<ID_OPTIONS>},
    {"Change password cancelled", cancelsWithPanel<ID_PASSWORD_CHANGE, true>},
    {"Find in all tables cancelled", everywhereCancelled},
    {"Go back to, cancelled", goBackCancelled},
    {"Calculate", calculate},
    {"Filter cancelled", cancels<ID_FILTER_ALL>},
    {"Undo of nothing", undoOfNothing},
    {"Redo of nothing", stray<ID_HISTORY_REDO>},
    {"Look-up without a reference", stray<ID_LOOK_UP>},
    {"Go to its record without a reference", stray<ID_GO_TO_LOOKED_UP>},
    {"Back from nowhere", stray<ID_GO_BACK>},
    {"Show all that are shown", stray<ID_ARRANGEMENT_CLEAR>},
    {"Copy", stray<ID_COPY>},
    {"Large Icons", stray<ID_VIEW_LARGE_ICONS>},
    {"Small Icons", stray<ID_VIEW_SMALL_ICONS>},
    {"View List", stray<ID_VIEW_LIST>},
    {"Report", stray<ID_VIEW_REPORT>},
    {"Fit columns", stray<ID_COLUMNS_FIT>},
    {"scroll range", stray<ID_FORM_SCROLL_RANGE>},
    {"Enter", stray<ID_ENTER>},
    {"closed, refused", staysOpen<WM_CLOSE, 0>},
    {"Exit, refused", staysOpen<WM_COMMAND, ID_EXIT>},
    {"Previous, discarding", discarding<does<ID_RECORD_PREVIOUS, &PageModel::movePrevious>>},
    {"Last, discarding", discarding<does<ID_RECORD_LAST, &PageModel::moveLast>>},
    {"New, discarding", discarding<newRecord>},
    {"Find nothing, discarding", discarding<finds<kNoMatch>>},
    {"Number 1, discarding", discarding<number<1>>},
    {"tab List, discarding", discarding<tab<kList>>},
    {"Close DB, discarding", discarding<does<ID_DATABASE_CLOSE, &PageModel::close>>},
    {"Open DB, discarding", discarding<openOther>},
    {"New DB, discarding", discarding<makeNew>},
};

}  // namespace

std::span<const Action> pageActions() {
  return kActions;
}
