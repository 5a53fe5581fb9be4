// Start-up, the single copy, the command line and the end of the program.
#include <algorithm>
#include <chrono>
#include <filesystem>

#include "base/settings/settings_store.h"
#include "owners/handles.h"
#include "tests/ui/support/ui_test.h"

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr DWORD kExitNoWindow = 16;
constexpr WORD kExitCommand = 40022;
constexpr WORD kOpenCommand = 32772;
constexpr UINT kPathFromSecondCopy = WM_USER + 205;
constexpr int kRebar = 1000;

const wchar_t* const kOneTable[] = {L"CREATE TABLE 'Books' (Title Varchar (255))"};

class StartTest : public UiTest {
 protected:
  /// A database with one table of that name.
  fs::path database(std::string_view fileName, const wchar_t* createTable = kOneTable[0]) {
    fs::path path = file(fileName);
    makeDatabase(path, {createTable});
    return path;
  }

  /// The main window once the start is over: it then answers commands.
  static HWND startedWindow(const RunningProgram& program) {
    const HWND main = program.mainWindow();
    const bool built = remote::waitUntil(
        [=] { return remote::recordGrid(main) != nullptr && GetDlgItem(main, 61206) != nullptr; });
    return built && remote::awaitStarted(main) ? main : nullptr;
  }
};

TEST_F(StartTest, WithoutACommandLineThereIsAWindowAndNoDatabase) {
  ASSERT_TRUE(registerBinComponents());
  RunningProgram program(L"");
  const HWND main = startedWindow(program);
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(remote::shownPage(main), nullptr);
  EXPECT_EQ(remote::itemCount(GetDlgItem(main, 61206)), 0);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(StartTest, APathInDoubleQuotesIsOpened) {
  const fs::path path = database("with blanks.cdb");
  RunningProgram program(quoted(path));
  const HWND tables = program.tablesList();
  ASSERT_NE(tables, nullptr);
  EXPECT_THAT(remote::itemTexts(tables), ElementsAre(L"Books"));
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
}

TEST_F(StartTest, APathWithoutQuotesIsOpenedBlanksIncluded) {
  const fs::path path = database("with blanks.cdb");
  RunningProgram program(path.wstring());
  EXPECT_NE(program.tablesList(), nullptr);
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
}

TEST_F(StartTest, APathFromTheCurrentFolderIsRememberedInFull) {
  const fs::path path = database("books.cdb");
  const fs::path before = fs::current_path();
  fs::current_path(path.parent_path());
  RunningProgram program(L"books.cdb");
  fs::current_path(before);
  EXPECT_NE(program.tablesList(), nullptr);
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
  String remembered;
  EXPECT_TRUE(SettingsStore::readString(SettingsStore::kOptions, L"LastDBOnStartup", remembered));
  EXPECT_EQ(fs::path(remembered.text()), path);
}

TEST_F(StartTest, AMissingFileIsReportedAndLeavesNoDatabaseOpen) {
  ASSERT_TRUE(registerBinComponents());
  const fs::path missing = file("missing.cdb");
  RunningProgram program(quoted(missing));
  const HWND box = program.messageBox();
  ASSERT_NE(box, nullptr);
  const std::wstring text = remote::messageBoxText(box);
  EXPECT_NE(text.find(L"Database " + missing.wstring() + L" could not be opened."), std::wstring::npos)
      << text;
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::messageBox(program.processId()) == nullptr; }));
  const HWND main = program.mainWindow();
  EXPECT_EQ(remote::shownPage(main), nullptr);
  EXPECT_FALSE(fs::exists(missing));
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(StartTest, AFileThatIsNoDatabaseIsReportedAndLeftAsItIs) {
  ASSERT_TRUE(registerBinComponents());
  const fs::path path = file("text.cdb");
  {
    const UniqueFile text(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(text.get(), "not a database", 14, &written, nullptr));
  }
  RunningProgram program(quoted(path));
  const HWND box = program.messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_NE(remote::messageBoxText(box).find(L"The file is not a database."), std::wstring::npos);
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
  EXPECT_EQ(fs::file_size(path), 14u);
}

TEST_F(StartTest, TheExitCommandEndsTheProgramWithZero) {
  OpenedDatabase opened(database("books.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  PostMessageW(opened.main(), WM_COMMAND, kExitCommand, 0);
  EXPECT_EQ(opened.program().exitCode(), 0u);
}

TEST_F(StartTest, ASecondCopyEndsWithSixteenAndLeavesTheFirstItsDatabase) {
  const fs::path first = database("first.cdb");
  const fs::path second = database("second.cdb", L"CREATE TABLE 'Other' (Name Varchar (255))");
  OpenedDatabase opened(first);
  ASSERT_NE(opened.tables(), nullptr);
  RunningProgram copy(quoted(second));
  EXPECT_EQ(copy.exitCode(), kExitNoWindow);
  EXPECT_TRUE(opened.program().isRunning());
  EXPECT_THAT(remote::itemTexts(opened.tables()), ElementsAre(L"Books"));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, ASecondCopyBringsTheFirstToTheFront) {
  OpenedDatabase opened(database("books.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ShowWindow(opened.main(), SW_MINIMIZE);
  ASSERT_TRUE(remote::waitUntil([&] { return IsIconic(opened.main()) != FALSE; }));
  RunningProgram copy(L"");
  EXPECT_EQ(copy.exitCode(), kExitNoWindow);
  EXPECT_TRUE(remote::waitUntil([&] { return IsIconic(opened.main()) == FALSE; }));
  EXPECT_TRUE(remote::waitUntil([&] { return GetForegroundWindow() == opened.main(); }));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

/// The window of the first copy has another title then.
TEST_F(StartTest, WhileAFileIsChosenASecondCopyShowsThatAndItsPathIsOpenedAfterwards) {
  const fs::path second = database("second.cdb", L"CREATE TABLE 'Other' (Name Varchar (255))");
  OpenedDatabase opened(database("first.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  PostMessageW(opened.main(), WM_COMMAND, kOpenCommand, 0);
  HWND dialog = nullptr;
  ASSERT_TRUE(remote::waitUntil(
      [&] { return (dialog = remote::dialog(opened.program().processId(), nullptr)) != nullptr; }));
  ASSERT_EQ(remote::text(opened.main()), L"Open Database");
  const UniqueWindow other(CreateWindowExW(0, L"STATIC", L"another program", WS_OVERLAPPED | WS_VISIBLE, 0, 0,
                                           50, 50, nullptr, nullptr, nullptr, nullptr));
  SetForegroundWindow(other.get());
  ASSERT_EQ(GetForegroundWindow(), other.get());

  RunningProgram copy(quoted(second));
  EXPECT_EQ(copy.exitCode(), kExitNoWindow);
  EXPECT_TRUE(remote::waitUntil([&] { return GetForegroundWindow() == dialog; }));
  EXPECT_THAT(remote::itemTexts(opened.tables()), ElementsAre(L"Books")) << "while the dialog is open";

  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(remote::waitUntil(
      [&] { return remote::itemTexts(opened.tables()) == std::vector<std::wstring>{L"Other"}; }));
  EXPECT_EQ(remote::text(opened.main()), L"Quivane");
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, APathHandedOverThatDoesNotOpenLeavesThePage) {
  OpenedDatabase opened(database("first.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  ASSERT_TRUE(remote::switchToPage(opened.main(), OpenedDatabase::kQueriesPage));
  const HWND page = remote::shownPage(opened.main());
  PostMessageW(opened.main(), WM_COMMAND, kOpenCommand, 0);
  HWND dialog = nullptr;
  ASSERT_TRUE(remote::waitUntil(
      [&] { return (dialog = remote::dialog(opened.program().processId(), nullptr)) != nullptr; }));
  RunningProgram copy(quoted(file("missing.cdb")));
  EXPECT_EQ(copy.exitCode(), kExitNoWindow);
  PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return IsWindow(dialog) == FALSE; }));
  const HWND box = opened.program().messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_THAT(remote::messageBoxText(box), HasSubstr(L"missing.cdb could not be opened."));
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(remote::waitUntil([&] { return remote::messageBox(opened.program().processId()) == nullptr; }));
  EXPECT_EQ(remote::selectedTab(remote::tabControl(opened.main())), OpenedDatabase::kQueriesPage);
  EXPECT_EQ(remote::shownPage(opened.main()), page);
  EXPECT_EQ(remote::control(opened.main(), kRebar), nullptr) << "the bars of the former database have gone";
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, APathHandedOverWhileNoFileIsChosenIsNotTaken) {
  const std::wstring second = database("second.cdb").wstring();
  OpenedDatabase opened(database("first.cdb", L"CREATE TABLE 'First' (Name Varchar (255))"));
  ASSERT_NE(opened.tables(), nullptr);
  COPYDATASTRUCT data{1, static_cast<DWORD>((second.size() + 1) * sizeof(wchar_t)),
                      const_cast<wchar_t*>(second.c_str())};
  EXPECT_EQ(SendMessageW(opened.main(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)), FALSE);
  SendMessageW(opened.main(), WM_NULL, 0, 0);
  EXPECT_THAT(remote::itemTexts(opened.tables()), ElementsAre(L"First"));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, ASecondCopyTakesTheForegroundToTheFirst) {
  OpenedDatabase opened(database("books.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  const UniqueWindow other(CreateWindowExW(0, L"STATIC", L"another program", WS_OVERLAPPED | WS_VISIBLE, 0, 0,
                                           50, 50, nullptr, nullptr, nullptr, nullptr));
  SetForegroundWindow(other.get());
  ASSERT_EQ(GetForegroundWindow(), other.get());
  RunningProgram copy(L"");
  EXPECT_EQ(copy.exitCode(), kExitNoWindow);
  EXPECT_TRUE(remote::waitUntil([&] { return GetForegroundWindow() == opened.main(); }));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

/// Plays a first copy that is still starting: it has the mutex and, later on, a window.
class FirstCopy {
 public:
  FirstCopy() : mutex_(CreateMutexW(nullptr, TRUE, L"Local\\Quivane.SingleInstance")) {}
  ~FirstCopy() { ReleaseMutex(mutex_.get()); }
  FirstCopy(const FirstCopy&) = delete;
  FirstCopy& operator=(const FirstCopy&) = delete;

  void createWindow() {
    WNDCLASSW description{};
    description.lpfnWndProc = procedure;
    description.lpszClassName = L"Quivane";
    RegisterClassW(&description);
    window_.reset(
        CreateWindowExW(0, L"Quivane", L"Quivane", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, nullptr, this));
  }

  /// Answers messages until a path has come. Empty when it takes too long.
  std::wstring waitForPath(HANDLE sender) {
    sender_ = sender;
    remote::waitUntil([this] {
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
      return !path_.empty();
    });
    return path_;
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
      SetWindowLongPtrW(window, GWLP_USERDATA,
                        reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams));
    }
    if (message == kPathFromSecondCopy) {
      auto& self = *reinterpret_cast<FirstCopy*>(GetWindowLongPtrW(window, GWLP_USERDATA));
      wchar_t text[MAX_PATH] = L"";
      ReadProcessMemory(self.sender_, reinterpret_cast<const void*>(wParam), text, sizeof(text), nullptr);
      self.path_ = text;
    }
    return DefWindowProcW(window, message, wParam, lParam);
  }

  UniqueMutex mutex_;
  UniqueWindow window_;
  HANDLE sender_ = nullptr;
  std::wstring path_;
};

TEST_F(StartTest, ACopyWaitsForAFirstOneThatHasNoWindowYetAndSendsItThePathWithoutQuotes) {
  ASSERT_TRUE(registerBinComponents());
  FirstCopy first;
  RunningProgram copy(L"\"C:\\some folder\\some.cdb\"");
  // It shows nothing of its own in much more time than a start takes.
  EXPECT_FALSE(
      remote::waitUntil([&] { return remote::mainWindow(copy.processId()) != nullptr || !copy.isRunning(); },
                        std::chrono::milliseconds(1000)));
  first.createWindow();
  EXPECT_EQ(first.waitForPath(copy.processHandle()), L"C:\\some folder\\some.cdb");
  EXPECT_EQ(copy.exitCode(), kExitNoWindow);
}

TEST_F(StartTest, OfFourQuickStartsOneBecomesTheFirst) {
  const fs::path path = database("books.cdb");
  const RunningProgram all[] = {RunningProgram(quoted(path)), RunningProgram(quoted(path)),
                                RunningProgram(quoted(path)), RunningProgram(quoted(path))};
  const auto running = [&] {
    return std::count_if(std::begin(all), std::end(all),
                         [](const RunningProgram& one) { return one.isRunning(); });
  };
  ASSERT_TRUE(remote::waitUntil([&] { return running() == 1; }));
  for (const RunningProgram& one : all) {
    if (one.isRunning()) {
      EXPECT_NE(one.tablesList(), nullptr);
      EXPECT_EQ(remote::close(one.mainWindow()), 0u);
    } else {
      EXPECT_EQ(one.exitCode(), kExitNoWindow);
    }
  }
}

TEST_F(StartTest, ThePathOfASecondCopyIsIgnored) {
  OpenedDatabase opened(database("books.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(SendMessageW(opened.main(), kPathFromSecondCopy, 0x10, 0), 0);
  EXPECT_TRUE(opened.program().isRunning());
  EXPECT_THAT(remote::itemTexts(opened.tables()), ElementsAre(L"Books"));
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, MissingComponentsAreRegistered) {
  const fs::path path = database("books.cdb");
  ASSERT_TRUE(unregisterBinComponents());
  OpenedDatabase opened(path);
  EXPECT_NE(opened.tables(), nullptr);
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, AMovedProgramFolderRegistersItsComponentsAnew) {
  const fs::path path = database("books.cdb");
  const fs::path moved = file("moved folder");
  fs::create_directory(moved);
  fs::copy_file(programFile(), moved / programFile().filename());
  for (const wchar_t* module : {L"adoce31.dll", L"aygshell.dll"}) {
    fs::copy_file(testsupport::binFolder() / module, moved / module);
  }
  {
    RunningProgram program(moved / programFile().filename(), quoted(path));
    EXPECT_NE(program.tablesList(), nullptr);
    EXPECT_EQ(remote::close(program.mainWindow()), 0u);
  }
  EXPECT_NE(registeredComponents().find(moved.wstring()), std::wstring::npos) << registeredComponents();
  // The folder is gone, and its registration leads nowhere.
  fs::remove_all(moved);
  OpenedDatabase opened(path);
  EXPECT_NE(opened.tables(), nullptr);
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

/// The program in a folder where no data-access components are, and none are registered.
class NoComponentsTest : public StartTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(registerBinComponents());
    ASSERT_TRUE(unregisterBinComponents());
    fs::copy_file(programFile(), alone());
    fs::copy_file(programFile().parent_path() / "aygshell.dll", alone().parent_path() / "aygshell.dll");
  }
  fs::path alone() const { return file("alone.exe"); }
};

TEST_F(NoComponentsTest, TheStartIsSilent) {
  RunningProgram program(alone(), L"");
  const HWND main = startedWindow(program);
  ASSERT_NE(main, nullptr);
  EXPECT_EQ(remote::messageBox(program.processId()), nullptr);
  EXPECT_EQ(remote::close(main), 0u);
}

TEST_F(NoComponentsTest, OpeningADatabaseTellsWhatIsMissing) {
  RunningProgram program(alone(), quoted(file("books.cdb")));
  const HWND box = program.messageBox();
  ASSERT_NE(box, nullptr);
  EXPECT_THAT(remote::messageBoxText(box), AllOf(HasSubstr(L"books.cdb could not be opened."),
                                                 HasSubstr(L"components (adoce31.dll) could not be loaded")));
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_EQ(remote::close(program.mainWindow()), 0u);
}

TEST_F(StartTest, TheFileAssociationIsWritten) {
  OpenedDatabase opened(database("books.cdb"));
  ASSERT_NE(opened.tables(), nullptr);
  EXPECT_EQ(classesValue(L".cdb"), L"Quivane");
  EXPECT_EQ(classesValue(L"Quivane"), L"Quivane Document");
  EXPECT_EQ(remote::close(opened.main()), 0u);
}

TEST_F(StartTest, TheAssociationNamesTheRecordedInstallFolder) {
  constexpr wchar_t kRecord[] = L"SOFTWARE\\Apps\\Morvale Software Quivane for Pocket PC";
  constexpr wchar_t kFolder[] = L"C:\\Quivane";
  UniqueRegistryKey key;
  ASSERT_EQ(
      RegCreateKeyExW(HKEY_LOCAL_MACHINE, kRecord, 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr), 0);
  ASSERT_EQ(RegSetValueExW(key.get(), L"InstallDir", 0, REG_SZ, reinterpret_cast<const BYTE*>(kFolder),
                           sizeof(kFolder)),
            0);
  OpenedDatabase opened(database("books.cdb"));
  EXPECT_NE(opened.tables(), nullptr);
  EXPECT_EQ(remote::close(opened.main()), 0u);
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kRecord);
  EXPECT_EQ(classesValue(L"Quivane\\DefaultIcon"), L"C:\\Quivane\\Quivane Pocket PC.exe,0");
  EXPECT_EQ(classesValue(L"Quivane\\Shell\\Open\\Command"), L"\"C:\\Quivane\\Quivane Pocket PC.exe\" \"%1\"");
}

}  // namespace
