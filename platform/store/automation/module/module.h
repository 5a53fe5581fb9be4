#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

#include "platform/store/automation/values/com_values.h"

namespace automation {

/// What the objects of this DLL share: its handle, the count of what keeps it loaded, one lock and the
/// type information.

/// To be called once, when the DLL is loaded.
void setModuleInstance(HINSTANCE instance);

/// Full path of this DLL, of any length. Empty when the system does not tell it.
std::wstring modulePath();

/// Each object, and each IClassFactory::LockServer, keeps the DLL loaded.
void addModuleUse();
void removeModuleUse();
bool isModuleUsed();

/// The type information of one of this library's dual interfaces, read from the DLL's own resource on
/// the first need and kept. On failure `*info` is untouched. Throws std::bad_alloc.
HRESULT typeInfoOf(REFIID interfaceId, ComPtr<ITypeInfo>* info);

/// Gives the type information back; to be called when nothing uses the module.
void releaseTypeInfo();

/// Holds the module's lock, which every method of every object takes: the objects may be called from
/// any thread, the engine below them from one at a time. The same thread may take it again. A method
/// that waits for another program's lock keeps the other threads' calls waiting as well.
class ModuleLock {
 public:
  ModuleLock();
  ~ModuleLock();
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
};

}  // namespace automation
