#pragma once

#include <string>
#include <vector>

#include "benchmarks/measures.h"

namespace bench {

/// The measurements over a table of `count` records, at least 1,000, of a server at this port, beside the
/// same statements sent by the server's own library. Makes a database "bench" there, and the file of a link
/// to it at `link`. Ends the program with a message when the server can't be used.
std::vector<Measure> makeServerMeasures(const std::string& port, const std::string& link, int count);

}  // namespace bench
