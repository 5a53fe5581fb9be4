#pragma once

// Numbers of the dialogs that open from an editor of the form, and of their controls.

#define IDD_FIELD_ZOOM 200
#define IDC_ZOOM_TEXT 1015

#define IDD_CALENDAR 236
#define IDC_CALENDAR 40100
#define IDC_NO_DATE 40101
