#include <windows.h>

#include <objbase.h>

#include "platform/store/automation/module/class_factory.h"
#include "platform/store/automation/module/class_table.h"
#include "platform/store/automation/module/module.h"
#include "platform/store/automation/module/registration.h"

// The four doors that COM and regsvr32 know, and the system's own.

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) automation::setModuleInstance(instance);
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID interfaceId, void** factory) {
  if (factory == nullptr) return E_POINTER;
  *factory = nullptr;
  for (const automation::ClassEntry& entry : automation::classTable()) {
    if (entry.classId == classId) return automation::createFactory(entry, interfaceId, factory);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
  const automation::ModuleLock lock;
  if (automation::isModuleUsed()) return S_FALSE;
  automation::releaseTypeInfo();
  return S_OK;
}

STDAPI DllRegisterServer() {
  return automation::registerClasses();
}

STDAPI DllUnregisterServer() {
  return automation::unregisterClasses();
}
