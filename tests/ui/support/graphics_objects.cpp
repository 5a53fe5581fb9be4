#include "tests/ui/support/graphics_objects.h"

#include <cstddef>

namespace {

/// The table of handles that the system shares with the process. Where its count is not to be had
/// otherwise, every entry in use is one of this process.
struct HandleEntry {
  void* object;
  DWORD owner;
  WORD unique;
  BYTE type;  ///< 0 for a free entry
  BYTE flags;
  void* user;
};
constexpr std::size_t kEntryCount = 0x4000;
constexpr std::size_t kTableInProcessBlock = 0xF8;
constexpr unsigned long kProcessBlockInThreadBlock = 0x60;

const HandleEntry* handleTable() {
  const auto* const block = reinterpret_cast<const std::byte*>(__readgsqword(kProcessBlockInThreadBlock));
  return *reinterpret_cast<const HandleEntry* const*>(block + kTableInProcessBlock);
}

}  // namespace

int graphicsObjectCount() {
  const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  if (told != 0) return static_cast<int>(told);
  const HandleEntry* const table = handleTable();
  int count = 0;
  for (std::size_t i = 0; table && i < kEntryCount; ++i) count += table[i].type != 0 ? 1 : 0;
  return count;
}
