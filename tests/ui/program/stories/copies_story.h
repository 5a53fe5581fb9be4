#pragma once

#include <string>

#include "dialogs/copies/go_back_ids.h"
#include "resources/command_ids.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/support/kept_copies.h"
#include "views/form/form_ids.h"

/// Stories of a library's database and its former states.
class CopiesStory : public StoryTest {
 protected:
  void SetUp() override {
    StoryTest::SetUp();
    forgetKeptCopies();
    makeDatabase(path(),
                 {L"CREATE TABLE 'Books' (Title VarChar(40))", L"INSERT INTO Books VALUES ('Ulysses')",
                  L"CREATE TABLE 'People' (Name Text)", L"INSERT INTO People VALUES ('Joyce'), ('Bloom')"});
  }
  void TearDown() override {
    StoryTest::TearDown();
    forgetKeptCopies();
  }

  /// The list of copies, once it has so many rows.
  HWND goBackTo(User& user, std::size_t rows) {
    user.chooseDesktop(ID_GO_BACK_TO);
    const HWND dialog = user.dialog(L"Go Back To");
    const HWND list = remote::control(dialog, IDC_GO_BACK_COPIES);
    EXPECT_TRUE(remote::waitUntil([=] { return remote::itemTexts(list).size() == rows; }))
        << remote::itemTexts(list).size();
    return dialog;
  }
  /// Answers the message box that begins so.
  void answerBeginning(User& user, const std::wstring& beginning, int button) {
    const std::wstring text = remote::messageBoxText(user.dialog(L"Quivane"));
    EXPECT_THAT(text, testing::StartsWith(beginning));
    user.answer(L"Quivane", text, button);
  }
  void changeTitle(User& user, const wchar_t* title) {
    user.showPage(OpenedDatabase::kFormPage);
    user.fillEditor(kFirstTextEditorId, title);
    user.showPage(OpenedDatabase::kTablesPage);
  }
  std::wstring shownTitle(User& user) {
    return remote::text(remote::control(user.main(), kFirstTextEditorId));
  }
  std::wstring name() const { return path().wstring(); }
};
