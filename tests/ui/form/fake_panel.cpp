#include "tests/ui/form/fake_panel.h"

#include "platform/pocketshell/aygshell.h"
#include "views/shared/sip_state.h"

// The import that the program calls through, as the compiler names it.
extern "C" decltype(&SHSipInfo) __imp_SHSipInfo;  // NOLINT(bugprone-reserved-identifier)

namespace {

decltype(&SHSipInfo) realSipInfo = nullptr;
SIPINFO panel;
bool answers = true;

BOOL answer(UINT action, UINT, void* info, UINT) {
  auto* const wanted = static_cast<SIPINFO*>(info);
  if (!answers || action != SPI_GETSIPINFO || wanted->cbSize != sizeof(SIPINFO)) return FALSE;
  *wanted = panel;
  return TRUE;
}

void setImport(decltype(&SHSipInfo) function) {
  DWORD access = 0;
  VirtualProtect(&__imp_SHSipInfo, sizeof(__imp_SHSipInfo), PAGE_READWRITE, &access);
  __imp_SHSipInfo = function;
  VirtualProtect(&__imp_SHSipInfo, sizeof(__imp_SHSipInfo), access, &access);
}

}  // namespace

FakePanel::FakePanel() {
  realSipInfo = __imp_SHSipInfo;
  answers = true;
  sipState = {};
  putDown();
  setImport(answer);
}

FakePanel::~FakePanel() {
  setImport(realSipInfo);
  sipState = {};
}

void FakePanel::raise(int top, int height) {
  panel = {};
  panel.cbSize = sizeof(panel);
  panel.fdwFlags = SIPF_ON | SIPF_DOCKED;
  panel.rcSipRect = {0, top, 240, top + height};
}

void FakePanel::putDown() {
  raise(214, 80);
  panel.fdwFlags = SIPF_DOCKED;
}

void FakePanel::undock() {
  raise(214, 80);
  panel.fdwFlags = SIPF_ON;
}

void FakePanel::fail() {
  answers = false;
}
