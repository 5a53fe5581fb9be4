#pragma once

#include <cstdint>
#include <memory>

#include "base/growable_array.h"
#include "base/string.h"

/// A list of names (of tables, fields, queries) that owns its Strings. The list keeps the order in
/// which names come and takes duplicates. Indexes are 0-based and below size().
class NameList {
 public:
  std::uint32_t size() const noexcept { return names_.size(); }
  bool isEmpty() const noexcept { return size() == 0; }

  /// The name at `index`; the empty text where none was set. Valid until the name is replaced or
  /// removed; growing the list does not move the Strings.
  const String& operator[](std::uint32_t index) const noexcept;

  /// Where a name is first; size() when it is not in the list. A name in other cases of its letters is taken
  /// only where the very same one is missing.
  std::uint32_t find(const String& name) const noexcept;
  /// Whether a name is in the list, in whatever case of its letters.
  bool holds(const String& name) const noexcept { return find(name) != size(); }

  /// Each throws std::bad_alloc when memory runs out; the list is then as before.
  void append(String name);
  void set(std::uint32_t index, String name);
  /// Names cut off are deleted, names that come in are empty.
  void setSize(std::uint32_t size);

  /// Deletes every name and frees the list.
  void clear() noexcept;

  void swap(NameList& other) noexcept { names_.swap(other.names_); }

 private:
  GrowableArray<std::unique_ptr<String>> names_;
};
