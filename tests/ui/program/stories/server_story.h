#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "base/settings/options.h"
#include "tests/server/server_fixture.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"

/// Gives the tests of stories the database of the server's tests.
class ServersDatabase : public store::StoreTest {
 public:
  const std::string& name() const { return database_; }
  const std::filesystem::path& link() const { return path_; }

 private:
  void TestBody() override {}
};

/// Stories of a table People in a database of the server's.
class ServerStory : public StoryTest {
 protected:
  // The controls of the form over that table.
  static constexpr int kName = 1200;
  static constexpr int kBorn = 1201;
  static constexpr int kAlive = 1400;
  static constexpr int kPosition = 1012;

  void SetUp() override {
    StoryTest::SetUp();
    SettingsStore::writeDword(SettingsStore::kOptions, L"GenUpdateRights", kNewRecordsAndDeletions);
    SettingsStore::writeDword(SettingsStore::kOptions, L"WarningOnDeletion", 1);
  }

  void onServer(const std::string& sql) const { store::runOnServer(sql, database_.name()); }
  std::string stored(const std::string& sql) const { return store::OtherProgram(database_.link()).ask(sql); }

  void makePeople() const {
    onServer(
        "CREATE TABLE \"People\" (\"Name\" varchar(20), \"Alive\" boolean, \"Born\" integer PRIMARY KEY)");
    onServer(
        "INSERT INTO \"People\" VALUES ('Ada', false, 1815), ('Grace', false, 1906), ('Barbara', true, "
        "1939)");
  }
  std::string people() const {
    return stored("SELECT string_agg(Name || ' ' || Born || ' ' || Alive, ', ' ORDER BY Born) FROM People");
  }

  User& startHere() {
    User& user = launch(database_.link());
    awaitDatabase();
    return user;
  }
  User& startOnForm() {
    User& user = startHere();
    user.showPage(OpenedDatabase::kFormPage);
    return user;
  }
  void endHere(User& user) {
    user.exit();
    EXPECT_EQ(program().exitCode(), 0u);
    EXPECT_EQ(testsupport::contentOf(database_.link()), store::linkTo(database_.name()))
        << "a link is only read";
  }

  static std::wstring shown(const User& user, int editor) {
    return remote::text(remote::control(user.main(), editor));
  }
  static void awaitShown(const User& user, int editor, const wchar_t* text) {
    ASSERT_TRUE(remote::waitUntil([&] { return shown(user, editor) == text; }))
        << testing::PrintToString(shown(user, editor)) << " and not " << testing::PrintToString(text);
  }
  static void awaitNames(const User& user, const std::vector<std::wstring>& names) {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::itemTexts(remote::shownPage(user.main())) == names; }))
        << testing::PrintToString(remote::itemTexts(remote::shownPage(user.main())));
  }
  void awaitPopups(std::size_t count) const {
    ASSERT_TRUE(remote::waitUntil([&] { return remote::popups(program().processId()).size() == count; }));
  }
  /// A key that closes the menus that are open, after which another one opens.
  void pressForNextMenu(WORD key) const {
    const std::vector<HWND> former = remote::popups(program().processId());
    userinput::press(key);
    ASSERT_TRUE(remote::waitUntil([&] {
      const std::vector<HWND> open = remote::popups(program().processId());
      return open.size() == 1 && std::find(former.begin(), former.end(), open.front()) == former.end();
    }));
  }
  /// By the keys of the desktop menu, which are there for both hands.
  void chooseForColumn(int column, WORD key) const {
    userinput::press('M', VK_MENU);
    awaitPopups(1);
    userinput::press('O');
    awaitPopups(2);
    pressForNextMenu('C');
    for (int i = 0; i <= column; ++i) userinput::press(VK_DOWN);
    pressForNextMenu(VK_RETURN);
    userinput::press(key);
    awaitPopups(0);
  }

  ServersDatabase database_;
};
