#pragma once

// The dialog of the former states of a database, and its controls.

#define IDD_GO_BACK 672
#define IDC_GO_BACK_FILE 1040
#define IDC_GO_BACK_COPIES 1041
#define IDC_GO_BACK_PUT 1042
#define IDC_GO_BACK_TABLE 1043

// In which a table of a copy is chosen.

#define IDD_COPY_TABLE 673
#define IDC_COPY_TABLES 1044
