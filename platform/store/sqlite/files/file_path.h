#pragma once

#include <filesystem>
#include <string>

namespace store {

/// The path of a UTF-8 text.
std::filesystem::path pathOf(const std::string& utf8);

}  // namespace store
