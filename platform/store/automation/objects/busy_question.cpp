#include "platform/store/automation/objects/busy_question.h"

namespace automation {

namespace {

constexpr std::chrono::milliseconds kBetween{20};

// What the interface says of the argument.
constexpr LONG kWorking = 0;
constexpr LONG kWaiting = 1;

thread_local bool t_isBeingAsked = false;

class Asking {
 public:
  Asking() { t_isBeingAsked = true; }
  ~Asking() { t_isBeingAsked = false; }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;
};

/// The answer of the object's default member; one that fails is no.
bool ask(IDispatch& object, VARIANT* arguments, UINT count) {
  const Asking asking;
  DISPPARAMS parameters{arguments, nullptr, count, 0};
  OwnedVariant answer;
  const HRESULT result =
      object.Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                    &parameters, answer.get(), nullptr, nullptr);
  OwnedVariant stops;
  return SUCCEEDED(result) && stops.convert(*answer, VT_BOOL) && V_BOOL(stops.get()) != VARIANT_FALSE;
}

}  // namespace

bool BusyQuestion::isBeingAsked() {
  return t_isBeingAsked;
}

bool BusyQuestion::operator()(store::Busy busy) {
  const auto now = std::chrono::steady_clock::now();
  if (t_isBeingAsked || now < next_) return false;
  VARIANT argument;
  V_VT(&argument) = VT_I4;
  V_I4(&argument) = busy == store::Busy::waiting ? kWaiting : kWorking;
  const bool stops = ask(*object_.get(), &argument, 1);
  // Counted from the end: an object that takes its time is not asked without a pause.
  next_ = std::chrono::steady_clock::now() + kBetween;
  return stops;
}

bool ProgressQuestion::goesOn(Moving moving, std::int64_t done, std::int64_t total) {
  const auto now = std::chrono::steady_clock::now();
  if (!object_ || t_isBeingAsked || now < next_) return true;
  // The last one first.
  VARIANT arguments[3];
  V_VT(&arguments[0]) = V_VT(&arguments[1]) = VT_R8;
  V_R8(&arguments[0]) = static_cast<double>(total);
  V_R8(&arguments[1]) = static_cast<double>(done);
  V_VT(&arguments[2]) = VT_I4;
  V_I4(&arguments[2]) = static_cast<LONG>(moving);
  const bool stops = ask(*object_.get(), arguments, 3);
  next_ = std::chrono::steady_clock::now() + kBetween;
  return !stops;
}

}  // namespace automation
