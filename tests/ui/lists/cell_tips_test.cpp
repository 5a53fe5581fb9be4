// The tooltips of the grid's cells: what a cell refers to.
#include <commctrl.h>

#include <string>
#include <vector>

#include "tests/ui/lists/record_list_fixture.h"
#include "views/shared/window_subclass.h"

namespace {

class CellTipsTest : public RecordListFixture {
 protected:
  /// The tooltip window of the list; null when there is none.
  HWND tipWindow() const {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
      DWORD process = 0;
      GetWindowThreadProcessId(window, &process);
      TTTOOLINFOW tool{};
      tool.cbSize = TTTOOLINFOW_V1_SIZE;
      if (process != GetCurrentProcessId()) continue;
      if (SendMessageW(window, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool)) && tool.hwnd == list()) {
        return window;
      }
    }
    return nullptr;
  }
  RECT placeOf(int row, int column) const {
    RECT place{};
    place.top = column;
    place.left = column == 0 ? LVIR_LABEL : LVIR_BOUNDS;
    SendMessageW(list(), LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    return place;
  }
  std::wstring tipAt(POINT place) const {
    SendMessageW(list(), WM_MOUSEMOVE, 0, MAKELPARAM(place.x, place.y));
    NMTTDISPINFOW question{};
    question.hdr = {tipWindow(), 0, static_cast<UINT>(TTN_GETDISPINFOW)};
    SendMessageW(list(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&question));
    return question.lpszText ? question.lpszText : L"(none)";
  }
  std::wstring tipOf(int row, int column) const {
    const RECT place = placeOf(row, column);
    return tipAt({(place.left + place.right) / 2, (place.top + place.bottom) / 2});
  }
};

TEST_F(CellTipsTest, ACellTellsTheNameOfTheRecordToWhichItRefers) {
  showTable(L"CREATE TABLE 'T' (Id Integer PRIMARY KEY, Up Integer REFERENCES T, Name Text)",
            L"INSERT INTO T VALUES (1, NULL, 'root'), (2, 1, 'leaf')");
  EXPECT_EQ(tipWindow(), nullptr) << "before the mouse is moved";
  EXPECT_EQ(tipOf(1, 1), L"root");
  ASSERT_NE(tipWindow(), nullptr);
  EXPECT_EQ(cell(1, 1), L"1") << "never in its place";
  EXPECT_EQ(tipOf(0, 1), L"") << "it refers to none";
  EXPECT_EQ(tipOf(1, 0), L"");
  EXPECT_EQ(tipOf(1, 2), L"");
  EXPECT_EQ(tipOf(1, 1), L"root");
  EXPECT_EQ(tipAt({placeOf(1, 1).left + 2, 5000}), L"") << "below the rows";
  view().prepare(nullptr);
  EXPECT_EQ(tipOf(1, 1), L"") << "the document has ended";
}

TEST_F(CellTipsTest, TheTooltipIsThatOfTheCellUnderTheMouseAlone) {
  showTable(L"CREATE TABLE 'T' (Id Integer PRIMARY KEY, Up Integer REFERENCES T, Name Text)",
            L"INSERT INTO T VALUES (1, NULL, 'root'), (2, 1, 'leaf')");
  tipOf(1, 1);
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.hwnd = list();
  ASSERT_TRUE(SendMessageW(tipWindow(), TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool)));
  const RECT place = placeOf(1, 1);
  EXPECT_TRUE(EqualRect(&tool.rect, &place));
}

TEST_F(CellTipsTest, TheTooltipIsToldOfTheMouseAfterTheCell) {
  showTable(L"CREATE TABLE 'T' (Id Integer PRIMARY KEY, Up Integer REFERENCES T, Name Text)",
            L"INSERT INTO T VALUES (1, NULL, 'root'), (2, 1, 'leaf')");
  tipOf(0, 0);
  std::vector<MSG> told;
  RECT known{};
  WindowSubclass watch([&](HWND tip, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == TTM_RELAYEVENT) told.push_back(*reinterpret_cast<const MSG*>(lParam));
    if (message == TTM_NEWTOOLRECTW) {
      EXPECT_TRUE(told.empty());
      known = reinterpret_cast<const TTTOOLINFOW*>(lParam)->rect;
    }
    return DefSubclassProc(tip, message, wParam, lParam);
  });
  ASSERT_TRUE(watch.attach(tipWindow()));
  const RECT place = placeOf(1, 1);
  const LPARAM point = MAKELPARAM(place.left + 2, place.top + 2);
  SendMessageW(list(), WM_MOUSEMOVE, 0, point);
  EXPECT_TRUE(EqualRect(&known, &place));
  SendMessageW(list(), WM_RBUTTONDOWN, MK_RBUTTON, point);
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0].hwnd, list());
  EXPECT_EQ(told[0].message, static_cast<UINT>(WM_MOUSEMOVE));
  EXPECT_EQ(told[0].lParam, point);
  EXPECT_EQ(told[1].message, static_cast<UINT>(WM_RBUTTONDOWN)) << "which ends it";
}

}  // namespace
