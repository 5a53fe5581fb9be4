// Values that go into files of their own.
#include "platform/store/automation/module/database_location.h"
#include "platform/store/automation/objects/recordset.h"
#include "platform/store/automation/values/field_values.h"
#include "platform/store/automation/values/text.h"
#include "platform/store/automation/values/variant_values.h"
#include "platform/store/exchange/bytes/output_file.h"

namespace automation {

namespace {

Outcome writeFile(std::string_view bytes, const std::string& path, const std::vector<std::string>& inUse) {
  store::exchange::OutputFile file;
  store::Status status = file.create(path, true, inUse);
  if (status) status = file.write(bytes);
  if (status) status = file.keep();
  return status;
}

}  // namespace

HRESULT RecordsetObject::SaveField(VARIANT field, BSTR path) {
  OwnedVariant holder;
  const VARIANT* plain = &field;
  const auto save = [&](store::Recordset& records) -> Outcome {
    std::size_t column = 0;
    if (Outcome outcome = findColumn(records, *plain, &column); !outcome) return outcome;
    store::Cell cell;
    if (store::Status status = records.cell(column, &cell); !status) return status;
    if (cell.kind != store::CellKind::blob && cell.kind != store::CellKind::text) {
      return {kConversion, "There are no bytes in " + records.columns()[column].name + "."};
    }
    const std::string target = utf8Of(fullPathOf(std::wstring(viewOf(path))));
    return writeFile(cell.bytes, target, connection_->filesInUse());
  };
  return withRecords([&] { return plainVariant(field, &holder, &plain); }, save);
}

}  // namespace automation
