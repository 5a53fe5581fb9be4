// Any text whatever in the controls that only show it.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "base/showable_text.h"
#include "dialogs/controls/combo_box.h"
#include "tests/ui/support/control_texts_fixture.h"
#include "tests/ui/support/dialog_script.h"
#include "views/form/field_label.h"
#include "views/form/field_zoom.h"
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

TEST_F(ControlTextsTest, NamesUnderIconsShowEach) {
  const HWND list = createControl(WC_LISTVIEWW, LVS_ICON);
  showAll(kTextCount, [&](const std::wstring& text) {
    listview::insertItem(list, 0, text.c_str(), 0);
    if (listview::itemCount(list) < 2) return;
    // The whole of a long name is shown under the item that has the focus.
    listview::setItemState(list, 0, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
    SetFocus(list);
    paint(list);
    listview::deleteAllItems(list);
  });
}

TEST_F(ControlTextsTest, TheCellsOfAGridShowEach) {
  const HWND list = createControl(WC_LISTVIEWW, LVS_REPORT);
  listview::insertColumn(list, 0, L"first", 60);
  listview::insertColumn(list, 1, L"second", 75);
  const int inView = static_cast<int>(SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0));
  ASSERT_GT(inView, 0);
  showAll(kTextCount, [&](const std::wstring& text) {
    std::wstring shown = showableText(text);
    listview::insertItem(list, 0, text.c_str(), 0);
    LVITEMW cell{};
    cell.iSubItem = 1;
    cell.pszText = shown.data();
    SendMessageW(list, LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&cell));
    if (listview::itemCount(list) < inView) return;
    paint(list);
    listview::deleteAllItems(list);
  });
}

TEST_F(ControlTextsTest, ATitleShowsEach) {
  showAll(kTextCount, [&](const std::wstring& text) {
    SetWindowTextW(host(), showableText(text).c_str());
    RedrawWindow(host(), nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
  });
}

TEST_F(ControlTextsTest, TheZoomOfAFieldShowsEach) {
  const DialogScript script([](HWND dialog) {
    paint(dialog);
    DialogScript::close(dialog, IDCANCEL);
  });
  showAll(kTextCount / 100, [&](const std::wstring& text) {
    FieldZoom zoom(text.c_str(), text.c_str(), false);
    zoom.run(host());
  });
  EXPECT_EQ(script.count(), kTextCount / 100);
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
