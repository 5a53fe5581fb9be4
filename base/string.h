#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>

/// The text type of the system: an owning, zero-terminated text of UTF-16 code units.
///
/// One pointer wide. A null buffer means the empty text; a buffer is never shared between two Strings.
/// Lengths, counts and positions are code units, positions are 0-based. A text ends at its first zero
/// unit. Comparing and joining is done by callers on text(), with the platform's wide functions.
///
/// Construction, assignment and fromFile throw std::bad_alloc when memory runs out; a value assigned to
/// is then as before. Nothing else here throws.
class String {
 public:
  String() noexcept = default;
  /// A copy of `text`; null gives the empty text. Implicit, so that literals pass where a String goes.
  String(const wchar_t* text);  // NOLINT(google-explicit-constructor)
  String(const String& other);
  String(String&& other) noexcept = default;
  ~String() = default;

  String& operator=(const wchar_t* text);
  String& operator=(const String& other);
  String& operator=(String&& other) noexcept = default;

  /// The value stored at the file position of `file`, in the layout that writeToFile describes.
  /// The empty text when the count can't be read (an invalid handle included) or is larger than
  /// kMaxFileByteCount. Lenient otherwise: a truncated file gives the whole characters that are there,
  /// an even count is count / 2 characters, and the byte behind the characters is skipped whatever it
  /// holds. Memory is taken as bytes arrive, so a count that lies costs nothing.
  static String fromFile(HANDLE file);

  /// Writes the value at the file position of `file`, in two writes, little-endian:
  ///   4 bytes  the byte count L: 0 for the empty text, and nothing follows; else 2 x length + 1
  ///   L bytes  the characters, then one zero byte, the low half of the terminator.
  /// The odd count is the format's own. False when the system did not take every byte, or when L would
  /// exceed kMaxFileByteCount; then nothing is written.
  bool writeToFile(HANDLE file) const noexcept;

  /// The largest L that is written or read: some 33 million characters.
  static constexpr DWORD kMaxFileByteCount = 64 * 1024 * 1024;

  /// Becomes a copy of `text`, which may be null (empty) or point into this very String.
  void assign(const wchar_t* text);
  void clear() noexcept { buffer_.reset(); }
  /// The same, and nothing of the text stays in the memory that it had.
  void wipe() noexcept;

  /// Never null. Valid until the value changes or the String is destroyed.
  const wchar_t* text() const noexcept { return buffer_ ? buffer_.get() : kEmptyText; }
  std::size_t length() const noexcept;
  bool isEmpty() const noexcept { return text()[0] == L'\0'; }

  /// Removes blanks (U+0020 alone; tabs and other white space stay) at both ends.
  void trim() noexcept;

  /// Folds letters of every script to one case, unit by unit, so that the length stays. The same for
  /// every user's locale, because folded texts are stored and compared later.
  void toUpperCase() noexcept;
  void toLowerCase() noexcept;
  /// Folds the first `count` units only; a count beyond the length folds the whole text.
  void upperCasePrefix(std::size_t count) noexcept;

  /// Each puts a part of this text into `destination`, which may be this String. A range that leaves
  /// the text is cut to it; a start beyond the end gives the empty text. False when memory ran out;
  /// `destination` is then as before.
  bool left(std::size_t count, String& destination) const noexcept;
  bool right(std::size_t count, String& destination) const noexcept;
  bool middle(std::size_t start, std::size_t count, String& destination) const noexcept;

  /// The index of the first occurrence, or -1. The empty text (and null) occurs at 0.
  std::ptrdiff_t find(const wchar_t* text) const noexcept;
  std::ptrdiff_t find(String text) const noexcept;

 private:
  static constexpr wchar_t kEmptyText[] = L"";

  std::unique_ptr<wchar_t[]> buffer_;
};

static_assert(sizeof(String) == sizeof(void*), "a String is embedded in other records as one pointer");
static_assert(sizeof(wchar_t) == 2, "a String holds UTF-16 code units");
