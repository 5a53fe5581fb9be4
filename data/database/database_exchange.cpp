// Records between the open database and other files.
#include "base/variant.h"
#include "data/database/database.h"
#include "data/handles/busy_question.h"
#include "data/handles/connection_handle.h"
#include "data/handles/import_file.h"

Outcome Database::exportRecords(const ExportedRecords& records, const String& path, ExportCounts& counts) {
  return connection_->exportRows(records, path.text(), busyListener_, counts);
}

Outcome Database::openImport(const String& path, std::unique_ptr<ImportFile>& file) {
  return connection_->openImport(path.text(), busyListener_, file);
}
