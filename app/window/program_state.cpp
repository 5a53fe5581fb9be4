#include "app/window/program_state.h"

HINSTANCE instanceHandle = nullptr;
HWND mainWindow = nullptr;
HWND tabControl = nullptr;
HWND recordListWindow = nullptr;
HWND formWrapperWindow = nullptr;
WNDPROC tabOldProc = nullptr;
int currentPage = kBeforeFirstPage;
RecordListView theRecordListView;
FormWrapper theFormWrapper;
FormView theFormView(theFormWrapper);
WindowPrompts thePrompts;
std::unique_ptr<MainCommandBar> theCommandBar;
std::unique_ptr<Document> theDocument;
