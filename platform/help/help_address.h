#pragma once

#include <filesystem>
#include <string>

namespace help {

/// The name that `path` has outside of Wine, where the user's browser runs; empty on Windows, and for a drive
/// that leads nowhere.
std::string unixNameOf(const std::filesystem::path& path);

/// How a user finds the file: its Unix name under Wine, its path on Windows.
std::wstring nameForUser(const std::filesystem::path& path);

/// The address of the file for a browser, "file:///C:/a%20b/Quivane.htm", with `anchor` at its end unless
/// that is empty. All but letters, digits and a few signs are written as bytes of UTF-8.
std::string addressOf(const std::filesystem::path& path, const std::wstring& anchor);

/// A page that leads on to `address`, as a browser reads it.
std::string signpostTo(const std::string& address);

}  // namespace help
