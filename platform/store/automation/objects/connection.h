#pragma once

#include <adoce.h>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/automation/objects/automation_object.h"
#include "platform/store/automation/objects/cursor.h"
#include "platform/store/automation/objects/errors.h"
#include "platform/store/rows/backend.h"
#include "platform/store/sqlite/copies/copy_folder.h"
#include "platform/store/sqlite/copies/going_back.h"

namespace automation {

/// The commands that the Execute and Open methods know, ADO's "CommandTypeEnum".
inline constexpr long kTextCommand = 1;
inline constexpr long kTableCommand = 2;
inline constexpr long kProcedureCommand = 4;
inline constexpr long kUnknownCommand = 8;

/// What a statement came to: the open records of a SELECT, or null and the number of changed rows.
struct CommandResult {
  std::unique_ptr<store::RowSource> rows;
  std::int64_t affected = 0;
};

/// A connection to one database, or to the store without a database. Opens again after Close, any
/// number of times. Close closes the recordsets that were opened on it, and nothing of the file is held
/// afterwards.
class ConnectionObject final : public AutomationObject<IAdoceConnection>,
                               public IAdoceHistory,
                               public IAdoceCopies {
 public:
  ConnectionObject();

  /// The object behind an interface that a client passes; empty when it is none of this module's
  /// connections.
  static ComPtr<ConnectionObject> of(IUnknown* object);

  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* badArgument) override;
  HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* text) override;
  HRESULT STDMETHODCALLTYPE put_ConnectionString(BSTR text) override;
  HRESULT STDMETHODCALLTYPE get_Provider(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE put_Provider(BSTR name) override;
  HRESULT STDMETHODCALLTYPE Open(BSTR connectionString, BSTR user, BSTR password, long options) override;
  HRESULT STDMETHODCALLTYPE Close() override;
  HRESULT STDMETHODCALLTYPE Execute(BSTR commandText, VARIANT* recordsAffected, long options,
                                    IAdoceRecordset** recordset) override;
  HRESULT STDMETHODCALLTYPE get_Errors(IAdoceErrors** errors) override;
  HRESULT STDMETHODCALLTYPE get_State(long* state) override;
  HRESULT STDMETHODCALLTYPE get_Version(BSTR* version) override;
  HRESULT STDMETHODCALLTYPE CheckFile() override;
  HRESULT STDMETHODCALLTYPE SaveCopy(BSTR path) override;
  HRESULT STDMETHODCALLTYPE AskWhileBusy(IDispatch* question) override;
  HRESULT STDMETHODCALLTYPE Stop() override;
  HRESULT STDMETHODCALLTYPE ExportRows(BSTR source, long options, BSTR name, BSTR path, IDispatch* question,
                                       hyper* changed, hyper* records) override;
  HRESULT STDMETHODCALLTYPE OpenImport(BSTR path, IAdoceImport** import) override;
  HRESULT STDMETHODCALLTYPE TryWriting() override;
  HRESULT STDMETHODCALLTYPE ExportFormat(BSTR path, BSTR* name) override;
  HRESULT STDMETHODCALLTYPE CountOthersChanges(hyper* count) override;
  HRESULT STDMETHODCALLTYPE DescribeServer(BSTR* text) override;
  HRESULT STDMETHODCALLTYPE get_IsServers(VARIANT_BOOL* isServers) override;
  HRESULT STDMETHODCALLTYPE TakeRefusal(BSTR* reason) override;
  HRESULT STDMETHODCALLTYPE GivePassword(BSTR password) override;

  // IAdoceHistory (connection_history.cpp)
  HRESULT STDMETHODCALLTYPE KeepHistory(LONG megabytes) override;
  HRESULT STDMETHODCALLTYPE GetHistoryStep(LONG direction, LONG* kind, BSTR* table, BSTR* record,
                                           hyper* records) override;
  HRESULT STDMETHODCALLTYPE TakeHistoryStep(LONG direction) override;
  HRESULT STDMETHODCALLTYPE FindHistoryRecord(IAdoceRecordset* records, LONG* position) override;
  HRESULT STDMETHODCALLTYPE HistoryHasKeptRecords(VARIANT_BOOL* hasKept) override;

  // IAdoceCopies (connection_copies.cpp)
  HRESULT STDMETHODCALLTYPE KeepCopies(BSTR folder) override;
  HRESULT STDMETHODCALLTYPE TakeCopyFailure(BSTR* reason) override;
  HRESULT STDMETHODCALLTYPE KeepBeforeDeletion() override;
  HRESULT STDMETHODCALLTYPE KeepDatabase(BSTR path) override;
  HRESULT STDMETHODCALLTYPE ListDatabases(VARIANT* paths) override;
  HRESULT STDMETHODCALLTYPE ListCopies(BSTR path, LONG* count) override;
  HRESULT STDMETHODCALLTYPE GetCopy(LONG index, BSTR* copy, DATE* time, hyper* bytes, hyper* records,
                                    LONG* reason) override;
  HRESULT STDMETHODCALLTYPE IsCopy(BSTR path, VARIANT_BOOL* isCopy) override;
  HRESULT STDMETHODCALLTYPE PutBack(BSTR path, BSTR copy) override;
  HRESULT STDMETHODCALLTYPE ListMissingTables(BSTR path, BSTR copy, VARIANT* tables) override;
  HRESULT STDMETHODCALLTYPE PutTableBack(BSTR path, BSTR copy, BSTR table) override;
  HRESULT STDMETHODCALLTYPE CountCopy(BSTR copy, LONG milliseconds, hyper* records) override;

  // What all interfaces have in common.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    return AutomationObject::QueryInterface(interfaceId, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AutomationObject::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return AutomationObject::Release(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    return AutomationObject::GetTypeInfoCount(count);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
    return AutomationObject::GetTypeInfo(index, locale, info);
  }
  /// Knows the names of all interfaces.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID interfaceId) override;

  // For the module's own objects, which hold the module's lock and hand failures on.

  bool isOpen() const { return backend_ != nullptr; }
  /// Null while it is closed.
  store::Backend* backend() const { return backend_.get(); }
  /// The connection string by which `open` opens.
  void setConnectionString(std::wstring_view text) { connectionString_ = text; }
  Outcome open() { return open(connectionString_); }
  void close();
  /// What may not be replaced by what is written out: the database that was opened last.
  std::vector<std::string> filesInUse() const;
  const ComPtr<ErrorsObject>& errors() const { return errors_; }

  /// Runs a statement or opens a table, `options` being one of the commands above. On failure
  /// `*result` is untouched.
  Outcome run(std::wstring_view source, long options, CommandResult* result);
  /// Opens a cursor over rows that `run` gave.
  Outcome openCursor(std::unique_ptr<store::RowSource> rows, store::CursorType cursorType,
                     store::LockType lockType, std::shared_ptr<Cursor>* cursor);
  /// Has Close close this cursor too.
  void remember(const std::shared_ptr<Cursor>& cursor);

 protected:
  ErrorsObject* errorsForReport() override { return errors_.get(); }
  void* findOwnInterface(REFIID interfaceId) override;

 private:
  template <class Body>
  HRESULT callWithCopies(Body&& body) noexcept;
  store::GoingBack goingBack() const;
  /// Null on a closed connection, and where nothing is kept of what is open.
  store::ChangeHistory* history() const;

  /// Opens by the text; it is the connection string afterwards when that succeeds.
  Outcome open(const std::wstring& connectionString, std::wstring_view password = {});

  std::wstring connectionString_;
  std::wstring databasePath_;  // of the open database, whatever became of the current folder; else empty
  std::wstring provider_;
  std::shared_ptr<store::Backend> backend_;  // while open
  store::BusyQuestion question_;
  std::shared_ptr<store::CopyFolder> copies_;  // null while none are kept
  std::vector<store::KeptCopy> listedCopies_;  // by ListCopies
  std::mutex stopMutex_;                 // Stop can't wait for the module's lock, which the statement holds
  store::Backend* stoppable_ = nullptr;  // the backend, under that mutex
  ComPtr<ErrorsObject> errors_;
  std::vector<std::weak_ptr<Cursor>> cursors_;
};

}  // namespace automation
