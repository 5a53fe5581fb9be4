#include "data/values/record_snapshot.h"

#include <utility>

RecordSnapshot::RecordSnapshot(std::uint32_t position, bool isNew, std::vector<FieldSnapshot> fields)
    : wasRead_(true), isNew_(isNew), position_(position), fields_(std::move(fields)) {}

RecordSnapshot::RecordSnapshot(std::uint32_t position, Outcome failure)
    : wasRead_(true), position_(position), outcome_(std::move(failure)) {}
