#pragma once

#include <windows.h>

#include <adoce.h>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/variant.h"
#include "owners/com_handles.h"

/// Data-access components that obey the test, for answers that the real ones never give. They keep what a
/// database would have afterwards: whether it is connected and to what, the records of its one table, and
/// where each cursor stands in them. Only the statements are written down in their order, because they and
/// their numbers are given.

struct FakeField {
  std::wstring name;
  LONG type = 0;
  LONG attributes = 0;
  HRESULT result = S_OK;  ///< of every call on the field
};

/// A value for each field.
using FakeRow = std::vector<Variant>;

/// What a Recordset object holds.
struct FakeCursor {
  bool isOpen = false;
  LONG position = 0;  ///< 1 for the first record; 0 before it, and one more than there are behind the last
  bool isAdding = false;  ///< a record that is not stored yet
  FakeRow written;        ///< the current record as it was changed and not stored; empty when it was not
  bool wasMovedFromFirst = false;  ///< by the last Move, not from the current record
};

/// Shared by the test and the objects that it makes.
struct FakeStore {
  /// "Open <source> cursor 1 lock 3 options 1" of a recordset, "Execute <text> options 1" of the connection;
  /// " in a.cdb" behind it when that is connected to something, " without connection" when none was given.
  std::vector<std::string> statements;

  std::string provider;
  std::string connectionString;  ///< for the next connecting
  bool isConnected = false;
  std::string connectedTo;  ///< empty for the store without a file
  LONG connectOptions = 0;

  /// The table that every statement opens.
  std::vector<FakeField> fields;
  std::vector<FakeRow> rows;
  /// Of the Recordset objects that live, in the order in which they were made.
  std::vector<std::shared_ptr<FakeCursor>> cursors;
  int fieldsFetched = 0;  ///< how often the collection was asked for

  HRESULT openResult = S_OK;
  HRESULT statementResult = S_OK;  ///< of opening a recordset, where openResult is a success
  HRESULT moveResult = S_OK;       ///< a move that fails leads to another record
  HRESULT addNewResult = S_OK;
  HRESULT updateResult = S_OK;
  HRESULT recordCountResult = S_OK;
  HRESULT fieldsResult = S_OK;
  HRESULT exportFormatResult = S_OK;

  /// Adds a field, and its value in the only record.
  void addField(FakeField field, Variant value);
  /// What the cursor that was made first reads: as it was written there, or else as it is stored.
  const Variant& value(std::size_t field) const;
  /// A text of the table, as it is stored.
  std::wstring storedText(std::size_t row, std::size_t field) const;
  int openCursorCount() const;
};

/// VT_BOOL.
Variant asBoolean(bool value);

/// One that is open at the first record.
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
