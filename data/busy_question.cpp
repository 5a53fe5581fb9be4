#include "data/busy_question.h"

namespace {

/// What the components give for an argument.
constexpr LONG kWaiting = 1;

class BusyQuestion final : public IDispatch {
 public:
  explicit BusyQuestion(BusyListener& listener) : listener_(listener) {}
  BusyQuestion(const BusyQuestion&) = delete;
  BusyQuestion& operator=(const BusyQuestion&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    if (!object) return E_POINTER;
    const bool known = interfaceId == IID_IUnknown || interfaceId == IID_IDispatch;
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (member != DISPID_VALUE) return DISP_E_MEMBERNOTFOUND;
    if (!arguments || arguments->cArgs != 1 || V_VT(arguments->rgvarg) != VT_I4) return DISP_E_BADPARAMCOUNT;
    if (!result) return E_POINTER;
    try {
      const bool waits = V_I4(arguments->rgvarg) == kWaiting;
      const bool goesOn = listener_.goesOn(waits ? BusyWith::otherProgram : BusyWith::itself);
      V_VT(result) = VT_BOOL;
      V_BOOL(result) = goesOn ? VARIANT_FALSE : VARIANT_TRUE;
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }

 private:
  // Only Release ends it.
  ~BusyQuestion() = default;

  BusyListener& listener_;
  LONG references_ = 1;
};

}  // namespace

ComPtr<IDispatch> makeBusyQuestion(BusyListener& listener) {
  return ComPtr<IDispatch>(new BusyQuestion(listener));
}
