#pragma once

#include <windows.h>

#include "base/settings/options.h"

/// Shows the pages General, Security, View and Color as tabs at the bottom of a full-screen sheet titled
/// "Options", beginning with General, until the user closes it. There is no cancel: in whatever way it is
/// closed, what the page objects of `options` hold then is what the user wants.
///
/// `owner` is the main window. False when the sheet could not be made; the page objects are as before.
bool runOptionsSheet(HWND owner, Options& options);
