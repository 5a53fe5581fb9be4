#include <algorithm>
#include <cwchar>
#include <memory>
#include <utility>

#include "data/database/database.h"
#include "data/handles/adoce_constants.h"
#include "data/handles/connection_handle.h"
#include "data/handles/recordset_handle.h"
#include "data/values/field_kinds.h"

namespace {

constexpr std::uint32_t kFieldWidth = 65535;

/// Far more than a message shows.
constexpr LONG kMostFirstBytes = 1000;

/// A type whose fields don't count for the longest name.
constexpr FieldType kUncountedType{48};

}  // namespace

Outcome Database::openRecordset(const String& sql) {
  if (Outcome opened = openCurrent(sql); !opened) return opened;
  loadFields();
  return {};
}

Outcome Database::checkSql(const String& sql) {
  return openCurrent(sql);
}

void Database::closeRecordset() {
  dropListRows();
  recordset_->close();
  newRecordPending_ = false;
}

const String& Database::fieldName(std::uint32_t field) const {
  static const String none;
  return field < fieldNames_.size() ? fieldNames_[field] : none;
}

FieldType Database::fieldType(std::uint32_t field) const {
  return field < fieldTypes_.size() ? fieldTypes_[field] : FieldType{};
}

std::uint32_t Database::fieldWidth(std::uint32_t field) const {
  return field < fieldWidths_.size() ? fieldWidths_[field] : 0;
}

bool Database::isFieldReadOnly(std::uint32_t field) const {
  return field >= fieldReadOnly_.size() || fieldReadOnly_[field] != 0;
}

const LookUpTarget& Database::lookUpTarget(std::uint32_t field) const {
  static const LookUpTarget none;
  return field < lookUpTargets_.size() ? lookUpTargets_[field] : none;
}

bool Database::hasLookUps() const {
  return std::any_of(lookUpTargets_.begin(), lookUpTargets_.end(),
                     [](const LookUpTarget& target) { return !target.isNone(); });
}

String Database::lookUpName(std::uint32_t field, const String& key) {
  const LookUpTarget& target = lookUpTarget(field);
  if (target.isNone() || key.isEmpty()) return {};
  std::optional<String>& name = lookUpNames_[field];
  if (!name) {
    String found;
    if (!findNameField(*connection_, target, found)) return {};
    name = std::move(found);
  }
  return nameOfKey(*connection_, target, *name, key);
}

Outcome Database::openLookUp(std::uint32_t field, std::unique_ptr<LookUpRecords>& records) {
  return LookUpRecords::open(*connection_, lookUpTarget(field), records);
}

bool Database::isNumeric(std::uint32_t field) const {
  return isSignedInteger(field) || fieldKind(fieldType(field)).editor == FieldEditorKind::digits;
}

bool Database::isSignedInteger(std::uint32_t field) const {
  return fieldKind(fieldType(field)).editor == FieldEditorKind::signedDigits;
}

std::uint32_t Database::fieldIndexByName(const String& name) const {
  for (std::uint32_t field = 0; field < fieldCount_; ++field) {
    if (std::wcscmp(fieldName(field).text(), name.text()) == 0) return field;
  }
  return fieldCount_;
}

Outcome Database::openCurrent(const String& sql) {
  closeRecordset();
  recordsetSql_ = sql;
  return recordset_->open(sql.text(), connection_.get(), CursorType::keyset, SourceKind::text);
}

bool Database::reopenSameFields() {
  auto reopened = std::make_unique<RecordsetHandle>();
  const Outcome opened =
      reopened->open(recordsetSql_.text(), connection_.get(), CursorType::keyset, SourceKind::text);
  if (!opened || !hasSameFields(*reopened)) return false;
  if (newRecordPending_ && !reopened->addNew()) return false;
  const std::uint32_t count = countOf(*reopened);
  takeInPlace(std::move(reopened));
  ++rebuilds_;
  setRecordCount(count + (newRecordPending_ ? 1 : 0));
  return true;
}

std::uint32_t Database::countOf(RecordsetHandle& records) {
  return static_cast<std::uint32_t>(std::max(records.recordCount(), 0L));
}

void Database::takeInPlace(std::unique_ptr<RecordsetHandle> records) {
  dropListRows();
  recordset_ = std::move(records);
}

RecordMark Database::markRecord(std::uint32_t position) {
  const bool isThere = position != 0 && position <= recordCount_ && moveForList(position - 1);
  return isThere ? markOf(*listRows_) : RecordMark();
}

/// Of the current one.
RecordMark Database::markOf(RecordsetHandle& records) const {
  RecordMark mark;
  if (!records.bookmark(mark.key_)) mark.key_.clear();
  mark.rebuilds_ = rebuilds_;
  return mark;
}

std::uint32_t Database::placeOf(const RecordMark& mark, std::uint32_t nearby) {
  const std::unique_ptr<RecordsetHandle> records = recordset_->clone();
  return records ? findAgain(*records, mark, nearby) : 0;
}

/// Leaves the record current in `records`; its place there, 0 when it is none of them.
std::uint32_t Database::findAgain(RecordsetHandle& records, const RecordMark& mark, std::uint32_t nearby) {
  const std::uint32_t count = countOf(records);
  if (mark.isEmpty() || count == 0) return 0;
  // It is looked for from the present place outwards, and stands nearby its former one.
  records.move(static_cast<LONG>(std::clamp(nearby, 1u, count) - 1), MoveOrigin::first);
  return records.goTo(mark.key_) ? static_cast<std::uint32_t>(std::max(records.position(), 0L)) : 0;
}

Outcome Database::openInPlace(const String& sql, std::uint32_t former, std::uint32_t& position,
                              bool& hasOtherFields) {
  auto opened = std::make_unique<RecordsetHandle>();
  Outcome outcome = opened->open(sql.text(), connection_.get(), CursorType::keyset, SourceKind::text);
  if (!outcome) return outcome;
  const bool isSame = hasSameFields(*opened);
  std::uint32_t found = isSame ? findAgain(*opened, markRecord(former), former) : 0;
  // What a key of another kind of recordset names may be another record.
  if (found != 0 && !isSameReading(readListRecord(former - 1), readFrom(*opened, found, false))) found = 0;
  position = found;
  hasOtherFields = !isSame;
  takeInPlace(std::move(opened));
  recordsetSql_ = sql;
  newRecordPending_ = false;
  loadFields();
  return outcome;
}

Outcome Database::describeFields(const String& sql, std::vector<FieldDescription>& fields) {
  RecordsetHandle records;
  Outcome opened = records.open(sql.text(), connection_.get(), CursorType::keyset, SourceKind::text);
  if (!opened) return opened;
  std::vector<FieldDescription> found;
  const LONG count = records.fieldCount();
  for (LONG field = 0; field < count; ++field) {
    FieldHandle& handle = records.field(field);
    found.push_back({handle.name(), FieldType{handle.type()}});
  }
  fields = std::move(found);
  return opened;
}

Outcome Database::readFirst(const String& sql, std::vector<std::wstring>& texts) {
  RecordsetHandle records;
  Outcome read = records.open(sql.text(), connection_.get(), CursorType::keyset, SourceKind::text);
  if (!read) return read;
  std::vector<std::wstring> found;
  const LONG count = records.fieldCount();
  for (LONG field = 0; field < count; ++field) {
    FieldHandle& handle = records.field(field);
    const FieldType type{handle.type()};
    ValueBeginning beginning;
    if (read = handle.readBeginning(kMostFirstBytes, beginning); !read) return read;
    found.emplace_back(textOfBeginning(type, beginning).text());
  }
  texts = std::move(found);
  return read;
}

Outcome Database::trySql(const String& sql) {
  return RecordsetHandle().open(sql.text(), connection_.get(), CursorType::keyset, SourceKind::text);
}

bool Database::hasSameFields(RecordsetHandle& other) const {
  if (other.fieldCount() != static_cast<LONG>(fieldCount_)) return false;
  for (std::uint32_t field = 0; field < fieldCount_; ++field) {
    FieldHandle& handle = other.field(static_cast<LONG>(field));
    if (FieldType{handle.type()} != fieldType(field)) return false;
    if (std::wcscmp(handle.name().text(), fieldName(field).text()) != 0) return false;
  }
  return true;
}

void Database::loadFields() {
  clearFields();
  const std::uint32_t count = static_cast<std::uint32_t>(std::max(recordset_->fieldCount(), 0L));
  setRecordCount(static_cast<std::uint32_t>(std::max(recordset_->recordCount(), 0L)));
  fieldNames_.setSize(count);
  fieldTypes_.setSize(count);
  fieldWidths_.setSize(count);
  fieldReadOnly_.setSize(count);
  lookUpTargets_.resize(count);
  lookUpNames_.resize(count);
  for (std::uint32_t field = 0; field < count; ++field) {
    FieldHandle& handle = recordset_->field(static_cast<LONG>(field));
    fieldNames_.set(field, handle.name());
    fieldTypes_[field] = FieldType{handle.type()};
    fieldWidths_[field] = kFieldWidth;
    lookUpTargets_[field] = {handle.referencedTable(), handle.referencedField()};
    fieldReadOnly_[field] = (handle.attributes() & (kFieldUpdatable | kFieldMayBeUpdatable)) != 0 ? 0 : 1;
    if (fieldTypes_[field] != kUncountedType) {
      const auto length = static_cast<std::uint32_t>(fieldNames_[field].length());
      longestFieldName_ = std::max(longestFieldName_, length);
    }
  }
  fieldCount_ = count;
  fieldsLoaded_ = true;
}

void Database::clearFields() {
  fieldNames_.clear();
  fieldTypes_.setSize(0);
  fieldWidths_.setSize(0);
  fieldReadOnly_.setSize(0);
  lookUpTargets_.clear();
  lookUpNames_.clear();
  fieldCount_ = 0;
  longestFieldName_ = 0;
}

void Database::setRecordCount(std::uint32_t count) {
  recordCount_ = count;
  ::recordCount = count;
}
