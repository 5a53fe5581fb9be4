#pragma once

// Numbers of the password dialogs and of their edits.

#define IDD_ENTER_PASSWORD 244
#define IDC_PASSWORD 1001

#define IDD_SERVER_PASSWORD 275
#define IDC_PASSWORD_REASON 1002

#define IDD_CHANGE_PASSWORD 245
#define IDC_OLD_PASSWORD 1004
#define IDC_NEW_PASSWORD 1005
#define IDC_CONFIRM_PASSWORD 1006
