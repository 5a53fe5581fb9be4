// The bytes are a text of a file, or of a client, or the type that another program gave to a column.
#include <vector>

#include "platform/store/rows/field_type.h"
#include "platform/store/rows/utf.h"
#include "platform/store/rows/value.h"
#include "tests/fuzz/fuzz_target.h"

namespace {

std::u16string decoded(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  units.resize(store::decodeUtf8(text, units.data()));
  return units;
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  const std::string_view bytes = fuzz::textOf(data, length);

  const std::u16string shown = decoded(bytes);
  fuzz::require(decoded(store::toUtf8(shown)) == shown, "what is shown can be stored and is shown the same");

  std::u16string units(length / 2, u'\0');
  for (std::size_t index = 0; index < units.size(); ++index) {
    units[index] = static_cast<char16_t>(data[2 * index] << 8 | data[2 * index + 1]);
  }
  fuzz::require(decoded(store::toUtf8(units)) == units, "every text survives the way to the file and back");

  const store::FieldType type = store::fieldTypeOf(bytes);
  fuzz::require(type.definedSize >= 0, "no type has a negative size");

  store::Row row;
  row.addBytes(store::CellKind::text, data, length);
  row.addBytes(store::CellKind::blob, data, length / 2);
  fuzz::require(std::get<std::string>(valueOf(row.at(0))) == bytes, "a text is kept to the byte");
  fuzz::require(sameValue(row.at(1), store::Blob{std::string(bytes.substr(0, length / 2))}), "bytes as well");
  return 0;
}
