#pragma once

#include <string>
#include <utility>

namespace store {

/// Why an operation of the store failed. The automation face maps each onto one COM result.
enum class ErrorCode {
  ok,
  invalidArgument,   ///< an argument outside its range
  noCurrentRecord,   ///< BOF, EOF, a deleted row, or a row that another program deleted
  illegalOperation,  ///< not allowed in the present state or by the cursor's type
  notAvailable,      ///< the source or this build can't do it
  itemNotFound,      ///< no such field
  conversion,        ///< a value that the field can't take
  objectClosed,
  objectOpen,
  noCommand,        ///< an empty statement
  errorsInCommand,  ///< a statement that does not parse or can't run
  badColumn,        ///< a statement names a column that does not exist
  noTable,          ///< a table that does not exist, or a SELECT without a table
  tableExists,
  cannotOpen,        ///< a file that is missing, not a file, not a database, or damaged at its head
  passwordWanted,    ///< the server lets its user in only with a password, or not with the one that was given
  fileExists,        ///< CREATE DATABASE on a path that is taken
  locked,            ///< another program held the database for longer than the wait
  readOnly,          ///< the file, the table or the field can't be written
  structureChanged,  ///< the tables became others: the records are to be opened anew
  changedElsewhere,  ///< another program changed or replaced the record since it was read
  constraint,        ///< a NOT NULL, UNIQUE, CHECK or foreign key rule was broken
  damaged,           ///< the database's content contradicts itself
  fileGone,          ///< the open file was deleted or renamed by another program
  fileReplaced,      ///< another program put another file in the place of the open one
  tooLarge,          ///< a result that takes more temporary files than it may
  inputOutput,       ///< the system failed to read or write, or the disk is full
  outOfMemory,
  stopped,  ///< who watched over the statement stopped it
};

/// The outcome of an operation: a code, and for a failure a sentence in English for the user.
/// Contextually true when it succeeded.
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(ErrorCode code, std::string message) : code_(code), message_(std::move(message)) {}

  explicit operator bool() const { return code_ == ErrorCode::ok; }
  ErrorCode code() const { return code_; }
  const std::string& message() const { return message_; }

 private:
  ErrorCode code_ = ErrorCode::ok;
  std::string message_;
};

}  // namespace store
