#include "dialogs/password/server_password_dialog.h"

#include <optional>
#include <string>

#include "dialogs/password/password_ids.h"
#include "gmock/gmock.h"
#include "tests/ui/dialogs/password_fixture.h"

namespace {

using testing::ElementsAre;

class ServerPasswordDialogTest : public PasswordTest, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    PasswordTest::SetUp();
    HandheldSetZoom(GetParam());
  }
  std::optional<std::wstring> ask(const wchar_t* reason) {
    std::optional<std::wstring> given;
    run([&] {
      ServerPasswordDialog dialog(reason);
      if (const std::optional<String> typed = dialog.run(frame())) given = typed->text();
    });
    return given;
  }
};

INSTANTIATE_TEST_SUITE_P(Zooms, ServerPasswordDialogTest, testing::Values(100, 200));

TEST_P(ServerPasswordDialogTest, SaysWhyAndGivesWhatIsTyped) {
  then([&](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"Server Password");
    EXPECT_THAT(visibleTexts(dialog),
                ElementsAre(L"The server wants a password.", L"Password:", L"", L"OK", L"Cancel"));
    EXPECT_THAT(accessKeys(dialog), ElementsAre(L'P'));
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog, kPassword));
    EXPECT_TRUE(isPanelUp());
    expectCentred(dialog);
    expectFits(dialog);
    const HWND edit = GetDlgItem(dialog, kPassword);
    EXPECT_NE(styleOf(edit) & ES_PASSWORD, 0u) << "it is not shown";
    for (int i = 0; i < 300; ++i) SendMessageW(edit, WM_CHAR, L'x', 1);
    EXPECT_EQ(GetWindowTextLengthW(edit), 255);
    SetWindowTextW(edit, L"geheim \x00E9 'x'");
    DialogScript::close(dialog, IDOK);
  });
  EXPECT_EQ(ask(L"The server wants a password."), L"geheim \x00E9 'x'");
}

TEST_P(ServerPasswordDialogTest, AnAmpersandOfTheServersIsNoAccessKey) {
  then([](HWND dialog) {
    const HWND reason = GetDlgItem(dialog, IDC_PASSWORD_REASON);
    EXPECT_EQ(textOf(reason), L"for user \"a&b\"");
    EXPECT_NE(styleOf(reason) & SS_NOPREFIX, 0u);
    DialogScript::close(dialog, IDCANCEL);
  });
  EXPECT_EQ(ask(L"for user \"a&b\""), std::nullopt);
}

TEST_P(ServerPasswordDialogTest, NothingMayBeEnteredAndCancelGivesNone) {
  then([](HWND dialog) { DialogScript::close(dialog, IDOK); });
  EXPECT_EQ(ask(L""), L"");
  thenCancel();
  EXPECT_EQ(ask(L"The server wants a password."), std::nullopt);
}

}  // namespace
