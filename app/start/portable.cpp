#include "app/start/portable.h"

#include <cstring>

#include "base/program_folder.h"
#include "base/settings/settings_store.h"
#include "platform/pocketshell/kept_settings.h"
#include "resources/resource_ids.h"

namespace {

constexpr wchar_t kMarker[] = L"Quivane.portable";
constexpr wchar_t kSettings[] = L"Quivane.settings";
constexpr wchar_t kShellKey[] = L"Software\\MorvaleSoftware\\Pocket Shell";

/// The shell gives its callbacks no context.
const SettingsFile* shellFile = nullptr;

BOOL readShellNumber(const wchar_t* name, DWORD* number) {
  settings::Value value;
  if (shellFile->read(kShellKey, name, value) != SettingsFile::Found::value || value.type != REG_DWORD ||
      value.bytes.size() != sizeof(*number)) {
    return FALSE;
  }
  std::memcpy(number, value.bytes.data(), sizeof(*number));
  return TRUE;
}

BOOL writeShellNumber(const wchar_t* name, DWORD number) {
  return shellFile->write(kShellKey, name, REG_DWORD, &number, sizeof(number));
}

}  // namespace

PortableMode::PortableMode() {
  const std::filesystem::path folder = programFolder();
  if (GetFileAttributesW((folder / kMarker).c_str()) == INVALID_FILE_ATTRIBUTES) return;
  file_.emplace(folder / kSettings);
  shellFile = &*file_;
  SettingsStore::keepIn(shellFile);
  const HandheldSettings keeper{readShellNumber, writeShellNumber};
  HandheldKeepSettings(&keeper);
  findComponentsBeside(folder);
}

PortableMode::~PortableMode() {
  if (!isOn()) return;
  if (activation_ != 0) DeactivateActCtx(0, activation_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  HandheldKeepSettings(nullptr);
  SettingsStore::keepIn(nullptr);
  shellFile = nullptr;
}

/// By a manifest that is a resource of the program. Where that fails, opening a database tells that the
/// components are missing.
void PortableMode::findComponentsBeside(const std::filesystem::path& folder) {
  ACTCTXW description{};
  description.cbSize = sizeof(description);
  description.dwFlags =
      ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
  description.lpAssemblyDirectory = folder.c_str();
  description.hModule = GetModuleHandleW(nullptr);
  description.lpResourceName = MAKEINTRESOURCEW(IDR_COMPONENTS_MANIFEST);
  context_ = CreateActCtxW(&description);
  if (context_ != INVALID_HANDLE_VALUE && !ActivateActCtx(context_, &activation_)) activation_ = 0;
}
