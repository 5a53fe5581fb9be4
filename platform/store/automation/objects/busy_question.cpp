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

}  // namespace

bool BusyQuestion::isBeingAsked() {
  return t_isBeingAsked;
}

bool BusyQuestion::operator()(store::Busy busy) {
  const auto now = std::chrono::steady_clock::now();
  if (t_isBeingAsked || now < next_) return false;
  const Asking asking;
  VARIANT argument;
  V_VT(&argument) = VT_I4;
  V_I4(&argument) = busy == store::Busy::waiting ? kWaiting : kWorking;
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  OwnedVariant answer;
  const HRESULT result =
      object_->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                      &arguments, answer.get(), nullptr, nullptr);
  // Counted from the end: an object that takes its time is not asked without a pause.
  next_ = std::chrono::steady_clock::now() + kBetween;
  OwnedVariant stops;
  return SUCCEEDED(result) && stops.convert(*answer, VT_BOOL) && V_BOOL(stops.get()) != VARIANT_FALSE;
}

}  // namespace automation
