#pragma once

#include <optional>
#include <string>

namespace store {

/// The passwords that servers took since the program was started. They are nowhere but in its memory.
///
/// `link` is the text of a link without a password. From any thread.
std::optional<std::string> rememberedPassword(const std::string& link);
void rememberPassword(const std::string& link, const std::string& password);
void forgetPassword(const std::string& link);

}  // namespace store
