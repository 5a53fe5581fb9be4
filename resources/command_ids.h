#pragma once

// Numbers of the commands, as menus, toolbar buttons and accelerators send them to the main window.

#define ID_RECORD_FIRST 32778
#define ID_RECORD_LAST 32779
#define ID_RECORD_PREVIOUS 32780
#define ID_RECORD_NEXT 32781
#define ID_RECORD_NEW 32787
#define ID_PAGE_NEXT 32790
#define ID_PAGE_PREVIOUS 32791
#define ID_FIND 32793
#define ID_EXIT 40022
#define ID_VIEW_LARGE_ICONS 40061
#define ID_VIEW_SMALL_ICONS 40062
#define ID_VIEW_LIST 40063
#define ID_VIEW_REPORT 40064
#define ID_COLUMN_PREVIOUS 40070
#define ID_COLUMN_NEXT 40071
#define ID_COLUMNS_FIT 40084

// Accelerators send these four; nothing answers them.
#define ID_ENTER 40004
#define ID_CUT_KEY 57635
#define ID_NEXT_PANE 57680
#define ID_PREVIOUS_PANE 57681
