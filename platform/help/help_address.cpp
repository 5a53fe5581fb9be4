#include "platform/help/help_address.h"

#include <windows.h>

#include <string_view>

namespace help {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";
constexpr std::string_view kPlainSigns = "/:-._~";

std::string utf8Of(const std::wstring& text) {
  const std::u8string bytes = std::filesystem::path(text).generic_u8string();
  return {bytes.begin(), bytes.end()};
}

bool isPlain(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         kPlainSigns.find(byte) != std::string_view::npos;
}

std::string escaped(const std::string& text) {
  std::string address;
  for (const char byte : text) {
    if (isPlain(byte)) {
      address += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      address += '%';
      address += kDigits[value >> 4];
      address += kDigits[value & 15];
    }
  }
  return address;
}

}  // namespace

std::string unixNameOf(const std::filesystem::path& path) {
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
  if (!found) return {};
  // By way of void*, because the two function types have nothing in common.
  using GetUnixName = char*(CDECL*)(const wchar_t*);
  char* const name = reinterpret_cast<GetUnixName>(reinterpret_cast<void*>(found))(path.c_str());
  if (!name) return {};
  const std::string copy = name;
  HeapFree(GetProcessHeap(), 0, name);
  return copy;
}

std::wstring nameForUser(const std::filesystem::path& path) {
  const std::string unixName = unixNameOf(path);
  if (unixName.empty()) return path.wstring();
  return std::filesystem::path(std::u8string(unixName.begin(), unixName.end())).generic_wstring();
}

std::string addressOf(const std::filesystem::path& path, const std::wstring& anchor) {
  std::string name = unixNameOf(path);
  if (name.empty()) name = utf8Of(path.wstring());
  // A drive's path gets a slash of its own; that of a shared folder begins with its computer's name.
  std::string address = name.starts_with("//") ? "file:" : name.starts_with('/') ? "file://" : "file:///";
  address += escaped(name);
  if (!anchor.empty()) address += '#' + escaped(utf8Of(anchor));
  return address;
}

std::string signpostTo(const std::string& address) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n<title>Quivane</title>\n"
         "<meta http-equiv=\"refresh\" content=\"0; url=" +
         address + "\">\n<p><a href=\"" + address + "\">The manual</a></p>\n</html>\n";
}

}  // namespace help
