#include "data/handles/recordset_handle.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "base/variant.h"
#include "data/handles/adoce_classes.h"
#include "data/handles/last_error.h"
#include "data/values/value_conversion.h"

namespace {

Outcome noObject() {
  return Outcome::failure(L"The data-access components are not there.");
}

}  // namespace

RecordsetHandle::RecordsetHandle(const ConnectionHandle* activeConnection)
    : recordset_(createAdoceRecordset()) {
  if (activeConnection) activeConnection_ = ComPtr<IAdoceConnection>::share(activeConnection->get());
}

RecordsetHandle::RecordsetHandle(ComPtr<IAdoceRecordset> recordset) : recordset_(std::move(recordset)) {}

RecordsetHandle::~RecordsetHandle() {
  close();
}

void RecordsetHandle::attach(ComPtr<IAdoceRecordset> recordset) {
  close();
  recordset_ = std::move(recordset);
}

Outcome RecordsetHandle::open(const wchar_t* source, const ConnectionHandle* connection, CursorType cursor,
                              SourceKind kind, LockType lock) {
  close();
  if (!recordset_) return noObject();
  if (kind == SourceKind::text) OutputDebugStringW(source);
  const Variant text = Variant::fromText(source);
  const Variant active = Variant::fromDispatch(connection ? connection->get() : activeConnection_.get());
  return outcomeOf(recordset_->Open(text.get(), active.get(), static_cast<LONG>(cursor),
                                    static_cast<LONG>(lock), static_cast<LONG>(kind)));
}

void RecordsetHandle::close() {
  search_.reset();
  field_.attach({});
  fields_.reset();
  if (recordset_) recordset_->Close();
}

std::unique_ptr<RecordsetHandle> RecordsetHandle::clone() {
  ComPtr<IAdoceRecordset> copy;
  if (!recordset_ || FAILED(recordset_->Clone(copy.put()))) return nullptr;
  return std::make_unique<RecordsetHandle>(std::move(copy));
}

bool RecordsetHandle::moveFirst() {
  return recordset_ && SUCCEEDED(recordset_->MoveFirst());
}

bool RecordsetHandle::moveLast() {
  return recordset_ && SUCCEEDED(recordset_->MoveLast());
}

bool RecordsetHandle::moveNext() {
  return recordset_ && SUCCEEDED(recordset_->MoveNext());
}

Outcome RecordsetHandle::readOn() {
  return moveNext() ? Outcome() : Outcome::failure(L"The list can't be read to its end.");
}

bool RecordsetHandle::movePrevious() {
  return recordset_ && SUCCEEDED(recordset_->MovePrevious());
}

bool RecordsetHandle::move(LONG count, MoveOrigin origin) {
  const Variant start = Variant::fromLong(static_cast<LONG>(origin));
  return recordset_ && SUCCEEDED(recordset_->Move(count, start.get()));
}

// Without it the records are read all the same, only slower.
void RecordsetHandle::readAhead(LONG position, LONG count) {
  if (recordset_) static_cast<void>(recordset_->ReadAhead(position, count));
}

bool RecordsetHandle::bookmark(Variant& bookmark) {
  return recordset_ && SUCCEEDED(recordset_->get_Bookmark(bookmark.put()));
}

bool RecordsetHandle::goTo(const Variant& bookmark) {
  return recordset_ && SUCCEEDED(recordset_->put_Bookmark(bookmark.get()));
}

LONG RecordsetHandle::position() {
  LONG position = 0;
  return recordset_ && SUCCEEDED(recordset_->get_AbsolutePosition(&position)) ? position : 0;
}

LONG RecordsetHandle::recordCount() {
  LONG count = -1;
  return recordset_ && SUCCEEDED(recordset_->get_RecordCount(&count)) ? count : -1;
}

Outcome RecordsetHandle::addNew() {
  const Variant none;
  return recordset_ ? outcomeOf(recordset_->AddNew(none.get(), none.get())) : noObject();
}

Outcome RecordsetHandle::update() {
  const Variant none;
  return recordset_ ? outcomeOf(recordset_->Update(none.get(), none.get())) : noObject();
}

bool RecordsetHandle::cancelUpdate() {
  return recordset_ && SUCCEEDED(recordset_->CancelUpdate());
}

Outcome RecordsetHandle::deleteCurrent() {
  return recordset_ ? outcomeOf(recordset_->Delete(kAffectCurrent)) : noObject();
}

bool RecordsetHandle::beginTextSearch(const wchar_t* text, std::optional<LONG> field, bool matchCase) {
  endTextSearch();
  ComPtr<IAdoceTextSearch> search;
  if (!recordset_ || FAILED(recordset_.query(search))) return false;
  const UniqueBstr needle = makeBstr(text);
  const Variant all;
  const Variant one = Variant::fromLong(field.value_or(0));
  const VARIANT_BOOL withCase = matchCase ? VARIANT_TRUE : VARIANT_FALSE;
  if (FAILED(search->BeginTextSearch(needle.get(), field ? one.get() : all.get(), withCase))) return false;
  search_ = std::move(search);
  return true;
}

LONG RecordsetHandle::passOver(LONG most, LONG milliseconds) {
  LONG passed = 0;
  return search_ && SUCCEEDED(search_->PassOver(most, milliseconds, &passed)) ? passed : 0;
}

void RecordsetHandle::endTextSearch() {
  if (search_) search_->EndTextSearch();
  search_.reset();
}

Outcome RecordsetHandle::saveField(LONG index, const wchar_t* path) {
  if (!recordset_) return noObject();
  return outcomeOf(recordset_->SaveField(Variant::fromLong(index).get(), makeBstr(path).get()));
}

LONG RecordsetHandle::fieldCount() {
  IAdoceFields* collection = fields();
  LONG count = -1;
  return collection && SUCCEEDED(collection->get_Count(&count)) ? count : -1;
}

FieldHandle& RecordsetHandle::field(LONG index) {
  ComPtr<IAdoceField> found;
  IAdoceFields* collection = fields();
  if (collection == nullptr || FAILED(collection->get_Item(Variant::fromLong(index).get(), found.put())))
    found.reset();
  field_.attach(std::move(found));
  return field_;
}

IAdoceFields* RecordsetHandle::fields() {
  if (!fields_ && recordset_ && FAILED(recordset_->get_Fields(fields_.put()))) fields_.reset();
  return fields_.get();
}
