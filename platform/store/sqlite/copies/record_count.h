#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace store {

/// How many records the tables of the database at `path` have together, which nobody changes meanwhile; the
/// table of the saved queries counts too. Empty when it can't be read, or `isStopped` said so, which is asked
/// before each table and every few thousand records, and throws nothing.
std::optional<std::int64_t> countRecords(const std::string& path, const std::function<bool()>& isStopped);

/// Stops after the time that somebody waits for a count without noticing, from the first question on.
std::function<bool()> untilTimeIsUp();

}  // namespace store
