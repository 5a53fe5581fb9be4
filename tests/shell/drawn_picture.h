#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

/// A white picture in memory to draw into; no display is needed.
class DrawnPicture {
 public:
  DrawnPicture(int width, int height) : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO description{};
    description.bmiHeader.biSize = sizeof(description.bmiHeader);
    description.bmiHeader.biWidth = width;
    description.bmiHeader.biHeight = -height;
    description.bmiHeader.biPlanes = 1;
    description.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(dc_, &description, DIB_RGB_COLORS, &bits, nullptr, 0);
    former_ = SelectObject(dc_, bitmap_);
    pixels_ = static_cast<const std::uint32_t*>(bits);
    PatBlt(dc_, 0, 0, width, height, WHITENESS);
  }
  ~DrawnPicture() {
    SelectObject(dc_, former_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
  }
  DrawnPicture(const DrawnPicture&) = delete;
  DrawnPicture& operator=(const DrawnPicture&) = delete;

  HDC dc() const { return dc_; }

  std::vector<std::uint32_t> pixels() const {
    GdiFlush();
    return {pixels_, pixels_ + static_cast<std::ptrdiff_t>(width_) * height_};
  }

 private:
  int width_;
  int height_;
  HDC dc_;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ former_ = nullptr;
  const std::uint32_t* pixels_ = nullptr;
};
