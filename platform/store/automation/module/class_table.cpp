#include "platform/store/automation/module/class_table.h"

#include <adoce.h>
#include <array>

#include "platform/store/automation/objects/connection.h"
#include "platform/store/automation/objects/recordset.h"

namespace automation {

namespace {

template <class Object>
HRESULT create(REFIID interfaceId, void** object) {
  *object = nullptr;
  try {
    const ComPtr<Object> made = makeObject<Object>();
    return made->QueryInterface(interfaceId, object);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

// "Both": the interfaces have no marshalling, so each object must live in the apartment of its maker,
// whichever kind that is. The module's lock makes that safe.
constexpr wchar_t kBoth[] = L"Both";

const std::array<ClassEntry, 2> kClasses = {{
    {CLSID_AdoceConnection, kConnectionSource, L"ADOCE.Connection", L"Connection to a database", kBoth,
     &create<ConnectionObject>},
    {CLSID_AdoceRecordset, kRecordsetSource, L"ADOCE.Recordset", L"Records of a table or statement", kBoth,
     &create<RecordsetObject>},
}};

}  // namespace

std::span<const ClassEntry> classTable() {
  return kClasses;
}

}  // namespace automation
