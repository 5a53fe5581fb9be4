#pragma once

// The dialog in which a new table is designed, and its controls.

#define IDD_NEW_TABLE 613
#define IDC_NEW_TABLE_NAME 1024
#define IDC_NEW_TABLE_FIELDS 1025
#define IDC_NEW_TABLE_ADD 1027
#define IDC_NEW_TABLE_REMOVE 1028
#define IDC_NEW_TABLE_UP 1036
#define IDC_NEW_TABLE_DOWN 1037
