#pragma once

#include <cassert>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

/// An array of 32-bit values or of (owning) pointers that grows by a fixed step, one element unless
/// told otherwise: sized for lists of tables, fields and queries. Sizes and capacities count elements.
template <typename T>
class GrowableArray {
 public:
  /// `growthStep` is at least 1.
  explicit GrowableArray(std::uint32_t growthStep = 1) noexcept : growthStep_(growthStep) {
    assert(growthStep > 0);
  }
  /// The array moved from is empty.
  GrowableArray(GrowableArray&& other) noexcept { swap(other); }
  GrowableArray& operator=(GrowableArray&& other) noexcept {
    GrowableArray taken(std::move(other));
    swap(taken);
    return *this;
  }
  GrowableArray(const GrowableArray&) = delete;
  GrowableArray& operator=(const GrowableArray&) = delete;
  ~GrowableArray() = default;

  std::uint32_t size() const noexcept { return size_; }
  std::uint32_t growthStep() const noexcept { return growthStep_; }

  /// `index` is below size().
  T& operator[](std::uint32_t index) noexcept {
    assert(index < size_);
    return elements_[index];
  }
  const T& operator[](std::uint32_t index) const noexcept {
    assert(index < size_);
    return elements_[index];
  }

  T* begin() noexcept { return elements_.get(); }
  T* end() noexcept { return elements_.get() + size_; }
  const T* begin() const noexcept { return elements_.get(); }
  const T* end() const noexcept { return elements_.get() + size_; }

  /// Keeps the first elements, as many as fit. Elements that come in are not cleared: 32-bit values
  /// and plain pointers hold anything, owning pointers hold null. 0 frees the buffer; else the capacity
  /// becomes `size` rounded up to a multiple of the growth step. Throws std::bad_alloc when memory runs
  /// out (a capacity beyond 32 bits counts as that); the array is then as before.
  void setSize(std::uint32_t size);

  /// Adds one element at the end. Throws as setSize does.
  void append(T value) {
    setSize(size_ + 1);
    elements_[size_ - 1] = std::move(value);
  }

  void swap(GrowableArray& other) noexcept {
    std::swap(capacity_, other.capacity_);
    std::swap(size_, other.size_);
    std::swap(growthStep_, other.growthStep_);
    std::swap(elements_, other.elements_);
  }

 private:
  std::uint32_t capacity_ = 0;
  std::uint32_t size_ = 0;
  std::uint32_t growthStep_ = 1;
  std::unique_ptr<T[]> elements_;
};

template <typename T>
void GrowableArray<T>::setSize(std::uint32_t size) {
  if (size == 0) {
    elements_.reset();
    capacity_ = 0;
    size_ = 0;
    return;
  }
  const std::uint64_t steps = (std::uint64_t{size} + growthStep_ - 1) / growthStep_;
  const std::uint64_t capacity = steps * growthStep_;
  if (capacity > UINT32_MAX) throw std::bad_alloc();
  if (capacity != capacity_) {
    auto elements = std::make_unique_for_overwrite<T[]>(capacity);
    const std::uint64_t kept = capacity < size_ ? capacity : size_;
    for (std::uint64_t i = 0; i < kept; ++i) elements[i] = std::move(elements_[i]);
    elements_ = std::move(elements);
    capacity_ = static_cast<std::uint32_t>(capacity);
  }
  size_ = size;
}
