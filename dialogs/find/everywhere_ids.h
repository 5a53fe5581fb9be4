#pragma once

// The dialog of the search through all tables, and its controls.

#define IDD_FIND_EVERYWHERE 671
#define IDC_EVERYWHERE_TEXT 1026
#define IDC_EVERYWHERE_SEARCH 1023
#define IDC_EVERYWHERE_PLACES 1030
#define IDC_EVERYWHERE_STATE 1031
