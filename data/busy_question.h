#pragma once

#include <windows.h>

#include <oaidl.h>

#include "base/com_handles.h"
#include "data/busy_listener.h"

/// The object that the data-access components ask while they take their time. It asks `listener`, which
/// outlives it.
ComPtr<IDispatch> makeBusyQuestion(BusyListener& listener);
