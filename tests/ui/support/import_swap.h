#pragma once

#include <windows.h>

/// Puts a function of the test in the place of one that the program imports, as long as it lives. `import`
/// is the variable that the calls go through, as the compiler names it: `__imp_` and the function's name.
template <typename Function>
class ImportSwap {
 public:
  ImportSwap(Function& import, Function replacement) : import_(import), real_(import) { set(replacement); }
  ~ImportSwap() { set(real_); }
  ImportSwap(const ImportSwap&) = delete;
  ImportSwap& operator=(const ImportSwap&) = delete;

 private:
  void set(Function function) {
    DWORD access = 0;
    VirtualProtect(&import_, sizeof(import_), PAGE_READWRITE, &access);
    import_ = function;
    VirtualProtect(&import_, sizeof(import_), access, &access);
  }

  Function& import_;
  Function real_;
};
