// What the program asks of the system's file dialogs, which do not open here.
#include <windows.h>

#include <commdlg.h>

#include <cderr.h>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/window/program_state.h"
#include "app/window/shell_apartment.h"
#include "app/window/window_prompts.h"
#include "gtest/gtest.h"
#include "tests/support/paths.h"
#include "tests/ui/bars/bar_host.h"
#include "tests/ui/support/late_swap.h"
#include "tests/ui/support/message_boxes.h"
#include "tests/ui/support/window_reading.h"
#include "views/dialog/current_dialog.h"

namespace {

constexpr wchar_t kChosenPath[] = L"C:\\chosen.cdb";

/// How a dialog was called, and what was the case meanwhile.
struct Call {
  bool isSave = false;
  DWORD flags = 0;
  HWND owner = nullptr;
  std::wstring path;
  DWORD pathCount = 0;
  std::wstring filter;     ///< its parts with a bar between them
  std::wstring extension;  ///< for a name without one
  std::wstring titleOfWindow;
  bool isChoosingFile = false;
  APTTYPE apartment = APTTYPE_NA;
};

APTTYPE apartmentOfThread() {
  APTTYPE type = APTTYPE_NA;
  APTTYPEQUALIFIER qualifier{};
  EXPECT_TRUE(SUCCEEDED(CoGetApartmentType(&type, &qualifier)));
  return type;
}

bool isSingleThreaded(APTTYPE type) {
  return type == APTTYPE_STA || type == APTTYPE_MAINSTA;
}

Call call;
std::filesystem::path lookedAt;
bool userConfirms = true;
DWORD error = 0;

std::wstring joined(const wchar_t* filter) {
  std::wstring all;
  for (const wchar_t* part = filter; *part != L'\0'; part += std::wcslen(part) + 1) {
    all.append(all.empty() ? L"" : L"|").append(part);
  }
  return all;
}

/// As the system's dialogs do, it makes the folder that was looked at the program's current one.
BOOL answer(OPENFILENAMEW* question, bool isSave) {
  call = {isSave,
          question->Flags,
          question->hwndOwner,
          question->lpstrFile,
          question->nMaxFile,
          joined(question->lpstrFilter),
          question->lpstrDefExt ? question->lpstrDefExt : L"",
          textOf(mainWindow),
          thePrompts.isChoosingFile(),
          apartmentOfThread()};
  SetCurrentDirectoryW(lookedAt.c_str());
  if (userConfirms) lstrcpyW(question->lpstrFile, kChosenPath);
  return userConfirms ? TRUE : FALSE;
}

BOOL WINAPI answerOpen(OPENFILENAMEW* question) {
  return answer(question, false);
}

BOOL WINAPI answerSave(OPENFILENAMEW* question) {
  return answer(question, true);
}

DWORD WINAPI answerError() {
  return error;
}

class FileDialogsTest : public testing::Test {
 protected:
  FileDialogsTest() {
    replaceLateFunction("GetOpenFileNameW", answerOpen);
    replaceLateFunction("GetSaveFileNameW", answerSave);
    replaceLateFunction("CommDlgExtendedError", answerError);
    mainWindow = host_.main();
    tabControl = host_.tab();
    SetWindowTextW(mainWindow, L"Quivane");
    lookedAt = folder_.path();
    userConfirms = true;
    error = 0;
    call = {};
  }
  ~FileDialogsTest() override {
    EXPECT_EQ(textOf(mainWindow), L"Quivane");
    EXPECT_FALSE(thePrompts.isChoosingFile());
    EXPECT_EQ(std::filesystem::current_path(), before_) << "the current folder is kept";
    mainWindow = nullptr;
    tabControl = nullptr;
    std::filesystem::current_path(before_);
  }

  static void expectCall(bool isSave, DWORD flags, const wchar_t* title, const wchar_t* filter,
                         const wchar_t* extension = L"cdb") {
    EXPECT_EQ(call.isSave, isSave);
    EXPECT_EQ(call.flags, flags);
    EXPECT_EQ(call.owner, tabControl);
    EXPECT_EQ(call.path, L"");
    EXPECT_EQ(call.pathCount, 260u);
    EXPECT_EQ(call.filter, filter);
    EXPECT_EQ(call.extension, extension);
    EXPECT_EQ(call.titleOfWindow, title);
    EXPECT_TRUE(call.isChoosingFile);
    EXPECT_TRUE(isSingleThreaded(call.apartment)) << call.apartment;
  }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
  testsupport::TempFolder folder_;
  BarHost host_;
};

/// In which apartments a thread is that has been initialised like this: for a dialog, and behind it.
std::pair<APTTYPE, APTTYPE> apartmentsOf(std::optional<DWORD> initialisation) {
  std::pair<APTTYPE, APTTYPE> apartments;
  std::thread([&] {
    EXPECT_EQ(initialisation ? CoInitializeEx(nullptr, *initialisation) : S_OK, S_OK);
    {
      const ShellApartment apartment;
      const ShellApartment another;
      apartments.first = apartmentOfThread();
    }
    if (!initialisation) return;
    apartments.second = apartmentOfThread();
    CoUninitialize();
  }).join();
  return apartments;
}

TEST(ShellApartmentTest, AThreadOfTheMultithreadedApartmentComesBackToIt) {
  const auto [meanwhile, afterwards] = apartmentsOf(COINIT_MULTITHREADED);
  EXPECT_TRUE(isSingleThreaded(meanwhile)) << meanwhile;
  EXPECT_EQ(afterwards, APTTYPE_MTA);
}

TEST(ShellApartmentTest, AThreadThatHasItsOwnStaysThere) {
  const auto [meanwhile, afterwards] = apartmentsOf(COINIT_APARTMENTTHREADED);
  EXPECT_TRUE(isSingleThreaded(meanwhile)) << meanwhile;
  EXPECT_TRUE(isSingleThreaded(afterwards)) << afterwards;
}

TEST(ShellApartmentTest, AThreadThatIsNotInitialisedHasOneMeanwhile) {
  EXPECT_TRUE(isSingleThreaded(apartmentsOf(std::nullopt).first));
}

TEST(ShellApartmentTest, WhereItCanNotChangeOverAllIsAsBefore) {
  std::thread([] {
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE);
    {
      const ShellApartment apartment;
      EXPECT_EQ(apartmentOfThread(), APTTYPE_MTA);
    }
    EXPECT_EQ(apartmentOfThread(), APTTYPE_MTA);
    CoUninitialize();
    EXPECT_EQ(apartmentOfThread(), APTTYPE_MTA) << "twice, as it was initialised";
    CoUninitialize();
  }).join();
}

TEST_F(FileDialogsTest, OpeningAsksForAFileThatExists) {
  const std::optional<String> path = thePrompts.chooseFile(FileChoice::open);
  ASSERT_TRUE(path);
  EXPECT_STREQ(path->text(), kChosenPath);
  expectCall(false, 0x81000, L"Open Database", L"All (*.cdb)|*.cdb");
}

TEST_F(FileDialogsTest, DeletingAsksForAFileThatExists) {
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::remove));
  expectCall(false, 0x81000, L"Delete Database", L"All (*.cdb)|*.cdb");
}

TEST_F(FileDialogsTest, MakingAsksForANameAndBeforeAFileIsReplaced) {
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::create));
  expectCall(true, 0x82002, L"New Database", L"Databases (*.cdb)|*.cdb");
}

TEST_F(FileDialogsTest, SavingACopyAsksForANameAndReplacesNothing) {
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::copy));
  constexpr DWORD kFlags = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
  expectCall(true, kFlags, L"Save Database As", L"Databases (*.cdb)|*.cdb");
}

constexpr DWORD kWritten = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT;

TEST_F(FileDialogsTest, ExportingAsksForANameAndBeforeAFileIsReplaced) {
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::exportTo));
  expectCall(
      true, kWritten, L"Export",
      L"Separated values (*.csv)|*.csv|JSON (*.json)|*.json|Web page (*.html)|*.html|SQL (*.sql)|*.sql",
      L"csv");
}

TEST_F(FileDialogsTest, ImportingAsksForAFileThatExists) {
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::importFrom));
  expectCall(false, 0x81000 | OFN_HIDEREADONLY, L"Import",
             L"CSV and JSON (*.csv; *.tsv; *.txt; *.json; *.jsonl)|*.csv;*.tsv;*.txt;*.json;*.jsonl|"
             L"All files (*.*)|*.*",
             L"");
}

TEST_F(FileDialogsTest, SavingAListAsksForANameAndBeforeAFileIsReplaced) {
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::rejects));
  expectCall(true, kWritten, L"Save List", L"Separated values (*.csv)|*.csv", L"csv");
}

TEST_F(FileDialogsTest, OverADialogItIsThatOnesDialog) {
  currentDialog = mainWindow;
  EXPECT_TRUE(thePrompts.chooseFile(FileChoice::rejects));
  currentDialog = nullptr;
  EXPECT_EQ(call.owner, mainWindow);
}

TEST_F(FileDialogsTest, WhoCancelsHasChosenNothing) {
  userConfirms = false;
  for (const FileChoice choice : {FileChoice::open, FileChoice::create, FileChoice::remove, FileChoice::copy,
                                  FileChoice::exportTo, FileChoice::importFrom, FileChoice::rejects}) {
    EXPECT_FALSE(thePrompts.chooseFile(choice));
  }
}

TEST_F(FileDialogsTest, APathThatIsTooLongIsToldAndNotTakenForACancel) {
  MessageBoxes boxes;
  userConfirms = false;
  EXPECT_FALSE(thePrompts.chooseFile(FileChoice::importFrom));
  EXPECT_TRUE(boxes.take().empty());
  error = FNERR_BUFFERTOOSMALL;
  EXPECT_FALSE(thePrompts.chooseFile(FileChoice::importFrom));
  const std::vector<MessageBoxes::Box> told = boxes.take();
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].text, L"The path of the file is too long. At most 259 characters can be chosen.");
}

TEST_F(FileDialogsTest, ADialogThatTheSystemDoesNotHaveIsToldAndNotTakenForACancel) {
  MessageBoxes boxes;
  userConfirms = false;
  error = CDERR_INITIALIZATION;
  EXPECT_FALSE(thePrompts.chooseFile(FileChoice::open));
  const std::vector<MessageBoxes::Box> told = boxes.take();
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].text, L"The system's dialog for choosing a file can't be shown.");
}

}  // namespace
