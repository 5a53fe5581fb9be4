#include "platform/store/odbc/driver/odbc_text.h"

#include "platform/store/rows/utf.h"

namespace store {

std::u16string toUtf16(std::string_view text) {
  std::u16string units(text.size(), u'\0');
  units.resize(decodeUtf8(text, units.data()));
  return units;
}

std::string fromWide(const SQLWCHAR* units, std::size_t count) {
  return toUtf8({reinterpret_cast<const char16_t*>(units), count});
}

}  // namespace store
