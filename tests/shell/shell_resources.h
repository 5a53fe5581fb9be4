#pragma once

// Numbers of the test's own resources, for the resource compiler and for C++.

#define ID_FILE_BUTTON 100
#define ID_EDIT_BUTTON 101
#define ID_RECORD_BUTTON 102
#define ID_NEW 201
#define ID_OPEN 202
#define ID_CLOSE 203
#define ID_UNDO 211
#define ID_CUT 212
#define ID_DELETE 221
#define ID_FIRST 222
#define ID_LAST 223
#define ID_IMAGE_NEW 231
#define ID_IMAGE_DELETE 232
#define ID_IMAGE_FIND 233

#define IDS_FILE 300
#define IDS_EDIT 301
#define IDS_RECORD 302

#define IDR_BAR 400
#define IDR_BAR_SHORT 401
#define IDR_BAR_NO_MENU 402
#define IDR_BAR_NO_POPUP 403
#define IDR_BAR_NO_LABEL 404
#define IDR_BAR_NO_ZERO 405

#define IDB_STRIP 500
#define IDB_STRIP_TWICE 2500
#define IDB_BAD_STRIP 501

#define IDD_OLD 600
#define IDD_EXTENDED 601
#define IDD_PLAIN 602
#define IDC_LABEL 610
#define IDC_NAME 611
#define IDC_KIND 612
#define IDC_LIST 613
