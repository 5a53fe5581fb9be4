#include "platform/pocketshell/window/dialog_template.h"

#include <cstring>
#include <string>
#include <type_traits>

namespace pocketshell {

namespace {

constexpr int kBaseWidth = 6;
constexpr int kBaseHeight = 13;
constexpr WORD kExtendedMark = 0xFFFF;
constexpr WORD kOrdinalMark = 0xFFFF;

/// Reads numbers one after the other; past the end it gives zeros and has failed.
class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  template <typename Number>
  Number next() {
    Number number{};
    if (bytes_.size() - at_ < sizeof(number)) {
      failed_ = true;
      at_ = bytes_.size();
      return number;
    }
    std::memcpy(&number, bytes_.data() + at_, sizeof(number));
    at_ += sizeof(number);
    return number;
  }

  void skip(std::size_t length) {
    if (bytes_.size() - at_ < length) {
      failed_ = true;
      length = bytes_.size() - at_;
    }
    at_ += length;
  }

  void skipText() {
    while (!failed_ && next<WORD>() != 0) {
    }
  }

  /// A text, or 0xFFFF and a number.
  void skipTextOrOrdinal() {
    const WORD first = next<WORD>();
    if (first == kOrdinalMark) {
      skip(sizeof(WORD));
    } else if (first != 0) {
      skipText();
    }
  }

  void align() {
    const std::size_t over = at_ % sizeof(DWORD);
    if (over != 0) skip(sizeof(DWORD) - over);
  }

  std::size_t at() const { return at_; }
  bool failed() const { return failed_; }

 private:
  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
  bool failed_ = false;
};

template <typename Figures>
void readFigures(Reader& reader, Figures& into) {
  into.x = reader.next<SHORT>();
  into.y = reader.next<SHORT>();
  into.width = reader.next<SHORT>();
  into.height = reader.next<SHORT>();
}

DialogItem readItem(Reader& reader, bool extended) {
  DialogItem item;
  reader.skip(extended ? 3 * sizeof(DWORD) : 2 * sizeof(DWORD));
  readFigures(reader, item);
  item.id = extended ? reader.next<DWORD>() : reader.next<WORD>();
  reader.skipTextOrOrdinal();
  reader.skipTextOrOrdinal();
  const WORD dataLength = reader.next<WORD>();
  // The older kind counts the length itself.
  if (extended) {
    reader.skip(dataLength);
  } else if (dataLength > sizeof(WORD)) {
    reader.skip(dataLength - sizeof(WORD));
  }
  return item;
}

template <typename Number>
void append(std::vector<std::byte>& bytes, Number number) {
  const auto* const first = reinterpret_cast<const std::byte*>(&number);
  bytes.insert(bytes.end(), first, first + sizeof(number));
}

void appendAligned(std::vector<std::byte>& bytes, std::span<const std::byte> more) {
  bytes.resize((bytes.size() + sizeof(DWORD) - 1) / sizeof(DWORD) * sizeof(DWORD));
  bytes.insert(bytes.end(), more.begin(), more.end());
}

}  // namespace

std::optional<DialogTemplate> readDialogTemplate(std::span<const std::byte> bytes) {
  constexpr std::size_t kMarkLength = 2 * sizeof(WORD);
  DialogTemplate dialog;
  dialog.bytes = bytes;
  Reader probe(bytes);
  dialog.extended = probe.next<WORD>() == 1 && probe.next<WORD>() == kExtendedMark;
  Reader reader(bytes);
  if (dialog.extended) reader.skip(kMarkLength + 2 * sizeof(DWORD));
  dialog.style = reader.next<DWORD>();
  if (!dialog.extended) reader.skip(sizeof(DWORD));
  const int count = reader.next<WORD>();
  readFigures(reader, dialog);
  reader.skipTextOrOrdinal();
  reader.skipTextOrOrdinal();
  reader.skipText();
  dialog.headLength = reader.at();
  if ((dialog.style & DS_SETFONT) != 0) {
    reader.skip(dialog.extended ? 3 * sizeof(WORD) : sizeof(WORD));
    reader.skipText();
  }
  for (int i = 0; i < count && !reader.failed(); ++i) {
    reader.align();
    const std::size_t first = reader.at();
    dialog.items.push_back(readItem(reader, dialog.extended));
    dialog.itemBytes.push_back(bytes.subspan(first, reader.at() - first));
  }
  if (reader.failed()) return std::nullopt;
  return dialog;
}

std::vector<DWORD> dialogWithFont(const DialogTemplate& dialog, int points, std::wstring_view face) {
  const auto head = dialog.bytes.first(dialog.headLength);
  std::vector<std::byte> bytes(head.begin(), head.end());
  const DWORD style = dialog.style | DS_SETFONT;
  const std::size_t styleAt = dialog.extended ? 2 * sizeof(WORD) + 2 * sizeof(DWORD) : 0;
  if (bytes.size() < styleAt + sizeof(style)) return {};
  std::memcpy(bytes.data() + styleAt, &style, sizeof(style));
  append(bytes, static_cast<WORD>(points));
  if (dialog.extended) {
    append(bytes, static_cast<WORD>(FW_NORMAL));
    append(bytes, static_cast<BYTE>(FALSE));
    append(bytes, static_cast<BYTE>(DEFAULT_CHARSET));
  }
  for (const wchar_t character : face) append(bytes, static_cast<WORD>(character));
  append(bytes, WORD{0});
  for (const auto item : dialog.itemBytes) appendAligned(bytes, item);
  std::vector<DWORD> aligned((bytes.size() + sizeof(DWORD) - 1) / sizeof(DWORD));
  std::memcpy(aligned.data(), bytes.data(), bytes.size());
  return aligned;
}

RECT handheldPlaceOf(const DialogItem& item) {
  const LONG left = MulDiv(item.x, kBaseWidth, 4);
  const LONG top = MulDiv(item.y, kBaseHeight, 8);
  return {left, top, left + MulDiv(item.width, kBaseWidth, 4), top + MulDiv(item.height, kBaseHeight, 8)};
}

}  // namespace pocketshell
