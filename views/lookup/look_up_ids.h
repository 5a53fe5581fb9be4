#pragma once

// Numbers of the dialog in which a record of another table is chosen, and of its controls.

#define IDD_LOOK_UP 202
#define IDC_LOOK_UP_TEXT 1025
#define IDC_LOOK_UP_RECORDS 1026
#define IDC_LOOK_UP_NOTE 1027
