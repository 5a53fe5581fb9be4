#pragma once

#include <utility>

#include "owners/live_resources.h"

namespace handles {

/// What the traits of most resources share: null means "nothing is held".
template <typename Handle, ResourceKind kind>
struct NullTraits {
  using Value = Handle;
  static constexpr ResourceKind kKind = kind;
  static Value invalid() noexcept { return nullptr; }
};

}  // namespace handles

/// The owner of one resource of the system; closes it at the end. Traits says what it is:
///
///   using Value = ...;                                the handle, or a struct when closing needs more
///   static constexpr ResourceKind kKind = ...;
///   static Value invalid() noexcept;                  the value that means "nothing is held"
///   static void close(Value value) noexcept;          never called with the invalid value
///
/// Move-only; what is moved from holds nothing.
template <typename Traits>
class UniqueResource {
 public:
  using Value = typename Traits::Value;

  UniqueResource() noexcept = default;
  /// Takes over `value`, which may be the invalid one.
  explicit UniqueResource(Value value) noexcept { reset(value); }
  UniqueResource(UniqueResource&& other) noexcept { swap(other); }
  UniqueResource& operator=(UniqueResource&& other) noexcept {
    UniqueResource taken(std::move(other));
    swap(taken);
    return *this;
  }
  UniqueResource(const UniqueResource&) = delete;
  UniqueResource& operator=(const UniqueResource&) = delete;
  ~UniqueResource() { reset(); }

  Value get() const noexcept { return value_; }
  explicit operator bool() const noexcept { return !(value_ == Traits::invalid()); }

  /// Closes what is held, then holds `value`, which nobody else owns.
  void reset(Value value = Traits::invalid()) noexcept {
    // The old value leaves first: closing a window or an object can come back to this owner.
    const Value old = release();
    value_ = value;
    count(static_cast<bool>(*this));
    if (!(old == Traits::invalid())) Traits::close(old);
  }

  /// Gives the resource to the caller and holds nothing.
  [[nodiscard]] Value release() noexcept {
    count(false);
    return std::exchange(value_, Traits::invalid());
  }

  /// Closes what is held and gives the place where a call of the system stores a new value, which is
  /// then owned. Counts as held from here on until reset, release or the end, whether or not the call
  /// stored something.
  Value* put() noexcept {
    reset();
    count(true);
    return &value_;
  }

  void swap(UniqueResource& other) noexcept {
    std::swap(value_, other.value_);
    std::swap(counted_, other.counted_);
  }

 private:
  void count(bool held) noexcept {
    if (held == counted_) return;
    counted_ = held;
    if (held) {
      LiveResources::add(Traits::kKind);
    } else {
      LiveResources::remove(Traits::kKind);
    }
  }

  Value value_ = Traits::invalid();
  bool counted_ = false;
};
