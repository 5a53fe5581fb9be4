#include "platform/store/automation/module/class_factory.h"

#include <atomic>
#include <new>
#include <unknwn.h>

#include "platform/store/automation/module/module.h"
#include "platform/store/automation/values/com_values.h"

namespace automation {

namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ClassEntry& entry) : entry_(entry) { addModuleUse(); }
  virtual ~ClassFactory() { removeModuleUse(); }
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (interfaceId != IID_IUnknown && interfaceId != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID interfaceId, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return entry_.create(interfaceId, object);
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock) {
      addModuleUse();
    } else {
      removeModuleUse();
    }
    return S_OK;
  }

 private:
  const ClassEntry& entry_;
  std::atomic<ULONG> references_ = 1;
};

}  // namespace

HRESULT createFactory(const ClassEntry& entry, REFIID interfaceId, void** factory) {
  *factory = nullptr;
  try {
    const auto made = ComPtr<ClassFactory>(new ClassFactory(entry));
    return made->QueryInterface(interfaceId, factory);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace automation
