#pragma once

#include <cstdint>

#include "base/string.h"

/// Where the user stands: "No Records", or the position of the current record and the number of records
/// as in "3 / 17". With fewer than 10,000 records blanks before it bring it to the right of the box.
String positionText(std::uint32_t position, std::uint32_t count);
