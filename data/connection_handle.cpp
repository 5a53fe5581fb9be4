#include "data/connection_handle.h"

#include <utility>

#include "base/variant.h"
#include "data/adoce_classes.h"
#include "data/adoce_constants.h"
#include "data/last_error.h"
#include "data/recordset_handle.h"
#include "data/value_conversion.h"

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
  if (!connection_) {
    leaveLastErrorText(
        L"The data-access components (adoce31.dll) could not be loaded. Please put them into the folder of "
        L"the program again and start it anew.");
    return kOpenFailed;
  }
  return SUCCEEDED(connection_->Open(nullptr, nullptr, nullptr, kConnectUnspecified)) ? kOpened : kOpenFailed;
}

void ConnectionHandle::close() {
  if (connection_) connection_->Close();
}

FileState ConnectionHandle::fileState() {
  const HRESULT result = connection_ ? connection_->CheckFile() : S_OK;
  if (result == kFileGone) return FileState::gone;
  return result == kFileReplaced ? FileState::replaced : FileState::present;
}

bool ConnectionHandle::saveCopy(const wchar_t* path) {
  return connection_ && SUCCEEDED(connection_->SaveCopy(makeBstr(path).get()));
}

bool ConnectionHandle::execute(const wchar_t* command, LONG* recordsAffected, RecordsetHandle* recordset) {
  if (!connection_) return false;
  Variant affected;
  ComPtr<IAdoceRecordset> records;
  if (FAILED(connection_->Execute(makeBstr(command).get(), affected.put(),
                                  static_cast<LONG>(SourceKind::text), records.put()))) {
    return false;
  }
  if (recordsAffected) *recordsAffected = integerOf(affected).value_or(*recordsAffected);
  if (recordset) recordset->attach(std::move(records));
  return true;
}
