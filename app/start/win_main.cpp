#include <windows.h>

#include <new>

#include "app/start/start_up.h"

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, LPWSTR lpCmdLine, int nShowCmd) {
  try {
    return runProgram(hInstance, lpCmdLine, nShowCmd);
  } catch (const std::bad_alloc&) {
    MessageBoxW(nullptr, L"There is not enough memory.", L"Quivane", MB_ICONEXCLAMATION);
    return kExitCannotStart;
  }
}
