#include "platform/store/automation/module/module.h"

#include <atomic>
#include <utility>
#include <vector>

namespace automation {

namespace {

struct KeptTypeInfo {
  IID interfaceId;
  ComPtr<ITypeInfo> info;
};

HINSTANCE moduleInstance = nullptr;
std::atomic<long> useCount = 0;

// An object of the system, because the C++ library's mutex costs several times as much here.
class Section {
 public:
  Section() { InitializeCriticalSection(&section_); }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  ~Section() { DeleteCriticalSection(&section_); }
  void enter() { EnterCriticalSection(&section_); }
  void leave() { LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_{};
};
Section moduleSection;

// A process that ends with type information still kept must not release it from DllMain, when the
// automation library may be gone: the list is therefore never destroyed.
std::vector<KeptTypeInfo>& keptTypeInfos() {
  static auto* infos = new std::vector<KeptTypeInfo>();
  return *infos;
}

}  // namespace

void setModuleInstance(HINSTANCE instance) {
  moduleInstance = instance;
}

std::wstring modulePath() {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    const DWORD length = GetModuleFileNameW(moduleInstance, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

void addModuleUse() {
  ++useCount;
}
void removeModuleUse() {
  --useCount;
}
bool isModuleUsed() {
  return useCount != 0;
}

HRESULT typeInfoOf(REFIID interfaceId, ComPtr<ITypeInfo>* info) {
  const ModuleLock lock;
  std::vector<KeptTypeInfo>& infos = keptTypeInfos();
  for (const KeptTypeInfo& kept : infos) {
    if (kept.interfaceId == interfaceId) {
      *info = kept.info;
      return S_OK;
    }
  }
  ComPtr<ITypeLib> library;
  HRESULT result = LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, library.put());
  if (FAILED(result)) return result;
  ComPtr<ITypeInfo> found;
  result = library->GetTypeInfoOfGuid(interfaceId, found.put());
  if (FAILED(result)) return result;
  infos.push_back({interfaceId, found});
  *info = std::move(found);
  return S_OK;
}

void releaseTypeInfo() {
  const ModuleLock lock;
  keptTypeInfos().clear();
}

ModuleLock::ModuleLock() {
  moduleSection.enter();
}
ModuleLock::~ModuleLock() {
  moduleSection.leave();
}

}  // namespace automation
