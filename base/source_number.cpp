#include "base/source_number.h"

#include <windows.h>

namespace {

/// A path can't hold what separates it from the name.
std::wstring sourceText(const wchar_t* file, bool isQuery, const wchar_t* name) {
  std::wstring path = file;
  CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
  return path + (isQuery ? L"\n?" : L"\n") + name;
}

}  // namespace

std::uint64_t numberOf(const std::wstring& text) {
  constexpr std::uint64_t kPrime = 1099511628211U;
  std::uint64_t number = 14695981039346656037U;
  for (const wchar_t character : text) {
    number = (number ^ static_cast<std::uint64_t>(character)) * kPrime;
  }
  return number;
}

std::uint64_t numberOfSource(const wchar_t* file, bool isQuery, const wchar_t* name) {
  return numberOf(sourceText(file, isQuery, name)) | 1U;
}
