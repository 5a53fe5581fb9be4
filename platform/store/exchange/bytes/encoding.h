#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/store/exchange/bytes/byte_source.h"

namespace store::exchange {

/// How the characters of a file are written down. All text inside is UTF-8.
enum class Encoding { utf8, windows1252, utf16LittleEndian, utf16BigEndian };

/// "utf-8", "windows-1252", "utf-16le", "utf-16be".
std::string_view nameOf(Encoding encoding);
/// The encoding of such a name in any letter case, some other usual names of them included; empty for others.
std::optional<Encoding> encodingOf(std::string_view name);

/// Whether `text` is UTF-8. As in the engine, the three-byte forms of surrogates are let in, so that every
/// text of the file comes back as it was.
bool isWellFormed(std::string_view text);
/// `text` with U+FFFD in the place of the bytes that stand for no character.
std::string mended(std::string_view text);

/// The place of a byte in a file.
struct BytePlace {
  std::int64_t line = 0;    ///< 1-based, by the line feeds before it; 0 when there is no such byte
  std::int64_t offset = 0;  ///< how many bytes are in front of it
};

/// Finds out how `source` is encoded: by its byte-order mark, else UTF-8 when all of it is, else
/// Windows-1252; then `*notUtf8` is the first byte that is no UTF-8, unless null. May read all of it; leaves
/// it at its beginning.
Status detectEncoding(ByteSource& source, Encoding* encoding, BytePlace* notUtf8 = nullptr);

/// The characters of a source as UTF-8, without a byte-order mark. A byte that stands for no character comes
/// as the byte FF, which no well-formed text holds; in UTF-8 it comes as it is.
class TextSource {
 public:
  /// Begins at the present place of `source`, its beginning, and moves it on. `source` outlives this.
  TextSource(ByteSource& source, Encoding encoding);

  /// As ByteSource::read. `room` is at least 8.
  Status read(char* bytes, std::size_t room, std::size_t* count);
  /// How many bytes of the source were read so far.
  std::int64_t bytesRead() const { return bytesRead_; }

 private:
  Status readPlain(char* bytes, std::size_t room, std::size_t* count);
  Status fill();
  std::size_t convertSingleBytes(char* bytes, std::size_t room);
  std::size_t convertUnits(char* bytes, std::size_t room);

  ByteSource& source_;
  Encoding encoding_;
  std::int64_t bytesRead_ = 0;
  bool isAtStart_ = true;
  bool isAtEnd_ = false;
  std::vector<char> block_;  // what is still to be converted: [first_, last_)
  std::size_t first_ = 0;
  std::size_t last_ = 0;
};

}  // namespace store::exchange
