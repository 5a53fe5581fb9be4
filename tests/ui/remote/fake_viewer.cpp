// Stands in for the help viewer: writes its command line beside itself, and stays until it is let go.
#include <windows.h>

#include "owners/handles.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, ARRAYSIZE(path));
  const UniqueKernelObject release(OpenEventW(SYNCHRONIZE, FALSE, L"Local\\Quivane.Test.ReleaseViewer"));
  lstrcatW(path, L".txt");
  {
    const wchar_t* const line = GetCommandLineW();
    const UniqueFile note(CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, 0, nullptr));
    DWORD written = 0;
    WriteFile(note.get(), line, static_cast<DWORD>(lstrlenW(line)) * sizeof(wchar_t), &written, nullptr);
  }
  constexpr DWORD kPatience = 30'000;
  WaitForSingleObject(release.get(), kPatience);
  return 0;
}
