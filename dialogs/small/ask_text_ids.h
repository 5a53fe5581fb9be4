#pragma once

// The dialog that asks for a text, and its controls.

#define IDD_ASK_TEXT 670
#define IDC_ASKED_TEXT 1015
#define IDC_ASKED_LABEL 1016
