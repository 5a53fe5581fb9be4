#pragma once

#include <adoce.h>
#include <string>

#include "platform/store/automation/objects/automation_object.h"

namespace automation {

/// One failure, as the collection of a connection keeps it.
class ErrorObject final : public AutomationObject<IAdoceError> {
 public:
  ErrorObject(HRESULT number, std::wstring description, const wchar_t* failedObject);

  HRESULT STDMETHODCALLTYPE get_Description(BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_Number(long* number) override;
  HRESULT STDMETHODCALLTYPE get_Source(BSTR* text) override;
  /// 0: the engine has no numbers of its own to tell.
  HRESULT STDMETHODCALLTYPE get_NativeError(long* number) override;

 private:
  HRESULT number_;
  std::wstring description_;
};

}  // namespace automation
