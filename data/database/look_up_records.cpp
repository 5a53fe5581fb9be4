#include "data/database/look_up_records.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "data/database/sql_names.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"
#include "data/values/binary_text.h"
#include "data/values/field_kinds.h"
#include "data/values/value_conversion.h"

namespace {

/// More than anybody reads of a key or name.
constexpr LONG kMostReadBytes = 1000;
constexpr int kSampleCount = 100;
constexpr int kSampleLength = 300;
constexpr LONG kKeyField = 0;
constexpr LONG kNameField = 1;

bool isSame(const String& one, const String& other) {
  return CompareStringOrdinal(one.text(), -1, other.text(), -1, TRUE) == CSTR_EQUAL;
}

std::wstring selectOf(const LookUpTarget& target, const std::wstring& fields) {
  return L"Select " + fields + L" From " + selectedName(target.table);
}

Outcome openRecords(RecordsetHandle& records, const ConnectionHandle& connection, const std::wstring& sql) {
  return records.open(sql.c_str(), &connection, CursorType::keyset, SourceKind::text);
}

Outcome readText(RecordsetHandle& records, LONG field, FieldType type, String& text) {
  ValueBeginning value;
  Outcome read = records.field(field).readBeginning(kMostReadBytes, value);
  if (read) text = textOfBeginning(type, value);
  return read;
}

Outcome readText(RecordsetHandle& records, LONG field, String& text) {
  return readText(records, field, FieldType{records.field(field).type()}, text);
}

/// Whether the value comes of its text again, to the last bit, in a field like its own.
bool saysAll(FieldType type, const String& text, const Variant& value) {
  switch (value.type()) {
    case VT_BSTR:
      return isSameValue(Variant::fromText(text.text()), value);
    case VT_R4:
    case VT_R8:
      return isSameValue(doubleFromText(text.text()), value);
    case VT_ARRAY | VT_UI1:
      return fieldKind(type).editor == FieldEditorKind::bytes &&
             isSameValue(bytesFromText(text.text()), value);
    case VT_DATE:
      // It is written in the user's way.
      return false;
    default:
      return true;
  }
}

/// What the first values of a field are like.
struct Sample {
  String field{};
  bool hasLetters = false;
  bool repeats = false;
  std::set<std::wstring> values{};

  void add(const String& value) {
    if (value.isEmpty()) return;
    const std::wstring text = value.text();
    hasLetters =
        hasLetters || std::any_of(text.begin(), text.end(), [](wchar_t c) { return IsCharAlphaW(c); });
    repeats = !values.insert(text).second || repeats;
  }
};

/// No record is read for it: a table may have fields of bytes besides, and nobody waits for those.
Outcome findTextFields(const ConnectionHandle& connection, const LookUpTarget& target,
                       std::vector<Sample>& samples) {
  RecordsetHandle records;
  if (Outcome opened = openRecords(records, connection, selectOf(target, L"*") + L" Limit 0"); !opened)
    return opened;
  for (LONG field = 0; field < records.fieldCount(); ++field) {
    FieldHandle& handle = records.field(field);
    const FieldType type{handle.type()};
    const bool isText = type == FieldType::varWChar || type == FieldType::longVarWChar;
    if (isText && !isSame(handle.name(), target.field)) samples.push_back({.field = handle.name()});
  }
  return {};
}

/// A statement that reads the beginnings of the values of the samples' fields.
std::wstring sampleSql(const LookUpTarget& target, const std::vector<Sample>& samples) {
  std::wstring fields;
  for (const Sample& sample : samples) {
    if (!fields.empty()) fields += L", ";
    fields += L"substr(" + selectedName(sample.field) + L", 1, " + std::to_wstring(kSampleLength) + L")";
  }
  return selectOf(target, fields) + L" Limit " + std::to_wstring(kSampleCount);
}

std::wstring literal(const String& text) {
  std::wstring quoted = L"'";
  for (const wchar_t* at = text.text(); *at; ++at) {
    quoted += *at;
    if (*at == L'\'') quoted += *at;
  }
  return quoted + L"'";
}

}  // namespace

Outcome findNameField(const ConnectionHandle& connection, const LookUpTarget& target, String& field) {
  std::vector<Sample> samples;
  if (Outcome found = findTextFields(connection, target, samples); !found) return found;
  if (samples.empty()) {
    field.clear();
    return {};
  }
  RecordsetHandle records;
  if (Outcome opened = openRecords(records, connection, sampleSql(target, samples)); !opened) return opened;
  const LONG count = records.recordCount();
  for (LONG record = 0; record < count; ++record) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
      String value;
      // What is calculated has no type of its own everywhere.
      if (Outcome read = readText(records, static_cast<LONG>(i), FieldType::longVarWChar, value); !read)
        return read;
      samples[i].add(value);
    }
    if (Outcome read = records.readOn(); !read) return read;
  }
  auto found = std::find_if(samples.begin(), samples.end(),
                            [](const Sample& sample) { return sample.hasLetters && !sample.repeats; });
  if (found == samples.end()) {
    found =
        std::find_if(samples.begin(), samples.end(), [](const Sample& sample) { return sample.hasLetters; });
  }
  field = found == samples.end() ? String() : found->field;
  return {};
}

String nameOfKey(const ConnectionHandle& connection, const LookUpTarget& target, const String& nameField,
                 const String& key) {
  String name;
  if (nameField.isEmpty() || key.isEmpty()) return name;
  RecordsetHandle records;
  // The store makes a number of it where the field is one of numbers.
  const std::wstring sql = selectOf(target, selectedName(nameField)) + L" Where " +
                           selectedName(target.field) + L" = " + literal(key);
  const bool isThere = openRecords(records, connection, sql) && records.recordCount() > 0;
  if (isThere && !readText(records, 0, name)) name.clear();
  return name;
}

Outcome LookUpRecords::open(const ConnectionHandle& connection, const LookUpTarget& target,
                            std::unique_ptr<LookUpRecords>& records) {
  String nameField;
  if (Outcome found = findNameField(connection, target, nameField); !found) return found;
  std::wstring fields = selectedName(target.field);
  if (!nameField.isEmpty()) fields += L", " + selectedName(nameField);
  auto opened = std::make_unique<RecordsetHandle>();
  if (Outcome done = openRecords(*opened, connection, selectOf(target, fields)); !done) return done;
  records.reset(new LookUpRecords(std::move(opened)));
  return {};
}

LookUpRecords::LookUpRecords(std::unique_ptr<RecordsetHandle> records)
    : records_(std::move(records)),
      count_(static_cast<std::uint32_t>(std::max(records_->recordCount(), 0L))),
      hasName_(records_->fieldCount() > kNameField) {}

LookUpRecords::~LookUpRecords() = default;

bool LookUpRecords::moveTo(std::uint32_t row) {
  return row < count_ && records_->move(static_cast<LONG>(row), MoveOrigin::first);
}

Outcome LookUpRecords::read(std::uint32_t row, LookUpRecord& record) {
  if (!moveTo(row)) return Outcome::failure(L"The record can't be reached.");
  LookUpRecord found;
  if (Outcome read = readText(*records_, kKeyField, found.key); !read) return read;
  if (hasName_) {
    if (Outcome read = readText(*records_, kNameField, found.name); !read) return read;
  }
  record = std::move(found);
  return {};
}

Outcome LookUpRecords::readKey(std::uint32_t row, String& key) {
  if (!moveTo(row)) return Outcome::failure(L"The record can't be reached.");
  FieldHandle& handle = records_->field(kKeyField);
  const FieldType type{handle.type()};
  Variant value;
  if (Outcome read = handle.read(value); !read) return read;
  String text = fieldKind(type).textOf(value);
  if (!saysAll(type, text, value)) return Outcome::failure(L"Its key can't be written in full.");
  key = std::move(text);
  return {};
}

// ---- The search

void LookUpRecords::beginSearch(const String& text) {
  wanted_ = text;
  wanted_.toUpperCase();
  next_ = 0;
  records_->beginTextSearch(text.text(), std::nullopt, false);
}

bool LookUpRecords::isWanted(const LookUpRecord& record) const {
  for (String text : {record.key, record.name}) {
    text.toUpperCase();
    if (text.find(wanted_.text()) >= 0) return true;
  }
  return false;
}

Outcome LookUpRecords::searchOn(std::uint32_t milliseconds, std::size_t most,
                                std::vector<std::uint32_t>& found, bool& goesOn) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
  while (next_ < count_ && found.size() < most && Clock::now() < end) {
    // The records in between can't have it.
    if (moveTo(next_)) {
      const LONG passed =
          records_->passOver(static_cast<LONG>(count_ - next_), static_cast<LONG>(milliseconds));
      next_ += static_cast<std::uint32_t>(std::max(passed, 0L));
    }
    if (next_ < count_) {
      LookUpRecord record;
      Outcome wasRead = read(next_, record);
      if (!wasRead && wasRead.cause() != Outcome::Cause::recordGone) {
        goesOn = false;
        return wasRead;
      }
      if (wasRead && isWanted(record)) found.push_back(next_);
    }
    ++next_;
  }
  goesOn = next_ < count_ && found.size() < most;
  return {};
}
