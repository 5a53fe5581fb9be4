#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace store {

/// A sound SQLite file as bytes, and the places in it at which a damage can be aimed. Source of the format:
/// "Database File Format" in SQLite's documentation.
class DatabaseImage {
 public:
  explicit DatabaseImage(std::string bytes);

  const std::string& bytes() const { return bytes_; }
  std::size_t pageSize() const { return pageSize_; }
  std::size_t pageCount() const { return bytes_.size() / pageSize_; }

  /// Where the number of the next page stands: in the head, and in each page of the list of free pages.
  const std::vector<std::size_t>& freeTrunks() const { return freeTrunks_; }
  /// Where the number of the next page stands: in the cells that go on elsewhere, and in the pages that they
  /// go on in.
  const std::vector<std::size_t>& overflowLinks() const { return overflowLinks_; }
  /// Where the number of a page below stands in the pages of trees that have such.
  const std::vector<std::size_t>& childLinks() const { return childLinks_; }
  /// Where a number of 1 to 9 bytes begins: the length of a cell, and the first in its content.
  const std::vector<std::size_t>& numbers() const { return numbers_; }

 private:
  void readFreePages();
  void readTreePage(std::size_t page);
  void readCell(std::size_t offset, int pageType);
  std::size_t number(std::size_t offset, int length) const;
  std::size_t readNumber(std::size_t* offset) const;

  std::string bytes_;
  std::size_t pageSize_;
  std::vector<bool> isFree_;  // or goes on from a cell; by page
  std::vector<std::size_t> freeTrunks_;
  std::vector<std::size_t> overflowLinks_;
  std::vector<std::size_t> childLinks_;
  std::vector<std::size_t> numbers_;
};

/// Gets each damaged file and what was done to it.
using DamageVisitor = std::function<void(const std::string& what, const std::string& bytes)>;

/// Cut at each boundary of pages, and one byte before and behind it.
void visitTruncations(const DatabaseImage& image, const DamageVisitor& visit);
/// `count` times one byte made another, at places and with values that are the same for each `seed`.
void visitChangedBytes(const DatabaseImage& image, int count, unsigned seed, const DamageVisitor& visit);
/// Two pages in each other's place, and one in the place of both.
void visitSwappedPages(const DatabaseImage& image, const DamageVisitor& visit);
/// Links that lead back, to the first page, nowhere and beyond the end.
void visitLinks(const DatabaseImage& image, const std::vector<std::size_t>& links,
                const DamageVisitor& visit);
/// Lists of free pages that say they hold more than a page can.
void visitFreeCounts(const DatabaseImage& image, const DamageVisitor& visit);
/// Lengths and types as large as nine bytes can say, and lengths that don't end.
void visitHugeNumbers(const DatabaseImage& image, const DamageVisitor& visit);

}  // namespace store
