// Where the pages lie, and what the user's options make of them.
#include <windows.h>

#include <commctrl.h>

#include "base/settings/app_colors.h"
#include "base/settings/options.h"
#include "base/settings/settings_store.h"
#include "owners/handles.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

using testing::ElementsAre;

namespace {

constexpr int kForm = 6;
constexpr int kRebar = 1000;
constexpr int kFirstTextEditor = 1200;

class WindowTest : public UiTest {};

TEST_F(WindowTest, EveryPageLiesInItsPlace) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (1)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  RECT client{};
  GetClientRect(opened.main(), &client);
  EXPECT_EQ(client.right, 240);
  EXPECT_EQ(client.bottom, 294);
  EXPECT_THAT(place(remote::tabControl(opened.main()), opened.main()), ElementsAre(0, 0, 240, 269));
  EXPECT_THAT(place(opened.tables(), opened.main()), ElementsAre(0, 0, 240, 218));
  EXPECT_THAT(place(remote::control(opened.main(), kForm), remote::tabControl(opened.main())),
              ElementsAre(0, 0, 240, 245))
      << "from its creation, before its page is shown";
}

TEST_F(WindowTest, TheBandsOfAllPagesAreAtTheSameHeight) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (1)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const auto bands = [&] { return place(remote::control(opened.main(), kRebar), opened.main()); };
  const std::vector<LONG> onTables = bands();
  EXPECT_EQ(onTables[1], place(opened.tables(), opened.main())[3]) << "the list ends where they begin";
  for (const int page :
       {OpenedDatabase::kFormPage, OpenedDatabase::kListPage, OpenedDatabase::kQueriesPage}) {
    ASSERT_TRUE(remote::switchToPage(opened.main(), page));
    EXPECT_EQ(bands()[1], onTables[1]) << page;
    EXPECT_EQ(bands()[3], onTables[3]) << page;
  }
}

TEST_F(WindowTest, TheNinthRowOfTheFormLiesAboveTheBands) {
  makeDatabase(file("a.cdb"),
               {L"CREATE TABLE 'T' (f0 Integer, f1 Integer, f2 Integer, f3 Integer, f4 Integer, f5 Integer, "
                L"f6 Integer, f7 Integer, f8 Integer)",
                L"INSERT INTO T VALUES (0, 1, 2, 3, 4, 5, 6, 7, 8)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  const HWND last = remote::shownControl(opened.main(), kFirstTextEditor + 8);
  ASSERT_NE(last, nullptr);
  EXPECT_LE(place(last, opened.main())[3], place(remote::control(opened.main(), kRebar), opened.main())[1]);
}

TEST_F(WindowTest, TheListsLieInFrontOfTheTabControl) {
  makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)"});
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(ChildWindowFromPointEx(opened.main(), {100, 100}, CWP_SKIPINVISIBLE), opened.tables());
}

/// The user's options, as the options dialog will write them.
class OptionsTest : public UiTest {
 protected:
  void SetUp() override {
    makeDatabase(file("a.cdb"), {L"CREATE TABLE 'T' (a Integer)", L"INSERT INTO T VALUES (1)"});
  }
  void TearDown() override {
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\MorvaleSoftware\\Quivane for Pocket PC\\Options");
  }
};

TEST_F(OptionsTest, TabsShowTheirNamesByDefault) {
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(opened.main());
  const wchar_t* const names[] = {L"Tables", L"Form", L"List", L"Queries"};
  for (int page = 0; page < 4; ++page) EXPECT_EQ(remote::tabText(tab, page), names[page]);
  EXPECT_EQ(SendMessageW(tab, TCM_GETIMAGELIST, 0, 0), 0);
}

TEST_F(OptionsTest, TabsWithTextAndImageFitBesideEachOther) {
  ASSERT_TRUE(SettingsStore::writeDword(SettingsStore::kOptions, L"TabLabelStyle", kTabTextAndIcon));
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(opened.main());
  EXPECT_NE(SendMessageW(tab, TCM_GETIMAGELIST, 0, 0), 0);
  EXPECT_EQ(remote::tabText(tab, 3), L"Queries");
  RECT client{};
  GetClientRect(tab, &client);
  EXPECT_LE(remote::tabPlace(tab, 3).right, client.right);
}

TEST_F(OptionsTest, TabsWithImagesAloneHaveNoText) {
  ASSERT_TRUE(SettingsStore::writeDword(SettingsStore::kOptions, L"TabLabelStyle", kTabIconOnly));
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(opened.main());
  EXPECT_NE(SendMessageW(tab, TCM_GETIMAGELIST, 0, 0), 0);
  EXPECT_EQ(remote::tabText(tab, 0), L"");
}

TEST_F(OptionsTest, TabsWithTextAloneAreAgainWhatTheyWereAfterImages) {
  constexpr int kOptions = 32775;
  constexpr int kViewPage = 2;
  constexpr int kTextOnly = 1059;
  constexpr int kIconOnly = 1060;
  constexpr int kTextAndIcon = 1061;
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const HWND tab = remote::tabControl(opened.main());
  const auto places = [&] {
    std::vector<std::vector<LONG>> all;
    for (int page = 0; page < 4; ++page) {
      const RECT in = remote::tabPlace(tab, page);
      all.push_back({in.left, in.top, in.right, in.bottom});
    }
    return all;
  };
  const auto choose = [&](int labels) {
    PostMessageW(opened.main(), WM_COMMAND, kOptions, 0);
    ASSERT_TRUE(remote::waitForDialog(opened.main(), L"Options"));
    const HWND sheet = remote::frontWindow(opened.main());
    ASSERT_TRUE(remote::turnSheet(sheet, kViewPage));
    const HWND radio = remote::control(sheet, labels);
    remote::clickControl(radio);
    ASSERT_TRUE(remote::waitUntil([=] { return SendMessageW(radio, BM_GETCHECK, 0, 0) == BST_CHECKED; }));
    PostMessageW(sheet, WM_COMMAND, IDOK, 0);
    ASSERT_TRUE(remote::waitForMain(opened.main()));
  };
  const auto before = places();
  for (const int labels : {kTextAndIcon, kIconOnly}) {
    choose(labels);
    ASSERT_NE(places(), before);
    choose(kTextOnly);
    EXPECT_EQ(places(), before);
    EXPECT_EQ(SendMessageW(tab, TCM_GETIMAGELIST, 0, 0), 0);
  }
}

TEST_F(OptionsTest, WithTheBandsAtTheTopThePagesBeginBelowThem) {
  ASSERT_TRUE(SettingsStore::writeDword(SettingsStore::kOptions, L"RebarsAtTop", 1));
  OpenedDatabase opened(file("a.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const auto placeIn = [](HWND window, HWND parent) {
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return std::vector<LONG>{place.top, place.bottom};
  };
  EXPECT_THAT(placeIn(opened.tables(), opened.main()), ElementsAre(28, 218));
  RECT client{};
  GetClientRect(remote::tabControl(opened.main()), &client);
  EXPECT_THAT(placeIn(remote::recordGrid(opened.main()), remote::tabControl(opened.main())),
              ElementsAre(28, 28 + client.bottom - 50));
}

TEST_F(OptionsTest, ThePagesHaveTheStoredColours) {
  AppColorTable colors{};
  for (std::size_t i = 0; i < colors.size(); ++i) colors[i] = static_cast<std::uint32_t>(0x101010 + i);
  ASSERT_TRUE(SettingsStore::writeBinary(SettingsStore::kOptions, L"GeneralAppColors", colors.data(),
                                         kAppColorCount));
  OpenedDatabase opened(file("a.cdb"));
  const HWND grid = opened.showRecords(0);
  ASSERT_NE(grid, nullptr);
  EXPECT_EQ(SendMessageW(opened.tables(), LVM_GETBKCOLOR, 0, 0), 0x101010);
  EXPECT_EQ(SendMessageW(opened.tables(), LVM_GETTEXTCOLOR, 0, 0), 0x101011);
  EXPECT_EQ(SendMessageW(grid, LVM_GETBKCOLOR, 0, 0), 0x10101B);
  EXPECT_EQ(SendMessageW(grid, LVM_GETTEXTCOLOR, 0, 0), 0x10101C);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND queries = remote::shownPage(opened.main());
  EXPECT_EQ(SendMessageW(queries, LVM_GETBKCOLOR, 0, 0), 0x10101D);
  EXPECT_EQ(SendMessageW(queries, LVM_GETTEXTCOLOR, 0, 0), 0x10101E);
}

}  // namespace
