#pragma once

#include <windows.h>

#include <atomic>
#include <type_traits>

template <typename Function, auto kWithout = 0>
class LateFunction;

/// A function of a module of the system for which the program's start is not to wait: the first call loads
/// the module, and it stays loaded. It is looked for in the system's folder only, and may be called by any
/// thread.
///
/// Where the module or the function can't be had a call has no effect and gives kWithout, so that has to be
/// what the function itself says when it fails. The linker's late imports are no choice: the run-time writes
/// an address into the import section at the first call, which newer versions of Wine don't always allow.
///
/// tests/packaging reads these definitions, to know which functions the program takes from the system: each
/// names the function in decltype(), and module and function in its braces: name{L"module.dll", "Function"}.
template <typename Result, typename... Arguments, auto kWithout>
class LateFunction<Result(Arguments...), kWithout> {
 public:
  constexpr LateFunction(const wchar_t* module, const char* name) noexcept : module_(module), name_(name) {}

  Result operator()(Arguments... arguments) const {
    if (const auto function = find()) return function(arguments...);
    if constexpr (!std::is_void_v<Result>) return static_cast<Result>(kWithout);
  }

 private:
  using Pointer = Result (*)(Arguments...);

  /// Threads that find it at once find the same. What wasn't found is looked for again.
  Pointer find() const noexcept {
    if (const Pointer function = found_.load()) return function;
    const HMODULE module = LoadLibraryExW(module_, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!module) return nullptr;
    const auto function = reinterpret_cast<Pointer>(reinterpret_cast<void*>(GetProcAddress(module, name_)));
    found_.store(function);
    return function;
  }

  const wchar_t* module_;
  const char* name_;
  mutable std::atomic<Pointer> found_{nullptr};
};
