#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// How one text stands in a file, little-endian, whatever the file is reached by:
///   4 bytes  the byte count L: 0 for the empty text, and nothing follows; else 2 x length + 1
///   L bytes  the characters, then one zero byte, the low half of the terminator.
/// The odd count is the format's own.
namespace stringlayout {

/// The largest L that is written or read: some 33 million characters.
inline constexpr std::uint32_t kMaxByteCount = 64 * 1024 * 1024;

/// Reads at most `byteCount` bytes and returns how many came: fewer only at the end of what there is.
using Reader = std::function<std::size_t(void* bytes, std::size_t byteCount)>;

/// The characters that come next. None when the count can't be read or is too large. Lenient otherwise: what
/// is cut short gives the whole characters that are there, an even count is count / 2 characters, and the
/// byte behind the characters is skipped whatever it holds. Memory is taken as bytes arrive, so a count that
/// lies costs nothing. May throw std::bad_alloc.
std::u16string read(const Reader& reader);

/// The count for a text of so many characters, which is to be followed by their bytes and a zero byte unless
/// it is 0. Nothing fits when it would exceed kMaxByteCount: it is then that number itself.
constexpr std::uint32_t byteCountOf(std::size_t length) {
  if (length == 0) return 0;
  if (length > (kMaxByteCount - 1) / sizeof(char16_t)) return kMaxByteCount;
  return static_cast<std::uint32_t>(length * sizeof(char16_t) + 1);
}

}  // namespace stringlayout
