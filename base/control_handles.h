#pragma once

#include <windows.h>

#include <commctrl.h>

#include "base/unique_resource.h"

namespace handles {

struct ImageListTraits {
  using Value = HIMAGELIST;
  static constexpr ResourceKind kKind = ResourceKind::imageList;
  static Value invalid() noexcept { return nullptr; }
  static void close(Value value) noexcept { ImageList_Destroy(value); }
};

}  // namespace handles

/// Not for a list that a list view destroys itself (one without LVS_SHAREIMAGELISTS).
using UniqueImageList = UniqueResource<handles::ImageListTraits>;
