// What counts as the beginning of a change: at the first one it is told when nothing can be stored.
#include <windows.h>

#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/window_reading.h"

namespace {

class EditBegunTest : public FormFixture {
 protected:
  int begun() { return prompts().typedCount; }
};

TEST_F(EditBegunTest, ShowingRecordsAndWalkingAboutIsNone) {
  showTable(L"CREATE TABLE 'T' (a Text, b Bit, d Datetime)",
            {L"INSERT INTO T VALUES ('one', 1, '1900-01-04')", L"INSERT INTO T VALUES ('two', 0, NULL)"});
  SetFocus(textEditor());
  document().moveNextRecord();
  SetFocus(checkBox());
  document().movePreviousRecord();
  view().clearEditors();
  SetFocus(textEditor());
  SendMessageW(textEditor(), WM_CHAR, VK_TAB, 0);
  tap(textEditor());
  EXPECT_EQ(begun(), 0);
}

TEST_F(EditBegunTest, AClickIntoACheckBoxIsOne) {
  showFields(1, L"Bit");
  SetFocus(checkBox());
  SendMessageW(checkBox(), BM_CLICK, 0, 0);
  EXPECT_EQ(begun(), 1);
}

TEST_F(EditBegunTest, SoIsTheClipboard) {
  showFields(1, L"Text");
  SetFocus(textEditor());
  SendMessageW(textEditor(), EM_SETSEL, 0, -1);
  SendMessageW(textEditor(), WM_CLEAR, 0, 0);
  EXPECT_EQ(textOf(textEditor()), L"");
  EXPECT_EQ(begun(), 1);
}

TEST_F(EditBegunTest, SoIsAKeyInAnEditorBeyondThoseThatAreLookedAfter) {
  constexpr int kFieldCount = 60;
  showFields(kFieldCount, L"Text");
  type(textEditor(kFieldCount - 1), L"x");
  EXPECT_EQ(textOf(textEditor(kFieldCount - 1)), L"xv");
  EXPECT_EQ(begun(), 1);
}

}  // namespace
