#include "platform/store/sql/source_text.h"

#include <utility>

namespace store {

Status textOfSource(std::string_view source, SourceKind kind, TableNames& tables, std::string* text) {
  bool isName = kind == SourceKind::table;
  if (kind == SourceKind::unknown) {
    if (Status status = tables.isTable(source, &isName); !status) return status;
  }
  if (isName) return tables.selectAllOf(source, text);
  *text = source;
  return {};
}

Status readStreamedSource(std::string_view source, SourceKind kind, TableNames& tables,
                          Statement* statement) {
  std::string text;
  if (Status status = textOfSource(source, kind, tables, &text); !status) return status;
  Statement read;
  if (Status status = readStatement(text, &read); !status) return status;
  if (read.kind == StatementKind::createDatabase || read.kind == StatementKind::dropDatabase) {
    return statementWithoutRecords();
  }
  *statement = std::move(read);
  return {};
}

Status statementWithoutRecords() {
  return {ErrorCode::illegalOperation, "The statement has no records."};
}

}  // namespace store
