#include "app/recovery/recovery_offer.h"

#include <windows.h>

#include <algorithm>
#include <string>

#include "app/window/program_state.h"
#include "owners/handles.h"
#include "records/user_prompts.h"
#include "views/form/field_zoom.h"
#include "views/shared/unowned_box.h"

namespace {

/// More than a dialog shows; the rest is in the file.
constexpr LONGLONG kMostBytes = 16 * 1024 * 1024;

/// What the file holds, as far as it can be read.
std::wstring contentOf(const std::filesystem::path& path) {
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER length{};
  if (!file || !GetFileSizeEx(file.get(), &length)) return {};
  std::wstring text(static_cast<std::size_t>(std::min(length.QuadPart, kMostBytes)) / sizeof(wchar_t), L'\0');
  DWORD read = 0;
  if (!ReadFile(file.get(), text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &read, nullptr))
    return {};
  text.resize(read / sizeof(wchar_t));
  if (text.starts_with(L'\xFEFF')) text.erase(0, 1);
  return text;
}

}  // namespace

void offerRecovered(const std::filesystem::path& typed) {
  if (typed.empty()) return;
  const std::wstring question =
      L"Quivane was ended by a fault. What was typed and not stored then is kept in\n" + typed.wstring() +
      L"\n\nYes: show it.\nNo: throw it away.\nCancel: decide later.";
  while (GetFileAttributesW(typed.c_str()) != INVALID_FILE_ATTRIBUTES) {
    const int answer =
        showBox(mainWindow, question.c_str(), kPromptCaption, MB_YESNOCANCEL | MB_ICONEXCLAMATION);
    if (answer == IDNO) DeleteFileW(typed.c_str());
    if (answer != IDYES) return;
    FieldZoom(L"What was typed", contentOf(typed).c_str(), true).run(mainWindow);
  }
}
