#include "dialogs/find/everywhere_dialog.h"

#include <commctrl.h>

#include <new>
#include <utility>

#include "dialogs/find/everywhere_ids.h"
#include "tests/ui/support/dialog_fixture.h"
#include "tests/ui/support/window_reading.h"

using testing::SizeIs;

namespace {

class EverywhereDialogTest : public DialogTest {
 protected:
  void SetUp() override {
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    DialogTest::SetUp();
  }

  INT_PTR show(EverywhereDialog::Search search, const Step& step) {
    EverywhereDialog dialog(std::move(search));
    dialog.text = L"sought";
    return inDialog([&] { return dialog.run(frame()); }, step);
  }
  static int placeCount(HWND dialog) {
    return static_cast<int>(SendDlgItemMessageW(dialog, IDC_EVERYWHERE_PLACES, LVM_GETITEMCOUNT, 0, 0));
  }
};

TEST_F(EverywhereDialogTest, ASearchThatRanOutOfMemoryIsOver) {
  int searches = 0;
  const auto search = [&](const String&, const FoundListener& found) {
    if (++searches == 1) throw std::bad_alloc();
    return found({L"T", 1, L"f", L"it"});
  };
  const INT_PTR result = show(search, [&](HWND dialog) {
    press(dialog, IDC_EVERYWHERE_SEARCH);
    EXPECT_THAT(takeBoxes(), SizeIs(1)) << "it is told";
    press(dialog, IDC_EVERYWHERE_SEARCH);
    EXPECT_EQ(searches, 2);
    EXPECT_EQ(placeCount(dialog), 1);
    EXPECT_EQ(textOf(dialog, IDC_EVERYWHERE_STATE), L"1 place");
    press(dialog, IDCANCEL);
    // One that can't be left would stay open for ever.
    if (searches == 1) EndDialog(dialog, IDCANCEL);
  });
  EXPECT_EQ(result, IDCANCEL);
}

}  // namespace
