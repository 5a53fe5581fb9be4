#include "dialogs/table/new_field.h"

#include <string>

#include "data/values/field_kinds.h"
#include "dialogs/table/new_field_ids.h"
#include "platform/pocketshell/handheld_windows.h"
#include "tests/ui/support/dialog_fixture.h"
#include "views/dialog/current_dialog.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::wstring kForbiddenText = L"Field name cannot use characters:\n` . ! \u2019 [ ] \" * ?";

class NewFieldTest : public DialogTest {
 protected:
  static void setName(HWND dialog, const wchar_t* name) { SetDlgItemTextW(dialog, IDC_NEW_FIELD_NAME, name); }
  static void selectType(HWND dialog, int row) {
    SendDlgItemMessageW(dialog, IDC_NEW_FIELD_TYPE, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
  }
  static LRESULT selectedType(HWND dialog) {
    return SendDlgItemMessageW(dialog, IDC_NEW_FIELD_TYPE, CB_GETCURSEL, 0, 0);
  }
  /// Confirms this name; it is to be taken.
  void expectTaken(const std::wstring& name) {
    NewFieldDialog field;
    DialogScript script([&](HWND dialog) {
      setName(dialog, name.c_str());
      press(dialog, IDOK);
      EXPECT_THAT(takeBoxes(), IsEmpty());
    });
    EXPECT_EQ(field.run(frame()), IDOK);
    EXPECT_EQ(field.field.name.text(), name);
  }
  /// Confirms this name; it is to be refused with that reason, and the dialog to stay as it is.
  void expectRefused(const std::wstring& name, const std::wstring& reason) {
    NewFieldDialog field;
    DialogScript script([&](HWND dialog) {
      setName(dialog, name.c_str());
      press(dialog, IDOK);
      EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, reason)));
      EXPECT_EQ(textOf(dialog, IDC_NEW_FIELD_NAME), name);
      EXPECT_EQ(selectedType(dialog), 5);
      press(dialog, IDCANCEL);
    });
    EXPECT_EQ(field.run(frame()), IDCANCEL);
    EXPECT_TRUE(field.field.name.isEmpty());
  }
};

TEST_F(NewFieldTest, ItOpensWithTheShortTextChosen) {
  NewFieldDialog field;
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"New Field");
    EXPECT_EQ(textOf(dialog, IDC_NEW_FIELD_NAME), L"");
    EXPECT_EQ(selectedType(dialog), 5);
    EXPECT_EQ(textOf(dialog, IDC_NEW_FIELD_TYPE), L"Text (to 255 characters)");
    EXPECT_EQ(textOf(dialog, IDOK), L"OK");
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_FIELD_NAME));
    EXPECT_EQ(currentDialog, dialog);
    EXPECT_EQ(GetParent(dialog), frame());
    press(dialog, IDCANCEL);
  });
  EXPECT_EQ(field.run(frame()), IDCANCEL);
  EXPECT_EQ(script.count(), 1);
  EXPECT_EQ(currentDialog, nullptr);
}

TEST_F(NewFieldTest, TheBoxSortsAndKeepsTheOrderOfTheTable) {
  NewFieldDialog field;
  DialogScript script([](HWND dialog) {
    const HWND box = GetDlgItem(dialog, IDC_NEW_FIELD_TYPE);
    EXPECT_EQ(styleOf(box) & (CBS_SORT | CBS_DROPDOWNLIST), static_cast<DWORD>(CBS_SORT | CBS_DROPDOWNLIST));
    const std::vector<std::wstring> labels = entries(dialog, IDC_NEW_FIELD_TYPE);
    ASSERT_EQ(labels.size(), 7u);
    for (std::size_t row = 0; row < 7; ++row) EXPECT_EQ(labels[row], offeredFieldKinds()[row].label);
    press(dialog, IDCANCEL);
  });
  field.run(frame());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(NewFieldTest, EachTypeIsSpelledAsTheStatementNeedsIt) {
  const wchar_t* const spelled[] = {L"Bit",     L"Datetime",      L"Float", L"SmallInt",
                                    L"Integer", L"Varchar (255)", L"Text"};
  for (int row = 0; row < 7; ++row) {
    NewFieldDialog field;
    DialogScript script([&](HWND dialog) {
      setName(dialog, L"a");
      selectType(dialog, row);
      press(dialog, IDOK);
    });
    EXPECT_EQ(field.run(frame()), IDOK);
    EXPECT_STREQ(field.field.sqlType.text(), spelled[row]);
    EXPECT_FALSE(field.field.isUndecided);
  }
}

TEST_F(NewFieldTest, AnEmptyNameIsRefused) {
  expectRefused(L"", L"Please enter a field name!");
}

TEST_F(NewFieldTest, ThePlainApostropheIsAccepted) {
  expectTaken(L"Customer's");
}

TEST_F(NewFieldTest, TheTypographicApostropheIsRefused) {
  expectRefused(L"Customer\u2019s", kForbiddenText);
}

TEST_F(NewFieldTest, EveryForbiddenCharacterIsRefused) {
  for (const wchar_t* name : {L"`", L"a.b", L"a!", L"[a", L"a]", L"\"a\"", L"*", L"?"}) {
    expectRefused(name, kForbiddenText);
  }
}

TEST_F(NewFieldTest, ASingleBlankIsAName) {
  expectTaken(L" ");
}

TEST_F(NewFieldTest, NamesOfAllKindsPassUnchanged) {
  expectTaken(std::wstring(300, L'n'));
  expectTaken(L"100 %s %n");
  expectTaken(L"\u05e9\u05dc\u05d5\u05dd");
  expectTaken(L"\U0001F600\U0001F4A9");
}

TEST_F(NewFieldTest, APastedBookIsTakenAsFarAsTheEditHoldsIt) {
  NewFieldDialog field;
  DialogScript script([&](HWND dialog) {
    const std::wstring book(40000, L'x');
    SendDlgItemMessageW(dialog, IDC_NEW_FIELD_NAME, EM_REPLACESEL, TRUE,
                        reinterpret_cast<LPARAM>(book.c_str()));
    setName(dialog, book.c_str());
    press(dialog, IDOK);
  });
  EXPECT_EQ(field.run(frame()), IDOK);
  EXPECT_EQ(field.field.name.length(), 40000u);
}

TEST_F(NewFieldTest, WithoutATypeItIsRefused) {
  NewFieldDialog field;
  DialogScript script([&](HWND dialog) {
    setName(dialog, L"a");
    selectType(dialog, -1);
    press(dialog, IDOK);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, L"Please select a type!")));
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_NEW_FIELD_TYPE));
    press(dialog, IDCANCEL);
  });
  EXPECT_EQ(field.run(frame()), IDCANCEL);
}

TEST_F(NewFieldTest, TheNameIsLookedAtBeforeTheType) {
  NewFieldDialog field;
  DialogScript script([&](HWND dialog) {
    selectType(dialog, -1);
    press(dialog, IDOK);
    setName(dialog, L"a.b");
    press(dialog, IDOK);
    EXPECT_THAT(takeBoxes(),
                ElementsAre(message(dialog, L"Please enter a field name!"), message(dialog, kForbiddenText)));
    press(dialog, IDCANCEL);
  });
  field.run(frame());
  EXPECT_EQ(script.count(), 1);
}

TEST_F(NewFieldTest, EnterConfirmsAndEscapeCancels) {
  NewFieldDialog field;
  {
    DialogScript script([&](HWND dialog) {
      setName(dialog, L"a");
      postKey(GetDlgItem(dialog, IDC_NEW_FIELD_NAME), VK_RETURN);
    });
    EXPECT_EQ(field.run(frame()), IDOK);
  }
  DialogScript script([&](HWND dialog) { postKey(GetDlgItem(dialog, IDC_NEW_FIELD_NAME), VK_ESCAPE); });
  EXPECT_EQ(field.run(frame()), IDCANCEL);
}

TEST_F(NewFieldTest, TheInputPanelIsUpWhileItIsOpen) {
  for (const int end : {IDOK, IDCANCEL}) {
    NewFieldDialog field;
    ASSERT_FALSE(isPanelUp());
    DialogScript script([&](HWND dialog) {
      EXPECT_TRUE(isPanelUp());
      setName(dialog, L"a");
      press(dialog, end);
    });
    EXPECT_EQ(field.run(frame()), end);
    EXPECT_FALSE(isPanelUp());
  }
}

TEST_F(NewFieldTest, AnInputPanelThatWasUpStays) {
  SHSipPreference(frame(), SIP_UP);
  NewFieldDialog field;
  DialogScript script([&](HWND dialog) { press(dialog, IDCANCEL); });
  field.run(frame());
  EXPECT_TRUE(isPanelUp());
}

TEST_F(NewFieldTest, ItStandsAboveTheMiddleAtEveryZoom) {
  for (const int zoom : {100, 200, 100}) {
    HandheldSetZoom(zoom);
    NewFieldDialog field;
    DialogScript script([&](HWND dialog) {
      expectFits(dialog);
      expectCentred(dialog, 20);
      expectColors(dialog);
      expectTextsFit(dialog);
      EXPECT_THAT(tabOrder(dialog), ElementsAre(IDC_NEW_FIELD_NAME, IDC_NEW_FIELD_TYPE, IDOK));
      press(dialog, IDCANCEL);
    });
    field.run(frame());
    EXPECT_EQ(script.count(), 1);
  }
}

}  // namespace
