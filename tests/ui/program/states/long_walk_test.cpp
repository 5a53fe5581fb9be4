// A long walk through the program, the same every time: thousands of commands and edits in random order,
// beside a model of what the files have to hold in the end.
#include <windows.h>

#include <commctrl.h>

#include <array>
#include <memory>
#include <optional>

#include "base/settings/settings_store.h"
#include "gmock/gmock.h"
#include "owners/live_resources.h"
#include "resources/command_ids.h"
#include "tests/shell/shell_settings.h"
#include "tests/support/paths.h"
#include "tests/ui/program/states/walk_model.h"
#include "tests/ui/remote/program_thread.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/form_ids.h"
#include "views/form/popup_ids.h"
#include "views/form/text_field_editor.h"
#include "views/shared/list_view.h"

namespace {

constexpr int kTables = 0;
constexpr int kForm = 1;
constexpr int kList = 2;
constexpr int kQueries = 3;
constexpr int kPositionBox = 1012;

using Counts = std::array<long, kResourceKindCount>;

Counts liveCounts() {
  Counts counts{};
  for (std::size_t kind = 0; kind < counts.size(); ++kind)
    counts[kind] = LiveResources::count(static_cast<ResourceKind>(kind));
  return counts;
}

/// A click with the left button that is over when this returns.
void click(HWND window, POINT point) {
  const LPARAM where = MAKELPARAM(point.x, point.y);
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, where);
  SendMessageW(window, WM_LBUTTONUP, 0, where);
}

POINT middle(const RECT& place) {
  return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

HWND childOfClass(HWND parent, const wchar_t* className) {
  struct Search {
    std::wstring wanted;
    HWND found = nullptr;
  } search{className};
  EnumChildWindows(
      parent,
      [](HWND child, LPARAM state) -> BOOL {
        auto& looking = *reinterpret_cast<Search*>(state);
        if (classOf(child) == looking.wanted) looking.found = child;
        return looking.found == nullptr ? TRUE : FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

class LongWalkTest : public testing::Test {
 protected:
  void SetUp() override {
    setPanelPolicy(kPanelAlways);
    databases_ = makeWalkDatabases(folder_.path(), random_);
    database_ = &databases_.front();
  }
  void TearDown() override {
    program_.reset();
    forgetShellSettings();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  int below(int count) { return ::below(random_, count); }
  void step();
  void start(bool restoresSession);
  void end();
  void visitEveryPage();

  std::vector<WalkDatabase> databases_;
  int editCount_ = 0;

 private:
  HWND tab() const { return remote::tabControl(main_); }
  HWND page() const { return remote::shownPage(main_); }
  int pageIndex() const { return remote::selectedTab(tab()); }
  void command(int id) { SendMessageW(main_, WM_COMMAND, static_cast<WPARAM>(id), 0); }
  HWND control(int id) const { return remote::control(main_, id); }
  HWND waitForDialog() const;
  void closeDialog(HWND dialog, int id) const;

  void switchPage(int index);
  void switchSomewhere() { switchPage(below(4)); }
  void chooseName();
  void changeStyle() { command(ID_VIEW_LARGE_ICONS + below(4)); }
  void moveSomewhere();
  void turnFormPage() { command(below(2) == 0 ? ID_PAGE_NEXT : ID_PAGE_PREVIOUS); }
  void chooseRow();
  void pressKeyInGrid();
  void changeColumns();
  void checkRow();
  void editField();
  void changePanel();
  void changeZoom();
  void giveStrayCommand();
  void restart();
  void closeDatabase();

  const WalkTable* shownTable() const;
  WalkTable* editedTable() const { return const_cast<WalkTable*>(shownTable()); }
  void checkForm();
  void type(HWND editor, const WalkValue& value);
  void typeIntoZoom(HWND editor, const WalkValue& value);
  void typeWrongCharacter(HWND editor);
  bool chooseDate(HWND editor, const WalkValue& value);

  testsupport::TempFolder folder_;
  Random random_{20260131};
  WalkDatabase* database_ = nullptr;
  std::unique_ptr<ProgramThread> program_;
  HWND main_ = nullptr;
  std::optional<std::wstring> chosen_;  // the table that was tapped, until its records are looked at
};

// ---- The program

void LongWalkTest::start(bool restoresSession) {
  SettingsStore::writeDword(SettingsStore::kOptions, L"OpenLastTableOnStartup", restoresSession ? 1 : 0);
  SettingsStore::writeDword(SettingsStore::kOptions, L"RebarsAtTop", static_cast<std::uint32_t>(below(2)));
  chosen_.reset();
  program_ = std::make_unique<ProgramThread>(restoresSession ? std::wstring()
                                                             : L"\"" + database_->path.wstring() + L"\"");
  main_ = program_->waitForPage();
  ASSERT_NE(main_, nullptr);
  ASSERT_NE(page(), nullptr);
}

void LongWalkTest::end() {
  const ProgramThread::End result =
      below(3) == 0 ? program_->end(WM_COMMAND, ID_EXIT) : program_->end(WM_CLOSE, 0);
  program_.reset();
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.windowCount, 0);
  EXPECT_EQ(remote::mainWindow(GetCurrentProcessId()), nullptr);
}

void LongWalkTest::restart() {
  end();
  const bool restoresSession = below(3) == 0;
  if (!restoresSession) database_ = &databases_[static_cast<std::size_t>(below(2))];
  start(restoresSession);
}

void LongWalkTest::closeDatabase() {
  command(ID_DATABASE_CLOSE);
  EXPECT_EQ(page(), nullptr);
  for (int i = 0; i < 10; ++i) giveStrayCommand();
  EXPECT_EQ(control(kFirstTextEditorId), nullptr);
  end();
  start(false);
}

void LongWalkTest::visitEveryPage() {
  for (const int index : {kForm, kList, kQueries, kTables}) {
    switchPage(index);
    RedrawWindow(main_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  }
}

HWND LongWalkTest::waitForDialog() const {
  HWND dialog = nullptr;
  remote::waitUntil([&] { return (dialog = remote::messageBox(GetCurrentProcessId())) != nullptr; });
  return dialog;
}

void LongWalkTest::closeDialog(HWND dialog, int id) const {
  PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0);
  EXPECT_TRUE(remote::waitUntil([=] { return IsWindow(dialog) == FALSE; }));
}

// ---- Pages

void LongWalkTest::switchPage(int index) {
  RECT place{};
  SendMessageW(tab(), TCM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  const bool stays = pageIndex() == index;
  click(tab(), middle(place));
  ASSERT_EQ(pageIndex(), index);
  if (index != kForm) return;
  if (!stays) checkForm();
}

void LongWalkTest::chooseName() {
  const HWND list = page();
  if ((pageIndex() != kTables && pageIndex() != kQueries) || !list) return;
  const int count = listview::itemCount(list);
  if (count == 0) return;
  const int item = below(count);
  const bool wasSelected = remote::selectedItem(list) == item;
  ASSERT_TRUE(remote::selectItem(list, item));
  ASSERT_EQ(remote::selectedItem(list), item);
  wchar_t name[100] = L"";
  listview::itemText(list, item, name, ARRAYSIZE(name));
  chosen_.reset();
  if (pageIndex() == kTables && !wasSelected) chosen_ = name;
}

// ---- Records

const WalkTable* LongWalkTest::shownTable() const {
  const HWND label = control(kLabelId);
  const std::wstring text = label ? textOf(label) : std::wstring();
  return text.empty() || !isdigit(text.size() > 1 ? text[1] : 0) ? nullptr : database_->tableOf(text[0]);
}

void LongWalkTest::checkForm() {
  const WalkTable* const table = shownTable();
  if (chosen_ && database_->tableOf(L'p') && *chosen_ != L"QuivaneQueries" && *chosen_ != L"Empty") {
    ASSERT_NE(table, nullptr) << "of a table that was tapped";
    EXPECT_EQ(table->name, *chosen_);
  }
  if (!table) return;
  const std::wstring id = textOf(control(kFirstTextEditorId));
  ASSERT_FALSE(id.empty());
  const auto record = table->records.find(std::stoi(id));
  ASSERT_NE(record, table->records.end()) << "record " << std::stoi(id);
  for (std::size_t field = 0; field < table->kinds.size(); ++field) {
    const HWND editor = control(table->controlOf(field));
    ASSERT_NE(editor, nullptr);
    const std::wstring shown = table->kinds[field] != FieldKind::flag
                                   ? textOf(editor)
                                   : (SendMessageW(editor, BM_GETCHECK, 0, 0) == BST_CHECKED ? L"-1" : L"0");
    ASSERT_EQ(shown, record->second[field].shown) << "field " << field << " of record " << std::stoi(id);
  }
}

void LongWalkTest::moveSomewhere() {
  constexpr int kMoves[] = {ID_RECORD_FIRST, ID_RECORD_LAST, ID_RECORD_NEXT,
                            ID_RECORD_NEXT,  ID_RECORD_NEXT, ID_RECORD_PREVIOUS};
  command(kMoves[below(ARRAYSIZE(kMoves))]);
  if (pageIndex() == kForm) checkForm();
}

void LongWalkTest::chooseRow() {
  const HWND grid = page();
  if (pageIndex() != kList || !grid || listview::itemCount(grid) == 0) return;
  const int row = below(listview::itemCount(grid));
  remote::ensureVisible(grid, row);
  ASSERT_TRUE(remote::selectItem(grid, row));
  ASSERT_EQ(remote::selectedItem(grid), row);
  checkRow();
}

void LongWalkTest::pressKeyInGrid() {
  const HWND grid = page();
  if (pageIndex() != kList || !grid) return;
  constexpr WORD kKeys[] = {VK_UP, VK_DOWN, VK_DOWN, VK_PRIOR, VK_NEXT, VK_HOME, VK_END};
  SendMessageW(grid, WM_KEYDOWN, kKeys[below(ARRAYSIZE(kKeys))], 1);
  checkRow();
}

void LongWalkTest::changeColumns() {
  constexpr int kChanges[] = {ID_COLUMN_NEXT, ID_COLUMN_NEXT, ID_COLUMN_PREVIOUS, ID_COLUMNS_FIT};
  command(kChanges[below(ARRAYSIZE(kChanges))]);
  checkRow();
}

/// The position box names the selected row, whose cells show its record.
void LongWalkTest::checkRow() {
  const HWND grid = page();
  if (pageIndex() != kList || !grid || listview::itemCount(grid) == 0) return;
  const int row = remote::selectedItem(grid);
  ASSERT_GE(row, 0);
  const std::wstring position = textOf(control(kPositionBox));
  EXPECT_EQ(std::stoi(position), row + 1);
  const std::wstring title = remote::columnTitle(grid, 0);
  const WalkTable* const table =
      title.size() > 1 && title[1] == L'0' ? database_->tableOf(title[0]) : nullptr;
  if (!table) return;
  const auto record = table->records.find(std::stoi(remote::itemText(grid, row)));
  ASSERT_NE(record, table->records.end());
  for (int column = 1; column < remote::columnCount(grid); ++column) {
    const auto field = static_cast<std::size_t>(std::stoi(remote::columnTitle(grid, column).substr(1)));
    std::wstring expected = record->second[field].shown;
    if (table->kinds[field] == FieldKind::flag) expected = expected == L"-1" ? L"True" : L"False";
    const std::wstring shown = remote::itemText(grid, row, column);
    // The control cuts what is long.
    ASSERT_EQ(shown, expected.substr(0, std::max<std::size_t>(shown.size(), 100))) << "field " << field;
  }
}

// ---- Edits

void LongWalkTest::editField() {
  WalkTable* const table = editedTable();
  if (pageIndex() != kForm || !page() || !table) return;
  std::vector<std::size_t> fields;
  for (std::size_t field = 1; field < table->kinds.size(); ++field) {
    if (IsWindowVisible(control(table->controlOf(field)))) fields.push_back(field);
  }
  if (fields.empty()) return;
  const std::size_t field = fields[static_cast<std::size_t>(below(static_cast<int>(fields.size())))];
  const HWND editor = control(table->controlOf(field));
  const int id = std::stoi(textOf(control(kFirstTextEditorId)));
  WalkValue& stored = table->records.at(id)[field];
  WalkValue value = randomValue(random_, table->kinds[field]);
  if (table->kinds[field] == FieldKind::flag) {
    value = stored.quoted == "1" ? WalkValue{L"0", "0"} : WalkValue{L"-1", "1"};
    click(editor, {5, 5});
    ASSERT_EQ(SendMessageW(editor, BM_GETCHECK, 0, 0) == BST_CHECKED, value.quoted == "1");
  } else if (table->kinds[field] == FieldKind::date) {
    ASSERT_TRUE(chooseDate(editor, value));
  } else if (below(6) == 0) {
    typeIntoZoom(editor, value);
  } else {
    type(editor, value);
    const bool isNumber = table->kinds[field] == FieldKind::small || table->kinds[field] == FieldKind::whole;
    if (isNumber && below(4) == 0) typeWrongCharacter(editor);
  }
  ASSERT_TRUE(table->kinds[field] == FieldKind::flag || textOf(editor) == value.shown);
  stored = value;
  ++editCount_;
}

void LongWalkTest::type(HWND editor, const WalkValue& value) {
  if (remote::focus(main_) != editor) click(editor, {2, 2});
  ASSERT_EQ(remote::focus(main_), editor);
  SendMessageW(editor, EM_SETSEL, 0, -1);
  SendMessageW(editor, WM_CHAR, L'\b', 1);
  for (const wchar_t character : value.shown) SendMessageW(editor, WM_CHAR, character, 1);
}

void LongWalkTest::typeIntoZoom(HWND editor, const WalkValue& value) {
  PostMessageW(editor, kZoomMessage, 0, 0);
  const HWND dialog = waitForDialog();
  ASSERT_NE(dialog, nullptr);
  SetDlgItemTextW(dialog, IDC_ZOOM_TEXT, value.shown.c_str());
  closeDialog(dialog, IDOK);
  ASSERT_TRUE(remote::waitUntil([&] { return textOf(editor) == value.shown; }));
}

void LongWalkTest::typeWrongCharacter(HWND editor) {
  PostMessageW(editor, WM_CHAR, L'x', 1);
  const HWND box = waitForDialog();
  ASSERT_NE(box, nullptr);
  EXPECT_NE(remote::messageBoxText(box).find(L"Only numbers are allowed"), std::wstring::npos);
  closeDialog(box, IDOK);
}

bool LongWalkTest::chooseDate(HWND editor, const WalkValue& value) {
  PostMessageW(editor, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  PostMessageW(editor, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  const HWND dialog = waitForDialog();
  const HWND calendar = dialog ? remote::control(dialog, IDC_CALENDAR) : nullptr;
  if (!calendar) return false;
  if (value.shown == L"None") {
    closeDialog(dialog, IDC_NO_DATE);
  } else {
    SYSTEMTIME date{};
    if (std::swscanf(value.shown.c_str(), L"%hu/%hu/%hu", &date.wMonth, &date.wDay, &date.wYear) != 3)
      return false;
    SendMessageW(calendar, MCM_SETCURSEL, 0, reinterpret_cast<LPARAM>(&date));
    closeDialog(dialog, IDOK);
  }
  return remote::waitUntil([&] { return textOf(editor) == value.shown; });
}

// ---- Around the pages

void LongWalkTest::changePanel() {
  const HWND button = childOfClass(main_, L"Pocket Shell Panel Button");
  ASSERT_NE(button, nullptr);
  RECT before{};
  RECT after{};
  GetWindowRect(tab(), &before);
  SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, 0);
  GetWindowRect(tab(), &after);
  EXPECT_NE(before.bottom, after.bottom);
}

void LongWalkTest::changeZoom() {
  struct Entry {
    WPARAM command;
    int zoom;
  };
  constexpr Entry kEntries[] = {{kZoom100, 100}, {kZoom100, 100}, {kZoom150, 150}, {kZoom200, 200}};
  const Entry& entry = kEntries[below(ARRAYSIZE(kEntries))];
  SendMessageW(main_, WM_SYSCOMMAND, entry.command, 0);
  RECT place{};
  GetWindowRect(tab(), &place);
  EXPECT_EQ(place.right - place.left, 240 * entry.zoom / 100);
}

/// Whatever page is shown: what it does not have changes nothing.
void LongWalkTest::giveStrayCommand() {
  constexpr int kCommands[] = {ID_RECORD_FIRST,     ID_RECORD_NEXT, ID_RECORD_PREVIOUS,   ID_PAGE_NEXT,
                               ID_PAGE_PREVIOUS,    ID_COLUMN_NEXT, ID_COLUMN_PREVIOUS,   ID_COLUMNS_FIT,
                               ID_VIEW_LARGE_ICONS, ID_COPY,        ID_FORM_SCROLL_RANGE, ID_ENTER,
                               ID_CUT_KEY,          ID_NEXT_PANE,   ID_PREVIOUS_PANE};
  command(kCommands[below(ARRAYSIZE(kCommands))]);
}

void LongWalkTest::step() {
  struct Row {
    int weight;
    void (LongWalkTest::*go)();
  };
  using Walk = LongWalkTest;
  constexpr Row kSteps[] = {
      {12, &Walk::switchSomewhere}, {10, &Walk::chooseName},   {2, &Walk::changeStyle},
      {24, &Walk::moveSomewhere},   {8, &Walk::turnFormPage},  {8, &Walk::chooseRow},
      {8, &Walk::pressKeyInGrid},   {4, &Walk::changeColumns}, {36, &Walk::editField},
      {3, &Walk::changePanel},      {2, &Walk::changeZoom},    {3, &Walk::giveStrayCommand},
      {1, &Walk::restart},          {1, &Walk::closeDatabase},
  };
  int all = 0;
  for (const Row& row : kSteps) all += row.weight;
  int at = below(all);
  for (const Row& row : kSteps) {
    at -= row.weight;
    if (at < 0) return (this->*row.go)();
  }
}

TEST_F(LongWalkTest, TheDatabaseOfTheCommandLineStaysWhenAnotherMessageComesBeforeTheRestore) {
  ASSERT_NO_FATAL_FAILURE(start(false));
  end();
  SettingsStore::writeDword(SettingsStore::kOptions, L"OpenLastTableOnStartup", 1);
  ProgramThread program(L"\"" + databases_[1].path.wstring() + L"\"", WM_APP);
  const HWND main = program.waitForPage();
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(remote::selectedTab(remote::tabControl(main)), kTables);
  const HWND page = remote::shownPage(main);
  ASSERT_TRUE(remote::isList(page));
  EXPECT_THAT(remote::itemTexts(page), testing::ElementsAre(databases_[1].tables.front().name));
}

TEST_F(LongWalkTest, LeavesWhatWasTypedAndNothingElse) {
  // A first run makes what lives as long as the process: fonts, brushes.
  ASSERT_NO_FATAL_FAILURE(start(false));
  ASSERT_NO_FATAL_FAILURE(visitEveryPage());
  end();
  const Counts before = liveCounts();

  ASSERT_NO_FATAL_FAILURE(start(false));
  constexpr int kStepCount = 2'000;
  for (int i = 0; i < kStepCount; ++i) {
    SCOPED_TRACE("step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(step());
    ASSERT_FALSE(HasFailure());
  }
  end();
  EXPECT_GT(editCount_, kStepCount / 20) << "the walk has to come by the form often";
  EXPECT_THAT(liveCounts(), testing::ElementsAreArray(before));
  for (const WalkDatabase& database : databases_) expectStored(database);
}

}  // namespace
