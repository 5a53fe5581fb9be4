#include "tests/ui/remote/possessions.h"

#include <cstddef>
#include <cstring>
#include <psapi.h>
#include <vector>
#include <winternl.h>

#include "owners/handles.h"
#include "tests/ui/remote/remote_window.h"
#include "tests/ui/support/graphics_objects.h"

namespace {

BOOL CALLBACK collect(HWND window, LPARAM list) {
  reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

int countWindows(DWORD processId) {
  std::vector<HWND> tops;
  EnumWindows(collect, reinterpret_cast<LPARAM>(&tops));
  std::erase_if(tops, [=](HWND window) { return remote::processOf(window) != processId; });
  std::vector<HWND> all = tops;
  for (const HWND top : tops) EnumChildWindows(top, collect, reinterpret_cast<LPARAM>(&all));
  return static_cast<int>(all.size());
}

// ---- The system's own table of handles

struct HandleEntry {
  void* object;
  ULONG_PTR process;
  ULONG_PTR handle;
  ULONG access;
  USHORT creator;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};

std::vector<HandleEntry> allHandles() {
  struct Head {
    ULONG_PTR count;
    ULONG_PTR reserved;
  };
  // The compiler's headers don't name it.
  constexpr int kExtendedHandles = 64;
  SYSTEM_INFORMATION_CLASS extendedHandles{};
  static_assert(sizeof extendedHandles == sizeof kExtendedHandles);
  std::memcpy(&extendedHandles, &kExtendedHandles, sizeof extendedHandles);
  constexpr std::size_t kMostBytes = std::size_t{1} << 28;
  std::vector<std::byte> bytes(std::size_t{1} << 16);
  ULONG needed = 0;
  while (NtQuerySystemInformation(extendedHandles, bytes.data(), static_cast<ULONG>(bytes.size()), &needed) !=
         0) {
    if (bytes.size() > kMostBytes) return {};
    bytes.resize(bytes.size() * 2);
  }
  Head head{};
  std::memcpy(&head, bytes.data(), sizeof head);
  std::vector<HandleEntry> entries(head.count);
  std::memcpy(entries.data(), bytes.data() + sizeof head, entries.size() * sizeof(HandleEntry));
  return entries;
}

void countHandles(DWORD processId, Possessions& possessions) {
  UniqueRegistryKey key;
  RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, key.put());
  const std::vector<HandleEntry> all = allHandles();
  const DWORD self = GetCurrentProcessId();
  USHORT keyType = 0;
  bool isKeyTypeKnown = false;
  for (const HandleEntry& entry : all) {
    if (entry.process != self || entry.handle != reinterpret_cast<ULONG_PTR>(key.get())) continue;
    keyType = entry.type;
    isKeyTypeKnown = true;
  }
  possessions.handles = isKeyTypeKnown ? 0 : -1;
  possessions.keys = isKeyTypeKnown ? 0 : -1;
  if (!isKeyTypeKnown) return;
  for (const HandleEntry& entry : all) {
    if (entry.process != processId) continue;
    ++(entry.type == keyType ? possessions.keys : possessions.handles);
  }
}

long usedMemory(HANDLE process) {
  PROCESS_MEMORY_COUNTERS counters{};
  if (!GetProcessMemoryInfo(process, &counters, sizeof(counters))) return -1;
  return static_cast<long>(counters.WorkingSetSize / 1024);
}

}  // namespace

Possessions possessionsOf(DWORD processId, HANDLE process) {
  Possessions possessions;
  possessions.windows = countWindows(processId);
  countHandles(processId, possessions);
  possessions.graphics = graphicsObjectCount(process);
  possessions.memory = usedMemory(process);
  return possessions;
}
