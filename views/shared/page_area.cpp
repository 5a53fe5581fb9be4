#include "views/shared/page_area.h"

#include "base/settings/app_settings.h"

bool bandsAtTop() {
  return theAppSettings && theAppSettings->options().rebarsAtTop() != 0;
}

int pageOffset() {
  constexpr int kBandAtTopHeight = 28;
  return bandsAtTop() ? kBandAtTopHeight : 0;
}

int formTopMargin() {
  constexpr int kBelowBand = 30;
  constexpr int kWithoutBand = 2;
  return !theAppSettings || bandsAtTop() ? kBelowBand : kWithoutBand;
}
