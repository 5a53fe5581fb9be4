#include "data/handles/connection_handle.h"

#include <utility>

#include "base/variant.h"
#include "data/handles/adoce_classes.h"
#include "data/handles/adoce_constants.h"
#include "data/handles/busy_question.h"
#include "data/handles/import_file.h"
#include "data/handles/last_error.h"
#include "data/handles/recordset_handle.h"
#include "data/values/value_conversion.h"
#include "owners/ole_functions.h"

namespace {

Outcome noObject() {
  return Outcome::failure(
      L"The data-access components (adoce31.dll) could not be loaded. Please put them into the folder of "
      L"the program again and start it anew.");
}

}  // namespace

ConnectionHandle::ConnectionHandle() : connection_(createAdoceConnection()) {
  if (connection_) connection_->put_Provider(makeBstr(L"CEDB").get());
}

ConnectionHandle::ConnectionHandle(ComPtr<IAdoceConnection> connection)
    : connection_(std::move(connection)) {}

bool ConnectionHandle::setConnectionString(const wchar_t* text) {
  return connection_ && SUCCEEDED(connection_->put_ConnectionString(makeBstr(text).get()));
}

int ConnectionHandle::open() {
  close();
  const bool opened =
      connection_ && SUCCEEDED(connection_->Open(nullptr, nullptr, nullptr, kConnectUnspecified));
  return opened ? kOpened : kOpenFailed;
}

Outcome ConnectionHandle::open(const wchar_t* path, const wchar_t* password) {
  if (!connection_) return noObject();
  setConnectionString(path);
  close();
  UniqueBstr secret;
  if (*password != L'\0') secret = makeBstr(password);
  const HRESULT result = connection_->Open(nullptr, nullptr, secret.get(), kConnectUnspecified);
  Outcome opened = outcomeOf(result);
  if (secret) SecureZeroMemory(secret.get(), ole::sysStringByteLen(secret.get()));
  return opened;
}

void ConnectionHandle::close() {
  if (connection_) connection_->Close();
}

void ConnectionHandle::setBusyListener(BusyListener* listener) {
  if (!connection_) return;
  const ComPtr<IDispatch> question = listener ? makeBusyQuestion(*listener) : ComPtr<IDispatch>();
  connection_->AskWhileBusy(question.get());
}

FileState ConnectionHandle::fileState() {
  const HRESULT result = connection_ ? connection_->CheckFile() : S_OK;
  if (result == kFileGone) return FileState::gone;
  return result == kFileReplaced ? FileState::replaced : FileState::present;
}

Outcome ConnectionHandle::tryWriting() {
  return connection_ ? outcomeOf(connection_->TryWriting()) : noObject();
}

bool ConnectionHandle::countOthersChanges(std::int64_t& count) {
  hyper counted = 0;
  if (!connection_ || FAILED(connection_->CountOthersChanges(&counted))) return false;
  count = counted;
  return true;
}

bool ConnectionHandle::isServers() {
  VARIANT_BOOL isServers = VARIANT_FALSE;
  return connection_ && SUCCEEDED(connection_->get_IsServers(&isServers)) && isServers != VARIANT_FALSE;
}

Outcome ConnectionHandle::describeServer(String& text) {
  if (!connection_) return noObject();
  UniqueBstr described;
  if (Outcome outcome = outcomeOf(connection_->DescribeServer(described.put())); !outcome) return outcome;
  text = textOfBstr(described.get());
  return {};
}

Outcome ConnectionHandle::takeRefusal() {
  UniqueBstr reason;
  if (!connection_ || FAILED(connection_->TakeRefusal(reason.put())) || ole::sysStringLen(reason.get()) == 0)
    return {};
  return Outcome::failure(textOfBstr(reason.get()), Outcome::Cause::passwordWanted);
}

Outcome ConnectionHandle::givePassword(const wchar_t* password) {
  if (!connection_) return noObject();
  const UniqueBstr secret = makeBstr(password);
  Outcome given = outcomeOf(connection_->GivePassword(secret.get()));
  SecureZeroMemory(secret.get(), ole::sysStringByteLen(secret.get()));
  return given;
}

Outcome ConnectionHandle::saveCopy(const wchar_t* path) {
  return connection_ ? outcomeOf(connection_->SaveCopy(makeBstr(path).get())) : noObject();
}

Outcome ConnectionHandle::exportRows(const ExportedRecords& records, const wchar_t* path,
                                     BusyListener* listener, ExportCounts& counts) {
  if (!connection_) return noObject();
  const ComPtr<IDispatch> question = listener ? makeMovingQuestion(*listener) : ComPtr<IDispatch>();
  const SourceKind kind = records.isTable ? SourceKind::table : SourceKind::text;
  // First: what was written could not be told of otherwise.
  UniqueBstr format;
  if (Outcome known = outcomeOf(connection_->ExportFormat(makeBstr(path).get(), format.put())); !known) {
    return known;
  }
  hyper changed = 0;
  hyper count = 0;
  Outcome exported = outcomeOf(connection_->ExportRows(
      makeBstr(records.source.text()).get(), static_cast<LONG>(kind), makeBstr(records.name.text()).get(),
      makeBstr(path).get(), question.get(), &changed, &count));
  if (!exported) return exported;
  counts = {count, changed, textOfBstr(format.get())};
  return exported;
}

Outcome ConnectionHandle::openImport(const wchar_t* path, BusyListener* listener,
                                     std::unique_ptr<ImportFile>& file) {
  if (!connection_) return noObject();
  ComPtr<IAdoceImport> object;
  if (Outcome opened = outcomeOf(connection_->OpenImport(makeBstr(path).get(), object.put())); !opened) {
    return opened;
  }
  file = std::make_unique<ImportFile>(object.get(), listener);
  return {};
}

Outcome ConnectionHandle::execute(const wchar_t* command, LONG* recordsAffected, RecordsetHandle* recordset) {
  if (!connection_) return noObject();
  Variant affected;
  ComPtr<IAdoceRecordset> records;
  Outcome executed = outcomeOf(connection_->Execute(makeBstr(command).get(), affected.put(),
                                                    static_cast<LONG>(SourceKind::text), records.put()));
  if (!executed) return executed;
  if (recordsAffected) *recordsAffected = integerOf(affected).value_or(*recordsAffected);
  if (recordset) recordset->attach(std::move(records));
  return executed;
}
