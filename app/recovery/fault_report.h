#pragma once

#include <windows.h>

/// Writes a text into `file` that says what went wrong and where: the kind of the fault, and the places in
/// the modules where it happened and from which that was called. Nothing of what the program holds is in it.
///
/// For a program whose memory may be spoilt: takes none, and each line is in the file before the next one is
/// found out.
void writeFaultReport(HANDLE file, const EXCEPTION_RECORD& fault, const CONTEXT& context) noexcept;
