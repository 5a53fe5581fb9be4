#include "views/page_area.h"

#include "base/app_settings.h"

int pageOffset() {
  constexpr int kBandAtTopHeight = 28;
  return theAppSettings && theAppSettings->options().RebarsAtTop() != 0 ? kBandAtTopHeight : 0;
}
