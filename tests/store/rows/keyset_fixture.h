#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/store/rows/keyset.h"

namespace store {

// Keys and sets of them for tests.

using Tuple = std::vector<Value>;

inline constexpr std::size_t kBlock = 65536;  // keys in one block

inline KeySet rowIdSet(std::size_t count) {
  KeySet keys;
  for (std::size_t i = 0; i < count; ++i) keys.append(static_cast<std::int64_t>(i) * 3);
  return keys;
}

inline Tuple tupleOf(std::size_t number) {
  return {static_cast<std::int64_t>(number), "name " + std::to_string(number)};
}

inline KeySet tupleSet(std::size_t count) {
  KeySet keys(KeySet::Kind::tuple);
  for (std::size_t i = 0; i < count; ++i) keys.append(tupleOf(i));
  return keys;
}

inline void erase(KeySet* keys, std::size_t index) {
  keys->prepareErase(index);
  keys->eraseAt(index);
}

inline std::vector<Key> keysOf(const KeySet& keys) {
  std::vector<Key> all;
  for (std::size_t i = 0; i < keys.count(); ++i) all.push_back(keys.keyAt(i));
  return all;
}

inline std::vector<std::int64_t> rowIdsOf(const KeySet& keys) {
  std::vector<std::int64_t> all;
  for (std::size_t i = 0; i < keys.count(); ++i) all.push_back(keys.rowIdAt(i));
  return all;
}

}  // namespace store
