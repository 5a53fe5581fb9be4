#pragma once

#include <windows.h>

#include <memory>

#include "app/bars/command_bar.h"
#include "app/window/window_prompts.h"
#include "records/document.h"
#include "views/form/form_view.h"
#include "views/grid/record_list_view.h"

/// What exists once in the program. Window procedures receive no context of their own and find it here.
/// Set by start-up (start_up.h), used on the user-interface thread only.

extern HINSTANCE instanceHandle;

/// Null before their creation, and when it failed. They stay set after the windows were destroyed.
extern HWND mainWindow;
extern HWND tabControl;
extern HWND recordListWindow;
extern HWND formWrapperWindow;

/// The tab control's own procedure, in whose place tab_pages.h has put another.
extern WNDPROC tabOldProc;

/// The tab page that is shown: 0 Tables, 1 Form, 2 List, 3 Queries; one of the two numbers below
/// otherwise.
extern int currentPage;
inline constexpr int kTablesPageIndex = 0;
inline constexpr int kFormPageIndex = 1;
inline constexpr int kListPageIndex = 2;
inline constexpr int kQueriesPageIndex = 3;
inline constexpr int kPageCount = 4;
inline constexpr int kNoPage = 4;            ///< none: the next switch enters its page in every case
inline constexpr int kBeforeFirstPage = -1;  ///< no page was shown since the start

/// The grid and the form live as long as the program; their windows belong to the tab control.
extern RecordListView theRecordListView;
extern FormWrapper theFormWrapper;
extern FormView theFormView;

/// What the Document asks of the user.
extern WindowPrompts thePrompts;

/// Created before the main window, which it outlives.
extern std::unique_ptr<MainCommandBar> theCommandBar;

/// Null before start-up creates it and again in the shutdown.
extern std::unique_ptr<Document> theDocument;
