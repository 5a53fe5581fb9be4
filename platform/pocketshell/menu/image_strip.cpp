#include "platform/pocketshell/menu/image_strip.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace pocketshell {

namespace {

constexpr int kChannelCount = 3;
constexpr int kChannelBits = 8;
constexpr std::uint32_t kChannelMask = 0xFF;
constexpr std::uint32_t kColorMask = 0x00FFFFFF;

std::size_t indexOf(const ImageStrip& strip, int x, int y) {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(strip.size * strip.count) +
         static_cast<std::size_t>(x);
}

/// The length that [low, high) and [otherLow, otherHigh) share.
long long overlap(long long low, long long high, long long otherLow, long long otherHigh) {
  return std::max(0LL, std::min(high, otherHigh) - std::max(low, otherLow));
}

class Mean {
 public:
  void add(std::uint32_t color, bool transparent, long long weight) {
    all_ += weight;
    if (transparent) return;
    opaque_ += weight;
    for (int i = 0; i < kChannelCount; ++i) {
      sums_[static_cast<std::size_t>(i)] += weight * ((color >> (kChannelBits * i)) & kChannelMask);
    }
  }

  bool transparent() const { return opaque_ * 2 < all_ || opaque_ == 0; }

  std::uint32_t color() const {
    std::uint32_t color = 0;
    for (int i = 0; i < kChannelCount; ++i) {
      const long long rounded = (sums_[static_cast<std::size_t>(i)] + opaque_ / 2) / opaque_;
      color |= static_cast<std::uint32_t>(rounded) << (kChannelBits * i);
    }
    return color;
  }

 private:
  long long all_ = 0;
  long long opaque_ = 0;
  std::array<long long, kChannelCount> sums_{};
};

/// Of the area that pixel (x, y) of an image of `size` pixels covers in image `image` of the strip.
Mean meanOfArea(const ImageStrip& strip, int image, int x, int y, int size) {
  // In units of 1 / size of the strip's pixels every edge is a whole number.
  const int from = strip.size;
  const auto edge = [](int pixel, int unit) { return static_cast<long long>(pixel) * unit; };
  Mean mean;
  for (int row = y * from / size; row * size < (y + 1) * from; ++row) {
    const long long height = overlap(edge(row, size), edge(row + 1, size), edge(y, from), edge(y + 1, from));
    for (int column = x * from / size; column * size < (x + 1) * from; ++column) {
      const long long width =
          overlap(edge(column, size), edge(column + 1, size), edge(x, from), edge(x + 1, from));
      const std::size_t index = indexOf(strip, image * from + column, row);
      mean.add(strip.pixels[index], strip.transparent[index], width * height);
    }
  }
  return mean;
}

}  // namespace

ImageStrip keyedStrip(int size, int count, std::vector<std::uint32_t> pixels,
                      std::uint32_t transparentColor) {
  ImageStrip strip{size, count, std::move(pixels), {}};
  strip.transparent.resize(strip.pixels.size());
  for (std::size_t i = 0; i < strip.pixels.size(); ++i) {
    strip.pixels[i] &= kColorMask;
    if (strip.pixels[i] != transparentColor) continue;
    strip.transparent[i] = true;
    strip.pixels[i] = 0;
  }
  return strip;
}

ImageStrip scaledStrip(const ImageStrip& strip, int size) {
  if (size == strip.size) return strip;
  ImageStrip scaled{size, strip.count, {}, {}};
  const std::size_t pixelCount =
      static_cast<std::size_t>(size) * static_cast<std::size_t>(size * strip.count);
  scaled.pixels.resize(pixelCount);
  scaled.transparent.resize(pixelCount, true);
  for (int image = 0; image < strip.count; ++image) {
    for (int y = 0; y < size; ++y) {
      for (int x = 0; x < size; ++x) {
        const Mean mean = meanOfArea(strip, image, x, y, size);
        if (mean.transparent()) continue;
        const std::size_t index = indexOf(scaled, image * size + x, y);
        scaled.pixels[index] = mean.color();
        scaled.transparent[index] = false;
      }
    }
  }
  return scaled;
}

int bestFactor(const std::vector<bool>& available, int zoom) {
  constexpr int kPercent = 100;
  int best = 0;
  for (int factor = 1; factor <= static_cast<int>(available.size()); ++factor) {
    if (!available[static_cast<std::size_t>(factor - 1)]) continue;
    best = factor;
    if (factor * kPercent >= zoom) break;
  }
  return best;
}

}  // namespace pocketshell
