#pragma once

// Numbers of the dialog of an export and its controls.

#define IDD_EXPORT 283
#define IDC_EXPORT_SOURCES 1130
#define IDC_EXPORT_FORMATS 1131
