#pragma once

// Numbers of the dialog of a field of bytes and its controls. Its text has the number of the other zoom's
// (views/form/popup_ids.h).

#define IDD_BYTES_ZOOM 201
#define IDC_BYTES_PICTURE 1016
#define IDC_BYTES_NOTE 1017
#define IDC_BYTES_LOAD 1018
#define IDC_BYTES_SAVE 1019
#define IDC_BYTES_CLEAR 1020
