#include "platform/store/automation/module/connection_string.h"

#include <optional>

#include "platform/store/automation/values/text.h"

namespace automation {

namespace {

struct Part {
  std::wstring_view name;
  std::wstring_view value;
};

/// Takes one part off the front of `rest`, with the semicolon behind it. Empty when the text does not
/// go on with "name=".
std::optional<Part> takePart(std::wstring_view* rest) {
  const std::size_t equals = rest->find(L'=');
  if (equals == std::wstring_view::npos || rest->find(L';') < equals) return std::nullopt;
  Part part;
  part.name = trimmed(rest->substr(0, equals));
  rest->remove_prefix(equals + 1);

  const std::size_t start = rest->find_first_not_of(L" \t");
  const wchar_t quote = start == std::wstring_view::npos ? L'\0' : (*rest)[start];
  std::size_t end = std::wstring_view::npos;
  if (quote == L'"' || quote == L'\'') end = rest->find(quote, start + 1);
  if (end != std::wstring_view::npos) {
    part.value = rest->substr(start + 1, end - start - 1);
    end = rest->find(L';', end);
  } else {
    end = rest->find(L';');
    part.value = trimmed(rest->substr(0, end));
  }
  rest->remove_prefix(end == std::wstring_view::npos ? rest->size() : end + 1);
  return part;
}

}  // namespace

ConnectionTarget readConnectionString(std::wstring_view text) {
  ConnectionTarget target;
  bool isList = false;
  std::wstring_view rest = text;
  while (const std::optional<Part> part = takePart(&rest)) {
    if (equalIgnoringCase(part->name, L"provider")) {
      target.provider = part->value;
      isList = true;
    } else if (equalIgnoringCase(part->name, L"data source")) {
      target.path = part->value;
      isList = true;
    }
  }
  // A path may itself hold "=" and ";".
  return isList ? target : ConnectionTarget{{}, std::wstring(text)};
}

}  // namespace automation
