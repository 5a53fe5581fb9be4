#pragma once

// The dialog that asks for a record number, and its controls.

#define IDD_GO_TO 610
#define IDC_GO_TO_NUMBER 1017
