#include "platform/store/automation/objects/collection.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/values/variant_values.h"

namespace automation {

namespace {

/// Enumerates a list that was taken when the enumeration began.
class Enumerator final : public IEnumVARIANT {
 public:
  using Items = std::shared_ptr<const std::vector<ComPtr<IDispatch>>>;

  Enumerator(Items items, std::size_t next) : items_(std::move(items)), next_(next) { addModuleUse(); }
  virtual ~Enumerator() { removeModuleUse(); }
  Enumerator(const Enumerator&) = delete;
  Enumerator& operator=(const Enumerator&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (interfaceId != IID_IUnknown && interfaceId != IID_IEnumVARIANT) return E_NOINTERFACE;
    *object = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      const ModuleLock lock;
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) override {
    if (values == nullptr) return E_POINTER;
    const ModuleLock lock;
    ULONG done = 0;
    for (; done < count && next_ < items_->size(); ++done, ++next_) {
      ComPtr<IDispatch> item = (*items_)[next_];
      V_VT(&values[done]) = VT_DISPATCH;
      V_DISPATCH(&values[done]) = item.release();
    }
    if (fetched != nullptr) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const ModuleLock lock;
    const std::size_t left = items_->size() - next_;
    next_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE Reset() override {
    const ModuleLock lock;
    next_ = 0;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return E_POINTER;
    const ModuleLock lock;
    try {
      *copy = new Enumerator(items_, next_);
      return S_OK;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }

 private:
  std::atomic<ULONG> references_ = 1;
  Items items_;
  std::size_t next_;
};

}  // namespace

std::optional<std::size_t> itemIndexOf(const VARIANT& index, std::size_t count) {
  const VARIANT* referred = referredVariant(const_cast<VARIANT*>(&index));
  OwnedVariant plain;
  if (referred == nullptr || !plain.copyTarget(*referred)) return std::nullopt;
  switch (V_VT(plain.get())) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
      break;
    default:
      return std::nullopt;
  }
  // Through a double, which shows fractions and holds every number that a collection can have.
  OwnedVariant number;
  if (!number.convert(*plain, VT_R8)) return std::nullopt;
  const double value = V_R8(number.get());
  if (!(value >= 0 && value < static_cast<double>(count))) return std::nullopt;
  const auto whole = static_cast<std::size_t>(value);
  return static_cast<double>(whole) == value ? std::optional(whole) : std::nullopt;
}

IUnknown* newEnumerator(std::vector<ComPtr<IDispatch>> items) {
  return new Enumerator(std::make_shared<const std::vector<ComPtr<IDispatch>>>(std::move(items)), 0);
}

}  // namespace automation
