#pragma once

#include <cstdint>
#include <vector>

namespace pocketshell {

/// Square images side by side, as 0x00RRGGBB from the top left on.
struct ImageStrip {
  int size = 0;
  int count = 0;
  std::vector<std::uint32_t> pixels;
  /// For each pixel whether it is transparent; the colour is black there.
  std::vector<bool> transparent;
};

/// `pixels` with what has colour `transparentColor` (0x00RRGGBB) taken out.
ImageStrip keyedStrip(int size, int count, std::vector<std::uint32_t> pixels, std::uint32_t transparentColor);

/// The strip with images of size x size: each pixel the mean of the opaque part of the area it covers,
/// transparent when more than half of that is.
ImageStrip scaledStrip(const ImageStrip& strip, int size);

/// Which of the drawings 1, 2, 3 and 4 times as large serves a zoom best: the next larger one, or else
/// the largest. `available[i]` tells whether that of factor i + 1 is there; 0 when none is.
int bestFactor(const std::vector<bool>& available, int zoom);

}  // namespace pocketshell
