#include "app/window/window_prompts.h"

#include <commdlg.h>

#include <cderr.h>
#include <string>
#include <utility>

#include "app/window/main_window.h"
#include "app/window/messages.h"
#include "app/window/program_state.h"
#include "app/window/shell_apartment.h"
#include "dialogs/exchange/export_dialog.h"
#include "dialogs/password/server_password_dialog.h"
#include "dialogs/small/go_to.h"
#include "owners/late_function.h"
#include "platform/pocketshell/aygshell.h"
#include "resources/resource_ids.h"
#include "views/dialog/current_dialog.h"
#include "views/shared/boxes_over_window.h"
#include "views/shared/edit_guard.h"
#include "views/shared/unowned_box.h"

namespace {

constexpr DWORD kFileBufferCount = 260;

/// Names the purpose of a file dialog in the main window's title as long as it lives.
class TitleOfPurpose {
 public:
  explicit TitleOfPurpose(const wchar_t* title) { SetWindowTextW(mainWindow, title); }
  ~TitleOfPurpose() { SetWindowTextW(mainWindow, kMainWindowTitle); }
  TitleOfPurpose(const TitleOfPurpose&) = delete;
  TitleOfPurpose& operator=(const TitleOfPurpose&) = delete;
};

/// Gives the program its current folder back, which a file dialog changes to the one that was looked at
/// last: that could then not be renamed or deleted.
class CurrentFolderKept {
 public:
  CurrentFolderKept() {
    folder_.resize(GetCurrentDirectoryW(0, nullptr));
    folder_.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder_.size()), folder_.data()));
  }
  ~CurrentFolderKept() { SetCurrentDirectoryW(folder_.c_str()); }
  CurrentFolderKept(const CurrentFolderKept&) = delete;
  CurrentFolderKept& operator=(const CurrentFolderKept&) = delete;

 private:
  std::wstring folder_;
};

/// The parts of a filter are ended by a zero each.
constexpr wchar_t kOpenFilter[] = L"All (*.cdb)\0*.cdb\0";
constexpr wchar_t kCreateFilter[] = L"Databases (*.cdb)\0*.cdb\0";
constexpr wchar_t kExportFilter[] =
    L"Separated values (*.csv)\0*.csv\0JSON (*.json)\0*.json\0Web page (*.html)\0*.html\0SQL "
    L"(*.sql)\0*.sql\0";
constexpr wchar_t kPictureFilter[] =
    L"Pictures (*.png; *.jpg; *.gif; *.bmp)\0*.png;*.jpg;*.jpeg;*.gif;*.bmp\0All files (*.*)\0*.*\0";
constexpr wchar_t kBytesFilter[] = L"All files (*.*)\0*.*\0";
constexpr wchar_t kListFilter[] = L"Separated values (*.csv)\0*.csv\0";
constexpr wchar_t kImportFilter[] =
    L"CSV and JSON (*.csv; *.tsv; *.txt; *.json; *.jsonl)\0*.csv;*.tsv;*.txt;*.json;*.jsonl\0"
    L"All files (*.*)\0*.*\0";

constinit const LateFunction<decltype(GetOpenFileNameW)> getOpenFileName{L"comdlg32.dll", "GetOpenFileNameW"};
constinit const LateFunction<decltype(GetSaveFileNameW)> getSaveFileName{L"comdlg32.dll", "GetSaveFileNameW"};
constinit const LateFunction<decltype(CommDlgExtendedError), CDERR_INITIALIZATION> commDlgExtendedError{
    L"comdlg32.dll", "CommDlgExtendedError"};

struct FileDialog {
  const wchar_t* title;
  const wchar_t* filter;
  const wchar_t* ending;  // what a name without one gets, null for none
  DWORD flags;
  const LateFunction<BOOL(OPENFILENAMEW*)>* run;
};

FileDialog fileDialog(FileChoice choice) {
  constexpr DWORD kExisting = OFN_EXPLORER | OFN_FILEMUSTEXIST;
  constexpr DWORD kNew = OFN_EXPLORER | OFN_CREATEPROMPT | OFN_OVERWRITEPROMPT;
  constexpr DWORD kWritten = OFN_EXPLORER | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY;
  constexpr wchar_t const* kDatabase = L"cdb";
  static_assert(kExisting == 0x81000 && kNew == 0x82002);
  switch (choice) {
    case FileChoice::create:
      return {L"New Database", kCreateFilter, kDatabase, kNew, &getSaveFileName};
    case FileChoice::copy:
      // Nothing is replaced: who names a file that exists is told so by the store.
      return {L"Save Database As", kCreateFilter, kDatabase, kWritten, &getSaveFileName};
    case FileChoice::exportTo:
      return {L"Export", kExportFilter, L"csv", kWritten | OFN_OVERWRITEPROMPT, &getSaveFileName};
    case FileChoice::rejects:
      return {L"Save List", kListFilter, L"csv", kWritten | OFN_OVERWRITEPROMPT, &getSaveFileName};
    case FileChoice::bytesTo:
      return {L"Save Bytes", kBytesFilter, nullptr, kWritten | OFN_OVERWRITEPROMPT, &getSaveFileName};
    case FileChoice::bytesFrom:
      return {L"Load Bytes", kPictureFilter, nullptr, kExisting | OFN_HIDEREADONLY, &getOpenFileName};
    case FileChoice::importFrom:
      return {L"Import", kImportFilter, nullptr, kExisting | OFN_HIDEREADONLY, &getOpenFileName};
    case FileChoice::remove:
      return {L"Delete Database", kOpenFilter, kDatabase, kExisting, &getOpenFileName};
    case FileChoice::open:
      break;
  }
  return {L"Open Database", kOpenFilter, kDatabase, kExisting, &getOpenFileName};
}

std::wstring progressText(const Progress& progress) {
  switch (progress.what) {
    case Progress::What::waiting:
      return L"Another program is using the file. Esc gives up.";
    case Progress::What::working:
      return L"The database is working. Esc stops.";
    case Progress::What::examining:
      return L"The file is looked through: " + std::to_wstring(progress.tested) + L" %. Esc stops.";
    case Progress::What::importing:
      return L"The file is imported: " + std::to_wstring(progress.tested) + L" %. Esc stops.";
    case Progress::What::exporting:
      return L"Exported: " + std::to_wstring(progress.tested) + L" records. Esc stops.";
    case Progress::What::searchingTables:
      return std::to_wstring(progress.tested) + L" of " + std::to_wstring(progress.all) +
             L" tables searched. Esc stops.";
    case Progress::What::searching:
      break;
  }
  return std::to_wstring(progress.tested) + L" of " + std::to_wstring(progress.all) +
         L" records searched. Esc stops.";
}

}  // namespace

UINT boxFlags(Notice notice) {
  switch (notice) {
    case Notice::remark:
      return MB_SETFOREGROUND;
    case Notice::searchEnd:
      return MB_ICONEXCLAMATION | MB_TOPMOST;
    case Notice::refusal:
      break;
  }
  return MB_ICONEXCLAMATION;
}

UINT boxFlags(Question question) {
  switch (question) {
    case Question::dropObject:
      return MB_YESNO | MB_SETFOREGROUND;
    case Question::deleteRecord:
      return MB_YESNO | MB_ICONQUESTION;
    case Question::discard:
      break;
  }
  return MB_YESNO | MB_DEFBUTTON2 | MB_ICONEXCLAMATION;
}

HWND WindowPrompts::ownerWindow(PromptOwner owner) const {
  switch (owner) {
    case PromptOwner::none:
      return nullptr;
    case PromptOwner::mainWindow:
      return mainWindow;
    case PromptOwner::tabControl:
      return tabControl;
    case PromptOwner::findDialog:
      // The search that confirming the dialog starts runs after its end.
      return findWindow() ? findWindow() : mainWindow;
  }
  return nullptr;
}

int WindowPrompts::showMessage(PromptOwner owner, const wchar_t* text, const wchar_t* caption, UINT flags) {
  // What was pressed before it showed is no answer to it.
  progress_.end();
  const HWND window = ownerWindow(owner);
  return window ? showBox(window, text, caption, flags) : showUnownedBox(mainWindow, text, caption, flags);
}

void WindowPrompts::tell(PromptOwner owner, Notice notice, const wchar_t* text, const wchar_t* caption) {
  showMessage(owner, text, caption, boxFlags(notice));
}

bool WindowPrompts::ask(PromptOwner owner, Question question, const wchar_t* text, const wchar_t* caption) {
  return showMessage(owner, text, caption, boxFlags(question)) == IDYES;
}

std::optional<String> WindowPrompts::chooseFile(FileChoice choice, const String& suggestion) {
  const FileDialog dialog = fileDialog(choice);
  wchar_t path[kFileBufferCount] = L"";
  std::wcsncpy(path, suggestion.text(), kFileBufferCount - 1);
  OPENFILENAMEW question{};
  question.lStructSize = sizeof(question);
  question.hwndOwner = currentDialog ? currentDialog : tabControl;
  question.hInstance = instanceHandle;
  question.lpstrFilter = dialog.filter;
  question.lpstrFile = path;
  question.nMaxFile = kFileBufferCount;
  question.lpstrDefExt = dialog.ending;
  question.Flags = dialog.flags;
  const CurrentFolderKept folder;
  const TitleOfPurpose title(dialog.title);
  const BoxesOverWindow place(mainWindow);
  guardEditControls();
  const ShellApartment apartment;
  isChoosingFile_ = true;
  const BOOL chosen = (*dialog.run)(&question);
  isChoosingFile_ = false;
  if (chosen) return String(path);
  // The dialog then ends as if it were cancelled, and where the system has none it looks like that, too.
  switch (commDlgExtendedError()) {
    case FNERR_BUFFERTOOSMALL:
      showBox(question.hwndOwner, L"The path of the file is too long. At most 259 characters can be chosen.",
              kPromptCaption, boxFlags(Notice::refusal));
      break;
    case CDERR_INITIALIZATION:
      showBox(question.hwndOwner, L"The system's dialog for choosing a file can't be shown.", kPromptCaption,
              boxFlags(Notice::refusal));
      break;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> WindowPrompts::chooseSource(const NameList& sources) {
  ExportDialog dialog(sources);
  if (dialog.run(mainWindow) != IDOK) return std::nullopt;
  return dialog.chosen;
}

LostFileChoice WindowPrompts::askAboutLostFile(const String& path, bool isReplaced) {
  const std::wstring gone = std::wstring(L"The file was deleted or renamed while it was open:\n") +
                            path.text() +
                            L"\n\nNo change can be stored there any more.\n\n"
                            L"Do you want to save what is open under another name and go on there?";
  const std::wstring replaced =
      std::wstring(L"Another file has taken the place of the one that is open:\n") + path.text() +
      L"\n\nNo change can be stored in the one that is open.\n\n"
      L"Yes: save what is open under another name and go on there.\n"
      L"No: open the file that is there now. What was typed and not stored is lost.\n"
      L"Cancel: decide later.";
  const int answer =
      showMessage(PromptOwner::findDialog, isReplaced ? replaced.c_str() : gone.c_str(), kPromptCaption,
                  (isReplaced ? MB_YESNOCANCEL : MB_YESNO) | MB_ICONEXCLAMATION);
  if (answer == IDYES) return LostFileChoice::saveCopy;
  return isReplaced && answer == IDNO ? LostFileChoice::openPresent : LostFileChoice::later;
}

std::optional<String> WindowPrompts::askPassword(const String& reason) {
  ServerPasswordDialog dialog(reason);
  return dialog.run(mainWindow);
}

std::optional<std::uint32_t> WindowPrompts::askRecordNumber(std::uint32_t highest) {
  GoToDialog dialog;
  dialog.highest = highest;
  if (dialog.run(mainWindow) != IDOK || dialog.cancelled) return std::nullopt;
  return dialog.chosen;
}

void WindowPrompts::showFindDialog(FindState& state, NameList fieldNames) {
  FindDialog dialog(state, std::move(fieldNames));
  find_ = &dialog;
  dialog.run(mainWindow);
  find_ = nullptr;
}

void WindowPrompts::refillFindDialog() {
  if (find_) find_->refill();
}

bool WindowPrompts::keepGoing(const Progress& progress) {
  constexpr ULONGLONG kQuietMilliseconds = 500;
  constexpr ULONGLONG kQuietWaitMilliseconds = 1000;
  const bool waits = progress.what == Progress::What::waiting;
  return progress_.goesOn(mainWindow, progressText(progress),
                          waits ? kQuietWaitMilliseconds : kQuietMilliseconds,
                          static_cast<ULONGLONG>(progress.lasted.count()));
}

bool WindowPrompts::isInputWaiting() {
  // What a program posts counts as well as what the system brings.
  constexpr UINT kInput = QS_KEY | QS_MOUSEBUTTON | QS_POSTMESSAGE;
  return HIWORD(GetQueueStatus(kInput)) != 0;
}

void WindowPrompts::endProgress() {
  progress_.end();
}

void WindowPrompts::tellWhenOver() {
  PostMessageW(mainWindow, kBusyOverMessage, 0, 0);
}

void WindowPrompts::tellWhenTyped() {
  PostMessageW(mainWindow, kEditBegunMessage, 0, 0);
}

void WindowPrompts::returnToFindDialog() {
  if (findWindow()) SetFocus(findWindow());
}

void WindowPrompts::raiseInputPanel() {
  SHSipPreference(mainWindow, SIP_UP);
}
