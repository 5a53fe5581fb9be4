#pragma once

#include "base/string.h"

/// The folder that the handheld's installer recorded for this product: the value "InstallDir" of the
/// key "SOFTWARE\Apps\Morvale Software Quivane for Pocket PC" of HKEY_LOCAL_MACHINE. The program
/// itself never writes it and runs from any folder. False when there is no record, or an empty one;
/// `folder` is then as before. Throws std::bad_alloc.
bool readInstallFolder(String& folder);
