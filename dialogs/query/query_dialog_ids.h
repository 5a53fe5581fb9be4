#pragma once

// Numbers of the Query dialog and its controls.

#define IDD_QUERY 262
#define IDC_QUERY_CHECK 3
#define IDC_QUERY_FILTER 4
#define IDC_QUERY_INSERT_FIELD 1028
#define IDC_QUERY_NAME 1049
#define IDC_QUERY_SQL 1050
#define IDC_QUERY_FIELDS 1054
#define IDC_QUERY_TABLES 1055
#define IDC_QUERY_INSERT_TABLE 1057
#define IDC_QUERY_HELP 1071
