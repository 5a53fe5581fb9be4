#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What is calculated of one column of the records that a statement yields.

enum class ColumnKind {
  values,  ///< numbers, texts, or both
  dates,
  truth,
};

/// A statement of one record, of whose fields figuresText makes a text. `sql` is a SELECT that has the field.
std::wstring figuresSql(std::wstring_view sql, std::wstring_view field, ColumnKind kind);

/// What the values of a server's column are, if its kind is `values`.
enum class ServerValues { whole, real, text, bytes };

/// The same for the database of a server, which has no functions of SQLite's.
std::wstring serverFiguresSql(std::wstring_view sql, std::wstring_view field, ColumnKind kind,
                              ServerValues values);

/// Has the values that such a statement has given look as those of a file: sum and mean have fifteen digits,
/// but for the sum of decimals, which no file has and which is exact.
void writeFiguresAsFilesDo(ColumnKind kind, ServerValues serverValues, std::vector<std::wstring>& values);

/// Lines for the user. `values` are the texts of the fields of that record. Whole numbers are added up
/// exactly, whatever comes of it.
std::wstring figuresText(ColumnKind kind, const std::vector<std::wstring>& values);
