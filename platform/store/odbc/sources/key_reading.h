#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/store/odbc/driver/odbc_connection.h"
#include "platform/store/rows/keyset.h"

namespace store {

/// The keys of a table as they were at one moment, in the order of a statement. The first come at once, the
/// others through a conversation of their own, in the background, however many they are.
class KeyReading {
 public:
  struct Statements {
    std::string keys;   ///< selects them: one whole number, or texts for tuples
    std::string count;  ///< counts them; empty when all are to be read at once
    KeySet::Kind kind = KeySet::Kind::rowId;
  };

  /// `connection` outlives the reading.
  KeyReading(OdbcConnection& connection, Statements statements);
  ~KeyReading();
  KeyReading(const KeyReading&) = delete;
  KeyReading& operator=(const KeyReading&) = delete;

  /// Replaces `*keys` by the first keys, and stores how many there are in all. What an earlier begin() has
  /// not read is forgotten. On failure both are untouched.
  Status begin(KeySet* keys, std::size_t* count);

  /// Appends keys until there are `wanted`, or all. structureChanged when the rest can't be had any more.
  Status readOn(KeySet* keys, std::size_t wanted);

 private:
  class Background;

  Status readFirst(KeySet* keys, std::size_t* count, bool* isWhole);
  Status readAll(KeySet* keys);

  OdbcConnection& connection_;
  Statements statements_;
  std::unique_ptr<Background> background_;  // as long as keys are to come
};

}  // namespace store
