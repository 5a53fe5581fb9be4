#include "base/settings/settings_store.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <cwchar>
#include <string>

#include "base/settings/registry_text.h"
#include "owners/handles.h"

namespace {

/// Null for the registry.
const SettingsFile* file = nullptr;

/// The full path of a subkey, in a buffer of its own.
class KeyPath {
 public:
  explicit KeyPath(const wchar_t* subkey) noexcept {
    fits_ = std::wcslen(SettingsStore::kRoot) + 1 + std::wcslen(subkey) < SettingsStore::kPathBufferCount;
    if (fits_) wsprintfW(path_, L"%s\\%s", SettingsStore::kRoot, subkey);
  }

  bool fits() const noexcept { return fits_; }
  const wchar_t* text() const noexcept { return path_; }

 private:
  wchar_t path_[SettingsStore::kPathBufferCount] = {};
  bool fits_ = false;
};

/// The key of `subkey`, opened for reading. Holds nothing when that failed.
UniqueRegistryKey openForReading(const wchar_t* subkey) noexcept {
  const KeyPath path(subkey);
  HKEY key = nullptr;
  if (!path.fits()) return {};
  if (RegOpenKeyExW(HKEY_CURRENT_USER, path.text(), 0, KEY_READ, &key) != ERROR_SUCCESS) return {};
  return UniqueRegistryKey(key);
}

/// The same for writing; made where it is missing.
UniqueRegistryKey openForWriting(const wchar_t* subkey) noexcept {
  const KeyPath path(subkey);
  UniqueRegistryKey key;
  if (path.fits()) {
    RegCreateKeyExW(HKEY_CURRENT_USER, path.text(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr,
                    key.put(), nullptr);
  }
  return key;
}

void writeToKey(HKEY key, const wchar_t* name, DWORD type, const void* bytes,
                std::size_t byteCount) noexcept {
  RegSetValueExW(key, name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(byteCount));
}

bool writeValue(const wchar_t* subkey, const wchar_t* name, DWORD type, const void* bytes,
                std::size_t byteCount) noexcept {
  if (file) {
    const KeyPath path(subkey);
    return path.fits() && file->write(path.text(), name, type, bytes, byteCount);
  }
  const UniqueRegistryKey key = openForWriting(subkey);
  if (!key) return false;
  writeToKey(key.get(), name, type, bytes, byteCount);
  return true;
}

/// The bytes up to the first zero character.
std::wstring textOfBytes(const std::vector<BYTE>& bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  return text.c_str();
}

SettingsFile::Found findInFile(const wchar_t* subkey, const wchar_t* name, settings::Value& value) noexcept {
  const KeyPath path(subkey);
  return path.fits() ? file->read(path.text(), name, value) : SettingsFile::Found::noKey;
}

using Reading = SettingsStore::Reading;

Reading readingOf(SettingsFile::Found found) noexcept {
  if (found == SettingsFile::Found::unreadable) return Reading::unreadable;
  return found == SettingsFile::Found::value ? Reading::value : Reading::none;
}

Reading findText(const wchar_t* subkey, const wchar_t* name, String& text) {
  if (file) {
    settings::Value found;
    const Reading reading = readingOf(findInFile(subkey, name, found));
    if (reading == Reading::value) text = textOfBytes(found.bytes).c_str();
    return reading;
  }
  const KeyPath path(subkey);
  const bool isThere = path.fits() && readRegistryText(HKEY_CURRENT_USER, path.text(), name, text);
  return isThere ? Reading::value : Reading::none;
}

Reading findWords(const wchar_t* subkey, const wchar_t* name, std::uint32_t* words,
                  std::uint32_t wordCount) noexcept {
  const DWORD wanted = wordCount * static_cast<DWORD>(sizeof *words);
  if (file) {
    settings::Value found;
    const Reading reading = readingOf(findInFile(subkey, name, found));
    if (reading != Reading::value) return reading;
    if (found.bytes.size() != wanted) return Reading::none;
    std::memcpy(words, found.bytes.data(), wanted);
    return reading;
  }
  const UniqueRegistryKey key = openForReading(subkey);
  if (!key) return Reading::none;
  DWORD byteCount = wanted;
  const LSTATUS result =
      RegQueryValueExW(key.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(words), &byteCount);
  return result == ERROR_SUCCESS && byteCount == wanted ? Reading::value : Reading::none;
}

/// A value that is too long or missing is `defaultValue`.
bool readNumber(HKEY key, const wchar_t* name, std::uint32_t defaultValue, std::uint32_t& value) noexcept {
  // Read aside, because a value that is too long may leave part of it behind.
  std::uint32_t read = 0;
  DWORD byteCount = sizeof read;
  const LSTATUS result =
      RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&read), &byteCount);
  value = result == ERROR_SUCCESS ? read : defaultValue;
  return result == ERROR_SUCCESS;
}

const SettingRow& rowOf(Setting setting, [[maybe_unused]] SettingKind kind) noexcept {
  const SettingRow& row = settings::rowOf(setting);
  assert(row.kind == kind);
  return row;
}

/// Goes through `count` rows of one key: with a settings file by `inFile`, else by `inKey`, under one opening
/// of the key. False, and by nothing, when that can't be opened.
template <typename InFile, typename InKey>
bool forRows(Setting first, std::size_t count, UniqueRegistryKey (*open)(const wchar_t* subkey) noexcept,
             InFile inFile, InKey inKey) {
  const wchar_t* const subkey = settings::rowOf(first).subkey;
  const UniqueRegistryKey key = file ? UniqueRegistryKey() : open(subkey);
  if (!file && !key) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const auto setting = static_cast<Setting>(static_cast<std::size_t>(first) + i);
    assert(std::wcscmp(settings::rowOf(setting).subkey, subkey) == 0);
    if (file) {
      inFile(setting, i);
    } else {
      inKey(key.get(), settings::rowOf(setting).name, i);
    }
  }
  return true;
}

}  // namespace

void SettingsStore::keepIn(const SettingsFile* settingsFile) noexcept {
  file = settingsFile;
}

bool SettingsStore::readString(const wchar_t* subkey, const wchar_t* name, String& value) {
  return findText(subkey, name, value) == Reading::value;
}

bool SettingsStore::readDword(const wchar_t* subkey, const wchar_t* name, std::uint32_t defaultValue,
                              std::uint32_t& value) noexcept {
  if (file) {
    settings::Value found;
    const SettingsFile::Found result = findInFile(subkey, name, found);
    if (result == SettingsFile::Found::unreadable || result == SettingsFile::Found::noKey) return false;
    value = defaultValue;
    if (result == SettingsFile::Found::noValue || found.bytes.size() > sizeof value) return false;
    value = 0;
    std::copy(found.bytes.begin(), found.bytes.end(), reinterpret_cast<BYTE*>(&value));
    return true;
  }
  const UniqueRegistryKey key = openForReading(subkey);
  return key && readNumber(key.get(), name, defaultValue, value);
}

bool SettingsStore::readBinary(const wchar_t* subkey, const wchar_t* name, std::uint32_t* words,
                               std::uint32_t wordCount) noexcept {
  return findWords(subkey, name, words, wordCount) == Reading::value;
}

bool SettingsStore::writeString(const wchar_t* subkey, const wchar_t* name, const String& value) noexcept {
  return writeValue(subkey, name, REG_SZ, value.text(), (value.length() + 1) * sizeof(wchar_t));
}

bool SettingsStore::writeDword(const wchar_t* subkey, const wchar_t* name, std::uint32_t value) noexcept {
  return writeValue(subkey, name, REG_DWORD, &value, sizeof value);
}

bool SettingsStore::writeBinary(const wchar_t* subkey, const wchar_t* name, const std::uint32_t* words,
                                std::uint32_t wordCount) noexcept {
  return writeValue(subkey, name, REG_BINARY, words, std::size_t{wordCount} * sizeof *words);
}

bool SettingsStore::read(Setting setting, String& text) {
  return find(setting, text) == Reading::value;
}

SettingsStore::Reading SettingsStore::find(Setting setting, String& text) {
  const SettingRow& row = rowOf(setting, SettingKind::text);
  return findText(row.subkey, row.name, text);
}

bool SettingsStore::read(Setting setting, std::uint32_t& number) noexcept {
  const SettingRow& row = rowOf(setting, SettingKind::number);
  return readDword(row.subkey, row.name, 0, number);
}

void SettingsStore::readAll(Setting first, std::span<std::uint32_t> numbers) noexcept {
  for (std::uint32_t& number : numbers) number = 0;
  forRows(
      first, numbers.size(), openForReading,
      [&](Setting setting, std::size_t i) { read(setting, numbers[i]); },
      [&](HKEY key, const wchar_t* name, std::size_t i) { readNumber(key, name, 0, numbers[i]); });
}

bool SettingsStore::read(Setting setting, std::span<std::uint32_t> words) noexcept {
  return find(setting, words) == Reading::value;
}

SettingsStore::Reading SettingsStore::find(Setting setting, std::span<std::uint32_t> words) noexcept {
  const SettingRow& row = rowOf(setting, SettingKind::words);
  return findWords(row.subkey, row.name, words.data(), static_cast<std::uint32_t>(words.size()));
}

bool SettingsStore::findAll(Setting first, std::span<String> texts) {
  for (String& text : texts) text = String();
  bool isReadable = true;
  forRows(
      first, texts.size(), openForReading,
      [&](Setting setting, std::size_t i) {
        isReadable = isReadable && find(setting, texts[i]) != Reading::unreadable;
      },
      [&](HKEY key, const wchar_t* name, std::size_t i) { readRegistryText(key, name, texts[i]); });
  return isReadable;
}

bool SettingsStore::write(Setting setting, const String& text) noexcept {
  const SettingRow& row = rowOf(setting, SettingKind::text);
  return writeString(row.subkey, row.name, text);
}

bool SettingsStore::write(Setting setting, std::uint32_t number) noexcept {
  const SettingRow& row = rowOf(setting, SettingKind::number);
  return writeDword(row.subkey, row.name, number);
}

bool SettingsStore::writeAll(Setting first, std::span<const std::uint32_t> numbers) noexcept {
  bool isWritten = true;
  const bool isOpened = forRows(
      first, numbers.size(), openForWriting,
      [&](Setting setting, std::size_t i) { isWritten = write(setting, numbers[i]) && isWritten; },
      [&](HKEY key, const wchar_t* name, std::size_t i) {
        writeToKey(key, name, REG_DWORD, &numbers[i], sizeof numbers[i]);
      });
  return isOpened && isWritten;
}

bool SettingsStore::write(Setting setting, std::span<const std::uint32_t> words) noexcept {
  const SettingRow& row = rowOf(setting, SettingKind::words);
  return writeBinary(row.subkey, row.name, words.data(), static_cast<std::uint32_t>(words.size()));
}
