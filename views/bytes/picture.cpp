#include "views/bytes/picture.h"

#include <algorithm>
#include <limits>
#include <vector>
#include <wincodec.h>

#include "owners/com_handles.h"
#include "owners/ole_functions.h"

namespace {

constexpr std::uint32_t kBytesPerPoint = 4;
constexpr std::uint32_t kWhite = 255;

const GUID& containerOf(PictureFormat format) {
  switch (format) {
    case PictureFormat::jpeg:
      return GUID_ContainerFormatJpeg;
    case PictureFormat::gif:
      return GUID_ContainerFormatGif;
    case PictureFormat::bmp:
      return GUID_ContainerFormatBmp;
    case PictureFormat::png:
      break;
  }
  return GUID_ContainerFormatPng;
}

/// The first frame, as points of blue, green, red and how much of them covers what is below.
ComPtr<IWICFormatConverter> openFrame(std::span<const std::uint8_t> bytes, PictureFormat format) {
  ComPtr<IWICImagingFactory> factory;
  ComPtr<IWICStream> stream;
  ComPtr<IWICBitmapDecoder> decoder;
  ComPtr<IWICBitmapFrameDecode> frame;
  ComPtr<IWICFormatConverter> points;
  const bool isOpen =
      bytes.size() <= std::numeric_limits<DWORD>::max() &&
      SUCCEEDED(ole::coCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_IWICImagingFactory, reinterpret_cast<void**>(factory.put()))) &&
      SUCCEEDED(factory->CreateStream(stream.put())) &&
      // It only reads them.
      SUCCEEDED(
          stream->InitializeFromMemory(const_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()))) &&
      SUCCEEDED(factory->CreateDecoder(containerOf(format), nullptr, decoder.put())) &&
      SUCCEEDED(decoder->Initialize(stream.get(), WICDecodeMetadataCacheOnDemand)) &&
      SUCCEEDED(decoder->GetFrame(0, frame.put())) &&
      SUCCEEDED(factory->CreateFormatConverter(points.put())) &&
      SUCCEEDED(points->Initialize(frame.get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone,
                                   nullptr, 0, WICBitmapPaletteTypeCustom));
  return isOpen ? std::move(points) : ComPtr<IWICFormatConverter>();
}

/// The size at which it fits into `room`, one point at least.
SIZE fitted(UINT width, UINT height, SIZE room) {
  const double scale =
      std::min({1.0, static_cast<double>(room.cx) / width, static_cast<double>(room.cy) / height});
  return {std::max(1L, static_cast<LONG>(width * scale)), std::max(1L, static_cast<LONG>(height * scale))};
}

/// A bitmap of three bytes for each point whose lines begin above.
UniqueBitmap makeBitmap(SIZE size, std::uint8_t** lines) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = size.cx;
  info.bmiHeader.biHeight = -size.cy;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
  return UniqueBitmap(
      CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, reinterpret_cast<void**>(lines), nullptr, 0));
}

std::size_t lineLengthOf(LONG width) {
  return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
}

/// Each point becomes the mean of those for which it stands.
class Shrinker {
 public:
  Shrinker(IWICFormatConverter& source, UINT width, UINT height, SIZE size)
      : source_(source), width_(width), height_(height), size_(size) {}

  bool shrinkInto(std::uint8_t* lines) {
    const std::size_t lineLength = lineLengthOf(size_.cx);
    for (LONG line = 0; line < size_.cy; ++line) {
      const UINT first = begin(line, height_, size_.cy);
      const UINT count = std::max(begin(line + 1, height_, size_.cy) - first, 1u);
      if (!readLines(first, count)) return false;
      for (LONG column = 0; column < size_.cx; ++column) {
        setMean(count, column, lines + static_cast<std::size_t>(line) * lineLength + 3 * column);
      }
    }
    return true;
  }

 private:
  static UINT begin(LONG place, UINT all, LONG parts) {
    return static_cast<UINT>(static_cast<std::uint64_t>(place) * all / static_cast<std::uint64_t>(parts));
  }

  bool readLines(UINT first, UINT count) {
    const UINT stride = width_ * kBytesPerPoint;
    points_.resize(std::size_t{stride} * count);
    const WICRect lines{0, static_cast<INT>(first), static_cast<INT>(width_), static_cast<INT>(count)};
    return SUCCEEDED(source_.CopyPixels(&lines, stride, static_cast<UINT>(points_.size()), points_.data()));
  }

  void setMean(UINT lineCount, LONG column, std::uint8_t* target) const {
    const UINT first = begin(column, width_, size_.cx);
    const UINT end = std::max(begin(column + 1, width_, size_.cx), first + 1);
    std::uint64_t sums[3] = {};
    for (UINT line = 0; line < lineCount; ++line) {
      for (UINT at = first; at < end; ++at) {
        const std::uint8_t* const point = &points_[(std::size_t{line} * width_ + at) * kBytesPerPoint];
        const std::uint32_t cover = point[3];
        for (int part = 0; part < 3; ++part) sums[part] += point[part] * cover + kWhite * (255 - cover);
      }
    }
    const std::uint64_t divisor = std::uint64_t{255} * lineCount * (end - first);
    for (int part = 0; part < 3; ++part) {
      target[part] = static_cast<std::uint8_t>((sums[part] + divisor / 2) / divisor);
    }
  }

  IWICFormatConverter& source_;
  UINT width_;
  UINT height_;
  SIZE size_;
  std::vector<std::uint8_t> points_;  // of the lines that become one
};

}  // namespace

UniqueBitmap decodePicture(std::span<const std::uint8_t> bytes, const PictureHead& head, SIZE room) {
  if (!mayBeDecoded(head) || room.cx < 1 || room.cy < 1) return {};
  const ComPtr<IWICFormatConverter> points = openFrame(bytes, head.format);
  UINT width = 0;
  UINT height = 0;
  if (!points || FAILED(points->GetSize(&width, &height)) || width == 0 || height == 0) return {};
  // The frame of an animation may have another size than the whole.
  if (std::uint64_t{width} * height > kMostPicturePoints) return {};
  const SIZE size = fitted(width, height, room);
  std::uint8_t* lines = nullptr;
  UniqueBitmap bitmap = makeBitmap(size, &lines);
  if (!bitmap || !Shrinker(*points.get(), width, height, size).shrinkInto(lines)) return {};
  return bitmap;
}

UniqueBitmap centredOnWhite(const UniqueBitmap& picture, SIZE size) {
  BITMAP about{};
  std::uint8_t* lines = nullptr;
  if (GetObjectW(picture.get(), sizeof(about), &about) == 0 || !about.bmBits) return {};
  UniqueBitmap bitmap = makeBitmap(size, &lines);
  if (!bitmap) return {};
  const std::size_t lineLength = lineLengthOf(size.cx);
  std::fill_n(lines, lineLength * static_cast<std::size_t>(size.cy), static_cast<std::uint8_t>(kWhite));
  const auto left = static_cast<std::size_t>((size.cx - about.bmWidth) / 2);
  const auto top = static_cast<std::size_t>((size.cy - about.bmHeight) / 2);
  for (std::size_t line = 0; line < static_cast<std::size_t>(about.bmHeight); ++line) {
    const auto* const from =
        static_cast<const std::uint8_t*>(about.bmBits) + line * static_cast<std::size_t>(about.bmWidthBytes);
    std::copy_n(from, 3 * static_cast<std::size_t>(about.bmWidth),
                lines + (top + line) * lineLength + 3 * left);
  }
  return bitmap;
}
