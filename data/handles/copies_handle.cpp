#include "data/handles/copies_handle.h"

#include "base/variant.h"
#include "data/handles/last_error.h"
#include "data/values/value_conversion.h"
#include "owners/ole_functions.h"

namespace {

Outcome noCopies() {
  return Outcome::failure(L"The data-access components keep no copies.");
}

/// The texts of an array.
std::vector<String> textsOf(const Variant& array) {
  std::vector<String> texts;
  LONG last = -1;
  if (V_VT(&array.get()) != (VT_ARRAY | VT_BSTR) ||
      FAILED(ole::safeArrayGetUBound(V_ARRAY(&array.get()), 1, &last))) {
    return texts;
  }
  for (LONG index = 0; index <= last; ++index) {
    UniqueBstr text;
    if (SUCCEEDED(ole::safeArrayGetElement(V_ARRAY(&array.get()), &index, text.put()))) {
      texts.push_back(textOfBstr(text.get()));
    }
  }
  return texts;
}

}  // namespace

CopiesHandle::CopiesHandle(const ConnectionHandle& connection) {
  const ComPtr<IAdoceConnection> object = ComPtr<IAdoceConnection>::share(connection.get());
  if (object && FAILED(object.query(copies_))) copies_.reset();
}

void CopiesHandle::keepIn(const String& folder) {
  if (copies_) copies_->KeepCopies(makeBstr(folder.text()).get());
}

String CopiesHandle::takeFailure() {
  UniqueBstr reason;
  if (!copies_ || FAILED(copies_->TakeCopyFailure(reason.put()))) return {};
  return textOfBstr(reason.get());
}

Outcome CopiesHandle::keepBeforeDeletion() {
  return copies_ ? outcomeOf(copies_->KeepBeforeDeletion()) : noCopies();
}

Outcome CopiesHandle::keepDatabase(const String& path) {
  return copies_ ? outcomeOf(copies_->KeepDatabase(makeBstr(path.text()).get())) : noCopies();
}

std::vector<String> CopiesHandle::databases() {
  Variant paths;
  if (!copies_ || FAILED(copies_->ListDatabases(paths.put()))) return {};
  return textsOf(paths);
}

std::vector<DatabaseCopy> CopiesHandle::copiesOf(const String& database) {
  std::vector<DatabaseCopy> copies;
  LONG count = 0;
  if (!copies_ || FAILED(copies_->ListCopies(makeBstr(database.text()).get(), &count))) return copies;
  for (LONG index = 0; index < count; ++index) {
    DatabaseCopy copy;
    UniqueBstr path;
    hyper bytes = 0;
    hyper records = 0;
    LONG reason = 0;
    if (FAILED(copies_->GetCopy(index, path.put(), &copy.time, &bytes, &records, &reason))) continue;
    copy.path = textOfBstr(path.get());
    copy.bytes = bytes;
    copy.records = records;
    copy.reason = static_cast<DatabaseCopy::Reason>(reason);
    copies.push_back(std::move(copy));
  }
  return copies;
}

bool CopiesHandle::isCopy(const String& path) {
  VARIANT_BOOL isCopy = VARIANT_FALSE;
  return copies_ && SUCCEEDED(copies_->IsCopy(makeBstr(path.text()).get(), &isCopy)) &&
         isCopy != VARIANT_FALSE;
}

std::int64_t CopiesHandle::countRecords(const String& copy, unsigned milliseconds) {
  hyper records = DatabaseCopy::kNotCounted;
  const HRESULT result =
      copies_ ? copies_->CountCopy(makeBstr(copy.text()).get(), static_cast<LONG>(milliseconds), &records)
              : E_FAIL;
  return SUCCEEDED(result) ? records : DatabaseCopy::kNotCounted;
}

Outcome CopiesHandle::putBack(const String& database, const String& copy) {
  if (!copies_) return noCopies();
  return outcomeOf(copies_->PutBack(makeBstr(database.text()).get(), makeBstr(copy.text()).get()));
}

Outcome CopiesHandle::putTableBack(const String& database, const String& copy, const String& table) {
  if (!copies_) return noCopies();
  return outcomeOf(copies_->PutTableBack(makeBstr(database.text()).get(), makeBstr(copy.text()).get(),
                                         makeBstr(table.text()).get()));
}

Outcome CopiesHandle::listMissingTables(const String& database, const String& copy, NameList& names) {
  if (!copies_) return noCopies();
  Variant tables;
  Outcome listed = outcomeOf(
      copies_->ListMissingTables(makeBstr(database.text()).get(), makeBstr(copy.text()).get(), tables.put()));
  if (!listed) return listed;
  NameList found;
  for (const String& name : textsOf(tables)) found.append(name);
  names.swap(found);
  return listed;
}
