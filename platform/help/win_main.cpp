// peghelp.exe, the help viewer: shows a topic of the manual that lies beside it in the user's browser.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/help/browser.h"
#include "platform/help/help_address.h"
#include "platform/help/help_topic.h"

namespace {

constexpr int kNotShown = 1;

std::filesystem::path programFolder() {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {
    path.resize(path.size() * 2);
    length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  return std::filesystem::path(path).parent_path();
}

/// The page to be opened for an anchor of `manual`. The anchor of an address gets lost on the way to many
/// browsers, so a page that leads there is put into the folder for temporary files; the manual itself where
/// that fails.
std::filesystem::path pageFor(const std::filesystem::path& manual, const std::wstring& anchor) {
  if (anchor.empty()) return manual;
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) return manual;
  const std::filesystem::path signpost = folder / (L"Quivane " + anchor + L".htm");
  std::ofstream file(signpost, std::ios::binary | std::ios::trunc);
  file << help::signpostTo(help::addressOf(manual, anchor));
  file.close();
  return file ? signpost : manual;
}

void tell(const wchar_t* what, const std::filesystem::path& path) {
  const std::wstring text = what + (L"\n" + help::nameForUser(path));
  MessageBoxW(nullptr, text.c_str(), L"Quivane", MB_ICONEXCLAMATION | MB_SETFOREGROUND);
}

int showTopic(const help::Topic& topic) {
  const std::filesystem::path folder = programFolder();
  std::filesystem::path manual = folder / topic.page;
  if (GetFileAttributesW(manual.c_str()) == INVALID_FILE_ATTRIBUTES) {
    tell(L"The manual is missing. Please put it beside the program again:", manual);
    return kNotShown;
  }
  if (help::showInBrowser(pageFor(manual, topic.anchor))) return 0;
  tell(L"Nothing was found that could show the manual. Please open it yourself:", manual);
  return kNotShown;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
  return showTopic(help::topicOf(GetCommandLineW()));
}
