#include "platform/store/automation/objects/errors.h"

#include <utility>

#include "platform/store/automation/objects/collection.h"

namespace automation {

void ErrorsObject::replaceWith(HRESULT number, const std::wstring& description, const wchar_t* failedObject) {
  std::vector<ComPtr<ErrorObject>> errors;
  errors.push_back(makeObject<ErrorObject>(number, description, failedObject));
  errors_ = std::move(errors);
}

HRESULT ErrorsObject::get_Item(VARIANT index, IAdoceError** error) {
  return call([&]() -> Outcome {
    if (error == nullptr) return nullPointer();
    const std::optional<std::size_t> number = itemIndexOf(index, errors_.size());
    if (!number) return {kItemNotFound, "There is no such error in the collection."};
    *error = ComPtr<ErrorObject>(errors_[*number]).release();
    return {};
  });
}

HRESULT ErrorsObject::get_Count(long* count) {
  return call([&]() -> Outcome {
    if (count == nullptr) return nullPointer();
    *count = static_cast<long>(errors_.size());
    return {};
  });
}

HRESULT ErrorsObject::Clear() {
  return call([&]() -> Outcome {
    errors_.clear();
    return {};
  });
}

HRESULT ErrorsObject::get__NewEnum(IUnknown** enumerator) {
  return call([&]() -> Outcome {
    if (enumerator == nullptr) return nullPointer();
    std::vector<ComPtr<IDispatch>> items;
    for (const ComPtr<ErrorObject>& error : errors_) items.push_back(ComPtr<IDispatch>::share(error.get()));
    *enumerator = newEnumerator(std::move(items));
    return {};
  });
}

}  // namespace automation
