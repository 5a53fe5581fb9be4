#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/settings/settings_file.h"
#include "base/settings/settings_table.h"
#include "base/string.h"

/// The program's settings: single values below HKEY_CURRENT_USER, kRoot, in the registry or in a file in its
/// place. What there is says base/settings/settings_table.h. Each call opens the key, reads or writes one
/// value, or those of rows that follow each other, and closes it; nothing is kept between two calls.
///
/// `subkey` and `name` are not null. A subkey whose full path does not fit kPathBufferCount characters
/// counts as a key that can't be opened. What reads texts throws std::bad_alloc; nothing else throws.
class SettingsStore {
 public:
  static constexpr const wchar_t* kRoot = L"Software\\MorvaleSoftware\\Quivane for Pocket PC";
  static constexpr const wchar_t* kOptions = settings::kOptions;
  static constexpr const wchar_t* kRecentUserFinds = settings::kRecentUserFinds;
  static constexpr const wchar_t* kPassword = settings::kPassword;

  /// Room for the path of a key, the terminator included.
  static constexpr std::size_t kPathBufferCount = 260;

  /// From now on the keys and values are in `file`, which outlives its use; with null in the registry.
  static void keepIn(const SettingsFile* file) noexcept;

  /// The registered type is not checked: the value's bytes up to the first zero character. False when
  /// the key or the value can't be read; `value` is then as before.
  static bool readString(const wchar_t* subkey, const wchar_t* name, String& value);

  /// The registered type is not checked; a value shorter than 4 bytes is completed with zeros. False
  /// when the key can't be opened, `value` being as before, and when the value is missing or longer
  /// than 4 bytes, `value` being `defaultValue`.
  static bool readDword(const wchar_t* subkey, const wchar_t* name, std::uint32_t defaultValue,
                        std::uint32_t& value) noexcept;

  /// Reads a value of exactly wordCount x 4 bytes. False for every other length, and when the key or
  /// the value can't be read; what `words` holds is then undefined.
  static bool readBinary(const wchar_t* subkey, const wchar_t* name, std::uint32_t* words,
                         std::uint32_t wordCount) noexcept;

  /// Each creates the key where it is missing. False when it can't be opened for writing; true
  /// otherwise, whatever became of the value.
  /// REG_SZ with the terminator.
  static bool writeString(const wchar_t* subkey, const wchar_t* name, const String& value) noexcept;
  /// REG_DWORD.
  static bool writeDword(const wchar_t* subkey, const wchar_t* name, std::uint32_t value) noexcept;
  /// REG_BINARY of wordCount x 4 bytes.
  static bool writeBinary(const wchar_t* subkey, const wchar_t* name, const std::uint32_t* words,
                          std::uint32_t wordCount) noexcept;

  // ---- The same for a row of the table, which is of that kind. A number that is missing is 0.

  static bool read(Setting setting, String& text);
  static bool read(Setting setting, std::uint32_t& number) noexcept;
  static bool read(Setting setting, std::span<std::uint32_t> words) noexcept;

  /// `none` also for what can't be a value of that kind. What is unreadable at the moment may be there:
  /// whoever writes a part of it and takes the rest from what was read writes nothing then.
  enum class Reading { unreadable, none, value };
  /// As read(), which is true for a value.
  static Reading find(Setting setting, String& text);
  static Reading find(Setting setting, std::span<std::uint32_t> words) noexcept;
  /// The texts of so many rows of one key from `first` on, in the registry under one opening of it. Those
  /// that are missing are empty. False when one is unreadable: it is empty then, and so are those behind it.
  static bool findAll(Setting first, std::span<String> texts);
  /// The numbers of so many rows of one key from `first` on, in the same way. What is missing is 0.
  static void readAll(Setting first, std::span<std::uint32_t> numbers) noexcept;

  static bool write(Setting setting, const String& text) noexcept;
  static bool write(Setting setting, std::uint32_t number) noexcept;
  /// As readAll. False when one of them could not be written in the way that write() says.
  static bool writeAll(Setting first, std::span<const std::uint32_t> numbers) noexcept;
  static bool write(Setting setting, std::span<const std::uint32_t> words) noexcept;
};
