#pragma once

// The dialog that says what is open, and its controls.

#define IDD_DATABASE_INFO 611
#define IDD_SERVER_DATABASE_INFO 628
#define IDC_INFO_DATABASE 1011
#define IDC_INFO_TABLE 1020
#define IDC_INFO_SQL 1021
#define IDC_INFO_QUERY 1023
#define IDC_INFO_SERVER 1024
