#pragma once

#include <windows.h>

#include <functional>

#include "base/settings/options.h"

/// The Options command. Shows the options sheet over the main window `owner`; when the user has closed it,
/// puts what he chose into `options`, writes them and the live colour table to the registry and calls
/// `applyToScreen`, which is to show them: the colours of the views, the place of the command bands, the
/// labels of the tabs. Those colours may have changed too.
///
/// The input panel is down while the sheet is open. What applyToScreen throws goes on to the caller.
void showOptions(HWND owner, Options& options, const std::function<void()>& applyToScreen);
