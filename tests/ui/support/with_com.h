#pragma once

#include <objbase.h>

/// The program's dialogs and pictures live with COM.
class WithCom {
 public:
  WithCom() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~WithCom() { CoUninitialize(); }
  WithCom(const WithCom&) = delete;
  WithCom& operator=(const WithCom&) = delete;
};
