#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

/// The widths that the user has given to the columns of a table or query of a file, by the names of the
/// fields. They are kept among the program's settings, not in the file: for the latest 32 tables and queries,
/// and of each for the latest 20 fields.
class ColumnWidths {
 public:
  static constexpr int kLeast = 8;
  static constexpr int kMost = 4000;

  /// None.
  ColumnWidths() = default;
  /// Those that are kept for a table or query. A file is the same whatever the case of its path's letters.
  ColumnWidths(const wchar_t* file, bool isQuery, const wchar_t* name);

  /// Nothing where the user has set none.
  std::optional<int> of(const wchar_t* field) const;
  /// Brought to what a column may have. A width that is the one there is already changes nothing.
  void set(const wchar_t* field, int width);
  /// Writes what was set since the last time, as that of the latest table or query. Nothing happens without a
  /// change. While the settings can't be read or written the change is kept for the next time.
  void keep();

 private:
  static constexpr std::size_t kEntryCount = 32;
  static constexpr std::size_t kFieldCount = 20;

  struct Field {
    std::uint32_t name = 0;  // a number made of it; 0 for none
    std::uint32_t width = 0;
  };
  struct Entry {
    std::uint32_t source = 0;  // two numbers made of what it belongs to; both 0 for none
    std::uint32_t source2 = 0;
    std::array<Field, kFieldCount> fields{};
  };
  using Entries = std::array<Entry, kEntryCount>;
  static_assert(sizeof(Entries) % sizeof(std::uint32_t) == 0);

  static bool read(Entries& entries) noexcept;
  bool isOfSame(const Entry& other) const {
    return entry_.source == other.source && entry_.source2 == other.source2;
  }

  Entry entry_;
  bool isChanged_ = false;
};
