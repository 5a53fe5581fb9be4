#pragma once

#include <windows.h>

#include <span>

namespace automation {

/// One class that this DLL offers.
struct ClassEntry {
  const CLSID& classId;
  const wchar_t* programId;       ///< with the version, as programs ask for it
  const wchar_t* plainProgramId;  ///< without the version
  const wchar_t* description;
  const wchar_t* threadingModel;
  /// Makes an object and stores the asked interface in `*object`, with one reference for the caller.
  /// On failure `*object` is null.
  HRESULT (*create)(REFIID interfaceId, void** object);
};

/// All classes. Factory and registration know of nothing else.
std::span<const ClassEntry> classTable();

}  // namespace automation
