#pragma once

#include <adoce.h>
#include <memory>
#include <utility>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/objects/cursor.h"
#include "platform/store/automation/objects/field.h"

namespace automation {

/// The fields of a cursor, as long as it is open. A recordset that opens again has new ones.
class FieldsObject final : public AutomationObject<IAdoceFields> {
 public:
  explicit FieldsObject(std::shared_ptr<Cursor> cursor)
      : AutomationObject(kRecordsetSource), cursor_(std::move(cursor)) {}

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IAdoceField** field) override;
  HRESULT STDMETHODCALLTYPE get_Count(long* count) override;
  HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** enumerator) override;

  /// Also takes what scripts write as "fields(index) = value": a put with an index in front.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;

 protected:
  ErrorsObject* errorsForReport() override { return cursor_->errors().get(); }

 private:
  std::shared_ptr<Cursor> cursor_;
};

}  // namespace automation
