#pragma once

#include <adoce.h>
#include <string>
#include <vector>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/objects/error.h"

namespace automation {

/// The failure of the last operation that failed on a connection or one of its recordsets. It lives on
/// as long as anyone holds it, also without its connection.
class ErrorsObject final : public AutomationObject<IAdoceErrors> {
 public:
  ErrorsObject() : AutomationObject(kConnectionSource) {}

  /// Drops what there is and takes one new failure. `failedObject` must live as long as the module.
  /// Throws std::bad_alloc, leaving the collection as it was.
  void replaceWith(HRESULT number, const std::wstring& description, const wchar_t* failedObject);

  HRESULT STDMETHODCALLTYPE get_Item(VARIANT index, IAdoceError** error) override;
  HRESULT STDMETHODCALLTYPE get_Count(long* count) override;
  HRESULT STDMETHODCALLTYPE Clear() override;
  HRESULT STDMETHODCALLTYPE get__NewEnum(IUnknown** enumerator) override;

 private:
  std::vector<ComPtr<ErrorObject>> errors_;
};

}  // namespace automation
