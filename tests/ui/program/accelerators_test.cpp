// Each of the accelerators, by its key.
#include "base/settings/options.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"

namespace {

constexpr int kPositionBox = 1012;
constexpr int kFirstTextEditor = 1200;

class AcceleratorsTest : public UiTest {
 protected:
  void SetUp() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
    ASSERT_TRUE(SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecords));
    makeDatabase(file("a.cdb"),
                 {L"CREATE TABLE 'T' (f0 Text, f1 Integer, f2 Integer, f3 Integer, f4 Integer, f5 Integer, "
                  L"f6 Integer, f7 Integer, f8 Integer, f9 Integer)",
                  L"INSERT INTO T (f0) VALUES ('one'), ('two'), ('three'), ('four'), ('five')"});
    program_ = std::make_unique<RunningProgram>(quoted(file("a.cdb")));
    user_ = std::make_unique<User>(User::Hand::keyboard, *program_);
    ASSERT_NE(program_->tablesList(), nullptr);
    user_->showPage(OpenedDatabase::kFormPage);
    ASSERT_TRUE(comesTo(L"1 / 5"));
  }
  void TearDown() override {
    user_.reset();
    program_.reset();
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  HWND main() const { return user_->main(); }
  const User& user() const { return *user_; }
  DWORD processId() const { return program_->processId(); }
  HWND editor(int index) const { return remote::control(main(), kFirstTextEditor + index); }
  bool isShown(int index) const { return IsWindowVisible(editor(index)) != FALSE; }
  bool comesTo(const std::wstring& position) const {
    return remote::waitUntil(
        [&] { return remote::text(remote::control(main(), kPositionBox)).ends_with(L" " + position); });
  }

 private:
  std::unique_ptr<RunningProgram> program_;
  std::unique_ptr<User> user_;
};

TEST_F(AcceleratorsTest, CtrlWithRLPAndTMoveThroughTheRecords) {
  userinput::press('L', VK_CONTROL);
  EXPECT_TRUE(comesTo(L"5 / 5"));
  userinput::press('P', VK_CONTROL);
  EXPECT_TRUE(comesTo(L"4 / 5"));
  userinput::press('R', VK_CONTROL);
  EXPECT_TRUE(comesTo(L"1 / 5"));
  userinput::press('T', VK_CONTROL);
  EXPECT_TRUE(comesTo(L"2 / 5"));
}

TEST_F(AcceleratorsTest, AltWithNAndVTurnTheFormsPages) {
  EXPECT_FALSE(isShown(9));
  userinput::press('N', VK_MENU);
  EXPECT_TRUE(remote::waitUntil([this] { return isShown(9) && !isShown(0); }));
  userinput::press('V', VK_MENU);
  EXPECT_TRUE(remote::waitUntil([this] { return isShown(0) && !isShown(9); }));
}

TEST_F(AcceleratorsTest, CtrlWBeginsANewRecord) {
  userinput::press('W', VK_CONTROL);
  EXPECT_TRUE(remote::waitUntil([this] { return remote::text(editor(0)).empty(); }));
}

TEST_F(AcceleratorsTest, CtrlFOpensTheSearch) {
  userinput::press('F', VK_CONTROL);
  const HWND dialog = user().dialog(L"Find");
  ASSERT_NE(dialog, nullptr);
  SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(remote::waitUntil([=] { return !IsWindow(dialog); }));
}

/// They are in the table and nobody handles their commands.
TEST_F(AcceleratorsTest, F6EnterAndCtrlXDoNothing) {
  SendMessageW(editor(0), EM_SETSEL, 0, -1);
  userinput::press(VK_F6);
  userinput::press(VK_F6, VK_SHIFT);
  userinput::press(VK_RETURN);
  userinput::press('X', VK_CONTROL);
  // The keys come one after the other: this one shows that the others are through.
  userinput::press('N', VK_MENU);
  ASSERT_TRUE(remote::waitUntil([this] { return isShown(9); }));
  EXPECT_EQ(remote::text(editor(0)), L"one");
  EXPECT_TRUE(comesTo(L"1 / 5"));
}

}  // namespace
