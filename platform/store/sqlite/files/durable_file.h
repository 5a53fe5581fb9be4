#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace store {

/// What SQLite does not do with whole files. Paths are UTF-8, of files in one folder that nobody has open for
/// writing. Each but the last two returns whether it was done, and throws nothing.

/// Gives the file at `from` the name `to` at one stroke. What stands at `to` already is replaced if
/// `replaces`; else, as far as the system can tell at that moment, nothing is done then.
bool renameFile(const std::string& from, const std::string& to, bool replaces) noexcept;

/// Takes care that the content of the file and its name are on the disk and not only on their way.
bool flushFile(const std::string& path) noexcept;

/// Marks the file as not to be written by anybody, or takes the mark away.
bool markReadOnly(const std::string& path, bool isReadOnly) noexcept;

/// Deletes the file, marked or not. Also true when there is none.
bool removeFile(const std::string& path) noexcept;

/// The names of what is in the folder; none where it can't be read. std::bad_alloc passes through, unlike in
/// the standard library's way, which ends the program then.
std::vector<std::string> namesIn(const std::string& folder);

/// The bytes that this user may still write to where the folder is; nothing when the system doesn't tell.
/// Takes no memory, unlike the standard library's way.
std::optional<std::int64_t> freeBytesAt(const std::filesystem::path& folder) noexcept;

}  // namespace store
