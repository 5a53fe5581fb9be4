#pragma once

#include <filesystem>

/// When an end of the program by a fault has left something that was typed in `typed`: tells the user and
/// shows it to him if he wants to see it. It is kept until he throws it away. May throw std::bad_alloc.
void offerRecovered(const std::filesystem::path& typed);
