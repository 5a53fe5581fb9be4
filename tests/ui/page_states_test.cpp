// The pages in every state: each command, tap, key and panel change from each page in each state, and random
// walks of them, beside a model of what has to be there.
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <utility>

#include "app/program_state.h"
#include "base/options.h"
#include "base/settings_store.h"
#include "gmock/gmock.h"
#include "resources/command_ids.h"
#include "tests/automation/sqlite_file.h"
#include "tests/shell/shell_settings.h"
#include "tests/support/paths.h"
#include "tests/ui/dialog_script.h"
#include "tests/ui/page_model.h"
#include "tests/ui/page_window.h"
#include "tests/ui/program_thread.h"
#include "tests/ui/test_database.h"

namespace {

constexpr wchar_t kBig[] = L"Select * from [Wide] where f0 > 3";
constexpr wchar_t kReadOnly[] = L"Select * from [Wide] union all select * from [Wide] where 0";
constexpr wchar_t kWrong[] = L"Select nothing";

std::string narrow(const std::wstring& text) {
  return std::filesystem::path(text).string();
}

ModelTable table(std::wstring name, int fieldCount, int recordCount) {
  ModelTable result{std::move(name), {}, {}};
  for (int field = 0; field < fieldCount; ++field) result.fields.push_back(L"f" + std::to_wstring(field));
  for (int record = 1; record <= recordCount; ++record) {
    const std::wstring number = std::to_wstring(record);
    result.records.push_back(
        std::make_shared<ModelRecord>(ModelRecord{number, fieldCount > 1 ? L"r" + number : L""}));
  }
  return result;
}

void write(const ModelDatabase& database) {
  makeDatabase(database.path, {});
  automationtest::SqliteFile file(database.path);
  for (const ModelTable& each : database.tables) {
    const bool queries = each.name == kModelQueryTable;
    std::string create = "CREATE TABLE [" + narrow(each.name) + "] (";
    for (std::size_t field = 0; field < each.fields.size(); ++field) {
      create += (field == 0 ? "" : ", ") + narrow(each.fields[field]) +
                (field == 1 || queries ? " Text" : " Integer");
    }
    file.run(create + ")");
    for (const auto& record : each.records) {
      std::string insert = "INSERT INTO [" + narrow(each.name) + "] VALUES ('" + narrow(record->first) + "'";
      if (each.fields.size() > 1) insert += ", '" + narrow(record->second) + "'";
      for (std::size_t field = 2; field < each.fields.size(); ++field) insert += ", 7";
      file.run(insert + ")");
    }
  }
}

/// The program with the model beside it. All of it is used on the program's thread.
class Pages {
 public:
  explicit Pages(const std::filesystem::path& folder) : folder_(folder) {
    ModelTable queries{kModelQueryTable, {L"QueryName", L"SQL"}, {}};
    for (const auto& [name, sql] : {std::pair{L"big", kBig}, {L"read only", kReadOnly}, {L"wrong", kWrong}})
      queries.records.push_back(std::make_shared<ModelRecord>(ModelRecord{name, sql}));
    kept_.push_back(
        {folder / L"many.cdb", {table(L"Wide", 11, 6), table(L"One", 2, 1), table(L"Empty", 3, 0), queries}});
    kept_.push_back({folder / L"plain.cdb", {table(L"Solo", 5, 3)}});
    kept_.push_back({folder / L"bare.cdb", {}});
    for (const ModelDatabase& database : kept_) {
      write(database);
      std::filesystem::copy_file(database.path, database.path + L".kept");
    }
  }

  static constexpr std::size_t kMany = 0;
  static constexpr std::size_t kPlain = 1;
  static constexpr std::size_t kBare = 2;

  PageModel model{{{kBig, L"Wide", 3, false}, {kReadOnly, L"Wide", -1, true}, {kWrong, L"", -1, false}}};
  std::string trail;
  std::string failure;

  /// Opens a database as it was made at first, unless it is open and so already.
  void open(std::size_t which) {
    const ModelDatabase& database = kept_[which];
    if (model.isOpen() && used_.holdsTheSameAs(database)) return;
    pagewindow::command(ID_DATABASE_CLOSE);
    model.close();
    constexpr BOOL kAlsoExisting = FALSE;
    CopyFileW((database.path + L".kept").c_str(), database.path.c_str(), kAlsoExisting);
    used_ = database.copy();
    openAgain();
  }
  void openAgain() {
    PromptAnswers::setFile(used_.path);
    pagewindow::command(ID_DATABASE_OPEN);
    model.open(&used_);
  }
  void showPage(int page) {
    pagewindow::clickTab(page);
    model.tapTab(page);
  }
  void tapName(int index) {
    if (index < 0 || index >= model.nameCount()) return;
    pagewindow::tapName(index);
    model.tapName(index);
  }
  void useTable(int index) {
    showPage(kTables);
    tapName(index);
  }
  void useQuery(int index) {
    showPage(kQueries);
    tapName(index);
  }
  void type() {
    if (!model.canType()) return;
    pagewindow::typeIntoSecondEditor(L'x');
    model.type(L'x');
  }
  void newRecord() {
    if (model.isRecordsetOpen() && !model.canChangeRecords()) return;
    pagewindow::command(ID_RECORD_NEW);
    model.newRecord();
  }

  /// Whether the last comparison has seen something else than the one before.
  bool hasChanged() const { return changed_; }
  /// Compares. What the form makes of a panel that moved is its own to say, and then has to be so.
  bool agrees() {
    dispatchPosted();
    const bool panelUp = pagewindow::isPanelUp();
    if (panelUp != panelUp_ || !model.isFormPageKnown()) model.formShows(pagewindow::formPage());
    panelUp_ = panelUp;
    const Facts expected = model.facts(panelUp);
    const Facts shown = pagewindow::facts();
    changed_ = shown != shown_;
    shown_ = shown;
    if (expected == shown) return true;
    std::ostringstream text;
    text << trail << ":";
    for (const auto& [name, value] : expected) {
      const auto found = shown.find(name);
      if (found == shown.end() || found->second != value)
        text << "\n  " << name << ": " << (found == shown.end() ? "missing" : narrow(found->second))
             << " instead of " << narrow(value);
    }
    for (const auto& [name, value] : shown) {
      if (!expected.contains(name))
        text << "\n  " << name << ": " << narrow(value) << ", which should not be";
    }
    failure = text.str();
    return false;
  }

 private:
  std::filesystem::path folder_;
  std::vector<ModelDatabase> kept_;
  ModelDatabase used_;
  bool panelUp_ = false;
  Facts shown_;
  bool changed_ = true;
};

// ---- What the user does. Each does it to the window and to the model.

struct Action {
  const char* name;
  void (*go)(Pages& pages);
};

template <int kPage>
void tab(Pages& pages) {
  pages.showPage(kPage);
}

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

void panel(Pages& pages) {
  pagewindow::pressPanelButton();
  pages.model.panelMoved();
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

void openMissing(Pages& pages) {
  PromptAnswers::setFile(L"C:\\nowhere\\missing.cdb");
  pagewindow::command(ID_DATABASE_OPEN);
  pages.model.closeOnly();
}

void cancelOpen(Pages&) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_OPEN);
}

void cancelNew(Pages& pages) {
  PromptAnswers::setFile(std::nullopt);
  pagewindow::command(ID_DATABASE_NEW);
  pages.model.closeOnly();
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

// ---- The states in which everything is done

struct State {
  const char* name;
  std::size_t database;
  void (*prepare)(Pages& pages);
};

constexpr int kWideTable = 0;
constexpr int kOneTable = 1;
constexpr int kEmptyTable = 2;

template <int kTable, int kPage>
void tableOn(Pages& pages) {
  pages.useTable(kTable);
  pages.showPage(kPage);
}

template <int kQuery, int kPage>
void queryOn(Pages& pages) {
  pages.useQuery(kQuery);
  pages.showPage(kPage);
}

template <int kPage>
void closedOn(Pages& pages) {
  pagewindow::command(ID_DATABASE_CLOSE);
  pages.model.close();
  if (kPage != kNone) pages.showPage(kPage);
}

template <int kPage>
void panelOn(Pages& pages) {
  pages.useTable(kWideTable);
  pages.showPage(kPage);
  if (!pagewindow::isPanelUp()) panel(pages);
}

void newOnForm(Pages& pages) {
  tableOn<kOneTable, kForm>(pages);
  pages.newRecord();
}

void newOnEmptyForm(Pages& pages) {
  tableOn<kEmptyTable, kForm>(pages);
  pages.newRecord();
}

void changedOnForm(Pages& pages) {
  tableOn<kWideTable, kForm>(pages);
  pages.type();
}

constexpr State kStates[] = {
    {"no database", Pages::kPlain, closedOn<kNone>},
    {"no database, Tables", Pages::kPlain, closedOn<kTables>},
    {"no database, Form", Pages::kPlain, closedOn<kForm>},
    {"no database, List", Pages::kPlain, closedOn<kList>},
    {"no database, Queries", Pages::kPlain, closedOn<kQueries>},
    {"empty database, Tables", Pages::kBare, tab<kTables>},
    {"empty database, Form", Pages::kBare, tab<kForm>},
    {"empty database, List", Pages::kBare, tab<kList>},
    {"empty database, Queries", Pages::kBare, tab<kQueries>},
    {"no queries, Tables", Pages::kPlain, tab<kTables>},
    {"no queries, Form", Pages::kPlain, tab<kForm>},
    {"no queries, List", Pages::kPlain, tab<kList>},
    {"no queries, Queries", Pages::kPlain, tab<kQueries>},
    {"empty table, Tables", Pages::kMany, tableOn<kEmptyTable, kTables>},
    {"empty table, Form", Pages::kMany, tableOn<kEmptyTable, kForm>},
    {"empty table, List", Pages::kMany, tableOn<kEmptyTable, kList>},
    {"empty table, Queries", Pages::kMany, tableOn<kEmptyTable, kQueries>},
    {"one record, Form", Pages::kMany, tableOn<kOneTable, kForm>},
    {"one record, List", Pages::kMany, tableOn<kOneTable, kList>},
    {"many records, Tables", Pages::kMany, tableOn<kWideTable, kTables>},
    {"many records, Form", Pages::kMany, tableOn<kWideTable, kForm>},
    {"many records, List", Pages::kMany, tableOn<kWideTable, kList>},
    {"many records, Queries", Pages::kMany, tableOn<kWideTable, kQueries>},
    {"a query, Tables", Pages::kMany, queryOn<0, kTables>},
    {"a query, Form", Pages::kMany, queryOn<0, kForm>},
    {"a query, List", Pages::kMany, queryOn<0, kList>},
    {"a query, Queries", Pages::kMany, queryOn<0, kQueries>},
    {"read-only records, Form", Pages::kMany, queryOn<1, kForm>},
    {"read-only records, List", Pages::kMany, queryOn<1, kList>},
    {"a query that does not run, Tables", Pages::kMany, queryOn<2, kTables>},
    {"a query that does not run, Form", Pages::kMany, queryOn<2, kForm>},
    {"a query that does not run, List", Pages::kMany, queryOn<2, kList>},
    {"a new record, Form", Pages::kMany, newOnForm},
    {"a first record, Form", Pages::kMany, newOnEmptyForm},
    {"a changed editor, Form", Pages::kMany, changedOnForm},
    {"the panel up, Tables", Pages::kMany, panelOn<kTables>},
    {"the panel up, Form", Pages::kMany, panelOn<kForm>},
    {"the panel up, List", Pages::kMany, panelOn<kList>},
    {"the panel up, Queries", Pages::kMany, panelOn<kQueries>},
};

class PageStatesTest : public testing::Test {
 protected:
  void SetUp() override {
    setPanelPolicy(kPanelAlways);
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    SettingsStore::writeDword(SettingsStore::kOptions, L"WarningOnDeletion", 0);
    pages_.emplace(folder_.path());
    program_ = std::make_unique<ProgramThread>(L"\"" + (folder_.path() / L"plain.cdb").wstring() + L"\"");
    const HWND main = program_->waitForPage();
    ASSERT_NE(main, nullptr);
    caller_.emplace(main);
    answers_.emplace();
    caller_->call([this] { pages_->open(Pages::kPlain); });
  }
  void TearDown() override {
    answers_.reset();
    caller_.reset();
    program_.reset();
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  /// A number that the environment may give, for longer runs.
  static int fromEnvironment(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text ? std::atoi(text) : otherwise;
  }

  static std::string told(const std::vector<std::string>& failures) {
    std::string text;
    for (const std::string& failure : failures) text += failure + "\n";
    return text;
  }

  /// Whether the window agrees with the model in this state.
  static bool prepare(Pages& pages, const State& state);
  /// The same after one action more.
  static bool act(Pages& pages, const Action& action);
  static void putPanelDown(Pages& pages) {
    if (pagewindow::isPanelUp()) panel(pages);
  }
  Pages& pages() { return *pages_; }
  void onProgram(const std::function<void()>& what) { caller_->call(what); }

 private:
  testsupport::TempFolder folder_;
  std::optional<Pages> pages_;
  std::unique_ptr<ProgramThread> program_;
  std::optional<ThreadCaller> caller_;
  std::optional<PromptAnswers> answers_;
};

bool PageStatesTest::prepare(Pages& pages, const State& state) {
  putPanelDown(pages);
  pages.open(state.database);
  pages.trail = state.name;
  state.prepare(pages);
  return pages.agrees();
}

bool PageStatesTest::act(Pages& pages, const Action& action) {
  pages.trail += std::string(", ") + action.name;
  action.go(pages);
  return pages.agrees();
}

TEST_F(PageStatesTest, EveryActionInEveryState) {
  // Which of the pairs a run takes: all of them, or every n-th. Of a prime number every action and every
  // state comes by.
  const int share = fromEnvironment("QUIVANE_PAGE_STATES", 1);
  std::vector<std::string> failures;
  onProgram([&] {
    int number = 0;
    for (const State& state : kStates) {
      bool prepared = false;
      for (const Action& action : kActions) {
        if (++number % share != 0) continue;
        // What nothing has changed is the same state still.
        const bool agrees = (prepared || prepare(pages(), state)) && act(pages(), action);
        if (!agrees) failures.push_back(pages().failure);
        prepared = agrees && !pages().hasChanged();
        pages().trail = state.name;
        PromptAnswers::takeBoxes();
      }
    }
  });
  EXPECT_TRUE(failures.empty()) << told(failures);
}

TEST_F(PageStatesTest, RandomWalks) {
  const int walkCount = fromEnvironment("QUIVANE_PAGE_WALKS", 8);
  std::mt19937 random(static_cast<std::mt19937::result_type>(fromEnvironment("QUIVANE_PAGE_SEED", 20260131)));
  std::vector<std::string> failures;
  onProgram([&] {
    for (int walk = 0; walk < walkCount; ++walk) {
      const State& state = kStates[random() % std::size(kStates)];
      bool agrees = prepare(pages(), state);
      for (int step = 0; agrees && step < 25; ++step)
        agrees = act(pages(), kActions[random() % std::size(kActions)]);
      if (!agrees) failures.push_back(pages().failure);
      PromptAnswers::takeBoxes();
    }
  });
  EXPECT_TRUE(failures.empty()) << told(failures);
}

TEST_F(PageStatesTest, AFailedOpeningAndACancelledNewLeaveThePageAndItsTab) {
  std::string failure;
  onProgram([&] {
    for (const int page : {kTables, kForm, kList, kQueries}) {
      for (void (*const fails)(Pages&) : {openMissing, cancelNew}) {
        pages().open(Pages::kMany);
        pages().showPage(page);
        pages().trail = "page " + std::to_string(page);
        fails(pages());
        if (!pages().agrees()) failure += pages().failure;
      }
    }
  });
  EXPECT_EQ(failure, "");
}

}  // namespace
