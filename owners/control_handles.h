#pragma once

#include <windows.h>

#include <commctrl.h>

#include "owners/unique_resource.h"

namespace handles {

struct ImageListTraits : NullTraits<HIMAGELIST, ResourceKind::imageList> {
  static void close(HIMAGELIST value) noexcept { ImageList_Destroy(value); }
};

}  // namespace handles

/// Not for a list that a list view destroys itself (one without LVS_SHAREIMAGELISTS).
using UniqueImageList = UniqueResource<handles::ImageListTraits>;
