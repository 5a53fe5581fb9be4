#include "data/handles/adoce_classes.h"

#include <windows.h>

#include <objbase.h>

#include "owners/ole_functions.h"

namespace {

void initialiseCom() {
  // A thread that someone else has initialised differently can use the components all the same.
  [[maybe_unused]] static const HRESULT result = ole::coInitializeEx(nullptr, COINIT_MULTITHREADED);
}

/// A class identifier that is looked up until it is found, and then kept.
class ClassId {
 public:
  explicit ClassId(const wchar_t* programId) : programId_(programId) {}

  /// Null while the class is not registered.
  const CLSID* get() {
    if (!found_) found_ = SUCCEEDED(ole::clsidFromProgId(programId_, &id_));
    return found_ ? &id_ : nullptr;
  }

 private:
  const wchar_t* programId_;
  CLSID id_ = {};
  bool found_ = false;
};

template <typename Interface>
ComPtr<Interface> create(ClassId& classId) {
  initialiseCom();
  ComPtr<Interface> object;
  const CLSID* id = classId.get();
  if (!id || FAILED(ole::coCreateInstance(*id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                          reinterpret_cast<void**>(object.put())))) {
    object.reset();
  }
  return object;
}

}  // namespace

ComPtr<IAdoceConnection> createAdoceConnection() {
  static ClassId classId(L"ADOCE.Connection.3.1");
  return create<IAdoceConnection>(classId);
}

ComPtr<IAdoceRecordset> createAdoceRecordset() {
  static ClassId classId(L"ADOCE.Recordset.3.1");
  return create<IAdoceRecordset>(classId);
}
