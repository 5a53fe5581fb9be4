#include "tests/store/hostile/damaged_images.h"

#include <algorithm>
#include <array>
#include <random>
#include <string_view>
#include <utility>

namespace store {

namespace {

constexpr std::size_t kHeadBytes = 100;
constexpr std::size_t kPageSizeOffset = 16;
constexpr std::size_t kFirstFreeOffset = 32;

constexpr int kInnerIndex = 2;
constexpr int kInnerTable = 5;
constexpr int kLeafIndex = 10;
constexpr int kLeafTable = 13;

bool isInner(int type) {
  return type == kInnerIndex || type == kInnerTable;
}
bool isTreePage(int type) {
  return isInner(type) || type == kLeafIndex || type == kLeafTable;
}

std::string pageNumber(std::size_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>(number >> shift & 0xFF));
  return bytes;
}

std::string at(std::size_t offset) {
  return " at " + std::to_string(offset);
}

}  // namespace

DatabaseImage::DatabaseImage(std::string bytes) : bytes_(std::move(bytes)) {
  pageSize_ = number(kPageSizeOffset, 2);
  isFree_.resize(pageCount());
  readFreePages();
  for (std::size_t page = 0; page < pageCount(); ++page) {
    if (!isFree_[page]) readTreePage(page);
  }
}

std::size_t DatabaseImage::number(std::size_t offset, int length) const {
  std::size_t value = 0;
  for (int index = 0; index < length; ++index) {
    value = value << 8 | static_cast<unsigned char>(bytes_[offset + static_cast<std::size_t>(index)]);
  }
  return value;
}

std::size_t DatabaseImage::readNumber(std::size_t* offset) const {
  std::size_t value = 0;
  for (int length = 1; length <= 8; ++length) {
    const auto byte = static_cast<unsigned char>(bytes_[(*offset)++]);
    value = value << 7 | (byte & 0x7F);
    if (byte < 0x80) return value;
  }
  return value << 8 | static_cast<unsigned char>(bytes_[(*offset)++]);
}

void DatabaseImage::readFreePages() {
  std::size_t link = kFirstFreeOffset;
  freeTrunks_.push_back(link);
  while (const std::size_t page = number(link, 4)) {
    link = (page - 1) * pageSize_;
    freeTrunks_.push_back(link);
    isFree_[page - 1] = true;
    const std::size_t count = number(link + 4, 4);
    for (std::size_t index = 0; index < count; ++index) isFree_[number(link + 8 + 4 * index, 4) - 1] = true;
  }
}

void DatabaseImage::readTreePage(std::size_t page) {
  const std::size_t start = page * pageSize_;
  const std::size_t head = page == 0 ? kHeadBytes : start;
  const int type = static_cast<unsigned char>(bytes_[head]);
  if (!isTreePage(type)) return;
  if (isInner(type)) childLinks_.push_back(head + 8);
  const std::size_t cells = head + (isInner(type) ? 12 : 8);
  const std::size_t count = number(head + 3, 2);
  for (std::size_t index = 0; index < count; ++index) readCell(start + number(cells + 2 * index, 2), type);
}

void DatabaseImage::readCell(std::size_t offset, int pageType) {
  if (isInner(pageType)) {
    childLinks_.push_back(offset);
    offset += 4;
  }
  numbers_.push_back(offset);
  if (pageType == kInnerTable) return;
  const std::size_t length = readNumber(&offset);
  if (pageType == kLeafTable) readNumber(&offset);
  numbers_.push_back(offset);
  // How much of a long content stays in the cell.
  const std::size_t most = pageType == kLeafTable ? pageSize_ - 35 : (pageSize_ - 12) * 64 / 255 - 23;
  if (length <= most) return;
  const std::size_t least = (pageSize_ - 12) * 32 / 255 - 23;
  const std::size_t even = least + (length - least) % (pageSize_ - 4);
  std::size_t link = offset + (even <= most ? even : least);
  overflowLinks_.push_back(link);
  while (const std::size_t next = number(link, 4)) {
    isFree_[next - 1] = true;
    link = (next - 1) * pageSize_;
    overflowLinks_.push_back(link);
  }
}

void visitTruncations(const DatabaseImage& image, const DamageVisitor& visit) {
  for (std::size_t length = 0; length <= image.bytes().size(); length += image.pageSize()) {
    for (const std::size_t cut : {length - 1, length, length + 1}) {
      if (cut < image.bytes().size()) visit("cut to " + std::to_string(cut), image.bytes().substr(0, cut));
    }
  }
}

void visitChangedBytes(const DatabaseImage& image, int count, unsigned seed, const DamageVisitor& visit) {
  std::mt19937 random(seed);
  for (int number = 0; number < count; ++number) {
    // The head, the schema and the beginnings of pages decide more than what the records hold.
    std::size_t offset = random() % image.bytes().size();
    if (number % 4 == 0) offset %= 2 * image.pageSize();
    if (number % 4 == 1) offset = offset / image.pageSize() * image.pageSize() + random() % 16;
    std::string bytes = image.bytes();
    const auto change = static_cast<char>(1 + random() % 255);
    bytes[offset] = static_cast<char>(bytes[offset] ^ change);
    visit("another byte" + at(offset) + ": " + std::to_string(static_cast<unsigned char>(bytes[offset])),
          bytes);
  }
}

void visitSwappedPages(const DatabaseImage& image, const DamageVisitor& visit) {
  const std::size_t size = image.pageSize();
  const auto page = [&](std::size_t index) {
    return std::string_view(image.bytes()).substr(index * size, size);
  };
  for (std::size_t first = 0; first < image.pageCount(); ++first) {
    for (const std::size_t distance : {1, 2, 7, 19}) {
      const std::size_t second = (first + distance) % image.pageCount();
      const std::string what = std::to_string(first) + " and " + std::to_string(second);
      std::string bytes = image.bytes();
      bytes.replace(first * size, size, page(second));
      visit("copied " + what, bytes);
      bytes.replace(second * size, size, page(first));
      visit("swapped " + what, bytes);
    }
  }
}

void visitLinks(const DatabaseImage& image, const std::vector<std::size_t>& links,
                const DamageVisitor& visit) {
  for (const std::size_t link : links) {
    const std::size_t own = link / image.pageSize() + 1;
    for (const std::size_t target :
         {own, std::size_t{1}, std::size_t{0}, own + 1, image.pageCount(), image.pageCount() + 1,
          std::size_t{0x7FFFFFFF}, std::size_t{0xFFFFFFFF}}) {
      std::string bytes = image.bytes();
      bytes.replace(link, 4, pageNumber(target));
      visit("a link" + at(link) + " to " + std::to_string(target), bytes);
    }
  }
}

void visitFreeCounts(const DatabaseImage& image, const DamageVisitor& visit) {
  for (std::size_t trunk = 1; trunk < image.freeTrunks().size(); ++trunk) {
    for (const std::size_t count :
         {image.pageSize() / 4 - 1, std::size_t{0x7FFFFFFF}, std::size_t{0xFFFFFFFF}}) {
      std::string bytes = image.bytes();
      const std::size_t offset = image.freeTrunks()[trunk] + 4;
      bytes.replace(offset, 4, pageNumber(count));
      visit("free pages" + at(offset) + ": " + std::to_string(count), bytes);
    }
  }
}

void visitHugeNumbers(const DatabaseImage& image, const DamageVisitor& visit) {
  using namespace std::string_view_literals;
  constexpr std::array kNumbers{"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv,
                                "\x87\xFF\xFF\xFF\x7F"sv,
                                "\x80\x80\x80\x80\x80\x80\x80\x80\x80"sv,
                                "\x8F\xFF\xFF\xFF\x7F"sv,
                                "\x7F"sv,
                                "\x00"sv,
                                "\x81\x00"sv};
  for (const std::size_t offset : image.numbers()) {
    for (std::size_t number = 0; number < kNumbers.size(); ++number) {
      std::string bytes = image.bytes();
      const std::size_t length = std::min(kNumbers[number].size(), bytes.size() - offset);
      bytes.replace(offset, length, kNumbers[number].substr(0, length));
      visit("number " + std::to_string(number) + at(offset), bytes);
    }
  }
}

}  // namespace store
