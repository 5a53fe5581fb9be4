#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include "owners/ole_functions.h"
#include "owners/unique_resource.h"

/// Owners of what COM and OLE Automation hand out. What they promise is in unique_resource.h.

namespace handles {

template <typename Interface>
struct ComPointerTraits : NullTraits<Interface*, ResourceKind::comPointer> {
  static void close(Interface* value) noexcept { value->Release(); }
};

struct BstrTraits : NullTraits<BSTR, ResourceKind::bstr> {
  static void close(BSTR value) noexcept { ole::sysFreeString(value); }
};

}  // namespace handles

/// One reference to a COM object. A plain pointer given to the constructor or to reset is taken over
/// without AddRef. Copying takes a reference of its own.
template <typename Interface>
class ComPtr : public UniqueResource<handles::ComPointerTraits<Interface>> {
 public:
  using UniqueResource<handles::ComPointerTraits<Interface>>::UniqueResource;

  ComPtr() noexcept = default;
  ComPtr(const ComPtr& other) noexcept : ComPtr(share(other.get())) {}
  ComPtr& operator=(const ComPtr& other) noexcept {
    ComPtr copy(other);
    this->swap(copy);
    return *this;
  }
  ComPtr(ComPtr&&) noexcept = default;
  ComPtr& operator=(ComPtr&&) noexcept = default;
  ~ComPtr() = default;

  /// A reference of its own to `object`, which may be null.
  static ComPtr share(Interface* object) noexcept {
    if (object) object->AddRef();
    return ComPtr(object);
  }

  /// Something is held.
  Interface* operator->() const noexcept { return this->get(); }

  /// Asks the object, which is held, for another interface. A failure leaves `other` untouched.
  template <typename Other>
  HRESULT query(ComPtr<Other>& other) const noexcept {
    ComPtr<Other> found;
    const HRESULT result =
        this->get()->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(found.put()));
    if (SUCCEEDED(result)) other = std::move(found);
    return result;
  }
};

/// Null is a BSTR of its own right: the empty text.
using UniqueBstr = UniqueResource<handles::BstrTraits>;
