// Any text whatever in the controls that only show it.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "dialogs/controls/combo_box.h"
#include "tests/ui/support/control_texts_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "views/form/field_label.h"
#include "views/shared/list_view.h"
#include "views/shared/unowned_box.h"

namespace {

TEST_F(ControlTextsTest, ALabelShowsEach) {
  showAll(kTextCount / 20, [&](const std::wstring& text) {
    FieldLabel label;
    ASSERT_TRUE(label.create(text.c_str(), {WS_CHILD, kPlace, host(), 10}));
    label.show(true);
    paint(label.window());
  });
}

TEST_F(ControlTextsTest, AListOfNamesShowsEach) {
  const HWND list = createControl(WC_LISTVIEWW, LVS_LIST);
  const int inView = static_cast<int>(SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0));
  ASSERT_GT(inView, 1);
  showAll(kTextCount, [&](const std::wstring& text) {
    listview::insertItem(list, 0, text.c_str(), 0);
    if (listview::itemCount(list) < inView) return;
    paint(list);
    listview::deleteAllItems(list);
  });
}

TEST_F(ControlTextsTest, TheHeaderOfAGridShowsEach) {
  const HWND list = createControl(WC_LISTVIEWW, LVS_REPORT);
  showAll(kTextCount / 10, [&](const std::wstring& text) {
    listview::insertColumn(list, 0, text.c_str(), 75);
    paint(listview::header(list));
    listview::deleteColumn(list, 0);
  });
}

TEST_F(ControlTextsTest, AComboBoxShowsEach) {
  const HWND combo = createControl(L"COMBOBOX", CBS_DROPDOWN);
  showAll(kTextCount / 10, [&](const std::wstring& text) {
    combobox::clear(combo);
    combobox::add(combo, text.c_str());
    SendMessageW(combo, CB_SETCURSEL, 0, 0);
    SetWindowTextW(combo, text.c_str());
    paint(combo);
  });
}

TEST_F(ControlTextsTest, AMessageShowsEach) {
  const DialogScript script([](HWND dialog) { DialogScript::close(dialog, IDOK); });
  showAll(kTextCount / 100,
          [&](const std::wstring& text) { showBox(host(), text.c_str(), L"Quivane", MB_OK); });
  EXPECT_EQ(script.count(), kTextCount / 100);
}

}  // namespace
