#include "app/start/start_beside_windows.h"

#include <exception>

#include "app/start/component_registration.h"
#include "app/start/file_association.h"
#include "data/handles/component_loading.h"

StartBesideWindows::StartBesideWindows() : thread_(CreateThread(nullptr, 0, run, this, 0, nullptr)) {
  if (!thread_) run(this);
}

StartBesideWindows::~StartBesideWindows() {
  wait();
}

bool StartBesideWindows::areComponentsRegistered() {
  wait();
  return areRegistered_ ? *areRegistered_ : ::areComponentsRegistered();
}

void StartBesideWindows::wait() noexcept {
  if (thread_) WaitForSingleObject(thread_.get(), INFINITE);
  thread_.reset();
}

DWORD WINAPI StartBesideWindows::run(void* start) noexcept {
  auto& self = *static_cast<StartBesideWindows*>(start);
  try {
    self.areRegistered_ = ::areComponentsRegistered();
    if (*self.areRegistered_) loadAdoceClasses();
  } catch (const std::exception&) {
    // Whoever asks looks again.
  }
  try {
    registerFileAssociation();
  } catch (const std::exception&) {
    // The next start writes it.
  }
  return 0;
}
