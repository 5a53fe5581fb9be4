#include "platform/store/dsn/file_dsn.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <system_error>

#include "platform/store/rows/ascii_case.h"
#include "platform/store/rows/utf.h"

namespace store {
namespace {

constexpr std::string_view kHeading = "[ODBC]";
constexpr std::string_view kMark8 = "\xEF\xBB\xBF";
constexpr std::string_view kMark16Little = "\xFF\xFE";
constexpr std::string_view kMark16Big = "\xFE\xFF";
// As long as a first line can be with its mark and some blanks, in UTF-16.
constexpr std::size_t kBeginningBytes = 256;

Status refusal(const std::string& reason) {
  return {ErrorCode::cannotOpen, "The link to a server's database can't be used: " + reason};
}

Status refusalOfLine(std::size_t line, const std::string& reason) {
  return refusal("line " + std::to_string(line) + " " + reason);
}

bool isBlank(char sign) {
  return sign == ' ' || sign == '\t';
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string fromUtf16(std::string_view bytes, bool isLittle) {
  std::u16string units;
  for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) {
    const auto first = static_cast<unsigned char>(bytes[index]);
    const auto second = static_cast<unsigned char>(bytes[index + 1]);
    units.push_back(static_cast<char16_t>(isLittle ? second << 8 | first : first << 8 | second));
  }
  return toUtf8(units);
}

/// The text as UTF-8 without its byte-order mark.
std::string decoded(std::string_view bytes) {
  if (bytes.starts_with(kMark8)) return std::string(bytes.substr(kMark8.size()));
  if (bytes.starts_with(kMark16Little)) return fromUtf16(bytes.substr(2), true);
  if (bytes.starts_with(kMark16Big)) return fromUtf16(bytes.substr(2), false);
  return std::string(bytes);
}

bool isUtf8(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  units.resize(decodeUtf8(text, units.data()));
  return toUtf8(units) == text;
}

/// Takes the first line off `*rest`; it ends with CR, LF or both.
std::string_view takeLine(std::string_view* rest) {
  const std::size_t end = std::min(rest->find_first_of("\r\n"), rest->size());
  const std::string_view line = rest->substr(0, end);
  const bool isPair = rest->substr(end, 2) == "\r\n";
  rest->remove_prefix(std::min(end + (isPair ? 2 : 1), rest->size()));
  return line;
}

bool isOneOf(std::string_view keyword, std::initializer_list<std::string_view> others) {
  return std::any_of(others.begin(), others.end(),
                     [&](std::string_view other) { return equalsIgnoringCase(keyword, other); });
}

/// {value} with inner closing braces doubled, as the driver manager writes one; anything else as it stands.
std::string unbraced(std::string_view value) {
  if (value.size() < 2 || value.front() != '{' || value.back() != '}') return std::string(value);
  std::string plain;
  const std::string_view inner = value.substr(1, value.size() - 2);
  for (std::size_t index = 0; index < inner.size(); ++index) {
    plain.push_back(inner[index]);
    if (inner[index] == '}' && inner.substr(index + 1, 1) == "}") ++index;
  }
  return plain;
}

/// `rest` are the lines behind the heading, which is line 1.
Status readEntries(std::string_view rest, FileDsn* dsn) {
  for (std::size_t number = 2; !rest.empty(); ++number) {
    const std::string_view line = trimmed(takeLine(&rest));
    if (line.empty() || line.front() == ';') continue;
    if (line.front() == '[') return {};
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos) return refusalOfLine(number, "is not KEYWORD=value.");
    const std::string_view keyword = trimmed(line.substr(0, sign));
    if (keyword.empty()) return refusalOfLine(number, "has no keyword before the =.");
    if (keyword.find_first_of("[]{}(),;?*!@\\") != std::string_view::npos) {
      return refusalOfLine(number, "has a sign in its keyword that no keyword can have.");
    }
    if (isOneOf(keyword, {"FILEDSN", "SAVEFILE"})) {
      return refusalOfLine(number, "leads to another file, which is not followed.");
    }
    // The first one counts, as in the driver manager.
    if (dsn->find(keyword) != nullptr) continue;
    dsn->entries.push_back({std::string(keyword), unbraced(trimmed(line.substr(sign + 1)))});
  }
  return {};
}

std::filesystem::path pathOf(const std::string& utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

/// At most `most` bytes of the ordinary file at `path`; false when it can't be read.
bool readBytes(const std::string& path, std::size_t most, std::string* bytes) {
  if (path.find('\0') != std::string::npos) return false;
  std::error_code error;
  // The opening of anything else might wait for somebody who never comes.
  if (!std::filesystem::is_regular_file(pathOf(path), error) || error) return false;
  std::ifstream file(pathOf(path), std::ios::binary);
  if (!file) return false;
  bytes->assign(most, '\0');
  file.read(bytes->data(), static_cast<std::streamsize>(most));
  bytes->resize(static_cast<std::size_t>(file.gcount()));
  return !file.bad();
}

}  // namespace

const std::string* FileDsn::find(std::string_view keyword) const {
  for (const Entry& entry : entries) {
    if (equalsIgnoringCase(entry.keyword, keyword)) return &entry.value;
  }
  return nullptr;
}

bool isFileDsn(std::string_view beginning) {
  const std::string text = decoded(beginning.substr(0, kBeginningBytes));
  std::string_view rest = text;
  return equalsIgnoringCase(trimmed(takeLine(&rest)), kHeading) && !isBlank(text.front());
}

Status readFileDsn(std::string_view bytes, FileDsn* dsn) {
  if (bytes.size() > kMostFileDsnBytes) return refusal("it is too long to be one.");
  if (!isFileDsn(bytes)) return refusal("its first line is not [ODBC].");
  const std::string text = decoded(bytes);
  if (text.find('\0') != std::string::npos) return refusal("it holds a zero character.");
  if (!isUtf8(text)) return refusal("it is not UTF-8; save it as UTF-8.");
  std::string_view rest = text;
  takeLine(&rest);
  FileDsn read;
  if (Status status = readEntries(rest, &read); !status) return status;
  const std::string* driver = read.find("DRIVER");
  const std::string* source = read.find("DSN");
  if ((driver == nullptr || driver->empty()) && (source == nullptr || source->empty())) {
    return refusal("it names no driver (DRIVER=...).");
  }
  *dsn = std::move(read);
  return {};
}

std::string connectionTextOf(const FileDsn& dsn) {
  std::string text;
  // No longer text is moved about in memory, where a password would stay.
  std::size_t most = 0;
  for (const FileDsn::Entry& entry : dsn.entries) most += entry.keyword.size() + 2 * entry.value.size() + 4;
  text.reserve(most);
  for (const FileDsn::Entry& entry : dsn.entries) {
    // Without braces PostgreSQL's driver takes a plus for a blank, and signs out of per cents.
    const bool isPlain = entry.value.find_first_of("[]{}(),;?*=!@+% \t") == std::string::npos;
    text += entry.keyword + "=";
    if (isPlain && !equalsIgnoringCase(entry.keyword, "DRIVER")) {
      text += entry.value;
    } else {
      text += '{';
      for (const char sign : entry.value) {
        text += sign;
        if (sign == '}') text += sign;
      }
      text += '}';
    }
    text += ';';
  }
  return text;
}

bool isFileDsnAt(const std::string& path) {
  std::string bytes;
  return readBytes(path, kBeginningBytes, &bytes) && isFileDsn(bytes);
}

Status readFileDsnAt(const std::string& path, FileDsn* dsn) {
  std::string bytes;
  if (!readBytes(path, kMostFileDsnBytes + 1, &bytes)) return refusal("the file can't be read.");
  return readFileDsn(bytes, dsn);
}

}  // namespace store
