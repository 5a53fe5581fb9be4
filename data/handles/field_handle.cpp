#include "data/handles/field_handle.h"

#include <optional>
#include <utility>

#include "data/handles/last_error.h"
#include "data/values/date_value.h"
#include "data/values/value_conversion.h"
#include "owners/ole_functions.h"

namespace {

Outcome noField() {
  return Outcome::failure(L"There is no such field.");
}

}  // namespace

void FieldHandle::attach(ComPtr<IAdoceField> field) {
  field_ = std::move(field);
  value_.clear();
  text_.clear();
}

const String& FieldHandle::name() {
  text_.clear();
  UniqueBstr name;
  if (field_ && SUCCEEDED(field_->get_Name(name.put()))) text_ = textOfBstr(name.get());
  return text_;
}

LONG FieldHandle::type() {
  LONG type = 0;
  return field_ && SUCCEEDED(field_->get_Type(&type)) ? type : 0;
}

LONG FieldHandle::attributes() {
  LONG attributes = 0;
  return field_ && SUCCEEDED(field_->get_Attributes(&attributes)) ? attributes : 0;
}

String FieldHandle::referencedTable() {
  UniqueBstr name;
  return field_ && SUCCEEDED(field_->get_ReferencedTable(name.put())) ? textOfBstr(name.get()) : String();
}

String FieldHandle::referencedField() {
  UniqueBstr name;
  return field_ && SUCCEEDED(field_->get_ReferencedField(name.put())) ? textOfBstr(name.get()) : String();
}

Outcome FieldHandle::read(Variant& value) {
  if (!field_) return noField();
  Variant fetched;
  Outcome outcome = outcomeOf(field_->get_Value(fetched.put()));
  if (outcome) value = std::move(fetched);
  return outcome;
}

Outcome FieldHandle::readBeginning(LONG mostBytes, ValueBeginning& beginning) {
  if (!field_) return noField();
  Variant fetched;
  hyper length = 0;
  hyper fingerprint = 0;
  Outcome outcome = outcomeOf(field_->ReadBeginning(mostBytes, fetched.put(), &length, &fingerprint));
  if (!outcome) return outcome;
  beginning = {std::move(fetched), static_cast<std::uint64_t>(length),
               static_cast<std::uint64_t>(fingerprint)};
  return outcome;
}

Outcome FieldHandle::readText(String& text) {
  Variant fetched;
  Outcome outcome = read(fetched);
  if (outcome) text = textOf(fetched);
  return outcome;
}

Outcome FieldHandle::readSeparated(std::wstring& text) {
  if (!field_) return noField();
  UniqueBstr read;
  Outcome outcome = outcomeOf(field_->ReadSeparated(read.put()));
  if (outcome) text.assign(read.get(), ole::sysStringLen(read.get()));
  return outcome;
}

Outcome FieldHandle::readLiteral(LONG mostBytes, std::wstring& text) {
  if (!field_) return noField();
  UniqueBstr read;
  Outcome outcome = outcomeOf(field_->ReadLiteral(mostBytes, read.put()));
  if (outcome) text.assign(read.get(), ole::sysStringLen(read.get()));
  return outcome;
}

const Variant& FieldHandle::value() {
  if (!field_ || FAILED(field_->get_Value(value_.put()))) value_.clear();
  return value_;
}

const String& FieldHandle::valueAsText() {
  text_ = textOf(value());
  return text_;
}

LONG FieldHandle::valueAsInteger() {
  return integerOf(value()).value_or(0);
}

bool FieldHandle::valueAsDate(SYSTEMTIME& date) {
  const Variant& fetched = value();
  if (fetched.type() != VT_DATE) return false;
  const std::optional<SYSTEMTIME> calendar = calendarFromDate(fetched.get().date);
  if (!calendar) return false;
  date = *calendar;
  return true;
}

Outcome FieldHandle::setValue(const Variant& value) {
  return field_ ? outcomeOf(field_->put_Value(value.get())) : noField();
}
