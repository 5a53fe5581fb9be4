// What assistive technology is told of the controls of the program.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <map>
#include <oleacc.h>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "owners/com_handles.h"
#include "tests/ui/remote/program_thread_test.h"
#include "tests/ui/remote/remote_dialog.h"

namespace {

constexpr int kNewTable = 40065;
constexpr int kNewQuery = 40078;
constexpr int kFindCommand = 32793;
constexpr int kGoToNumber = 40015;
constexpr int kDatabaseInfo = 32782;
constexpr int kChangePassword = 32774;
constexpr int kOptions = 32775;
constexpr int kExport = 53312;

std::wstring className(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return name;
}

/// Empty when there is none.
std::wstring spokenName(HWND control, LONG child = CHILDID_SELF) {
  ComPtr<IAccessible> description;
  if (FAILED(AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                        reinterpret_cast<void**>(description.put())))) {
    return {};
  }
  VARIANT self{};
  self.vt = VT_I4;
  self.lVal = child;
  UniqueBstr name;
  if (FAILED(description->get_accName(self, name.put())) || !name) return {};
  return name.get();
}

/// What a user can move to or read from.
bool needsName(HWND control) {
  static const std::vector<std::wstring> kClasses = {WC_EDITW,          WC_COMBOBOXW,   WC_LISTBOXW,
                                                     WC_LISTVIEWW,      WC_TABCONTROLW, MONTHCAL_CLASSW,
                                                     TOOLBARCLASSNAMEW, WC_BUTTONW};
  const std::wstring own = className(control);
  const bool isPartOfCombo = className(GetParent(control)) == WC_COMBOBOXW;
  return !isPartOfCombo && std::find(kClasses.begin(), kClasses.end(), own) != kClasses.end();
}

BOOL CALLBACK collectShown(HWND window, LPARAM list) {
  if (IsWindowVisible(window) && needsName(window))
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

class SpokenNamesTest : public ProgramThreadTest {
 protected:
  void SetUp() override {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    start({L"CREATE TABLE 'T' (Title Text, Born Datetime, Lent Bit, Pages Integer)",
           L"INSERT INTO T VALUES ('one', '2001-03-09', 1, 7)"});
  }
  void TearDown() override {
    ProgramThreadTest::TearDown();
    CoUninitialize();
  }

  void showPage(int page) const { ASSERT_TRUE(remote::switchToPage(main(), page)); }
  /// Those of the only table.
  void showRecords(int page) const {
    ASSERT_TRUE(remote::selectItem(remote::shownPage(main()), 0));
    showPage(page);
  }

  static void expectAllNamed(HWND window) {
    std::vector<HWND> controls;
    EnumChildWindows(window, collectShown, reinterpret_cast<LPARAM>(&controls));
    EXPECT_FALSE(controls.empty());
    for (const HWND control : controls) {
      EXPECT_NE(spokenName(control), L"") << className(control) << " " << GetDlgCtrlID(control);
      if (className(control) == TOOLBARCLASSNAMEW) expectButtonsNamed(control);
    }
  }
  static void expectButtonsNamed(HWND toolbar) {
    const auto count = static_cast<LONG>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0));
    for (LONG button = 1; button <= count; ++button) {
      EXPECT_NE(spokenName(toolbar, button), L"") << "button " << button << " of " << spokenName(toolbar);
    }
  }

  using Names = std::map<int, std::wstring>;

  /// Opens a dialog by its command, and leaves it.
  void expectNames(int command, const wchar_t* title, const Names& names) {
    SCOPED_TRACE(command);
    PostMessageW(main(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    ASSERT_TRUE(remote::waitForDialog(main(), title));
    const HWND dialog = remote::frontWindow(main());
    expectAllNamed(dialog);
    for (const auto& [id, name] : names) {
      EXPECT_EQ(spokenName(remote::control(dialog, id)), name) << id;
    }
    PostMessageW(dialog, WM_CLOSE, 0, 0);
    ASSERT_TRUE(remote::waitForMain(main()));
  }
};

TEST_F(SpokenNamesTest, of_the_pages_and_their_bars) {
  const HWND tab = remote::tabControl(main());
  const std::wstring pages[] = {L"Tables", L"Form", L"List", L"Queries"};
  EXPECT_EQ(spokenName(remote::shownPage(main())), L"Tables");
  ASSERT_TRUE(remote::selectItem(remote::shownPage(main()), 0));
  for (int page = 0; page < kPages; ++page) {
    SCOPED_TRACE(page);
    EXPECT_EQ(spokenName(tab, page + 1), pages[page]);
    showPage(page);
    expectAllNamed(main());
  }
  EXPECT_EQ(spokenName(remote::shownPage(main())), L"Queries");
  EXPECT_EQ(spokenName(remote::menuButton(main())), L"Menu");
  showPage(kListPage);
  EXPECT_EQ(spokenName(remote::recordGrid(main())), L"Records");
  EXPECT_EQ(spokenName(remote::control(main(), 1012)), L"Record");
}

TEST_F(SpokenNamesTest, of_editors_are_those_of_their_fields) {
  showRecords(kFormPage);
  // Those that have a label before them are named by it.
  EXPECT_EQ(spokenName(remote::shownControl(main(), 1200)), L"Title:");
  EXPECT_EQ(spokenName(remote::shownControl(main(), 1201)), L"Pages:");
  EXPECT_EQ(spokenName(remote::shownControl(main(), 1400)), L"Lent:");
  EXPECT_EQ(spokenName(remote::shownControl(main(), 1600)), L"Born");
}

TEST_F(SpokenNamesTest, of_the_dialogs_of_the_design) {
  expectNames(kNewTable, L"New Table",
              {{1024, L"Table Name"},
               {1025, L"Fields"},
               {1027, L"Add field"},
               {1028, L"Remove field"},
               {1036, L"Up"}});
  showPage(kQueriesPage);
  expectNames(kNewQuery, L"Query",
              {{1049, L"Query Name"},
               {1055, L"Tables"},
               {1057, L"Insert table"},
               {1054, L"Fields"},
               {1028, L"Insert field"},
               {1050, L"SQL text"}});
  expectNames(kExport, L"Export", {});
}

TEST_F(SpokenNamesTest, of_the_dialogs_of_the_records) {
  showRecords(kFormPage);
  expectNames(kFindCommand, L"Find", {{1026, L"Find what"}, {1022, L"Field to check"}});
  expectNames(kGoToNumber, L"Move to Record...", {{1017, L"Move to record number"}});
  expectNames(kDatabaseInfo, L"Database Information", {});
  expectNames(kChangePassword, L"Change Password", {{1004, L"Old Password"}});
}

TEST_F(SpokenNamesTest, of_the_colours) {
  PostMessageW(main(), WM_COMMAND, kOptions, 0);
  ASSERT_TRUE(remote::waitForDialog(main(), L"Options"));
  const HWND sheet = remote::frontWindow(main());
  ASSERT_TRUE(remote::turnSheet(sheet, 3));
  EXPECT_EQ(spokenName(remote::control(sheet, 1062)), L"Colors");
  PostMessageW(sheet, WM_CLOSE, 0, 0);
  ASSERT_TRUE(remote::waitForMain(main()));
}

TEST_F(SpokenNamesTest, of_the_zoom_and_the_calendar_are_their_fields) {
  showRecords(kFormPage);
  PostMessageW(remote::shownControl(main(), 1200), WM_USER + 202, 0, 0);
  ASSERT_TRUE(remote::waitForDialog(main(), L"Title"));
  const HWND zoom = remote::frontWindow(main());
  expectAllNamed(zoom);
  EXPECT_EQ(spokenName(remote::control(zoom, 1015)), L"Title");
  PostMessageW(zoom, WM_CLOSE, 0, 0);
  ASSERT_TRUE(remote::waitForMain(main()));
  remote::clickControl(remote::shownControl(main(), 1600));
  ASSERT_TRUE(remote::waitForDialog(main(), L"Born"));
  const HWND calendar = remote::frontWindow(main());
  expectAllNamed(calendar);
  EXPECT_EQ(spokenName(remote::control(calendar, 40100)), L"Born");
  PostMessageW(calendar, WM_CLOSE, 0, 0);
  ASSERT_TRUE(remote::waitForMain(main()));
}

}  // namespace
