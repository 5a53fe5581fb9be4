#pragma once

// The dialog for one field of a new table, and its controls.

#define IDD_NEW_FIELD 612
#define IDC_NEW_FIELD_NAME 1026
#define IDC_NEW_FIELD_TYPE 1028
