#pragma once

#include <objbase.h>

/// The program's dialogs and pictures live with COM. Where the thread has it already it stays as it is.
class WithCom {
 public:
  WithCom() : begun_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~WithCom() {
    if (begun_) CoUninitialize();
  }
  WithCom(const WithCom&) = delete;
  WithCom& operator=(const WithCom&) = delete;

 private:
  bool begun_;
};
