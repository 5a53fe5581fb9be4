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
    EXPECT_EQ(takeBoxes(), says(window, L"Queries must begin with a SELECT keyword!"));
    EXPECT_THAT(asked, IsEmpty());
    SetDlgItemTextW(window, kSql, L"select 1");
    click(window, kCheck);
    EXPECT_EQ(takeBoxes(), says(window, L"Query is OK"));
    returnsRecords = false;
    click(window, kCheck);
    EXPECT_EQ(takeBoxes(), says(window, L"Query does not return records"));
    EXPECT_THAT(asked, ElementsAre(L"select 1", L"select 1"));
    cancel(window);
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
    confirm(window);
    if (GetParam().passes) {
      EXPECT_THAT(asked, ElementsAre(GetParam().sql));
      EXPECT_THAT(takeBoxes(), IsEmpty());
    } else {
      EXPECT_THAT(asked, IsEmpty());
      EXPECT_EQ(takeBoxes(), says(window, L"Queries must begin with a SELECT keyword!"));
      cancel(window);
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
    confirm(window);
    EXPECT_EQ(takeBoxes(), says(window, L"Please enter a query name!"));
    EXPECT_EQ(GetFocus(), GetDlgItem(window, kName));
    EXPECT_EQ(textIn(window, kSql), L"nonsense");
    EXPECT_THAT(asked, IsEmpty());
    cancel(window);
  });
}

TEST_F(QueryDialogTest, ANameOfBlanksIsAccepted) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kName, L"   ");
              confirm(window);
            }),
            IDOK);
  EXPECT_STREQ(dialog.name.text(), L"   ");
}

TEST_F(QueryDialogTest, OkHandsOverTheNameAndTheSql) {
  EXPECT_EQ(show([&](HWND window) {
              SetDlgItemTextW(window, kName, kHostile.c_str());
              SetDlgItemTextW(window, kSql, L"select '%s'\r\nfrom [a]");
              confirm(window);
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
      confirm(window);
      EXPECT_EQ(textIn(window, kName), L"mine");
      EXPECT_EQ(textIn(window, kSql), sql);
      EXPECT_STREQ(dialog.name.text(), L"mine");
      EXPECT_STREQ(dialog.sql.text(), L"SELECT * FROM");
    }
    const auto seen = takeBoxes();
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0], says(window, L"Queries must begin with a SELECT keyword!")[0]);
    EXPECT_EQ(seen[1], says(window, L"Query does not return records")[0]);
    cancel(window);
  });
}

TEST_F(QueryDialogTest, TheStoresReasonComesFirst) {
  returnsRecords = false;
  reason = L"There is no table nowhere.";
  show([&](HWND window) {
    SetDlgItemTextW(window, kName, L"mine");
    SetDlgItemTextW(window, kSql, L"SELECT * FROM nowhere");
    click(window, kCheck);
    confirm(window);
    const auto seen = takeBoxes();
    ASSERT_EQ(seen.size(), 4u);
    for (const std::size_t first : {0u, 2u}) {
      EXPECT_EQ(seen[first], says(window, reason)[0]);
      EXPECT_EQ(seen[first + 1], says(window, L"Query does not return records")[0]);
    }
    cancel(window);
  });
}

}  // namespace
}  // namespace querytest
