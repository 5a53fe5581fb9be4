#pragma once

#include <windows.h>

/// The numbers that calls of the data-access components take and give, as ADO defines them.

enum class CursorType : LONG { keyset = 1, dynamic = 2 };

enum class LockType : LONG { optimistic = 3 };

/// What the source of a recordset is: a statement, or the name of a table.
enum class SourceKind : LONG { text = 1, table = 2 };

/// Where a relative move starts.
enum class MoveOrigin : LONG { current = 0, first = 1 };

inline constexpr LONG kConnectUnspecified = -1;
inline constexpr LONG kAffectCurrent = 1;

/// Bits of Field.Attributes.
inline constexpr LONG kFieldUpdatable = 4;
inline constexpr LONG kFieldMayBeUpdatable = 8;
