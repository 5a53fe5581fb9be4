#pragma once

#include <string>

namespace store {

/// By what a database is known from one session to the next: its full path, with links followed where the
/// system has them. UTF-8.
std::string databaseKeyOf(const std::string& path);

/// A name for the folder of what belongs to a database, by its key alone: the beginning of the file's name
/// for people, and a number made of the key. Where the system takes capitals for small letters, ASCII's count
/// as the same.
std::string folderNameOf(const std::string& key);

}  // namespace store
