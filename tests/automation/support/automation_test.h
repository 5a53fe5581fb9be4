#pragma once

#include <windows.h>

#include <oleauto.h>

#include <adoce.h>
#include <filesystem>
#include <string>
#include <vector>

#include "gmock/gmock.h"
#include "platform/store/automation/values/com_values.h"
#include "tests/automation/support/values.h"
#include "tests/support/paths.h"

namespace automationtest {
using automation::OwnedVariant;
using testsupport::contentOf;
using testsupport::writeFile;

/// 0x800A0000 + number, a failure of the components' object model.
constexpr HRESULT objectModelError(unsigned number) {
  return static_cast<HRESULT>(0x800A0000u + number);
}

inline constexpr HRESULT kNoCommand = static_cast<HRESULT>(0x80040E0Cu);
inline constexpr HRESULT kErrorsInCommand = static_cast<HRESULT>(0x80040E14u);
inline constexpr HRESULT kNoTable = static_cast<HRESULT>(0x80040E37u);
inline constexpr HRESULT kTableExists = static_cast<HRESULT>(0x80040E3Fu);
inline constexpr HRESULT kBadColumn = static_cast<HRESULT>(0x80040E11u);

inline constexpr long kText = 1;
inline constexpr long kTable = 2;
inline constexpr long kUnknown = 8;
inline constexpr long kForwardOnly = 0;
inline constexpr long kKeyset = 1;
inline constexpr long kDynamic = 2;
inline constexpr long kReadOnly = 1;
inline constexpr long kOptimistic = 3;

/// The path of the DLL under test.
std::wstring serverPath();

/// Calls DllRegisterServer or DllUnregisterServer of the DLL at `path`, loading it for that time only.
HRESULT callServer(const std::wstring& path, const char* function);

ComPtr<IAdoceConnection> newConnection();
ComPtr<IAdoceRecordset> newRecordset();

/// Both open `connection` by the property, the way the application does: all texts null.
HRESULT openAt(IAdoceConnection* connection, const std::wstring& connectionString);
/// An open connection to the database at `path`.
ComPtr<IAdoceConnection> connectTo(const std::wstring& path);

HRESULT openOn(IAdoceRecordset* recordset, IAdoceConnection* connection, const std::wstring& source,
               long cursorType = kKeyset, long lockType = kOptimistic, long options = kText);
/// An open recordset on the statement.
ComPtr<IAdoceRecordset> recordsOf(IAdoceConnection* connection, const std::wstring& source,
                                  long cursorType = kKeyset, long lockType = kOptimistic,
                                  long options = kText);
/// An open recordset on a table.
ComPtr<IAdoceRecordset> recordsOfTable(IAdoceConnection* connection, const std::wstring& name);

/// Runs a statement by Execute with options 1, as the application does, and drops the Recordset.
HRESULT execute(IAdoceConnection* connection, const std::wstring& statement);

long recordCount(IAdoceRecordset* recordset);
long position(IAdoceRecordset* recordset);
bool isBof(IAdoceRecordset* recordset);
bool isEof(IAdoceRecordset* recordset);
long stateOf(IAdoceRecordset* recordset);
long stateOf(IAdoceConnection* connection);

/// The field by number or name; null when there is none.
ComPtr<IAdoceField> fieldOf(IAdoceRecordset* recordset, long index);
ComPtr<IAdoceField> fieldOf(IAdoceRecordset* recordset, const wchar_t* name);
/// Name, current value and its text in one step. A value that can't be read is VT_ERROR with the result.
std::wstring nameOf(IAdoceField* field);
OwnedVariant valueOf(IAdoceRecordset* recordset, long index);
std::wstring textOf(IAdoceRecordset* recordset, long index);
HRESULT put(IAdoceRecordset* recordset, long index, const OwnedVariant& value);
HRESULT update(IAdoceRecordset* recordset);
HRESULT addNew(IAdoceRecordset* recordset);
HRESULT move(IAdoceRecordset* recordset, long count, long start);

/// The texts of one column in all records, from the first on.
std::vector<std::wstring> columnTexts(IAdoceRecordset* recordset, long index);

/// A test with a folder of its own, and with a database in it when it asks for one.
class AutomationTest : public testing::Test {
 protected:
  std::wstring pathOf(const std::wstring& name) const { return (folder_.path() / name).wstring(); }

  /// Makes an empty database by CREATE DATABASE and returns its path.
  std::wstring makeDatabase(const std::wstring& name = L"test.cdb");
  /// The same, opened.
  ComPtr<IAdoceConnection> openNewDatabase(const std::wstring& name = L"test.cdb");

  testsupport::TempFolder folder_;
};

}  // namespace automationtest
