#include <chrono>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "platform/store/automation/objects/recordset.h"
#include "platform/store/automation/values/field_values.h"
#include "platform/store/automation/values/search_texts.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"

// The search for a text in the records of an open recordset, an interface of its own.

namespace automation {

namespace {

constexpr DISPID kFirstMember = 100;
constexpr DISPID kLastMember = 102;

// Under this identifier, which no header tells, an object of this module gives itself away.
constexpr IID kOwnRecordset = {0x5b0f3a52, 0x7c0e, 0x4a43, {0x9b, 0x1d, 0x6d, 0x0b, 0x7a, 0x3c, 0x1e, 0x31}};

using Clock = store::RowScan::Clock;

std::u16string_view unitsOf(BSTR text) {
  const std::wstring_view units = viewOf(text);
  return {reinterpret_cast<const char16_t*>(units.data()), units.size()};
}

Clock::time_point endOf(long milliseconds) {
  return milliseconds < 0 ? Clock::time_point::max() : Clock::now() + std::chrono::milliseconds(milliseconds);
}

}  // namespace

ComPtr<RecordsetObject> RecordsetObject::of(IUnknown* object) {
  void* own = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(kOwnRecordset, &own))) return {};
  return ComPtr<RecordsetObject>(static_cast<RecordsetObject*>(own));
}

HRESULT RecordsetObject::BeginTextSearch(BSTR text, VARIANT field, VARIANT_BOOL matchCase) {
  OwnedVariant holder;
  const VARIANT* plain = &field;
  const auto begin = [&](store::Recordset& records) -> Outcome {
    std::vector<std::size_t> columns(records.columns().size());
    std::iota(columns.begin(), columns.end(), std::size_t{0});
    if (!isMissing(*plain)) {
      std::size_t column = 0;
      if (Outcome outcome = findColumn(records, *plain, &column); !outcome) return outcome;
      columns = {column};
    }
    store::TextNeedle needle(unitsOf(text), matchCase != VARIANT_FALSE ? nullptr : &upperCase());
    cursor_->setSearch(
        std::make_unique<store::TextSearch>(records, columns, std::move(needle), systemTexts()));
    return {};
  };
  const auto readArguments = [&]() -> Outcome {
    return isMissing(field) ? Outcome() : plainVariant(field, &holder, &plain);
  };
  return withRecords(readArguments, begin);
}

HRESULT RecordsetObject::PassOver(long mostRecords, long milliseconds, long* passed) {
  return withRecords([&](store::Recordset&) -> Outcome {
    if (passed == nullptr) return nullPointer();
    if (cursor_->search() == nullptr) return {kNotAvailable, "No search was begun."};
    std::int64_t count = 0;
    store::Status status = cursor_->search()->passOver(mostRecords, endOf(milliseconds), &count);
    // What it got over counts; the record that can't be read is the next call's first.
    if (!status && count == 0) return status;
    *passed = static_cast<long>(count);
    return {};
  });
}

HRESULT RecordsetObject::EndTextSearch() {
  return withRecords([&](store::Recordset&) -> Outcome {
    cursor_->setSearch(nullptr);
    return {};
  });
}

void* RecordsetObject::findOwnInterface(REFIID interfaceId) {
  if (interfaceId == __uuidof(IAdoceTextSearch)) return static_cast<IAdoceTextSearch*>(this);
  return interfaceId == kOwnRecordset ? this : nullptr;
}

HRESULT RecordsetObject::InterfaceSupportsErrorInfo(REFIID interfaceId) {
  if (interfaceId == __uuidof(IAdoceTextSearch)) return S_OK;
  return AutomationObject::InterfaceSupportsErrorInfo(interfaceId);
}

HRESULT RecordsetObject::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                       DISPID* ids) {
  const HRESULT found = AutomationObject::GetIDsOfNames(reserved, names, count, locale, ids);
  if (found != DISP_E_UNKNOWNNAME) return found;
  return withTypeInfo([&](const ComPtr<ITypeInfo>& own) { return own->GetIDsOfNames(names, count, ids); },
                      __uuidof(IAdoceTextSearch));
}

bool RecordsetObject::isOfTextSearch(DISPID member) {
  return member >= kFirstMember && member <= kLastMember;
}

HRESULT RecordsetObject::invokeTextSearch(DISPID member, REFIID reserved, WORD flags, DISPPARAMS* arguments,
                                          VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  return withTypeInfo(
      [&](const ComPtr<ITypeInfo>& own) {
        return own->Invoke(static_cast<IAdoceTextSearch*>(this), member, flags, arguments, result, exception,
                           badArgument);
      },
      __uuidof(IAdoceTextSearch));
}

}  // namespace automation
