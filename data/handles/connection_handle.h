#pragma once

#include <windows.h>

#include <adoce.h>
#include <cstdint>
#include <memory>

#include "data/handles/exported_records.h"
#include "data/handles/file_state.h"
#include "data/outcome.h"
#include "owners/com_handles.h"

class BusyListener;
class ImportFile;
class RecordsetHandle;

/// A connection of the data-access components to a database file, or to the store without a file.
/// Without registered components there is no object behind it and every operation fails.
class ConnectionHandle {
 public:
  static constexpr int kOpened = 0;
  static constexpr int kOpenFailed = -13;

  /// Makes the object and sets its provider, "CEDB".
  ConnectionHandle();
  /// Takes over an object that exists, which may be null, and changes nothing about it.
  explicit ConnectionHandle(ComPtr<IAdoceConnection> connection);
  ~ConnectionHandle() = default;
  ConnectionHandle(const ConnectionHandle&) = delete;
  ConnectionHandle& operator=(const ConnectionHandle&) = delete;

  /// The path of the file to open; the empty text is the store without a file. Takes effect with open.
  bool setConnectionString(const wchar_t* text);
  /// Closes the connection first if it is open. kOpened or kOpenFailed.
  int open();
  /// The same with `path` as the connection string and a password for a server that wants one, and says why
  /// it failed.
  Outcome open(const wchar_t* path, const wchar_t* password = L"");
  void close();
  /// Runs a statement. `recordsAffected`, if given, receives how many records it changed (untouched
  /// when the store gives no number); `recordset`, if given, receives the records that it yields.
  Outcome execute(const wchar_t* command, LONG* recordsAffected = nullptr,
                  RecordsetHandle* recordset = nullptr);

  /// Who is told while the connection, and what is opened by it, takes its time; it outlives both. Null tells
  /// nobody.
  void setBusyListener(BusyListener* listener);

  /// Cheap: nothing of the file is read. FileState::present also for a closed connection, and where the
  /// system does not tell.
  FileState fileState();
  /// Why a change could not be stored at the moment; done when nothing is known against it. Nothing is
  /// changed.
  Outcome tryWriting();
  /// Stores a number that becomes another one when another program has changed the file. False, and nothing
  /// is stored, when that can't be told at the moment: nobody is waited for.
  bool countOthersChanges(std::int64_t& count);
  /// Whether what is open is the database of a server.
  bool isServers();
  /// What the server is and whether the connection to it is encrypted, for the user; empty for a file. On
  /// failure `text` is untouched.
  Outcome describeServer(String& text);
  /// Why a server let its user in no more since this was asked last; done when it has not. Such a failure is
  /// one of passwordWanted, and another password is to be given before anything else.
  Outcome takeRefusal();
  Outcome givePassword(const wchar_t* password);
  /// Writes what is open into a new file, also when the open one has lost its name; the connection stays
  /// with what it has open. Fails, and no file was made, when something stands at `path` already or it can't
  /// be written there.
  Outcome saveCopy(const wchar_t* path);

  /// As Database has them. `listener` hears how far it is; it may be null, and outlives the file.
  Outcome exportRows(const ExportedRecords& records, const wchar_t* path, BusyListener* listener,
                     ExportCounts& counts);
  Outcome openImport(const wchar_t* path, BusyListener* listener, std::unique_ptr<ImportFile>& file);

  /// May be null. Valid while this handle lives.
  IAdoceConnection* get() const { return connection_.get(); }

 private:
  ComPtr<IAdoceConnection> connection_;
};
