#include "data/handles/busy_question.h"

namespace {

/// What the components give for an argument.
constexpr LONG kWaiting = 1;
constexpr LONG kStoring = 1;
constexpr LONG kWriting = 2;

/// An object whose default member is a question.
class Question : public IDispatch {
 public:
  Question(const Question&) = delete;
  Question& operator=(const Question&) = delete;

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
    if (!arguments || !takes(*arguments)) return DISP_E_BADPARAMCOUNT;
    if (!result) return E_POINTER;
    try {
      const bool wanted = goesOn(arguments->rgvarg);
      V_VT(result) = VT_BOOL;
      V_BOOL(result) = wanted ? VARIANT_FALSE : VARIANT_TRUE;
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }

 protected:
  explicit Question(BusyListener& listener) : listener_(listener) {}
  // Only Release ends it.
  virtual ~Question() = default;

  /// Whether these are the arguments that it expects; the last one stands first.
  virtual bool takes(const DISPPARAMS& arguments) const = 0;
  virtual bool goesOn(const VARIANT* arguments) = 0;
  BusyListener& listener() const { return listener_; }

 private:
  BusyListener& listener_;
  LONG references_ = 1;
};

class BusyQuestion final : public Question {
 public:
  explicit BusyQuestion(BusyListener& listener) : Question(listener) {}

 private:
  bool takes(const DISPPARAMS& arguments) const override {
    return arguments.cArgs == 1 && V_VT(arguments.rgvarg) == VT_I4;
  }
  bool goesOn(const VARIANT* arguments) override {
    return listener().goesOn(V_I4(arguments) == kWaiting ? BusyWith::otherProgram : BusyWith::itself);
  }
};

class MovingQuestion final : public Question {
 public:
  explicit MovingQuestion(BusyListener& listener) : Question(listener) {}

 private:
  bool takes(const DISPPARAMS& arguments) const override {
    const VARIANT* const given = arguments.rgvarg;
    return arguments.cArgs == 3 && V_VT(&given[0]) == VT_R8 && V_VT(&given[1]) == VT_R8 &&
           V_VT(&given[2]) == VT_I4;
  }
  bool goesOn(const VARIANT* arguments) override {
    MovingState state;
    const LONG what = V_I4(&arguments[2]);
    state.what = what == kWriting   ? MovingState::What::writing
                 : what == kStoring ? MovingState::What::storing
                                    : MovingState::What::looking;
    state.done = static_cast<std::uint64_t>(V_R8(&arguments[1]));
    state.total = static_cast<std::uint64_t>(V_R8(&arguments[0]));
    return listener().movesOn(state);
  }
};

}  // namespace

ComPtr<IDispatch> makeBusyQuestion(BusyListener& listener) {
  return ComPtr<IDispatch>(new BusyQuestion(listener));
}

ComPtr<IDispatch> makeMovingQuestion(BusyListener& listener) {
  return ComPtr<IDispatch>(new MovingQuestion(listener));
}
