#pragma once

#include <cstdint>
#include <string>

#include "data/handles/database_copy.h"

/// What is told of a copy, as the user reads it.

/// `time` as DatabaseCopy has it, in the user's own time and format.
std::wstring copyTimeText(double time);
/// "12 KB", "3.4 MB".
std::wstring copySizeText(std::int64_t bytes);
/// Empty when they were not counted.
std::wstring copyRecordsText(std::int64_t records);
/// Before what it was kept.
const wchar_t* copyReasonText(DatabaseCopy::Reason reason);
