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

/// Results of calls that callers tell from other failures.
inline constexpr HRESULT kNoCurrentRecord = static_cast<HRESULT>(0x800A0BCD);
inline constexpr HRESULT kLocked = static_cast<HRESULT>(0x800A0E92);
inline constexpr HRESULT kTooLarge = static_cast<HRESULT>(0x800A0E95);
inline constexpr HRESULT kStructureChanged = static_cast<HRESULT>(0x800A0E94);
inline constexpr HRESULT kStopped = static_cast<HRESULT>(0x80040E4E);
inline constexpr HRESULT kPasswordWanted = static_cast<HRESULT>(0x80040E4D);
inline constexpr HRESULT kChangedElsewhere = static_cast<HRESULT>(0x80040E38);
inline constexpr HRESULT kErrorsInCommand = static_cast<HRESULT>(0x80040E14);
inline constexpr HRESULT kBadColumn = static_cast<HRESULT>(0x80040E11);
inline constexpr HRESULT kConversion = static_cast<HRESULT>(0x800A0D5D);
inline constexpr HRESULT kNotAvailable = static_cast<HRESULT>(0x800A0CB3);

/// Bits of Field.Attributes.
inline constexpr LONG kFieldUpdatable = 4;
inline constexpr LONG kFieldMayBeUpdatable = 8;

/// What CheckFile says of a file that has lost its name.
inline constexpr HRESULT kFileGone = static_cast<HRESULT>(0x800A0FA1);
inline constexpr HRESULT kFileReplaced = static_cast<HRESULT>(0x800A0FA2);
