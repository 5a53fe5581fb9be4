#pragma once

#include <windows.h>

#include "base/settings/app_colors.h"

/// A solid brush of a colour of the live table. It stays valid until that colour is asked for after a
/// change, and is not the caller's. On the user-interface thread only.
HBRUSH appColorBrush(AppColor color);
