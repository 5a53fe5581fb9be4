#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Keys with values, as a registry holds them, and their text in the form in which the system's registry
/// editor exports and imports them.
namespace settings {

struct Value {
  DWORD type = REG_NONE;
  std::vector<BYTE> bytes;
  bool operator==(const Value&) const = default;
};

/// Names of keys and values are the same in any letter case.
struct LessIgnoringCase {
  bool operator()(const std::wstring& left, const std::wstring& right) const noexcept;
};

using Values = std::map<std::wstring, Value, LessIgnoringCase>;
/// By the path below HKEY_CURRENT_USER. A key may be there without values.
using Keys = std::map<std::wstring, Values, LessIgnoringCase>;

/// The keys that `text` describes; lines that are not understood are passed over. Nothing when it does not
/// begin as such a text does.
std::optional<Keys> keysOf(std::wstring_view text);

/// Reads back as the same keys, whatever the values hold.
std::wstring textOf(const Keys& keys);

}  // namespace settings
