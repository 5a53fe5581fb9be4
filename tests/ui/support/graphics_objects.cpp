#include "tests/ui/support/graphics_objects.h"

#include <cstddef>
#include <vector>
#include <winternl.h>

namespace {

/// The table of handles that the system shares with each process. Where its count is not to be had
/// otherwise, every entry in use is one of that process.
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

}  // namespace

int graphicsObjectCount(HANDLE process) {
  const DWORD told = GetGuiResources(process, GR_GDIOBJECTS);
  if (told != 0) return static_cast<int>(told);
  PROCESS_BASIC_INFORMATION block{};
  ULONG length = 0;
  if (NtQueryInformationProcess(process, ProcessBasicInformation, &block, sizeof(block), &length) != 0)
    return -1;
  const void* table = nullptr;
  std::vector<HandleEntry> entries(kEntryCount);
  const auto* const place = reinterpret_cast<const std::byte*>(block.PebBaseAddress) + kTableInProcessBlock;
  if (!ReadProcessMemory(process, place, &table, sizeof(table), nullptr) ||
      !ReadProcessMemory(process, table, entries.data(), entries.size() * sizeof(HandleEntry), nullptr)) {
    return -1;
  }
  int count = 0;
  for (const HandleEntry& entry : entries) count += entry.type != 0 ? 1 : 0;
  return count;
}
