// A program that shows a window and nothing else: the least that a start can take.
#include <windows.h>

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
  WNDCLASSW description{};
  description.lpfnWndProc = DefWindowProcW;
  description.hInstance = instance;
  description.lpszClassName = L"Empty";
  RegisterClassW(&description);
  CreateWindowExW(0, L"Empty", L"Empty", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 240, 320, nullptr, nullptr,
                  instance, nullptr);
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return 0;
}
