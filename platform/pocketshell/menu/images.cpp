#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "owners/control_handles.h"
#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu/image_strip.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "platform/pocketshell/zoom/zoom_figures.h"

using namespace pocketshell;

namespace {

constexpr int kImageSize = 16;
constexpr int kLargestFactor = 4;
constexpr int kIdStep = 1000;

WORD idOfFactor(WORD bitmapId, int factor) {
  return static_cast<WORD>(factor == 1 ? bitmapId : bitmapId + kIdStep * factor);
}

BITMAPINFO topDownFormat(int width, int height) {
  BITMAPINFO format{};
  format.bmiHeader.biSize = sizeof(format.bmiHeader);
  format.bmiHeader.biWidth = width;
  format.bmiHeader.biHeight = -height;
  format.bmiHeader.biPlanes = 1;
  format.bmiHeader.biBitCount = 32;
  format.bmiHeader.biCompression = BI_RGB;
  return format;
}

std::uint32_t asPixel(COLORREF color) {
  return static_cast<std::uint32_t>(GetRValue(color)) << 16 |
         static_cast<std::uint32_t>(GetGValue(color)) << 8 | GetBValue(color);
}

std::optional<ImageStrip> loadStrip(HINSTANCE instance, WORD id, int size, COLORREF transparent) {
  const UniqueBitmap bitmap(static_cast<HBITMAP>(
      LoadImageW(instance, MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
  BITMAP facts{};
  if (!bitmap || GetObjectW(bitmap.get(), sizeof(facts), &facts) == 0) return std::nullopt;
  const int width = static_cast<int>(facts.bmWidth);
  const int height = static_cast<int>(facts.bmHeight);
  if (height != size || width < size || width % size != 0) return std::nullopt;
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  BITMAPINFO format = topDownFormat(width, height);
  const UniqueMemoryDc dc(CreateCompatibleDC(nullptr));
  if (GetDIBits(dc.get(), bitmap.get(), 0, static_cast<UINT>(height), pixels.data(), &format,
                DIB_RGB_COLORS) != height) {
    return std::nullopt;
  }
  return keyedStrip(size, width / size, std::move(pixels), asPixel(transparent));
}

/// Images that may be higher than their drawings, which then stand in the middle.
struct TallStrip {
  const ImageStrip& strip;
  int height = 0;

  int width() const { return strip.size * strip.count; }
  int above() const { return (height - strip.size) / 2; }
};

UniqueBitmap colorBitmap(const TallStrip& tall) {
  const BITMAPINFO format = topDownFormat(tall.width(), tall.height);
  void* bits = nullptr;
  UniqueBitmap bitmap(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
  // Black, as what is transparent has to be, where nothing is copied.
  if (bitmap) {
    std::copy(tall.strip.pixels.begin(), tall.strip.pixels.end(),
              static_cast<std::uint32_t*>(bits) + tall.width() * tall.above());
  }
  return bitmap;
}

/// One bit for each pixel, set where it is transparent; the rows are whole 16-bit words.
UniqueBitmap maskBitmap(const TallStrip& tall) {
  const auto width = static_cast<std::size_t>(tall.width());
  const auto above = static_cast<std::size_t>(tall.above());
  const std::size_t rowLength = (width + 15) / 16 * 2;
  std::vector<BYTE> bits(rowLength * static_cast<std::size_t>(tall.height), BYTE{0xFF});
  for (std::size_t i = 0; i < tall.strip.transparent.size(); ++i) {
    const std::size_t x = i % width;
    const std::size_t y = above + i / width;
    if (!tall.strip.transparent[i]) {
      BYTE& eight = bits[y * rowLength + x / 8];
      eight = static_cast<BYTE>(eight & ~(0x80U >> (x % 8)));
    }
  }
  return UniqueBitmap(CreateBitmap(tall.width(), tall.height, 1, 1, bits.data()));
}

UniqueImageList imageListOf(const TallStrip& tall) {
  const UniqueBitmap color = colorBitmap(tall);
  const UniqueBitmap mask = maskBitmap(tall);
  UniqueImageList images(
      ImageList_Create(tall.strip.size, tall.height, ILC_COLOR24 | ILC_MASK, tall.strip.count, 0));
  if (!color || !mask || !images || ImageList_Add(images.get(), color.get(), mask.get()) < 0) return {};
  return images;
}

}  // namespace

HIMAGELIST HandheldLoadImages(HINSTANCE instance, WORD bitmapId, COLORREF transparent, int height) {
  std::vector<bool> available;
  for (int factor = 1; factor <= kLargestFactor; ++factor) {
    available.push_back(FindResourceW(instance, MAKEINTRESOURCEW(idOfFactor(bitmapId, factor)), RT_BITMAP) !=
                        nullptr);
  }
  const int zoom = presentZoom();
  const int factor = bestFactor(available, zoom);
  if (factor == 0) return nullptr;
  const auto strip = loadStrip(instance, idOfFactor(bitmapId, factor), kImageSize * factor, transparent);
  if (!strip) return nullptr;
  const ImageStrip scaled = scaledStrip(*strip, toMonitor(kImageSize, zoom));
  return imageListOf({scaled, std::max(height, scaled.size)}).release();
}

HICON HandheldLoadIcon(HINSTANCE instance, WORD iconId, int size) {
  const int length = toMonitor(size, presentZoom());
  return static_cast<HICON>(
      LoadImageW(instance, MAKEINTRESOURCEW(iconId), IMAGE_ICON, length, length, LR_DEFAULTCOLOR));
}
