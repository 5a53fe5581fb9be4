// The drop-down lists of an open dialog follow the zoom.
#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <vector>

#include "dialogs/copies/go_back_dialog.h"
#include "dialogs/copies/go_back_ids.h"
#include "dialogs/find/find_dialog.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/ui/support/dialog_fixture.h"

namespace {

constexpr int kFindText = 1026;
constexpr int kFindField = 1022;

using Opening = std::function<INT_PTR()>;

class ZoomedDialogsTest : public DialogTest {
 protected:
  void SetUp() override {
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    DialogTest::SetUp();
  }

  static int height(HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    return static_cast<int>(place.bottom - place.top);
  }

  /// What `measure` finds in a dialog that was opened at a zoom, and in one that had another then.
  static void expectSame(const Opening& run, const std::function<std::vector<int>(HWND)>& measure) {
    std::vector<int> openedThere;
    for (const int zoom : {200, 100}) {
      HandheldSetZoom(zoom);
      inDialog(run, [&](HWND dialog) {
        openedThere = measure(dialog);
        EXPECT_FALSE(openedThere.empty());
        press(dialog, IDCANCEL);
      });
      HandheldSetZoom(300 - zoom);
      inDialog(run, [&](HWND dialog) {
        EXPECT_NE(measure(dialog), openedThere) << zoom;
        HandheldSetZoom(zoom);
        EXPECT_EQ(measure(dialog), openedThere) << zoom;
        press(dialog, IDCANCEL);
      });
    }
  }
};

TEST_F(ZoomedDialogsTest, TheDropDownListsOfTheSearch) {
  FindState state;
  FindDialog dialog(state, NameList());
  expectSame(
      [&] { return dialog.run(frame()); },
      [](HWND window) {
        return std::vector{height(GetDlgItem(window, kFindText)), height(GetDlgItem(window, kFindField))};
      });
}

TEST_F(ZoomedDialogsTest, TheDropDownListOfTheFormerStates) {
  const std::vector<String> databases = {L"C:\\a.cdb"};
  GoBackDialog dialog(databases, false, [](const String&) { return std::vector<DatabaseCopy>(1); });
  expectSame([&] { return dialog.run(frame()); },
             [](HWND window) { return std::vector{height(GetDlgItem(window, IDC_GO_BACK_FILE))}; });
}

}  // namespace
