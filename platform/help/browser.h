#pragma once

#include <filesystem>

namespace help {

/// Shows a page of the disk in the user's browser, under Wine in that of the system around it. Does not wait
/// for the user. False when nothing was found that could show it.
bool showInBrowser(const std::filesystem::path& page);

}  // namespace help
