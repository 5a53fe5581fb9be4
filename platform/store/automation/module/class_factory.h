#pragma once

#include <windows.h>

#include "platform/store/automation/module/class_table.h"

namespace automation {

/// A factory for the objects of one class; stores the asked interface in `*factory` with one reference
/// for the caller. On failure `*factory` is null.
HRESULT createFactory(const ClassEntry& entry, REFIID interfaceId, void** factory);

}  // namespace automation
