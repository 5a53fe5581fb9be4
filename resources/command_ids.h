#pragma once

// Numbers of the commands, as menus, toolbar buttons and accelerators send them to the main window.

#define ID_DATABASE_OPEN 32772
#define ID_DATABASE_CLOSE 32773
#define ID_PASSWORD_CHANGE 32774
#define ID_OPTIONS 32775
#define ID_RECORD_FIRST 32778
#define ID_RECORD_LAST 32779
#define ID_RECORD_PREVIOUS 32780
#define ID_RECORD_NEXT 32781
#define ID_DATABASE_INFO 32782
#define ID_RECORD_NEW 32787
#define ID_PAGE_NEXT 32790
#define ID_PAGE_PREVIOUS 32791
#define ID_FIND 32793
#define ID_RECORD_DELETE 40001
#define ID_RECORD_NUMBER 40015
#define ID_FORM_SCROLL_RANGE 40018
#define ID_EXIT 40022
#define ID_ABOUT 40023
#define ID_PASTE 40053
#define ID_COPY 40054
#define ID_CUT 40055
#define ID_UNDO 40056
#define ID_VIEW_LARGE_ICONS 40061
#define ID_VIEW_SMALL_ICONS 40062
#define ID_VIEW_LIST 40063
#define ID_VIEW_REPORT 40064
#define ID_TABLE_NEW 40065
#define ID_COLUMN_PREVIOUS 40070
#define ID_COLUMN_NEXT 40071
#define ID_DATABASE_NEW 40072
#define ID_DATABASE_DELETE 40073
#define ID_TABLE_DELETE 40074
#define ID_QUERY_NEW 40078
#define ID_QUERY_DELETE 40079
#define ID_QUERY_EDIT 40083
#define ID_COLUMNS_FIT 40084
#define ID_RECORD_EDIT 40085

// The drop-down buttons of the menu bars, by which their popup menus are found, and their labels.
#define ID_FILE_MENU 40024
#define IDS_FILE_MENU 40026
#define ID_EDIT_MENU 40027
#define IDS_EDIT_MENU 40029
#define ID_RECORD_MENU 40030
#define IDS_RECORD_MENU 40032
#define ID_TABLES_MENU 40057
#define IDS_TABLES_MENU 40059
#define ID_QUERIES_MENU 40080
#define IDS_QUERIES_MENU 40081

// Of the desktop menu, which has numbers of its own (platform/pocketshell/desktop_entries.h): multiples of 16
// from 53248 on.
#define ID_COLORS_OWN 53248
#define ID_COLORS_SYSTEM 53264
#define ID_COLORS_DARK 53280
#define ID_IMPORT 53296
#define ID_EXPORT 53312
#define ID_ROW_COPY 53328
#define ID_TABLE_PASTE 53344
#define ID_LOOK_UP 53760
#define ID_GO_TO_LOOKED_UP 53776
#define ID_GO_BACK 53792
#define ID_HISTORY_UNDO 53504
#define ID_HISTORY_REDO 53520
#define ID_ORDER_COLUMN 53360
#define ID_FILTER_ALL 53376
#define ID_ARRANGEMENT_CLEAR 53392
#define ID_ARRANGEMENT_KEEP 53408
#define ID_FIND_EVERYWHERE 53424
#define ID_GO_BACK_TO 53440

// Accelerators send these four; nothing answers them.
#define ID_ENTER 40004
#define ID_CUT_KEY 57635
#define ID_NEXT_PANE 57680
#define ID_PREVIOUS_PANE 57681
