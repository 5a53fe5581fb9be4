// Stories of the order of the records and of which of them are shown.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "base/settings/options.h"
#include "dialogs/query/query_dialog_ids.h"
#include "dialogs/small/ask_text_ids.h"
#include "dialogs/small/database_info_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"

using testing::ElementsAre;

namespace {

/// The entries of a column's menu, by their places.
enum Entry {
  kAscending,
  kDescending,
  kThenAscending,
  kThenDescending,
  kOnlyValue = 5,
  kContaining,
  kEmpty,
  kNotEmpty,
  kAnyContaining,
  kShowAll = 11,
  kKeep,
  kCalculate = 14
};
constexpr const char* kEntryKeys = "ADTH-OCENY-SK-L";
constexpr int kEntryCount = 12;
constexpr int kSeparatorCount = 3;

constexpr int kPosition = 1012;

class OrderStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    makeDatabase(path(),
                 {L"CREATE TABLE 'Books' (Title VarChar(40), Author Text, Pages Integer)",
                  L"INSERT INTO Books VALUES ('ulysses', 'Joyce', 700), ('Dubliners', 'joyce', 200), "
                  L"('100% Wool', 'O''Neill', 90), ('\x00C4rger', NULL, 300), ('\x00E4pfel', '', 310)"});
  }

  HWND showGrid(User& user) {
    user.showPage(OpenedDatabase::kListPage);
    return remote::recordGrid(user.main());
  }

  static POINT middleOfTitle(HWND grid, int column) {
    POINT place = {75 * column + 37, 8};
    ClientToScreen(reinterpret_cast<HWND>(SendMessageW(grid, LVM_GETHEADER, 0, 0)), &place);
    return place;
  }
  void awaitPopup() const {
    ASSERT_TRUE(remote::waitUntil([this] { return remote::popups(program().processId()).size() == 1; }));
  }
  void awaitNoPopup() const {
    ASSERT_TRUE(remote::waitUntil([this] { return remote::popups(program().processId()).empty(); }));
  }

  /// With the mouse by a right click on the column's title, with the keyboard by the desktop menu.
  void choose(User& user, int column, Entry entry) {
    const HWND grid = remote::recordGrid(user.main());
    if (user.hasMouse()) {
      userinput::rightClick(middleOfTitle(grid, column));
    } else {
      userinput::press('M', VK_MENU);
      awaitPopup();
      userinput::press('O');
      ASSERT_TRUE(remote::waitUntil([this] { return remote::popups(program().processId()).size() == 2; }));
      pressForNextMenu('C');
      for (int i = 0; i <= column; ++i) userinput::press(VK_DOWN);
      pressForNextMenu(VK_RETURN);
    }
    awaitPopup();
    chooseEntry(user, entry);
  }
  /// A key that closes the menus that are open, after which another one opens.
  void pressForNextMenu(WORD key) {
    const std::vector<HWND> former = remote::popups(program().processId());
    userinput::press(key);
    ASSERT_TRUE(remote::waitUntil([&] {
      const std::vector<HWND> open = remote::popups(program().processId());
      return open.size() == 1 && std::find(former.begin(), former.end(), open.front()) == former.end();
    }));
  }
  void chooseEntry(const User& user, Entry entry) {
    if (user.hasMouse()) {
      MenuStep step;
      step.index = entry;
      step.itemCount = kEntryCount;
      step.separatorCount = kSeparatorCount;
      step.separatorsAbove = (entry > 4 ? 1 : 0) + (entry > 10 ? 1 : 0) + (entry > 13 ? 1 : 0);
      userinput::click(itemMiddle(remote::popups(program().processId()).front(), step));
    } else {
      userinput::press(static_cast<WORD>(kEntryKeys[entry]));
    }
    awaitNoPopup();
  }
  static void enterText(User& user, const std::wstring& text) {
    const HWND dialog = user.dialog(L"Containing");
    user.fill(dialog, IDC_ASKED_TEXT, text);
    user.accept(dialog);
  }

  static std::wstring position(const User& user) {
    return remote::text(remote::control(user.main(), kPosition));
  }
  static void awaitTitles(const User& user, const std::vector<std::wstring>& titles) {
    const HWND grid = remote::recordGrid(user.main());
    ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(grid) == titles; }))
        << testing::PrintToString(remote::itemTexts(grid));
  }
  /// HDF_SORTUP and HDF_SORTDOWN of a column's title.
  static int mark(HWND grid, int column) {
    const auto header = reinterpret_cast<HWND>(SendMessageW(grid, LVM_GETHEADER, 0, 0));
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    remote::Memory memory(header, sizeof(item));
    memory.write(0, &item, sizeof(item));
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column),
                 reinterpret_cast<LPARAM>(memory.address()));
    memory.read(0, &item, sizeof(item));
    return item.fmt & (HDF_SORTUP | HDF_SORTDOWN);
  }
};

TEST_P(OrderStory, TheRecordsAreOrderedByTwoColumns) {
  User& user = start();
  const HWND grid = showGrid(user);
  user.pickItem(2);
  choose(user, 1, kAscending);
  awaitTitles(user, {L"\x00C4rger", L"\x00E4pfel", L"ulysses", L"Dubliners", L"100% Wool"});
  EXPECT_EQ(position(user), L"    5 / 5") << "the record that was chosen is so still";
  EXPECT_EQ(remote::selectedItem(grid), 4);
  EXPECT_EQ(mark(grid, 1), HDF_SORTUP);
  choose(user, 2, kThenAscending);
  awaitTitles(user, {L"\x00C4rger", L"\x00E4pfel", L"Dubliners", L"ulysses", L"100% Wool"});
  EXPECT_EQ(mark(grid, 2), HDF_SORTUP);
  choose(user, 2, kThenDescending);
  awaitTitles(user, {L"\x00C4rger", L"\x00E4pfel", L"ulysses", L"Dubliners", L"100% Wool"});
  EXPECT_EQ(mark(grid, 2), HDF_SORTDOWN);
  choose(user, 0, kDescending);
  awaitTitles(user, {L"\x00C4rger", L"\x00E4pfel", L"ulysses", L"Dubliners", L"100% Wool"});
  EXPECT_EQ(mark(grid, 0), HDF_SORTDOWN);
  EXPECT_EQ(mark(grid, 1), 0);
  choose(user, 0, kShowAll);
  awaitTitles(user, {L"ulysses", L"Dubliners", L"100% Wool", L"\x00C4rger", L"\x00E4pfel"});
  EXPECT_EQ(mark(grid, 0), 0);
  end();
}

TEST_P(OrderStory, OnlySomeRecordsAreShown) {
  User& user = start();
  const HWND grid = showGrid(user);
  user.pickItem(1);
  choose(user, 1, kOnlyValue);
  awaitTitles(user, {L"ulysses", L"Dubliners"});
  EXPECT_EQ(position(user), L"    2 / 2");
  EXPECT_EQ(remote::columnTitle(grid, 1), L"Author *");
  choose(user, 2, kContaining);
  enterText(user, L"7");
  awaitTitles(user, {L"ulysses"});
  choose(user, 0, kShowAll);
  choose(user, 1, kEmpty);
  awaitTitles(user, {L"\x00C4rger", L"\x00E4pfel"});
  choose(user, 1, kNotEmpty);
  awaitTitles(user, {L"ulysses", L"Dubliners", L"100% Wool"});
  choose(user, 0, kAnyContaining);
  enterText(user, L"%");
  awaitTitles(user, {L"100% Wool"});
  choose(user, 0, kAnyContaining);
  enterText(user, L"o'n");
  awaitTitles(user, {L"100% Wool"});
  choose(user, 0, kShowAll);
  EXPECT_EQ(remote::columnTitle(grid, 1), L"Author");
  choose(user, 0, kContaining);
  enterText(user, L"\x00E4");
  awaitTitles(user, {L"\x00C4rger", L"\x00E4pfel"});
  end();
}

TEST_P(OrderStory, TheStatementIsShownAndTheFormAndFindGoByIt) {
  User& user = start();
  showGrid(user);
  choose(user, 2, kContaining);
  enterText(user, L"00");
  awaitTitles(user, {L"ulysses", L"Dubliners", L"\x00C4rger"});
  choose(user, 0, kDescending);
  awaitTitles(user, {L"\x00C4rger", L"ulysses", L"Dubliners"});
  user.choose(ID_DATABASE_INFO);
  const HWND info = user.dialog(L"Database Information");
  EXPECT_EQ(
      remote::text(remote::control(info, IDC_INFO_SQL)),
      L"Select * from [Books] WHERE quivane_contains('00', [Pages]) ORDER BY quivane_fold([Title]) DESC");
  user.accept(info);
  user.choose(ID_RECORD_EDIT);
  ASSERT_TRUE(remote::waitUntil([&] { return position(user) == L"    2 / 3"; }));
  user.fillEditor(1201, L"James Joyce");
  user.chooseDesktop(ID_ARRANGEMENT_CLEAR);
  ASSERT_TRUE(remote::waitUntil([&] { return position(user) == L"    1 / 5"; }))
      << "the record that was shown is so still";
  EXPECT_EQ(remote::text(remote::control(user.main(), 1200)), L"ulysses");
  end();
  EXPECT_THAT(stored("SELECT Author FROM Books WHERE Title = 'ulysses'"), ElementsAre("James Joyce"));
}

TEST_P(OrderStory, WhereNoRecordFitsOneCanBeAdded) {
  User& user = start();
  showGrid(user);
  choose(user, 0, kContaining);
  enterText(user, L"nothing like that");
  ASSERT_TRUE(remote::waitUntil([&] { return position(user) == L"No Records"; }));
  user.showPage(OpenedDatabase::kFormPage);
  user.choose(ID_RECORD_NEW);
  ASSERT_TRUE(remote::waitUntil([&] { return position(user) == L"    1 / 1"; }));
  user.fillEditor(1200, L"Finnegans Wake");
  user.showPage(OpenedDatabase::kListPage);
  awaitTitles(user, {L"Finnegans Wake"});
  choose(user, 0, kShowAll);
  ASSERT_TRUE(remote::waitUntil([&] { return position(user) == L"    6 / 6"; }));
  end();
  EXPECT_THAT(stored("SELECT count(*) FROM Books"), ElementsAre("6"));
}

TEST_P(OrderStory, ItIsThereAgainAtTheNextStart) {
  {
    User& user = start();
    showGrid(user);
    choose(user, 2, kDescending);
    choose(user, 0, kAnyContaining);
    enterText(user, L"u");
    awaitTitles(user, {L"ulysses", L"Dubliners"});
    end();
  }
  User& user = start();
  showGrid(user);
  awaitTitles(user, {L"ulysses", L"Dubliners"});
  choose(user, 0, kShowAll);
  end();
  User& again = start();
  again.showPage(OpenedDatabase::kListPage);
  awaitTitles(again, {L"ulysses", L"Dubliners", L"100% Wool", L"\x00C4rger", L"\x00E4pfel"});
  end();
}

TEST_P(OrderStory, ItIsKeptAsAQueryWhoseRecordsCanBeChanged) {
  User& user = start();
  showGrid(user);
  choose(user, 0, kAscending);
  choose(user, 2, kContaining);
  enterText(user, L"00");
  choose(user, 0, kKeep);
  const HWND query = user.dialog(L"Query");
  user.fill(query, IDC_QUERY_NAME, L"Round ones");
  user.accept(query);
  awaitTitles(user, {L"Dubliners", L"ulysses", L"\x00C4rger"});
  user.showPage(OpenedDatabase::kQueriesPage);
  user.pickItem(0);
  user.showPage(OpenedDatabase::kFormPage);
  user.fillEditor(1202, L"201");
  end();
  EXPECT_THAT(stored("SELECT Pages FROM Books WHERE Title = 'Dubliners'"), ElementsAre("201"));
  EXPECT_THAT(stored("SELECT QueryName FROM QuivaneQueries"), ElementsAre("Round ones"));
}

TEST_P(OrderStory, AHeldHeadingOpensItsMenuAndATapDoesNothing) {
  User& user = start();
  const HWND grid = showGrid(user);
  if (!user.hasMouse()) return end();
  userinput::click(middleOfTitle(grid, 1));
  user.pickItem(1);
  EXPECT_TRUE(remote::popups(program().processId()).empty());
  userinput::hold(middleOfTitle(grid, 2));
  awaitPopup();
  userinput::release();
  ASSERT_FALSE(remote::popups(program().processId()).empty()) << "it stays when the finger is lifted";
  chooseEntry(user, kDescending);
  awaitTitles(user, {L"ulysses", L"\x00E4pfel", L"\x00C4rger", L"Dubliners", L"100% Wool"});
  end();
}

TEST_P(OrderStory, AColumnOfTheRecordsThatAreShownIsCalculated) {
  User& user = start();
  showGrid(user);
  choose(user, 2, kCalculate);
  user.answer(L"Quivane",
              L"Column 'Pages'\n\nRecords: 5\nNot empty: 5\nSum: 1600\nMean: 320.0\nLeast: 90\nGreatest: 700",
              IDOK);
  choose(user, 1, kNotEmpty);
  awaitTitles(user, {L"ulysses", L"Dubliners", L"100% Wool"});
  choose(user, 1, kCalculate);
  user.answer(L"Quivane", L"Column 'Author'\n\nRecords: 3\nNot empty: 3\nLeast: Joyce\nGreatest: O'Neill",
              IDOK);
  choose(user, 2, kCalculate);
  user.answer(L"Quivane",
              L"Column 'Pages'\n\nRecords: 3\nNot empty: 3\nSum: 990\nMean: 330.0\nLeast: 90\nGreatest: 700",
              IDOK);
  end();
}

TEST_P(OrderStory, AFieldThatIsGoneTakesTheOrderAlong) {
  {
    User& user = start();
    showGrid(user);
    choose(user, 1, kDescending);
    awaitTitles(user, {L"100% Wool", L"ulysses", L"Dubliners", L"\x00E4pfel", L"\x00C4rger"});
    end();
  }
  automationtest::SqliteFile(path().wstring()).run("ALTER TABLE Books RENAME COLUMN Author TO Writer");
  User& user = start();
  if (user.hasMouse()) {
    userinput::click(remote::tabControl(user.main()),
                     remote::tabPlace(remote::tabControl(user.main()), OpenedDatabase::kFormPage));
  } else {
    userinput::press(VK_TAB, VK_CONTROL);
  }
  user.answer(
      L"Quivane",
      L"The order and filter don't fit the records any more, so all are shown.\nno such column: Author",
      IDOK);
  user.showPage(OpenedDatabase::kListPage);
  awaitTitles(user, {L"ulysses", L"Dubliners", L"100% Wool", L"\x00C4rger", L"\x00E4pfel"});
  end();
}

TELL_WITH_BOTH_HANDS(OrderStory);

}  // namespace
