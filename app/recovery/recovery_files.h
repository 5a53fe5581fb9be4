#pragma once

#include <filesystem>

/// Where an end of the program by a fault leaves its traces: among the user's own data, or beside a program
/// that leaves nothing elsewhere.
struct RecoveryFiles {
  std::filesystem::path typed;  ///< what was typed and not stored: UTF-16
  std::filesystem::path fault;  ///< where it happened, without contents of records
};

/// Both paths are empty where the system has no place for the user's data. May throw std::bad_alloc.
RecoveryFiles recoveryFiles(bool besideProgram);
