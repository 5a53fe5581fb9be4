#include "app/window/shell_apartment.h"

#include "owners/ole_functions.h"

namespace {

/// Whether the thread has been initialised for the multithreaded apartment. One that has not been at all
/// belongs to it, too, as long as there is one.
bool isInMultithreaded() {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  return SUCCEEDED(ole::coGetApartmentType(&type, &qualifier)) && type == APTTYPE_MTA &&
         qualifier == APTTYPEQUALIFIER_NONE;
}

}  // namespace

ShellApartment::ShellApartment() {
  if (isInMultithreaded()) {
    // What was made in it must not end with it.
    if (FAILED(ole::coIncrementMTAUsage(&usage_))) return;
    ole::coUninitialize();
    hasLeft_ = true;
  }
  isIn_ = SUCCEEDED(ole::coInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE));
}

ShellApartment::~ShellApartment() {
  if (isIn_) ole::coUninitialize();
  if (!hasLeft_) return;
  ole::coInitializeEx(nullptr, COINIT_MULTITHREADED);
  ole::coDecrementMTAUsage(usage_);
}
