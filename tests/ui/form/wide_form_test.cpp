// A form of more fields than have their controls from the start.
#include "gmock/gmock.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/support/test_database.h"
#include "tests/ui/support/window_reading.h"
#include "views/form/check_field_editor.h"
#include "views/form/date_field_editor.h"
#include "views/form/text_field_editor.h"

namespace {

constexpr int kFieldCount = 300;
constexpr int kMadeAtOnce = static_cast<int>(FormView::kFieldsMadeAtOnce);
// What is not a plain text, each beyond those.
constexpr std::uint32_t kFlag = 250;
constexpr std::uint32_t kDate = 260;
constexpr std::uint32_t kLines = 270;
static_assert(kFlag > FormView::kFieldsMadeAtOnce);

class WideFormTest : public FormFixture {
 protected:
  void showWideTable() {
    std::wstring createTable = L"CREATE TABLE 'T' (";
    std::wstring insert = L"INSERT INTO T VALUES (";
    for (std::uint32_t field = 0; field < kFieldCount; ++field) {
      const wchar_t* const separator = field == 0 ? L"" : L", ";
      const wchar_t* type = L"Text";
      std::wstring value = L"'v" + std::to_wstring(field) + L"'";
      if (field == kFlag) type = L"Bit", value = L"1";
      if (field == kDate) type = L"Datetime", value = L"'1900-01-04'";
      if (field == kLines) value = L"'one' || char(13, 10) || 'two'";
      createTable += separator + (nameOf(field) + L" ") + type;
      insert += separator + value;
    }
    showTable(createTable + L")", {(insert + L")").c_str()});
  }
  static std::wstring nameOf(std::uint32_t field) { return L"f" + std::to_wstring(field); }
  HWND labelOf(std::uint32_t field) const { return label(nameOf(field) + L":"); }
  /// The editor behind a label, which was made next.
  HWND editorOf(std::uint32_t field) const { return GetWindow(labelOf(field), GW_HWNDNEXT); }
  void showPageOf(std::uint32_t field) {
    while ((view().pageIndex() + 1) * 9 <= field && view().showNextPage()) {
    }
  }
};

TEST_F(WideFormTest, ControlsBeyondTheFirstAreMadeWhenTheirPageIsShown) {
  showWideTable();
  ASSERT_EQ(view().pageCount(), 34u);
  EXPECT_NE(labelOf(kMadeAtOnce - 1), nullptr);
  EXPECT_EQ(labelOf(kMadeAtOnce), nullptr);
  showPageOf(kFlag);
  EXPECT_NE(labelOf(kMadeAtOnce), nullptr) << "of a page in between";
  EXPECT_FALSE(isShown(labelOf(kMadeAtOnce)));
  EXPECT_EQ(SendMessageW(control(1400), BM_GETCHECK, 0, 0), 0)
      << "a text, which has the number of a check box too";
  const HWND box = FindWindowExW(form(), nullptr, L"BUTTON", (nameOf(kFlag) + L":").c_str());
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(isShown(box));
  EXPECT_EQ(SendMessageW(box, BM_GETCHECK, 0, 0), BST_CHECKED) << "it shows what was loaded before";
  EXPECT_EQ(labelOf(kLines), nullptr);
  showPageOf(kLines);
  EXPECT_EQ(textOf(editorOf(kDate)), L"1/4/1900");
  EXPECT_EQ(textOf(editorOf(kLines)), L"one,two");
  EXPECT_EQ(placeOf(labelOf(kLines)), placeOf(labelOf(0))) << "the first of its page";
  EXPECT_EQ(placeOf(editorOf(kLines)), placeOf(textEditor(0)));
}

TEST_F(WideFormTest, WhatWasNeverShownIsStoredAsIfItWere) {
  showWideTable();
  type(textEditor(0), L"x");
  commit();
  EXPECT_EQ(storedText(0), L"xv0");
  EXPECT_EQ(storedText(299), L"v299");
  EXPECT_EQ(storedText(kFlag), L"-1");
  EXPECT_EQ(storedText(kDate), L"1/4/1900");
  EXPECT_EQ(storedText(kLines), L"one,two") << "with commas, as every text of a record that was changed";
}

TEST_F(WideFormTest, WhatIsTypedOnAPageThatWasMadeLateIsStored) {
  showWideTable();
  showPageOf(kLines);
  type(editorOf(kLines + 1), L"x");
  EXPECT_TRUE(view().takeChange());
  commit();
  EXPECT_EQ(storedText(kLines + 1), L"xv271");
}

TEST_F(WideFormTest, AFieldThatWasFoundIsMadeAndSelected) {
  showWideTable();
  view().focusField(kLines + 1);
  EXPECT_EQ(view().pageIndex(), (kLines + 1) / 9);
  const HWND editor = editorOf(kLines + 1);
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(GetFocus(), editor);
  DWORD start = 99;
  DWORD end = 99;
  SendMessageW(editor, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(start, 0u);
  EXPECT_EQ(end, 4u);
  EXPECT_EQ(labelOf(kMadeAtOnce), nullptr) << "of a page that was passed over";
}

// Whichever page is shown first: the fiftieth of a kind is the last that is filtered and zoomed.
TEST_F(WideFormTest, ThePlacesOfTheFirstFiftyOfAKindAreKeptForThem) {
  std::wstring createTable = L"CREATE TABLE 'T' (f0 Bit";
  for (std::uint32_t field = 1; field < kFieldCount; ++field)
    createTable += L", " + nameOf(field) + (field < kMadeAtOnce ? L" Bit" : L" Text");
  showTable(createTable + L")", {L"INSERT INTO T (f0) VALUES (1)"});
  ASSERT_EQ(theTextEditors.count(), 0u);
  view().focusField(kMadeAtOnce + 60);
  EXPECT_EQ(theTextEditors.find(editorOf(kMadeAtOnce + 60)), nullptr);
  view().focusField(kMadeAtOnce + 49);
  EXPECT_NE(theTextEditors.find(editorOf(kMadeAtOnce + 49)), nullptr);
}

TEST_F(WideFormTest, APageThatIsMadeUnderTheRaisedPanelHasItsRowsAboveIt) {
  showWideTable();
  panel().raise(214, 80);
  view().layOut(false);
  ASSERT_EQ(view().pageCount(), 50u);
  view().focusField(kFlag + 8);
  EXPECT_EQ(placeOf(labelOf(kFlag + 8)), placeOf(labelOf(0))) << "the first of six";
}

TEST_F(WideFormTest, MovingOnLoadsWhatIsMadeAndWhatIsNot) {
  showWideTable();
  runStatements(path(), {L"INSERT INTO T (f0, f299) VALUES ('second', 'last')"});
  document().closeDatabase();
  ASSERT_TRUE(document().openDatabase(path().c_str()));
  document().setViewMode(ViewMode::form);
  document().moveNextRecord();
  EXPECT_EQ(textOf(textEditor(0)), L"second");
  showPageOf(299);
  EXPECT_EQ(textOf(editorOf(299)), L"last");
  document().movePreviousRecord();
  EXPECT_EQ(textOf(editorOf(299)), L"v299");
}

// ---- Editors alone, before their control is there and after

class UnmadeEditorsTest : public testing::Test {
 protected:
  static FieldSnapshot readAs(const wchar_t* text) {
    FieldSnapshot field;
    field.state = FieldSnapshot::State::value;
    field.text = text;
    return field;
  }
  HWND host() const { return host_.get(); }

 private:
  HostWindow host_;
};

TEST_F(UnmadeEditorsTest, ATextAnswersForWhatItWasLoadedWith) {
  theTextEditors.reset();
  TextFieldEditor editor;
  editor.load(readAs(L"one\r\ntwo"), false);
  EXPECT_STREQ(editor.text().text(), L"one,two");
  EXPECT_TRUE(editor.isEdited()) << "the commas";
  EXPECT_FALSE(editor.takeChange());
  editor.load(readAs(L"three"), false);
  EXPECT_FALSE(editor.isEdited());
  ASSERT_TRUE(editor.create({WS_CHILD, {0, 0, 80, 18}, host(), 1200}));
  EXPECT_EQ(textOf(editor.window()), L"three");
  EXPECT_FALSE(editor.isEdited());
  EXPECT_FALSE(editor.takeChange());
}

TEST_F(UnmadeEditorsTest, AValueThatIsNotKnownIsLockedWhenTheControlComes) {
  theTextEditors.reset();
  TextFieldEditor text;
  text.load({}, false);
  ASSERT_TRUE(text.create({WS_CHILD, {0, 0, 80, 18}, host(), 1200}));
  EXPECT_EQ(textOf(text.window()), L"");
  EXPECT_NE(styleOf(text.window()) & ES_READONLY, 0u);
  CheckFieldEditor box;
  box.load({}, false);
  ASSERT_TRUE(box.create({WS_CHILD | BS_AUTOCHECKBOX, {0, 30, 80, 18}, host(), 1400}));
  SendMessageW(box.window(), BM_CLICK, 0, 0);
  EXPECT_FALSE(box.isChecked());
}

TEST_F(UnmadeEditorsTest, ADateAnswersForWhatItWasLoadedWith) {
  theDateEditors.reset();
  DateFieldEditor editor;
  EXPECT_EQ(editor.date(), std::nullopt);
  editor.load(readAs(L"3/9/2001"), false);
  EXPECT_EQ(editor.date(), 36959.0);
  EXPECT_FALSE(editor.takeChange());
  ASSERT_TRUE(editor.create({WS_CHILD, {0, 0, 80, 18}, host(), 1600}));
  EXPECT_EQ(textOf(editor.window()), L"3/9/2001");
  EXPECT_FALSE(editor.takeChange());
}

TEST_F(UnmadeEditorsTest, ADateOfANewRecordIsToday) {
  DateFieldEditor editor;
  editor.load(readAs(L"None"), true);
  EXPECT_NE(editor.date(), std::nullopt);
}

TEST_F(UnmadeEditorsTest, ACheckBoxAnswersForWhatItWasLoadedWith) {
  CheckFieldEditor editor;
  editor.load(readAs(L"-1"), false);
  EXPECT_TRUE(editor.isChecked());
  EXPECT_FALSE(editor.isEdited());
  ASSERT_TRUE(editor.create({WS_CHILD | BS_AUTOCHECKBOX, {0, 0, 80, 18}, host(), 1400}));
  EXPECT_EQ(SendMessageW(editor.window(), BM_GETCHECK, 0, 0), BST_CHECKED);
}

}  // namespace
