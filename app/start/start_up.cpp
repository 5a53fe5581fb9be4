#include "app/start/start_up.h"

#include <commctrl.h>

#include <memory>
#include <optional>

#include "app/recovery/fault_watch.h"
#include "app/recovery/recovery_files.h"
#include "app/recovery/typed_text.h"
#include "app/start/command_line.h"
#include "app/start/component_registration.h"
#include "app/start/copies_folder.h"
#include "app/start/portable.h"
#include "app/start/single_instance.h"
#include "app/start/start_beside_windows.h"
#include "app/window/desktop_commands.h"
#include "app/window/history_commands.h"
#include "app/window/main_window.h"
#include "app/window/messages.h"
#include "app/window/other_programs.h"
#include "app/window/page_keys.h"
#include "app/window/page_layout.h"
#include "app/window/program_state.h"
#include "app/window/screen.h"
#include "app/window/tab_pages.h"
#include "base/settings/app_settings.h"
#include "dialogs/password/password_lock.h"
#include "platform/pocketshell/handheld_windows.h"
#include "records/parts/former_states.h"
#include "resources/resource_ids.h"
#include "views/names/queries_list_view.h"
#include "views/names/tables_list_view.h"
#include "views/shared/typed_watch.h"

namespace {

void initialiseControls() {
  INITCOMMONCONTROLSEX controls{};
  controls.dwSize = sizeof(controls);
  controls.dwICC = ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_DATE_CLASSES | ICC_COOL_CLASSES;
  InitCommonControlsEx(&controls);
}

/// The windows of the List and Form pages, both hidden and children of the tab control.
void createPageWindows() {
  RECT tab{};
  HandheldGetClientRect(tabControl, &tab);
  const RECT grid = {screen::kGridLeft, screen::kGridTop, screen::kGridLeft + tab.right,
                     screen::kGridTop + tab.bottom - screen::kGridHeightLess};
  recordListWindow = theRecordListView.create(instanceHandle, tabControl, grid);

  RECT client{};
  HandheldGetClientRect(mainWindow, &client);
  formWrapperWindow = theFormWrapper.create(
      instanceHandle, tabControl, {client.right, client.bottom - screen::kBelowFormHeight}, tabOldProc);
  theCommandBar->setPageWindows(tabControl, formWrapperWindow);
  notePageArea();
}

BarFacts barFacts() {
  if (!theDocument) return {.page = currentPage};
  return {.page = currentPage,
          .databaseOpen = theDocument->isDatabaseOpen(),
          .recordsetOpen = theDocument->isRecordsetOpen(),
          .recordCount = recordCount};
}

void createDocument(bool isPortable) {
  theDocument = std::make_unique<Document>(DocumentPages{
      std::make_unique<TablesListView>(mainWindow), std::make_unique<QueriesListView>(mainWindow),
      theRecordListView, theFormView, *theCommandBar, thePrompts});
  theDocument->formerStates().keepIn(copiesFolder(isPortable));
  appUnlocked = true;
  if (theAppSettings->options().usePassword() != 0) checkPassword(mainWindow);
  if (!appUnlocked) return;
  theRecordListView.prepare(theDocument.get());
  theFormView.prepare(theDocument.get());
  theDocument->updateNavigationState();
  theDocument->updatePageState();
}

/// Until the quit message, whose exit code is the result. The database of the command line is opened
/// after the message that ends start-up, and so in place of what that has restored.
int runMessageLoop(const wchar_t* commandLine) {
  const HACCEL accelerators = LoadAcceleratorsW(instanceHandle, MAKEINTRESOURCEW(IDR_ACCELERATORS));
  keepCommandLinePath(normalisedPath(commandLine));
  PostMessageW(mainWindow, kStartedMessage, 0, 0);
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    HandheldTakeMenuKey(&message);
    noteMessage(message);
    if (!turnPageByKey(message) && !takeHistoryStepByKey(message) &&
        !TranslateAcceleratorW(mainWindow, accelerators, &message)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    openWaitingDatabase();
    if (mayChangeTypedText(message.message)) keepTypedText();
  }
  return static_cast<int>(message.wParam);
}

void destroyIfThere(HWND window) {
  if (IsWindow(window)) DestroyWindow(window);
}

void shutDown() {
  // The form still holds what was not stored yet.
  if (theDocument) theDocument->closeDatabase();
  theFormView.prepare(nullptr);
  theRecordListView.prepare(nullptr);
  theDocument.reset();
  theAppSettings.reset();
  destroyIfThere(tabControl);
  destroyIfThere(recordListWindow);
  destroyIfThere(formWrapperWindow);
  // Still there when the quit message came from the menu.
  destroyIfThere(mainWindow);
  theCommandBar.reset();
}

/// From the first window on: what was created is taken down again in every case.
int runWithWindow(const wchar_t* commandLine, int showCommand, bool isPortable) {
  std::optional<StartBesideWindows> beside;
  if (!isPortable) beside.emplace();
  theCommandBar = std::make_unique<MainCommandBar>(instanceHandle, barFacts);
  createMainWindow(showCommand);
  theAppSettings = std::make_unique<AppSettings>();
  if (!mainWindow) return kExitNoWindow;
  offerDesktopCommands();
  initialiseControls();
  createTabControl();
  createPageWindows();
  if (beside && !beside->areComponentsRegistered()) registerComponents();
  beside.reset();
  createDocument(isPortable);
  // Who does not know the password sees the window and no more.
  return appUnlocked ? runMessageLoop(commandLine) : 0;
}

}  // namespace

int runProgram(HINSTANCE instance, const wchar_t* commandLine, int showCommand) {
  // A library lying beside the database that is opened must not be loaded in the place of a component.
  SetDllDirectoryW(L"");
  instanceHandle = instance;
  const PortableMode portable;
  appUnlocked = true;
  currentPage = kBeforeFirstPage;
  const SingleInstance single;
  if (!single.isFirst()) {
    single.callFirst(normalisedPath(commandLine));
    return kExitNoWindow;
  }
  const FaultWatch watch(recoveryFiles(portable.isOn()));
  typedWatch = keepTypedText;
  if (!registerMainWindowClass()) return kExitCannotStart;
  RecordListView::registerClass(instance);
  FormWrapper::registerClass(instance);
  const int exitCode = runWithWindow(commandLine, showCommand, portable.isOn());
  shutDown();
  return exitCode;
}
