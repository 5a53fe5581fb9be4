#include "app/recovery/recovery_offer.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "app/window/program_state.h"
#include "owners/handles.h"
#include "records/user_prompts.h"
#include "views/form/field_zoom.h"
#include "views/shared/unowned_box.h"

namespace {

/// More than a dialog shows; the rest is in the file.
constexpr LONGLONG kMostBytes = 16 * 1024 * 1024;

struct Recovered {
  std::wstring text;
  std::uint64_t wholeLength = 0;  // of which `text` is the beginning
};

/// None when it can't be read.
std::optional<Recovered> contentOf(const std::filesystem::path& path) {
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER length{};
  if (!file || !GetFileSizeEx(file.get(), &length)) return std::nullopt;
  Recovered found;
  found.wholeLength = static_cast<std::uint64_t>(length.QuadPart) / sizeof(wchar_t);
  found.text.resize(static_cast<std::size_t>(std::min(length.QuadPart, kMostBytes)) / sizeof(wchar_t));
  DWORD read = 0;
  if (!ReadFile(file.get(), found.text.data(), static_cast<DWORD>(found.text.size() * sizeof(wchar_t)), &read,
                nullptr)) {
    return std::nullopt;
  }
  found.text.resize(read / sizeof(wchar_t));
  if (found.text.starts_with(L'\xFEFF')) {
    found.text.erase(0, 1);
    --found.wholeLength;
  }
  return found;
}

void refuse(const wchar_t* text) {
  showBox(mainWindow, text, kPromptCaption, MB_ICONEXCLAMATION);
}

void show(const std::filesystem::path& typed) {
  const std::optional<Recovered> content = contentOf(typed);
  if (!content) {
    refuse(L"What was typed can't be read.");
    return;
  }
  FieldZoom(L"What was typed", content->text.c_str(), true, content->wholeLength).run(mainWindow);
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
    if (answer == IDNO && !DeleteFileW(typed.c_str())) refuse(L"What was typed could not be thrown away.");
    if (answer != IDYES) return;
    show(typed);
  }
}
