#include "views/page_area.h"

#include "base/app_settings.h"

int formTopMargin() {
  constexpr int kBelowBand = 30;
  constexpr int kWithoutBand = 2;
  return theAppSettings && theAppSettings->options().RebarsAtTop() == 0 ? kWithoutBand : kBelowBand;
}

int pageOffset() {
  constexpr int kBandAtTopHeight = 28;
  return theAppSettings && theAppSettings->options().RebarsAtTop() != 0 ? kBandAtTopHeight : 0;
}
