#pragma once

#include <windows.h>

#include <oaidl.h>

#include "data/handles/busy_listener.h"
#include "owners/com_handles.h"

/// The objects that the data-access components ask while they take their time, and while they move records
/// between the database and a file. Each asks `listener`, which outlives it.
ComPtr<IDispatch> makeBusyQuestion(BusyListener& listener);
ComPtr<IDispatch> makeMovingQuestion(BusyListener& listener);
