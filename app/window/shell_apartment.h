#pragma once

#include <windows.h>

#include <objbase.h>

/// While this lives the calling thread is in an apartment of its own. The system's file dialogs need that:
/// from the multithreaded one, to which the thread belongs for the data-access components, some folders can't
/// be shown, and with an owner the dialog may never come (Microsoft's "Calling shell functions and interfaces
/// from a multithreaded apartment"). Objects made before stay usable: the multithreaded apartment goes on.
/// Where the thread can't change over, everything is as before. Destroyed by the same thread.
class ShellApartment {
 public:
  ShellApartment();
  ~ShellApartment();
  ShellApartment(const ShellApartment&) = delete;
  ShellApartment& operator=(const ShellApartment&) = delete;

 private:
  CO_MTA_USAGE_COOKIE usage_ = nullptr;
  bool hasLeft_ = false;  // the multithreaded one
  bool isIn_ = false;
};
