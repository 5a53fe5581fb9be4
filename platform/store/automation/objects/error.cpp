#include "platform/store/automation/objects/error.h"

#include <utility>

#include "platform/store/automation/values/text.h"

namespace automation {

ErrorObject::ErrorObject(HRESULT number, std::wstring description, const wchar_t* failedObject)
    : AutomationObject(failedObject), number_(number), description_(std::move(description)) {}

HRESULT ErrorObject::get_Description(BSTR* text) {
  return call([&]() -> Outcome {
    if (text == nullptr) return nullPointer();
    *text = newText(description_);
    return {};
  });
}

HRESULT ErrorObject::get_Number(long* number) {
  return call([&]() -> Outcome {
    if (number == nullptr) return nullPointer();
    *number = number_;
    return {};
  });
}

HRESULT ErrorObject::get_Source(BSTR* text) {
  return call([&]() -> Outcome {
    if (text == nullptr) return nullPointer();
    *text = newText(std::wstring_view(source()));
    return {};
  });
}

HRESULT ErrorObject::get_NativeError(long* number) {
  return call([&]() -> Outcome {
    if (number == nullptr) return nullPointer();
    *number = 0;
    return {};
  });
}

}  // namespace automation
