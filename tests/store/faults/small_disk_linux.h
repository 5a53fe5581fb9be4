#pragma once

#include <filesystem>

namespace store {

/// Mounts a real file system of so many megabytes for this process alone, by the means of Linux; false where
/// the system does not allow that (errno says why).
bool mountSmallDisk(const std::filesystem::path& folder, int megabytes);
/// False when a file on it is still open.
bool removeSmallDisk(const std::filesystem::path& folder);

}  // namespace store
