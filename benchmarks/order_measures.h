#pragma once

#include <string>
#include <vector>

#include "benchmarks/measures.h"

namespace bench {

/// The measurements of the opening of records in an order and with a filter, beside the bare statements, on
/// the database that tools/make-data makes.
std::vector<Measure> makeOrderMeasures(const std::string& path);

}  // namespace bench
