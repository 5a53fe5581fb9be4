#pragma once

#include <filesystem>

/// The folder of the running program. May throw std::bad_alloc.
std::filesystem::path programFolder();
