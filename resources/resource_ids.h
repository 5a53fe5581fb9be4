#pragma once

// Numbers of the resources, for the resource compiler and for C++. Icons, bitmaps, menus and
// accelerator tables are numbered apart, so a number can occur once in each kind.

#define IDI_QUIVANE 128
#define IDI_TABLES_LARGE 228
#define IDI_TABLES_SMALL 231
#define IDI_QUERIES_LARGE 232
#define IDI_QUERIES_SMALL 233

// Strips of 16 x 16 images. The same strips drawn 2, 3 and 4 times as large have these numbers
// + 2000, 3000 and 4000.
#define IDB_TAB_IMAGES 229
#define IDB_RECORD_NEW_DELETE_FIND 217
#define IDB_FORM_BAR 226
#define IDB_NAMES_BAR 227
#define IDB_TABLES_BAR 228
#define IDB_LIST_BAR 230
#define IDB_QUERIES_BAR 231
#define IDB_RECORD_NEW 232
#define IDB_RECORD_NEW_DELETE 233

// The menu bars: a menu, and RCDATA that says which of its popups has which button.
#define IDR_FORM_MENU_BAR 216
#define IDR_CLOSED_MENU_BAR 217
#define IDR_TABLES_MENU_BAR 218
#define IDR_LIST_MENU_BAR 221
#define IDR_QUERIES_MENU_BAR 222

// The menus of a tap that is held.
#define IDR_TABLE_CONTEXT 241
#define IDR_QUERY_CONTEXT 242
#define IDR_FORM_CONTEXT 243
#define IDR_GRID_CONTEXT 244

#define IDR_ACCELERATORS 128

// Beside the program's own manifest, which is number 1.
#define IDR_COMPONENTS_MANIFEST 10
