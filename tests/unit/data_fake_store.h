#pragma once

#include <windows.h>

#include <adoce.h>
#include <memory>
#include <string>
#include <vector>

#include "base/variant.h"
#include "owners/com_handles.h"

/// A data-access component that obeys the test: what it is asked is written down, what it answers is
/// set beforehand. For answers that the real one never gives, and for the arguments of calls.

struct FakeField {
  std::wstring name;
  LONG type = 0;
  LONG attributes = 0;
  Variant value;
  HRESULT result = S_OK;  ///< of every call on the field
};

/// Shared by the test and the objects that it makes.
struct FakeStore {
  std::vector<std::string> calls;  ///< "Open <source> cursor 1 lock 3 options 1", "Move 5 from 0", …
  std::vector<FakeField> fields;
  LONG recordCount = 0;
  int fieldsFetched = 0;   ///< how often the collection was asked for
  int recordsetsLive = 0;  ///< Recordset objects not yet released
  HRESULT openResult = S_OK;
  HRESULT statementResult = S_OK;  ///< of opening a recordset, where openResult is a success
  HRESULT moveResult = S_OK;
  HRESULT addNewResult = S_OK;
  HRESULT updateResult = S_OK;
  HRESULT recordCountResult = S_OK;
  HRESULT fieldsResult = S_OK;
};

/// VT_BOOL.
Variant asBoolean(bool value);

ComPtr<IAdoceRecordset> makeFakeRecordset(FakeStore& store);
ComPtr<IAdoceConnection> makeFakeConnection(FakeStore& store);

/// While it lives, the objects that this process makes through COM are of the fake store.
class FakeStoreRegistration {
 public:
  explicit FakeStoreRegistration(FakeStore& store);
  ~FakeStoreRegistration();
  FakeStoreRegistration(const FakeStoreRegistration&) = delete;
  FakeStoreRegistration& operator=(const FakeStoreRegistration&) = delete;

 private:
  DWORD connectionClass_ = 0;
  DWORD recordsetClass_ = 0;
};
