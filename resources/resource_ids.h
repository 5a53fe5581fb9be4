#pragma once

// Numbers of the resources, for the resource compiler and for C++. Icons, bitmaps, menus and
// accelerator tables are numbered apart, so a number can occur once in each kind.

#define IDI_QUIVANE 128
#define IDI_TABLES_LARGE 228
#define IDI_TABLES_SMALL 231
#define IDI_QUERIES_LARGE 232
#define IDI_QUERIES_SMALL 233

#define IDB_TAB_IMAGES 229

#define IDR_ACCELERATORS 128
