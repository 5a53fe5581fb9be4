#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "platform/store/exchange/bytes/byte_source.h"

namespace store::exchange {

/// Where what is written out goes.
class ByteSink {
 public:
  virtual ~ByteSink() = default;
  /// Takes all of it, or fails with inputOutput.
  virtual Status write(std::string_view bytes) = 0;
};

/// A stream that is open, which outlives the sink.
class StreamSink : public ByteSink {
 public:
  explicit StreamSink(std::FILE* stream) : stream_(stream) {}
  Status write(std::string_view bytes) override;

 private:
  std::FILE* stream_;
};

/// A text in memory, which outlives the sink.
class TextSink : public ByteSink {
 public:
  explicit TextSink(std::string& text) : text_(text) {}
  Status write(std::string_view bytes) override {
    text_ += bytes;
    return {};
  }

 private:
  std::string& text_;
};

/// Gathers small pieces and hands them to a sink in large ones. A failure of the sink is kept and all that
/// comes behind it is dropped.
class TextOutput {
 public:
  /// `sink` outlives the output.
  explicit TextOutput(ByteSink& sink) : sink_(sink), buffer_(std::make_unique<char[]>(kCapacity)) {}

  void put(char character) {
    *room(1) = character;
    ++used_;
  }
  void put(std::string_view text) {
    if (text.size() > kCapacity) {
      handOver();
      if (status_) status_ = sink_.write(text);
      return;
    }
    char* place = room(text.size());
    if (!text.empty()) std::memcpy(place, text.data(), text.size());
    used_ += text.size();
  }
  /// Room for `count` bytes, at most 64 KiB; used() then says how many of them were used.
  char* room(std::size_t count) {
    if (kCapacity - used_ < count) handOver();
    return buffer_.get() + used_;
  }
  void used(std::size_t count) { used_ += count; }

  /// Hands over what was gathered.
  const Status& flush() {
    handOver();
    return status_;
  }
  /// Whether all went well so far.
  const Status& status() const { return status_; }

 private:
  void handOver() {
    if (status_ && used_ > 0) status_ = sink_.write({buffer_.get(), used_});
    used_ = 0;
  }

  static constexpr std::size_t kCapacity = 1 << 16;

  ByteSink& sink_;
  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  Status status_;
};

}  // namespace store::exchange
