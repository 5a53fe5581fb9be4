#pragma once

// The dialog that names the program, and its controls.

#define IDD_ABOUT 100
#define IDC_ABOUT_ICON 1006
#define IDC_ABOUT_VERSION 1007
