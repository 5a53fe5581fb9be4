#include "data/database/record_counters.h"

std::uint32_t currentRecord = 0;
std::uint32_t recordCount = 0;
