// The program killed at random instants while it puts a former state back: the file is as it was before or as
// the copy is, every copy is whole, and what was there before is never lost. QUIVANE_KILLS says how often; 8
// times in each journal mode otherwise.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "base/settings/settings_store.h"
#include "dialogs/copies/go_back_ids.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/ui/support/kept_copies.h"
#include "tests/ui/support/ui_test.h"
#include "views/form/form_ids.h"

namespace fs = std::filesystem;
using automationtest::SqliteFile;
using testing::ElementsAre;

namespace {

constexpr int kKills = 8;
/// So many times as often, until both states were met.
constexpr int kMostRounds = 5;
constexpr int kBytes = 3'000'000;

int wantedKills() {
  const char* wanted = std::getenv("QUIVANE_KILLS");
  return wanted != nullptr ? std::max(std::atoi(wanted), 1) : kKills;
}

class KilledWhileGoingBackTest : public UiTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override { forgetKeptCopies(); }
  void TearDown() override {
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
    forgetKeptCopies();
  }

  void makeFormerState(const fs::path& path) {
    SqliteFile database(path.wstring());
    database.run(std::string("PRAGMA journal_mode = ") + GetParam());
    database.run("CREATE TABLE T (Name Text, Content Blob); INSERT INTO T VALUES ('former', randomblob(" +
                 std::to_string(kBytes) + "))");
    content_ = contentIn(path);
  }

  static std::string nameIn(const fs::path& database) {
    const auto names = SqliteFile(database.wstring()).column("SELECT Name FROM T");
    return names.size() == 1 ? names.front() : std::string();
  }
  /// With the large value that every state has.
  static std::string contentIn(const fs::path& database) {
    const auto hex = SqliteFile(database.wstring()).column("SELECT hex(Content) FROM T");
    return hex.size() == 1 ? hex.front() : std::string();
  }
  void expectWhole(const fs::path& database) const {
    EXPECT_THAT(SqliteFile(database.wstring()).column("PRAGMA integrity_check"), ElementsAre("ok"))
        << database;
    EXPECT_TRUE(contentIn(database) == content_) << database;
  }

  /// As a user types into the form and goes to another page, which stores it.
  void change(const OpenedDatabase& opened, const std::wstring& name) const {
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    const HWND editor = remote::control(opened.main(), kFirstTextEditorId);
    ASSERT_NE(editor, nullptr);
    remote::typeText(editor, name);
    ASSERT_EQ(remote::text(editor), name);
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
  }
  /// Up to the question whether to put the only copy back; the box that asks it.
  static HWND askToPutBack(const OpenedDatabase& opened) {
    const DWORD process = remote::processOf(opened.main());
    PostMessageW(opened.main(), WM_COMMAND, ID_GO_BACK_TO, 0);
    HWND dialog = nullptr;
    remote::waitUntil([&] { return (dialog = remote::dialog(process, L"Go Back To")) != nullptr; });
    const HWND list = remote::control(dialog, IDC_GO_BACK_COPIES);
    if (list == nullptr || !remote::waitUntil([=] { return remote::itemCount(list) == 1; })) return nullptr;
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_GO_BACK_PUT, BN_CLICKED), 0);
    HWND box = nullptr;
    remote::waitUntil([&] { return (box = remote::dialog(process, L"Quivane")) != nullptr; });
    return box;
  }

  /// The program that has just been told to put the only copy back; null where that took too long.
  std::unique_ptr<OpenedDatabase> startGoingBack(const fs::path& path) {
    forgetKeptCopies();
    makeFormerState(path);
    auto opened = std::make_unique<OpenedDatabase>(path);
    if (opened->tables() == nullptr) return nullptr;
    change(*opened, L"present");
    const HWND question = askToPutBack(*opened);
    if (question == nullptr || nameIn(path) != "present") return nullptr;
    PostMessageW(question, WM_COMMAND, IDYES, 0);
    return opened;
  }
  /// How long it takes where nobody kills, in milliseconds.
  DWORD timeOfGoingBack() {
    const fs::path path = file("whole.cdb");
    const auto opened = startGoingBack(path);
    const ULONGLONG begin = GetTickCount64();
    EXPECT_TRUE(opened && remote::waitUntil([&] { return nameIn(path) == "former"; }));
    return static_cast<DWORD>(GetTickCount64() - begin);
  }

  std::mt19937 random_{std::random_device{}()};
  std::string content_;
};

TEST_P(KilledWhileGoingBackTest, TheFileIsAsBeforeOrAsTheCopyAndNothingIsLost) {
  const DWORD whole = timeOfGoingBack();
  int goneBack = 0;
  const int kills = wantedKills();
  int number = 0;
  // Both states are to be met.
  for (; (number < kills || goneBack == 0 || goneBack == number) && number < kMostRounds * kills &&
         !HasFailure();
       ++number) {
    SCOPED_TRACE(number);
    const fs::path path = file("killed " + std::to_string(number) + ".cdb");
    {
      const auto victim = startGoingBack(path);
      ASSERT_NE(victim, nullptr);
      // The instant is what is tried here.
      WaitForSingleObject(victim->program().processHandle(),
                          std::uniform_int_distribution<DWORD>(0, whole + whole / 4)(random_));
      EXPECT_TRUE(victim->program().isRunning()) << "it ended by itself";
      // Its end kills it.
    }
    const std::string after = nameIn(path);
    EXPECT_TRUE(after == "present" || after == "former") << after;
    expectWhole(path);
    const std::vector<fs::path> kept = keptCopies();
    ASSERT_FALSE(kept.empty());
    for (const fs::path& copy : kept) expectWhole(copy);
    EXPECT_EQ(nameIn(kept.front()), "former") << "what was to be put back stays";
    if (after != "former") continue;
    ++goneBack;
    EXPECT_EQ(nameIn(kept.back()), "present") << "what was there before is a copy";
  }
  std::printf("%d kills within %lu ms, gone back %d times\n", number, whole + whole / 4, goneBack);
  EXPECT_GE(goneBack, 1);
  EXPECT_LT(goneBack, number);
}

INSTANTIATE_TEST_SUITE_P(Modes, KilledWhileGoingBackTest, testing::Values("DELETE", "WAL"));

}  // namespace
