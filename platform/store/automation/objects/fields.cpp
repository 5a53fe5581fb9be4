#include "platform/store/automation/objects/fields.h"

#include <vector>

#include "platform/store/automation/objects/collection.h"
#include "platform/store/automation/values/field_values.h"
#include "platform/store/automation/values/variant_values.h"

namespace automation {

HRESULT FieldsObject::get_Item(VARIANT index, IAdoceField** field) {
  return call([&]() -> Outcome {
    if (field == nullptr) return nullPointer();
    OwnedVariant holder;
    const VARIANT* plain = nullptr;
    if (Outcome outcome = plainVariant(index, &holder, &plain); !outcome) return outcome;
    const store::Recordset* records = cursor_->records();
    if (records == nullptr) return closedRecordset();
    std::size_t column = 0;
    if (Outcome outcome = findColumn(*records, *plain, &column); !outcome) return outcome;
    *field = makeObject<FieldObject>(cursor_, column).release();
    return {};
  });
}

HRESULT FieldsObject::get_Count(long* count) {
  return call([&]() -> Outcome {
    if (count == nullptr) return nullPointer();
    const store::Recordset* records = cursor_->records();
    if (records == nullptr) return closedRecordset();
    *count = static_cast<long>(records->columns().size());
    return {};
  });
}

HRESULT FieldsObject::get__NewEnum(IUnknown** enumerator) {
  return call([&]() -> Outcome {
    if (enumerator == nullptr) return nullPointer();
    const store::Recordset* records = cursor_->records();
    if (records == nullptr) return closedRecordset();
    std::vector<ComPtr<IDispatch>> items;
    for (std::size_t column = 0; column < records->columns().size(); ++column) {
      items.push_back(ComPtr<IDispatch>(makeObject<FieldObject>(cursor_, column).release()));
    }
    *enumerator = newEnumerator(std::move(items));
    return {};
  });
}

HRESULT FieldsObject::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* arguments,
                             VARIANT* result, EXCEPINFO* exception, UINT* badArgument) {
  const bool putsItem =
      member == DISPID_VALUE && (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  if (!putsItem || arguments == nullptr || arguments->cArgs != 2 || reserved != IID_NULL) {
    return AutomationObject::Invoke(member, reserved, locale, flags, arguments, result, exception,
                                    badArgument);
  }
  // Arguments stand in reverse order: the value, then the index.
  DISPPARAMS indexOnly = {&arguments->rgvarg[1], nullptr, 1, 0};
  OwnedVariant field;
  const HRESULT found = AutomationObject::Invoke(DISPID_VALUE, reserved, locale, DISPATCH_PROPERTYGET,
                                                 &indexOnly, field.get(), exception, badArgument);
  if (FAILED(found)) return found;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS valueOnly = {&arguments->rgvarg[0], &put, 1, 1};
  return V_DISPATCH(field.get())
      ->Invoke(DISPID_VALUE, reserved, locale, DISPATCH_PROPERTYPUT, &valueOnly, result, exception,
               badArgument);
}

}  // namespace automation
