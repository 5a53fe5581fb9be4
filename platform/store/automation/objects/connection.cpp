#include "platform/store/automation/objects/connection.h"

#include <algorithm>
#include <utility>

#include "platform/store/automation/module/connection_string.h"
#include "platform/store/automation/module/database_location.h"
#include "platform/store/automation/objects/busy_question.h"
#include "platform/store/automation/objects/recordset.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"
#include "platform/store/opening/open_path.h"
#include "platform/store/rows/secret_text.h"
#include "platform/store/sql/dialect.h"
#include "platform/store/sqlite/database_file.h"

namespace automation {

namespace {

constexpr wchar_t kProvider[] = L"CEDB";
constexpr wchar_t kVersion[] = L"3.1";
constexpr long kStateClosed = 0;
constexpr long kStateOpen = 1;

// Under this identifier, which no header tells, an object of this module gives itself away.
constexpr IID kOwnConnection = {0x5b0f3a52, 0x7c0e, 0x4a43, {0x9b, 0x1d, 0x6d, 0x0b, 0x7a, 0x3c, 0x1e, 0x30}};

Outcome checkProvider(std::wstring_view name) {
  const std::wstring_view known = kProvider;
  if (name.empty() || equalIgnoringCase(name, known)) return {};
  return {kProviderNotFound, "There is no provider " + utf8Of(name) + "; the provider is CEDB."};
}

Outcome closedConnection() {
  return {kInvalidConnection, "The connection is closed."};
}

bool isTableName(std::string_view source, long options) {
  if (options == kTableCommand) return true;
  if (options != kUnknownCommand) return false;
  store::Statement statement;
  return store::readStatement(source, &statement) && statement.kind == store::StatementKind::other;
}

/// Writes the number where the caller of Execute wants it.
void tellAffected(std::int64_t affected, VARIANT* target) {
  if (target != nullptr) target = referredVariant(target);
  if (target == nullptr) return;
  OwnedVariant number = naturalInteger(affected);
  if (V_VT(target) == (VT_BYREF | VT_I4) && V_VT(number.get()) == VT_I4) {
    *V_I4REF(target) = V_I4(number.get());
  } else if ((V_VT(target) & VT_BYREF) == 0) {
    std::swap(*target, *number);
  }
}

}  // namespace

ConnectionObject::ConnectionObject()
    : AutomationObject(kConnectionSource), provider_(kProvider), errors_(makeObject<ErrorsObject>()) {}

ComPtr<ConnectionObject> ConnectionObject::of(IUnknown* object) {
  void* own = nullptr;
  if (object == nullptr || FAILED(object->QueryInterface(kOwnConnection, &own))) return {};
  return ComPtr<ConnectionObject>(static_cast<ConnectionObject*>(own));
}

void* ConnectionObject::findOwnInterface(REFIID interfaceId) {
  if (interfaceId == __uuidof(IAdoceHistory)) return static_cast<IAdoceHistory*>(this);
  if (interfaceId == __uuidof(IAdoceCopies)) return static_cast<IAdoceCopies*>(this);
  return interfaceId == kOwnConnection ? this : nullptr;
}

HRESULT ConnectionObject::get_ConnectionString(BSTR* text) {
  return call([&]() -> Outcome {
    if (text == nullptr) return nullPointer();
    *text = newText(connectionString_);
    return {};
  });
}

HRESULT ConnectionObject::put_ConnectionString(BSTR text) {
  return call([&]() -> Outcome {
    setConnectionString(viewOf(text));
    return {};
  });
}

HRESULT ConnectionObject::get_Provider(BSTR* name) {
  return call([&]() -> Outcome {
    if (name == nullptr) return nullPointer();
    *name = newText(provider_);
    return {};
  });
}

HRESULT ConnectionObject::put_Provider(BSTR name) {
  return call([&]() -> Outcome {
    if (isOpen()) return {kObjectOpen, "The provider can't be changed while the connection is open."};
    if (Outcome outcome = checkProvider(viewOf(name)); !outcome) return outcome;
    provider_ = viewOf(name).empty() ? std::wstring_view(kProvider) : viewOf(name);
    return {};
  });
}

HRESULT ConnectionObject::Open(BSTR connectionString, BSTR, BSTR password, long) {
  return call([&]() -> Outcome {
    const std::wstring_view given = viewOf(connectionString);
    return open(given.empty() ? connectionString_ : std::wstring(given), viewOf(password));
  });
}

Outcome ConnectionObject::open(const std::wstring& connectionString, std::wstring_view password) {
  if (isOpen()) return {kObjectOpen, "The connection is open already."};
  const ConnectionTarget target = readConnectionString(connectionString);
  if (Outcome outcome = checkProvider(target.provider); !outcome) return outcome;
  std::unique_ptr<store::Backend> backend;
  std::wstring path;
  if (target.path.empty()) {
    backend = store::storeWithoutDatabase();
  } else {
    path = fullPathOf(target.path);
    store::OpenOptions options = userOptions();
    options.question = question_;
    if (!password.empty()) options.password = utf8Of(std::wstring(password));
    options.copies = copies_;
    options.isReadOnly = copies_ != nullptr && copies_->isCopy(utf8Of(path));
    store::Status status = store::openPath(utf8Of(path), options, &backend);
    if (options.password) store::wipe(&*options.password);
    if (!status) return status;
  }
  connectionString_ = connectionString;
  databasePath_ = std::move(path);
  backend_ = std::move(backend);
  const std::lock_guard<std::mutex> lock(stopMutex_);
  stoppable_ = backend_.get();
  return {};
}

HRESULT ConnectionObject::Close() {
  return call([&]() -> Outcome {
    if (!isOpen()) return {kObjectClosed, "The connection is closed already."};
    close();
    return {};
  });
}

void ConnectionObject::close() {
  for (const std::weak_ptr<Cursor>& remembered : std::exchange(cursors_, {})) {
    if (const std::shared_ptr<Cursor> cursor = remembered.lock()) cursor->close();
  }
  // Recordsets of scripts may keep it open for a while.
  if (backend_ != nullptr) backend_->askWhileBusy({});
  {
    const std::lock_guard<std::mutex> lock(stopMutex_);
    stoppable_ = nullptr;
  }
  backend_.reset();
}

HRESULT ConnectionObject::Execute(BSTR commandText, VARIANT* recordsAffected, long options,
                                  IAdoceRecordset** recordset) {
  return call([&]() -> Outcome {
    // The object is made first: nothing may fail once the statement has changed the database.
    ComPtr<RecordsetObject> made = makeObject<RecordsetObject>();
    made->bind(ComPtr<ConnectionObject>::share(this), viewOf(commandText));
    CommandResult result;
    if (Outcome outcome = run(viewOf(commandText), options, &result); !outcome) return outcome;
    if (result.rows != nullptr) {
      if (Outcome outcome = made->show(std::move(result.rows)); !outcome) return outcome;
    }
    tellAffected(result.affected, recordsAffected);
    if (recordset != nullptr) *recordset = made.release();
    return {};
  });
}

Outcome ConnectionObject::run(std::wstring_view source, long options, CommandResult* result) {
  if (options == kProcedureCommand) return {kNotAvailable, "There are no stored procedures."};
  if (options == -1) options = kUnknownCommand;
  if (options != kTextCommand && options != kTableCommand && options != kUnknownCommand) {
    return {kInvalidArgument, "The options of a command are 1, 2 or 8."};
  }
  if (!isOpen()) return closedConnection();
  const std::string text = utf8Of(source);
  CommandResult made;
  store::Status status;
  if (isTableName(text, options)) {
    const auto kind = options == kTableCommand ? store::SourceKind::table : store::SourceKind::unknown;
    status = backend_->openRows(text, kind, &made.rows);
  } else {
    status = backend_->run(text, &made.affected, &made.rows);
  }
  if (!status) return status;
  *result = std::move(made);
  return {};
}

Outcome ConnectionObject::openCursor(std::unique_ptr<store::RowSource> rows, store::CursorType cursorType,
                                     store::LockType lockType, std::shared_ptr<Cursor>* cursor) {
  if (!rows->isUpdatable()) lockType = store::LockType::readOnly;
  auto records = std::make_unique<store::Recordset>(backend_, std::move(rows), cursorType, lockType);
  if (store::Status status = records->load(); !status) return status;
  auto made = std::make_shared<Cursor>(std::move(records), errors_);
  remember(made);
  *cursor = std::move(made);
  return {};
}

void ConnectionObject::remember(const std::shared_ptr<Cursor>& cursor) {
  std::erase_if(cursors_, [](const std::weak_ptr<Cursor>& known) { return known.expired(); });
  cursors_.push_back(cursor);
}

HRESULT ConnectionObject::AskWhileBusy(IDispatch* question) {
  return call([&]() -> Outcome {
    question_ = question != nullptr ? store::BusyQuestion(BusyQuestion(ComPtr<IDispatch>::share(question)))
                                    : store::BusyQuestion();
    if (backend_ != nullptr) backend_->askWhileBusy(question_);
    return {};
  });
}

HRESULT ConnectionObject::Stop() {
  const std::lock_guard<std::mutex> lock(stopMutex_);
  if (stoppable_ != nullptr) stoppable_->stop();
  return S_OK;
}

HRESULT ConnectionObject::get_Errors(IAdoceErrors** errors) {
  return call([&]() -> Outcome {
    if (errors == nullptr) return nullPointer();
    *errors = ComPtr<ErrorsObject>::share(errors_.get()).release();
    return {};
  });
}

HRESULT ConnectionObject::get_State(long* state) {
  return call([&]() -> Outcome {
    if (state == nullptr) return nullPointer();
    *state = isOpen() ? kStateOpen : kStateClosed;
    return {};
  });
}

HRESULT ConnectionObject::get_Version(BSTR* version) {
  return call([&]() -> Outcome {
    if (version == nullptr) return nullPointer();
    *version = newText(std::wstring_view(kVersion));
    return {};
  });
}

HRESULT ConnectionObject::CheckFile() {
  return call([&]() -> Outcome {
    if (!isOpen()) return closedConnection();
    return backend_->checkFile();
  });
}

HRESULT ConnectionObject::TryWriting() {
  return call([&]() -> Outcome {
    if (!isOpen()) return closedConnection();
    return backend_->tryWriting();
  });
}

HRESULT ConnectionObject::CountOthersChanges(hyper* count) {
  return call([&]() -> Outcome {
    if (count == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    std::int64_t counted = 0;
    if (const store::Status status = backend_->countOthersChanges(&counted); !status) return status;
    *count = counted;
    return {};
  });
}

HRESULT ConnectionObject::DescribeServer(BSTR* text) {
  return call([&]() -> Outcome {
    if (text == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    std::string described;
    if (const store::Status status = backend_->describeServer(&described); !status) return status;
    *text = newText(described);
    return {};
  });
}

HRESULT ConnectionObject::get_IsServers(VARIANT_BOOL* isServers) {
  return call([&]() -> Outcome {
    if (isServers == nullptr) return nullPointer();
    *isServers = isOpen() && backend_->isServers() ? VARIANT_TRUE : VARIANT_FALSE;
    return {};
  });
}

HRESULT ConnectionObject::TakeRefusal(BSTR* reason) {
  return call([&]() -> Outcome {
    if (reason == nullptr) return nullPointer();
    if (!isOpen()) return closedConnection();
    *reason = newText(backend_->takeRefusal().message());
    return {};
  });
}

HRESULT ConnectionObject::GivePassword(BSTR password) {
  return call([&]() -> Outcome {
    if (!isOpen()) return closedConnection();
    std::string given = utf8Of(std::wstring(viewOf(password)));
    Outcome outcome = backend_->givePassword(given);
    store::wipe(&given);
    return outcome;
  });
}

HRESULT ConnectionObject::SaveCopy(BSTR path) {
  return call([&]() -> Outcome {
    if (!isOpen()) return closedConnection();
    return backend_->saveCopy(utf8Of(fullPathOf(std::wstring(viewOf(path)))));
  });
}

}  // namespace automation
