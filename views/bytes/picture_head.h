#pragma once

#include <cstdint>
#include <optional>
#include <span>

/// What bytes that begin like a picture say of themselves, before anything of it is decoded.

enum class PictureFormat : std::uint8_t { png, jpeg, gif, bmp };

struct PictureHead {
  PictureFormat format{};
  std::uint32_t width = 0;   ///< in points; 0 when the bytes are too damaged to say so
  std::uint32_t height = 0;  ///< likewise
  /// How many points are painted until the picture stands: those of each frame, and each time that it is gone
  /// over anew. At least width × height.
  std::uint64_t work = 0;
};

/// Empty for bytes that don't begin like a picture of one of these formats. Looks at the beginning of a PNG
/// or BMP, and at all of a JPEG or GIF.
std::optional<PictureHead> readPictureHead(std::span<const std::uint8_t> bytes);

/// A picture of more points is not decoded: a few bytes may say that they are so many, and each takes four
/// bytes of memory.
inline constexpr std::uint64_t kMostPicturePoints = 40'000'000;
/// Nor one that takes more work, which takes time.
inline constexpr std::uint64_t kMostPictureWork = 12 * kMostPicturePoints;

/// Whether it has points, and not too many.
bool mayBeDecoded(const PictureHead& head);

/// "PNG", "JPEG", "GIF", "BMP".
const wchar_t* nameOf(PictureFormat format);
/// What ends the names of such files: ".png".
const wchar_t* endingOf(PictureFormat format);
