#pragma once

#include <cstdint>

/// Two program-wide values: where the program stands and how many records there are. Database keeps
/// them with every move and change; the form, the list and the position text read them.

/// Position of the current record, from 1; 0 where there is none. 1 once a Database is constructed.
extern std::uint32_t currentRecord;

/// Records of the current recordset as last read, a new record that is not yet stored included.
extern std::uint32_t recordCount;
