#pragma once

#include <adoce.h>

#include "owners/com_handles.h"

/// Makes the objects of the data-access components in this process. COM is initialised with the first
/// one and stays so until the process ends; the class identifiers are looked up once. Null when the
/// components are neither registered nor loaded before (component_loading.h); a later call tries again.
ComPtr<IAdoceConnection> createAdoceConnection();
ComPtr<IAdoceRecordset> createAdoceRecordset();
