// What is said about a query before it is taken.
#include "tests/ui/dialogs/query_fixture.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace querytest {
namespace {

TEST_F(QueryDialogTest, CheckSaysWhatItFoundAndStoresNothing) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"q");
    SetDlgItemTextW(window, kSql, L"DELETE FROM [Books]");
    click(window, kCheck);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Queries must begin with a SELECT keyword!")));
    EXPECT_THAT(asked, IsEmpty());
    SetDlgItemTextW(window, kSql, L"select 1");
    click(window, kCheck);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Query is OK")));
    returnsRecords = false;
    click(window, kCheck);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Query does not return records")));
    EXPECT_THAT(asked, ElementsAre(L"select 1", L"select 1"));
    press(window, IDCANCEL);
  });
  EXPECT_STREQ(dialog.name.text(), L"");
  EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
}

struct Beginning {
  const char* name;
  const wchar_t* sql;
  bool passes;
};
void PrintTo(const Beginning& beginning, std::ostream* out) {
  *out << beginning.name;
}
class BeginningTest : public QueryDialogTest, public testing::WithParamInterface<Beginning> {};

TEST_P(BeginningTest, OnlyTheSixLettersCount) {
  dialog.name = L"q";
  show([&](HWND window) {
    SetDlgItemTextW(window, kSql, GetParam().sql);
    press(window, IDOK);
    if (GetParam().passes) {
      EXPECT_THAT(asked, ElementsAre(GetParam().sql));
      EXPECT_THAT(takeBoxes(), IsEmpty());
    } else {
      EXPECT_THAT(asked, IsEmpty());
      EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Queries must begin with a SELECT keyword!")));
      press(window, IDCANCEL);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(QueryDialog, BeginningTest,
                         testing::Values(Beginning{"SelectionPasses", L"SELECTION", true},
                                         Beginning{"LowerCasePasses", L"select * from x", true},
                                         Beginning{"MixedCasePasses", L"Select", true},
                                         Beginning{"ALeadingBlankFails", L" SELECT * FROM x", false},
                                         Beginning{"ALeadingLineBreakFails", L"\r\nSELECT * FROM x", false},
                                         Beginning{"FiveLettersFail", L"SELEC", false},
                                         Beginning{"NothingFails", L"", false},
                                         Beginning{"AnotherWordFails", L"UPDATE x", false}),
                         [](const auto& each) { return each.param.name; });

TEST_F(QueryDialogTest, OkAsksForANameFirst) {
  show([&](HWND window) {
    SetDlgItemTextW(window, kSql, L"nonsense");
    SetFocus(GetDlgItem(window, kSql));
    press(window, IDOK);
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Please enter a query name!")));
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    EXPECT_EQ(textOf(window, kSql), L"nonsense");
    EXPECT_THAT(asked, IsEmpty());
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, ANameOfBlanksIsAccepted) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kName, L"   ");
              press(window, IDOK);
            }),
            IDOK);
  EXPECT_STREQ(dialog.name.text(), L"   ");
}

TEST_F(QueryDialogTest, OkHandsOverTheNameAndTheSql) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kName, kHostile.c_str());
              SetDlgItemTextW(window, kSql, L"select '%s'\r\nfrom [a]");
              press(window, IDOK);
            }),
            IDOK);
  EXPECT_EQ(dialog.name.text(), kHostile);
  EXPECT_STREQ(dialog.sql.text(), L"select '%s'\r\nfrom [a]");
  EXPECT_THAT(asked, ElementsAre(L"select '%s'\r\nfrom [a]"));
  EXPECT_THAT(takeBoxes(), IsEmpty());
}

TEST_F(QueryDialogTest, WhatIsRefusedStaysInTheDialog) {
  returnsRecords = false;
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"mine");
    for (const wchar_t* const sql : {L"DROP TABLE x", L"SELECT * FROM nowhere"}) {
      SetDlgItemTextW(window, kSql, sql);
      press(window, IDOK);
      EXPECT_EQ(textOf(window, kName), L"mine");
      EXPECT_EQ(textOf(window, kSql), sql);
      EXPECT_STREQ(dialog.name.text(), L"mine");
      EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
    }
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, L"Queries must begin with a SELECT keyword!"),
                                         message(window, L"Query does not return records")));
    press(window, IDCANCEL);
  });
}

TEST_F(QueryDialogTest, TheStoresReasonComesFirst) {
  returnsRecords = false;
  reason = L"There is no table nowhere.";
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"mine");
    SetDlgItemTextW(window, kSql, L"SELECT * FROM nowhere");
    click(window, kCheck);
    press(window, IDOK);
    const Box none = message(window, L"Query does not return records");
    EXPECT_THAT(takeBoxes(), ElementsAre(message(window, reason), none, message(window, reason), none));
    press(window, IDCANCEL);
  });
}

}  // namespace
}  // namespace querytest
