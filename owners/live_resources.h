#pragma once

#include <array>
#include <atomic>
#include <cstddef>

/// What the owners of handles.h and com_handles.h can hold.
enum class ResourceKind : std::size_t {
  file,
  kernelObject,
  mutex,
  registryKey,
  module,
  font,
  brush,
  bitmap,
  icon,
  imageList,
  menu,
  deviceContext,
  window,
  hook,
  comPointer,
  bstr,
  variant,
};

inline constexpr std::size_t kResourceKindCount = static_cast<std::size_t>(ResourceKind::variant) + 1;

/// Counts of what is held at this moment in this module, kept by the owners. The system's own counts
/// (GetGuiResources, GetProcessHandleCount) are not to be had everywhere, and these name the kind.
class LiveResources {
 public:
  static long count(ResourceKind kind) noexcept { return counters_[static_cast<std::size_t>(kind)].load(); }
  static long countOfAll() noexcept;

  static void add(ResourceKind kind) noexcept { ++counters_[static_cast<std::size_t>(kind)]; }
  static void remove(ResourceKind kind) noexcept { --counters_[static_cast<std::size_t>(kind)]; }

 private:
  inline static std::array<std::atomic<long>, kResourceKindCount> counters_{};
};

inline long LiveResources::countOfAll() noexcept {
  long all = 0;
  for (const std::atomic<long>& counter : counters_) all += counter.load();
  return all;
}
