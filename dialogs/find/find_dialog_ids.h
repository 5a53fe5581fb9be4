#pragma once

// Numbers of the Find dialog and its controls.

#define IDD_FIND 263
#define IDC_FIND_FIELD_LABEL 1000
#define IDC_FIND_ALL_FIELDS 1017
#define IDC_FIND_MATCH_CASE 1018
#define IDC_FIND_FIELD 1022
#define IDC_FIND_NEXT 1023
#define IDC_FIND_TEXT 1026
