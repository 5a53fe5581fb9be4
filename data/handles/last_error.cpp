#include "data/handles/last_error.h"

#include <windows.h>

#include <oleauto.h>

#include "data/handles/adoce_constants.h"
#include "data/values/value_conversion.h"
#include "owners/com_handles.h"
#include "owners/ole_functions.h"

namespace {

Outcome::Cause causeOf(HRESULT result) {
  switch (result) {
    case kNoCurrentRecord:
      return Outcome::Cause::recordGone;
    case kChangedElsewhere:
      return Outcome::Cause::changedElsewhere;
    case kStructureChanged:
      return Outcome::Cause::structureChanged;
    case kStopped:
      return Outcome::Cause::stopped;
    case kPasswordWanted:
      return Outcome::Cause::passwordWanted;
    case kLocked:
    case kTooLarge:
      return Outcome::Cause::notNow;
    case kErrorsInCommand:
    case kBadColumn:
    case kConversion:
    case kNotAvailable:
      return Outcome::Cause::notFitting;
    default:
      return Outcome::Cause::other;
  }
}

}  // namespace

String takeLastErrorText() {
  ComPtr<IErrorInfo> info;
  UniqueBstr text;
  if (ole::getErrorInfo(0, info.put()) != S_OK || FAILED(info->GetDescription(text.put()))) return String();
  return textOfBstr(text.get());
}

Outcome outcomeOf(HRESULT result) {
  return SUCCEEDED(result) ? Outcome() : Outcome::failure(takeLastErrorText(), causeOf(result));
}
