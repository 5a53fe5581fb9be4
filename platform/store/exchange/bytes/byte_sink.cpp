#include "platform/store/exchange/bytes/byte_sink.h"

#include <cerrno>

namespace store::exchange {

Status StreamSink::write(std::string_view bytes) {
  errno = 0;
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) == bytes.size()) return {};
  return {ErrorCode::inputOutput, std::string("The output can't be written: ") + std::strerror(errno) + "."};
}

}  // namespace store::exchange
