#include "data/handles/adoce_classes.h"

#include <windows.h>

#include <objbase.h>

#include <utility>

#include "data/handles/component_loading.h"
#include "owners/ole_functions.h"

namespace {

void initialiseCom() {
  // A thread that someone else has initialised differently can use the components all the same.
  [[maybe_unused]] static const HRESULT result = ole::coInitializeEx(nullptr, COINIT_MULTITHREADED);
}

/// A class whose identifier is looked up until it is found, and then kept.
class AdoceClass {
 public:
  explicit AdoceClass(const wchar_t* programId) : programId_(programId) {}

  void load() noexcept {
    if (!find()) return;
    ole::coGetClassObject(id_, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                          reinterpret_cast<void**>(loaded_.put()));
  }

  template <typename Interface>
  ComPtr<Interface> create() {
    initialiseCom();
    ComPtr<Interface> object;
    if (FAILED(create(__uuidof(Interface), reinterpret_cast<void**>(object.put())))) object.reset();
    return object;
  }

 private:
  bool find() noexcept {
    if (!isFound_) isFound_ = SUCCEEDED(ole::clsidFromProgId(programId_, &id_));
    return isFound_;
  }

  HRESULT create(REFIID interfaceId, void** object) {
    const ComPtr<IClassFactory> loaded = std::exchange(loaded_, {});
    // A class of somebody else's may be bound to the apartment where it was loaded.
    if (loaded && SUCCEEDED(loaded->CreateInstance(nullptr, interfaceId, object))) return S_OK;
    if (!find()) return REGDB_E_CLASSNOTREG;
    return ole::coCreateInstance(id_, nullptr, CLSCTX_INPROC_SERVER, interfaceId, object);
  }

  const wchar_t* programId_;
  CLSID id_ = {};
  bool isFound_ = false;
  ComPtr<IClassFactory> loaded_;  // until the first object is made
};

AdoceClass& connectionClass() {
  static AdoceClass only(L"ADOCE.Connection.3.1");
  return only;
}

AdoceClass& recordsetClass() {
  static AdoceClass only(L"ADOCE.Recordset.3.1");
  return only;
}

}  // namespace

ComPtr<IAdoceConnection> createAdoceConnection() {
  return connectionClass().create<IAdoceConnection>();
}

ComPtr<IAdoceRecordset> createAdoceRecordset() {
  return recordsetClass().create<IAdoceRecordset>();
}

void loadAdoceClasses() noexcept {
  // A thread that is not initialised belongs to the multithreaded apartment while there is one. This is
  // never taken back: the class objects may outlive the thread that has loaded them.
  CO_MTA_USAGE_COOKIE usage = nullptr;
  if (FAILED(ole::coIncrementMTAUsage(&usage))) return;
  connectionClass().load();
  recordsetClass().load();
}
