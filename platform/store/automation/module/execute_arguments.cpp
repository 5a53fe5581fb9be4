#include "platform/store/automation/module/execute_arguments.h"

#include <algorithm>
#include <cstddef>

namespace automation {

namespace {

// The place of the argument in adoce.idl, which is its identifier in a call by names, too.
constexpr DISPID kRecordsAffected = 1;

/// Where the argument stands among the given ones, or their number.
std::size_t indexOf(const DISPPARAMS& given) {
  const DISPID* names = given.rgdispidNamedArgs;
  const std::size_t named =
      static_cast<std::size_t>(std::find(names, names + given.cNamedArgs, kRecordsAffected) - names);
  if (named < given.cNamedArgs) return named;
  // Those without a name stand behind, the first one last.
  const std::size_t unnamedCount = given.cArgs - given.cNamedArgs;
  return unnamedCount > kRecordsAffected ? given.cArgs - 1 - kRecordsAffected : given.cArgs;
}

}  // namespace

ExecuteArguments::ExecuteArguments(const DISPPARAMS& given)
    : values_(given.rgvarg, given.rgvarg + given.cArgs), parameters_(given) {
  parameters_.rgvarg = values_.data();
  const std::size_t index = indexOf(given);
  if (index == values_.size() || V_VT(&values_[index]) == (VT_BYREF | VT_VARIANT)) return;
  // A reference of another type is written through; a plain value is nobody's to see again.
  if ((V_VT(&values_[index]) & VT_BYREF) != 0) *place_ = values_[index];
  V_VT(&values_[index]) = VT_BYREF | VT_VARIANT;
  V_VARIANTREF(&values_[index]) = place_.get();
}

}  // namespace automation
