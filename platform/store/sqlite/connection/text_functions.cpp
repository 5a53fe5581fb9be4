#include "platform/store/sqlite/connection/text_functions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/rows/text_needle.h"
#include "platform/store/rows/text_test.h"
#include "platform/store/rows/utf.h"
#include "platform/store/sqlite/connection/function_values.h"

namespace store {
namespace {

constexpr std::size_t kAsciiCount = 128;

/// What the functions of one connection have in common, made when it is needed.
class Letters {
 public:
  explicit Letters(const CaseFolding& (*source)()) : source_(source) {}

  const CaseFolding& folding() {
    if (folding_ == nullptr) take(source_());
    return *folding_;
  }

  /// Puts the folded `text` into `room`, which has text.size() bytes. False, and `room` has anything in it,
  /// when there is more than ASCII.
  bool foldAscii(std::string_view text, char* room) {
    folding();
    if (!isAsciiKept_) return false;
    unsigned char all = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
      const auto byte = static_cast<unsigned char>(text[index]);
      all |= byte;
      room[index] = ascii_[byte % kAsciiCount];
    }
    return all < kAsciiCount;
  }

  std::string folded(std::string_view text) {
    std::u16string units(text.size(), u'\0');
    units.resize(decodeUtf8(text, units.data()));
    const CaseFolding& letters = folding();
    for (char16_t& unit : units) unit = letters.of(unit);
    return toUtf8(units);
  }

 private:
  void take(const CaseFolding& letters) {
    folding_ = &letters;
    for (std::size_t byte = 0; byte < kAsciiCount; ++byte) {
      const char16_t unit = letters.of(static_cast<char16_t>(byte));
      isAsciiKept_ &= unit < kAsciiCount;
      ascii_[byte] = static_cast<char>(unit);
    }
  }

  const CaseFolding& (*source_)();
  const CaseFolding* folding_ = nullptr;
  std::array<char, kAsciiCount> ascii_{};
  bool isAsciiKept_ = true;
};

Letters& lettersOf(sqlite3_context* context) {
  return *static_cast<Letters*>(sqlite3_user_data(context));
}

void fold(sqlite3_context* context, int /*count*/, sqlite3_value** values) {
  sqlite3_value* const value = values[0];
  if (sqlite3_value_type(value) != SQLITE_TEXT) {
    sqlite3_result_value(context, value);
    return;
  }
  try {
    const Cell cell = cellOf(value, CellKind::text);
    Letters& letters = lettersOf(context);
    constexpr std::size_t kShort = 256;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): as much as is written is read
    std::array<char, kShort> room;
    if (cell.bytes.size() <= kShort && letters.foldAscii(cell.bytes, room.data())) {
      sqlite3_result_text64(context, room.data(), cell.bytes.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
      return;
    }
    const std::string text = letters.folded(cell.bytes);
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

/// What a file may hold in a column of doubles is shown with six decimals, whole numbers elsewhere by their
/// digits.
class PlainTexts : public ValueTexts {
 public:
  bool writesPlainIntegers() const override { return true; }
  std::u16string_view numberSigns() const override { return u"-.infa"; }
  bool textOf(const Cell& /*cell*/, const FieldType& /*type*/, std::u16string* /*text*/) override {
    return false;
  }
};

/// A text that is looked for, kept as long as the statement runs with it.
class Wanted {
 public:
  explicit Wanted(const TextNeedle& needle)
      : needle_(needle),
        wholeNumbers_(columnOf(TypeCode::integer), {0}, needle, texts_),
        others_(columnOf(TypeCode::real), {0}, needle, texts_) {}

  bool occursIn(sqlite3_value* value) {
    const CellKind kind = kindOf(value);
    const bool isWhole = kind == CellKind::integer;
    TextTest& test = isWhole ? wholeNumbers_ : others_;
    if (test.ignores(0, kind)) return false;
    const Cell cell = cellOf(value, kind);
    return kind == CellKind::text ? needle_.occursIn(cell.bytes) : test.isWanted(0, cell);
  }

 private:
  static std::vector<Column> columnOf(TypeCode type) {
    std::vector<Column> columns(1);
    columns.front().type.code = type;
    return columns;
  }

  PlainTexts texts_;
  TextNeedle needle_;
  TextTest wholeNumbers_;
  TextTest others_;
};

void drop(void* wanted) {
  delete static_cast<Wanted*>(wanted);  // NOLINT(cppcoreguidelines-owning-memory): SQLite keeps it
}

std::unique_ptr<Wanted> makeWanted(sqlite3_context* context, sqlite3_value* text) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(text));
  const std::string_view utf8(bytes != nullptr ? bytes : "",
                              static_cast<std::size_t>(sqlite3_value_bytes(text)));
  std::u16string units(utf8.size(), u'\0');
  units.resize(decodeUtf8(utf8, units.data()));
  return std::make_unique<Wanted>(TextNeedle(units, &lettersOf(context).folding()));
}

void contains(sqlite3_context* context, int count, sqlite3_value** values) {
  if (count < 2) {
    sqlite3_result_error(context, "quivane_contains needs a text and at least one value", -1);
    return;
  }
  if (sqlite3_value_type(values[0]) == SQLITE_NULL) return;
  try {
    auto* wanted = static_cast<Wanted*>(sqlite3_get_auxdata(context, 0));
    std::unique_ptr<Wanted> made;
    if (wanted == nullptr) {
      made = makeWanted(context, values[0]);
      wanted = made.get();
    }
    const bool isFound = std::any_of(values + 1, values + count,
                                     [&](sqlite3_value* value) { return wanted->occursIn(value); });
    // SQLite may drop it at once, when the text is another one for each row.
    if (made) sqlite3_set_auxdata(context, 0, made.release(), drop);
    sqlite3_result_int(context, isFound ? 1 : 0);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

void forget(void* letters) {
  delete static_cast<Letters*>(letters);  // NOLINT(cppcoreguidelines-owning-memory): SQLite keeps it
}

}  // namespace

int addTextFunctions(sqlite3* connection, const CaseFolding& (*folding)()) {
  struct Function {
    const char* name;
    int count;
    void (*call)(sqlite3_context* context, int count, sqlite3_value** values);
  };
  static constexpr std::array kFunctions = {Function{"quivane_fold", 1, fold},
                                            Function{"quivane_contains", -1, contains}};
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;
  for (const Function& function : kFunctions) {
    auto letters = std::make_unique<Letters>(folding);
    // SQLite forgets them also when it fails.
    const int result = sqlite3_create_function_v2(connection, function.name, function.count, kFlags,
                                                  letters.release(), function.call, nullptr, nullptr, forget);
    if (result != SQLITE_OK) return result;
  }
  return SQLITE_OK;
}

}  // namespace store
