#pragma once

#include <string>
#include <string_view>

#include "platform/store/odbc/dialect/server_names.h"
#include "platform/store/rows/status.h"

namespace store {

/// Turns a statement of the components' dialect, as readStatement() gives it, into PostgreSQL's SQL. What
/// both read alike stays as it is. Besides:
///  - Names are found in any letter case, as the components do: a bare or quoted name of a table or of a
///  column of the
///    tables that the statement names becomes the name that the server has. Names may stand in brackets or
///    backquotes, and a table's in apostrophes; a table of another schema is called schema.table.
///  - Names that the statement gives (AS, RENAME TO, CREATE VIEW ...) keep their letter case.
///  - A text in double quotes that names nothing is a text.
///  - LIKE makes no difference between letter cases; == is =, IFNULL is COALESCE, x'00' a value of bytes.
///  - quivane_fold and quivane_contains (text_functions.h) are what the server has of the kind: values are
///  compared as it
///    writes them, letters by its own capitals.
///  - 0 and 1 behind WHERE, beside a column of booleans, and among the VALUES of an INSERT, are what the
///  column makes of them.
///  - A SELECT in FROM has a name.
/// Fails as `names` does, and with errorsInCommand for several statements. Linear in time but for the
/// questions, one for each name. May throw std::bad_alloc.
Status toServerSql(std::string_view sql, NameSource& names, std::string* serverSql);

/// The same in a form that readSingleTableSelect() reads: a table is the one name by which the catalogue
/// tells it, and a SELECT in FROM has no name of its own. To be run the parts need the table's reference.
Status toReadableSql(std::string_view sql, NameSource& names, std::string* readableSql);

/// Whether a statement that begins with WITH changes something in the end.
bool changesRows(std::string_view sql);

/// Whether the statement reads from anything.
bool namesTable(std::string_view sql);

}  // namespace store
