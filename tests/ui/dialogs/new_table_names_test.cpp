// Which names a new table may have.
#include "tests/ui/dialogs/new_table_fixture.h"

using testing::ElementsAre;

namespace {

TEST_F(NewTableTest, AnEmptyNameIsRefused) {
  expectRefused(L"", L"Please enter a table name!");
}

TEST_F(NewTableTest, ThePlainApostropheIsAcceptedAndTheTypographicOneRefused) {
  expectTaken(L"Customer's");
  table_.name.clear();
  table_.fields.clear();
  table_.columns.clear();
  expectRefused(L"Customer\u2019s", L"Table name cannot use characters:\n` . ! \u2019 [ ] \" * ?");
}

TEST_F(NewTableTest, ATableOfThatNameInAnotherCaseIsRefused) {
  tables_.append(L"ORDERS");
  expectRefused(L"orders", L"Table orders already exists!\nChoose a different name");
}

TEST_F(NewTableTest, ANameWithPercentSignsIsShownAsTyped) {
  tables_.append(L"100%S%N");
  expectRefused(L"100%s%n", L"Table 100%s%n already exists!\nChoose a different name");
}

TEST_F(NewTableTest, WithoutFieldsItIsRefused) {
  EXPECT_EQ(run([&](HWND dialog) {
              setName(dialog, L"People");
              press(dialog, IDOK);
              EXPECT_THAT(takeBoxes(), ElementsAre(message(dialog, L"Please define fields!")));
              press(dialog, IDCANCEL);
            }),
            IDCANCEL);
}

TEST_F(NewTableTest, TheNameIsLookedAtBeforeTheFields) {
  tables_.append(L"T");
  run([&](HWND dialog) {
    for (const wchar_t* name : {L"", L"a*", L"t"}) {
      setName(dialog, name);
      press(dialog, IDOK);
    }
    EXPECT_THAT(takeBoxes(),
                ElementsAre(message(dialog, L"Please enter a table name!"),
                            message(dialog, L"Table name cannot use characters:\n` . ! \u2019 [ ] \" * ?"),
                            message(dialog, L"Table t already exists!\nChoose a different name")));
    press(dialog, IDCANCEL);
  });
}

TEST_F(NewTableTest, ASingleBlankIsAName) {
  expectTaken(L" ");
}

TEST_F(NewTableTest, NamesOfAllKindsPassUnchanged) {
  expectTaken(std::wstring(300, L'n'));
  expectTaken(L"\u05e9\u05dc\u05d5\u05dd 100 %s \U0001F600");
  expectTaken(std::wstring(40000, L'x'));
}

}  // namespace
