// The program is ended by a fault: what was typed is offered at the next start, and a report says where it
// happened.
#include <windows.h>

#include <commctrl.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "app/recovery/fault_watch.h"
#include "base/program_folder.h"
#include "base/settings/settings_store.h"
#include "dialogs/query/query_dialog_ids.h"
#include "owners/handles.h"
#include "resources/command_ids.h"
#include "tests/automation/support/sqlite_file.h"
#include "tests/support/process.h"
#include "tests/ui/remote/remote_dialog.h"
#include "tests/ui/support/ui_test.h"

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testsupport::contentOf;

namespace {

std::wstring wideTextOf(const fs::path& path) {
  const std::string bytes = contentOf(path);
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text;
}

// ---- The watch by itself, in a process of its own that ends in the way that its name says

/// What Catches ends with, so that one that never ran isn't taken for one that left nothing.
constexpr int kCaught = 17;

constexpr wchar_t kFolderVariable[] = L"QUIVANE_TEST_FAULT_FOLDER";

RecoveryFiles filesIn(const fs::path& folder) {
  return {folder / "typed.txt", folder / "fault.txt"};
}

/// What ends by an exception has had half of the stack that is to be left.
constexpr int kHadRoom = 18;

/// What was there before the watch, which calls it when it has done its own.
LONG WINAPI needRoom(EXCEPTION_POINTERS*) {
  volatile char room[32 * 1024];
  for (volatile char& each : room) each = 1;
  ExitProcess(kHadRoom);
}

class EndsByFault : public testing::Test {
 protected:
  void SetUp() override {
    SetUnhandledExceptionFilter(needRoom);
    std::wstring folder(MAX_PATH, L'\0');
    folder.resize(GetEnvironmentVariableW(kFolderVariable, folder.data(), MAX_PATH));
    watch_.emplace(filesIn(folder));
    FaultWatch::keepTyped(L"typed before");
    FaultWatch::keepTyped(L"typed last");
  }

 private:
  std::optional<FaultWatch> watch_;
};

TEST_F(EndsByFault, DISABLED_Access) {
  *reinterpret_cast<volatile int*>(0x10) = 1;
}

TEST_F(EndsByFault, DISABLED_Abort) {
  std::abort();
}

TEST_F(EndsByFault, DISABLED_Exception) {
  std::thread([] { throw std::runtime_error("nobody catches it"); }).join();
}

TEST_F(EndsByFault, DISABLED_OtherThread) {
  std::thread([] { *reinterpret_cast<volatile int*>(0x10) = 1; }).join();
}

/// Ends for nobody, whatever the compiler may think.
__attribute__((noinline)) int fillStack(volatile char* above) {
  volatile char room[4096];
  room[0] = *above;
  return room[0] == 0 ? 0 : fillStack(room) + room[0];
}
TEST_F(EndsByFault, DISABLED_Stack) {
  volatile char first = 1;
  std::printf("%d", fillStack(&first));
}

TEST_F(EndsByFault, DISABLED_Catches) {
  try {
    throw std::runtime_error("caught");
  } catch (const std::exception&) {
    std::exit(kCaught);
  }
}

class FaultWatchTest : public UiTest, public testing::WithParamInterface<const char*> {
 protected:
  /// The victim's exit code. None when it didn't end in time.
  std::optional<DWORD> endBy(const std::string& name) {
    SetEnvironmentVariableW(kFolderVariable, file("").c_str());
    const RunningProgram victim(
        testsupport::programPath(),
        L"--gtest_filter=EndsByFault.DISABLED_" + std::wstring(name.begin(), name.end()) +
            L" --gtest_also_run_disabled_tests --gtest_brief=1 --gtest_catch_exceptions=0");
    return victim.exitCode();
  }
  RecoveryFiles files() const { return filesIn(file("")); }
};

TEST_P(FaultWatchTest, LeavesWhatWasTypedAndWhereItHappened) {
  ASSERT_TRUE(endBy(GetParam()));
  EXPECT_EQ(wideTextOf(files().typed), L"\xFEFFtyped last");
  const std::string report = contentOf(files().fault);
  EXPECT_THAT(report, HasSubstr("Quivane was ended by a fault."));
  EXPECT_THAT(report, HasSubstr("Fault: "));
  EXPECT_THAT(report, HasSubstr("recovery_tests.exe + ")) << "the functions that were under way";
  EXPECT_THAT(report, Not(HasSubstr("typed last")));
}

INSTANTIATE_TEST_SUITE_P(, FaultWatchTest,
                         testing::Values("Access", "Abort", "Exception", "OtherThread", "Stack"),
                         [](const testing::TestParamInfo<const char*>& each) { return each.param; });

using OneFaultTest = FaultWatchTest;

TEST_F(OneFaultTest, AnExceptionThatIsCaughtLeavesNothing) {
  ASSERT_EQ(endBy("Catches"), kCaught);
  EXPECT_FALSE(fs::exists(files().typed));
  EXPECT_FALSE(fs::exists(files().fault));
}

TEST_F(OneFaultTest, WhatAnEarlierEndHasLeftIsKept) {
  ASSERT_TRUE(endBy("Access"));
  ASSERT_TRUE(endBy("Abort"));
  EXPECT_EQ(wideTextOf(files().typed), L"\xFEFFtyped last\r\ntyped last");
}

TEST_F(OneFaultTest, AFullStackLeavesRoom) {
  EXPECT_EQ(endBy("Stack"), kHadRoom);
}

TEST(RecoveryFilesTest, LieBesideAProgramThatLeavesNothingElsewhere) {
  EXPECT_EQ(recoveryFiles(true).typed, programFolder() / "Quivane recovered.txt");
  EXPECT_EQ(recoveryFiles(true).fault, programFolder() / "Quivane fault.txt");
  EXPECT_NE(recoveryFiles(false).typed.parent_path(), programFolder());
}

// ---- The real program

class RecoveryTest : public UiTest {
 protected:
  static constexpr int kName = 1200;

  void SetUp() override {
    makeDatabase(path_, {L"CREATE TABLE 'People' (Name Text, Town Text, Born Datetime, Read Bit)",
                         L"INSERT INTO People VALUES ('Ada', 'secret town', '2001-03-09', 1)"});
    forget();
  }
  void TearDown() override { forget(); }

  static fs::path folder() {
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"LOCALAPPDATA", folder, MAX_PATH);
    return folder;
  }
  static fs::path typedFile() { return folder() / "Quivane recovered.txt"; }
  static fs::path faultFile() { return folder() / "Quivane fault.txt"; }
  static void forget() {
    fs::remove(typedFile());
    fs::remove(faultFile());
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsStore::kRoot);
  }

  static void type(HWND edit, const std::wstring& text) {
    SendMessageW(edit, EM_SETSEL, 0, -1);
    for (const wchar_t character : text) PostMessageW(edit, WM_CHAR, character, 1);
    ASSERT_TRUE(remote::waitUntil([&] { return remote::text(edit) == text; }));
  }
  static void faultOnAnotherThread(const RunningProgram& program) {
    const HANDLE thread =
        CreateRemoteThread(program.processHandle(), nullptr, 0,
                           reinterpret_cast<LPTHREAD_START_ROUTINE>(0x10), nullptr, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    CloseHandle(thread);
    ASSERT_TRUE(program.exitCode());
  }
  /// On the thread of the windows: the control writes where nothing is.
  static void faultInAWindow(const OpenedDatabase& opened, const RunningProgram& program) {
    PostMessageW(remote::tabControl(opened.main()), TCM_GETITEMRECT, 0, 0x10);
    ASSERT_TRUE(program.exitCode());
  }
  const fs::path path_ = file("typed.cdb");
};

TEST_F(RecoveryTest, WhatStoodOnTheFormIsOfferedAtTheNextStart) {
  {
    OpenedDatabase opened(path_);
    ASSERT_TRUE(opened.tables());
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    ASSERT_NO_FATAL_FAILURE(type(remote::control(opened.main(), kName), L"Grace Hopper!"));
    faultInAWindow(opened, opened.program());
  }
  const std::wstring typed = wideTextOf(typedFile());
  EXPECT_THAT(typed, HasSubstr(L"Name:\r\nGrace Hopper!"));
  EXPECT_THAT(typed, HasSubstr(path_.wstring() + L", People, 1"));
  EXPECT_THAT(typed, Not(HasSubstr(L"Town"))) << "only what was typed";
  const std::string report = contentOf(faultFile());
  EXPECT_THAT(report, HasSubstr("Quivane Pocket PC.exe + "));
  EXPECT_THAT(report, Not(HasSubstr("Grace")));
  EXPECT_THAT(report, Not(HasSubstr("secret")));

  const RunningProgram again(quoted(path_));
  const HWND box = again.messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_THAT(remote::messageBoxText(box), HasSubstr(L"What was typed and not stored then is kept in"));
  PostMessageW(box, WM_COMMAND, IDYES, 0);
  ASSERT_TRUE(remote::waitForDialog(again.mainWindow(), L"What was typed"));
  const HWND shown = remote::frontWindow(again.mainWindow());
  EXPECT_THAT(remote::text(remote::control(shown, 1015)), HasSubstr(L"Grace Hopper!"));
  PostMessageW(shown, WM_COMMAND, IDOK, 0);
  HWND asked = nullptr;
  ASSERT_TRUE(
      remote::waitUntil([&] { return !IsWindow(shown) && (asked = remote::messageBox(again.processId())); }));
  EXPECT_TRUE(fs::exists(typedFile())) << "kept until he throws it away";
  PostMessageW(asked, WM_COMMAND, IDNO, 0);
  EXPECT_TRUE(remote::waitUntil([] { return !fs::exists(typedFile()); }));
  ASSERT_TRUE(remote::waitForMain(again.mainWindow()));
  EXPECT_EQ(remote::close(again.mainWindow()), 0u);
}

TEST_F(RecoveryTest, WhatCantBeReadOrThrownAwayIsToldAndKept) {
  testsupport::writeFile(typedFile(), "x");
  const UniqueFile held(CreateFileW(typedFile().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  ASSERT_TRUE(held);
  const RunningProgram program(quoted(path_));
  HWND box = program.messageBox();
  ASSERT_NE(box, nullptr);
  const auto answer = [&](WPARAM button, const wchar_t* next) {
    PostMessageW(box, WM_COMMAND, button, 0);
    return remote::waitUntil([&] {
      box = remote::messageBox(program.processId());
      return box && remote::messageBoxText(box).find(next) != std::wstring::npos;
    });
  };
  ASSERT_TRUE(answer(IDYES, L"What was typed can't be read."));
  ASSERT_TRUE(answer(IDOK, L"Quivane was ended by a fault."));
  ASSERT_TRUE(answer(IDNO, L"What was typed could not be thrown away."));
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitForMain(program.mainWindow()));
  EXPECT_TRUE(fs::exists(typedFile()));
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
}

TEST_F(RecoveryTest, SoIsWhatStoodInADialogAndAnyThreadMayFail) {
  {
    OpenedDatabase opened(path_);
    ASSERT_TRUE(opened.tables());
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    PostMessageW(remote::control(opened.main(), kName), WM_USER + 202, 0, 0);
    ASSERT_TRUE(remote::waitForDialog(opened.main(), L"Name"));
    const HWND zoom = remote::frontWindow(opened.main());
    ASSERT_NO_FATAL_FAILURE(type(remote::focus(zoom), L"typed into the zoom!"));
    faultOnAnotherThread(opened.program());
  }
  EXPECT_THAT(wideTextOf(typedFile()), HasSubstr(L"Name:\r\ntyped into the zoom!"));
  const RunningProgram again(quoted(path_));
  const HWND box = again.messageBox();
  ASSERT_NE(box, nullptr);
  PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
  ASSERT_TRUE(remote::waitForMain(again.mainWindow()));
  EXPECT_TRUE(fs::exists(typedFile())) << "he decides later";
  EXPECT_EQ(remote::close(again.mainWindow()), 0u);
}

/// The keyboard has gone on, and comes back; what was typed stays.
TEST_F(RecoveryTest, SoIsWhatStoodInEachFieldOfADialog) {
  {
    OpenedDatabase opened(path_);
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
    PostMessageW(opened.main(), WM_COMMAND, ID_QUERY_NEW, 0);
    ASSERT_TRUE(remote::waitForDialog(opened.main(), L"Query"));
    const HWND query = remote::frontWindow(opened.main());
    const HWND name = remote::control(query, IDC_QUERY_NAME);
    const HWND sql = remote::control(query, IDC_QUERY_SQL);
    const auto goTo = [&](HWND edit) {
      PostMessageW(query, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit), TRUE);
      return remote::waitUntil([&] { return remote::focus(query) == edit; });
    };
    ASSERT_TRUE(goTo(name));
    ASSERT_NO_FATAL_FAILURE(type(name, L"All names"));
    ASSERT_TRUE(goTo(sql));
    ASSERT_NO_FATAL_FAILURE(type(sql, L"SELECT Name FROM People"));
    ASSERT_TRUE(goTo(name));
    faultInAWindow(opened, opened.program());
  }
  EXPECT_THAT(wideTextOf(typedFile()), HasSubstr(L"Query:\r\nAll names\r\nSELECT Name FROM People\r\n"));
}

TEST_F(RecoveryTest, WhatIsStoredIsNotOffered) {
  {
    OpenedDatabase opened(path_);
    ASSERT_TRUE(opened.tables());
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    ASSERT_NO_FATAL_FAILURE(type(remote::control(opened.main(), kName), L"stored"));
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kListPage));
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kTablesPage));
    faultOnAnotherThread(opened.program());
  }
  EXPECT_TRUE(fs::exists(faultFile()));
  EXPECT_FALSE(fs::exists(typedFile()));
  EXPECT_THAT(automationtest::sqliteColumn(path_.wstring(), "SELECT Name FROM People"),
              testing::ElementsAre("stored"));
}

/// The record is stored before the dialog opens, in whose loop no message of the form's comes.
TEST_F(RecoveryTest, NorIsWhatWasStoredForADialog) {
  {
    OpenedDatabase opened(path_);
    ASSERT_TRUE(opened.tables());
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    ASSERT_NO_FATAL_FAILURE(type(remote::control(opened.main(), kName), L"stored"));
    PostMessageW(opened.main(), WM_COMMAND, ID_FIND, 0);
    ASSERT_TRUE(remote::waitForDialog(opened.main(), L"Find"));
    faultOnAnotherThread(opened.program());
  }
  EXPECT_TRUE(fs::exists(faultFile()));
  EXPECT_FALSE(fs::exists(typedFile()));
  EXPECT_THAT(automationtest::sqliteColumn(path_.wstring(), "SELECT Name FROM People"),
              testing::ElementsAre("stored"));
}

TEST_F(RecoveryTest, ATextWithLineBreaksThatNobodyHasChangedIsNotOffered) {
  runStatements(path_, {L"UPDATE People SET Name = 'Ada' || char(13, 10) || 'Lovelace'"});
  {
    OpenedDatabase opened(path_);
    ASSERT_TRUE(opened.tables());
    ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
    const HWND name = remote::control(opened.main(), kName);
    ASSERT_TRUE(remote::waitUntil([&] { return remote::focus(name) == name; }));
    faultInAWindow(opened, opened.program());
  }
  EXPECT_TRUE(fs::exists(faultFile()));
  EXPECT_FALSE(fs::exists(typedFile()));
}

TEST_F(RecoveryTest, AnOrdinaryEndLeavesNothing) {
  OpenedDatabase opened(path_);
  ASSERT_TRUE(opened.tables());
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kFormPage));
  ASSERT_NO_FATAL_FAILURE(type(remote::control(opened.main(), kName), L"typed"));
  EXPECT_EQ(remote::close(opened.main()), 0u);
  EXPECT_FALSE(fs::exists(typedFile()));
  EXPECT_FALSE(fs::exists(faultFile()));
}

}  // namespace
