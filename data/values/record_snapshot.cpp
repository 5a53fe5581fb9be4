#include "data/values/record_snapshot.h"

#include <utility>

RecordSnapshot::RecordSnapshot(std::uint32_t position, bool isNew, std::vector<FieldSnapshot> fields,
                               RecordMark mark)
    : wasRead_(true),
      isNew_(isNew),
      position_(position),
      fields_(std::move(fields)),
      mark_(std::move(mark)) {}

RecordSnapshot::RecordSnapshot(std::uint32_t position, Outcome failure)
    : wasRead_(true), position_(position), outcome_(std::move(failure)) {}
