#include "platform/store/exchange/formats/json_reader.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "platform/store/exchange/formats/json_surrogates.h"
#include "platform/store/exchange/formats/json_text.h"

namespace store::exchange {

namespace {

using Json = nlohmann::json;

// Deeper values are somebody's attack, not data.
constexpr std::size_t kMostDepth = 1000;

/// What stands between `start` and `end` in nested JSON as it is put together here; empty when it isn't so
/// made.
std::optional<std::string_view> between(std::string_view json, std::string_view start, std::string_view end) {
  if (!json.starts_with(start) || !json.ends_with(end) || json.size() < start.size() + end.size())
    return std::nullopt;
  return json.substr(start.size(), json.size() - start.size() - end.size());
}

/// Of an object that stands for a value of its own.
std::optional<std::pair<std::string, FieldForm>> specialValue(std::string_view json) {
  constexpr std::string_view kEnd = "\"}";
  constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
  if (json == "{\"real\":\"inf\"}") return std::pair("9e999", FieldForm::number);
  if (json == "{\"real\":\"-inf\"}") return std::pair("-9e999", FieldForm::number);
  for (const auto& [start, form] :
       {std::pair("{\"hex\":\"", FieldForm::bytes), std::pair("{\"texthex\":\"", FieldForm::textBytes)}) {
    const std::optional<std::string_view> digits = between(json, start, kEnd);
    if (digits && digits->find_first_not_of(kDigits) == std::string_view::npos)
      return std::pair(std::string(*digits), form);
  }
  return std::nullopt;
}

}  // namespace

/// Takes the members of one object from the parser.
class JsonReader::Handler : public nlohmann::json_sax<Json> {
 public:
  explicit Handler(JsonReader& reader) : reader_(reader) {}

  const std::string& problem() const { return problem_; }

  bool null() override { return isNested() ? add("null") : set("", FieldForm::missing); }
  bool boolean(bool value) override {
    const char* text = value ? "true" : "false";
    return isNested() ? add(text) : set(text, FieldForm::word);
  }
  bool number_integer(number_integer_t value) override { return number(std::to_string(value)); }
  bool number_unsigned(number_unsigned_t value) override { return number(std::to_string(value)); }
  bool number_float(number_float_t /*value*/, const string_t& text) override { return number(text); }
  bool string(string_t& text) override {
    if (isNested()) return addText(text);
    showSurrogates(&text);
    return set(std::move(text), FieldForm::string);
  }
  bool binary(binary_t& /*value*/) override { return false; }

  bool start_object(std::size_t /*count*/) override { return start('{'); }
  bool start_array(std::size_t /*count*/) override { return start('['); }
  bool end_object() override { return end('}'); }
  bool end_array() override { return end(']'); }

  bool key(string_t& name) override {
    if (isNested()) {
      addText(name);
      nested_ += ':';
      needsComma_ = false;
      return true;
    }
    showSurrogates(&name);
    index_ = reader_.indexOf(name);
    if (index_ < isSet_.size() && isSet_[index_]) return fail("the name \"" + name + "\" occurs twice");
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    const std::string text = error.what();
    const std::size_t colon = text.find(": ");
    return fail("it is no JSON: " + (colon != std::string::npos ? text.substr(colon + 2) : text));
  }

 private:
  bool isNested() const { return depth_ > 1; }

  bool fail(std::string problem) {
    if (problem_.empty()) problem_ = std::move(problem);
    return false;
  }

  bool set(std::string text, FieldForm form) {
    if (isSet_.size() <= index_) isSet_.resize(index_ + 1);
    isSet_[index_] = true;
    reader_.values_[index_].text = std::move(text);
    reader_.values_[index_].form = form;
    return true;
  }

  bool number(std::string text) { return isNested() ? add(text) : set(std::move(text), FieldForm::number); }

  bool add(std::string_view text) {
    if (needsComma_) nested_ += ',';
    nested_ += text;
    needsComma_ = true;
    return true;
  }

  bool addText(std::string& text) {
    showSurrogates(&text);
    std::string quoted;
    appendJsonText(text, &quoted);
    return add(quoted);
  }

  bool start(char bracket) {
    ++depth_;
    if (depth_ > kMostDepth) return fail("its values are nested too deep");
    if (depth_ == 1) return true;
    if (depth_ == 2) {
      nested_.clear();
      needsComma_ = false;
    }
    add({&bracket, 1});
    needsComma_ = false;
    return true;
  }

  bool end(char bracket) {
    --depth_;
    if (depth_ == 0) return true;
    nested_ += bracket;
    needsComma_ = true;
    if (depth_ > 1) return true;
    if (auto special = specialValue(nested_)) return set(std::move(special->first), special->second);
    return set(std::move(nested_), FieldForm::string);
  }

  JsonReader& reader_;
  std::size_t depth_ = 0;
  std::size_t index_ = 0;
  std::vector<bool> isSet_;
  std::string nested_;
  bool needsComma_ = false;
  std::string problem_;
};

Status JsonReader::open(ByteSource& source, Encoding encoding, std::unique_ptr<JsonReader>* reader,
                        std::size_t mostRecordBytes) {
  if (Status status = source.rewind(); !status) return status;
  reader->reset(new JsonReader(source, encoding, mostRecordBytes));
  return {};
}

bool JsonReader::peek(char* character) {
  if (place_ == end_) {
    if (isAtEnd_) return false;
    std::size_t count = 0;
    status_ = source_.read(buffer_.data(), buffer_.size(), &count);
    place_ = 0;
    end_ = status_ ? count : 0;
    isAtEnd_ = end_ == 0;
    if (isAtEnd_) return false;
  }
  *character = buffer_[place_];
  return true;
}

void JsonReader::skipBlanks() {
  char character = 0;
  while (peek(&character)) {
    if (character == '\n') ++line_;
    if (character != ' ' && character != '\t' && character != '\r' && character != '\n') return;
    ++place_;
  }
}

/// Goes to the next object. False at the end, or when there is something else, which is the problem; nothing
/// behind it can be read then.
bool JsonReader::findObject(std::string* problem) {
  char character = 0;
  skipBlanks();
  if (state_ == State::start) {
    state_ = State::inLines;
    if (peek(&character) && character == '[') {
      state_ = State::inArray;
      ++place_;
      skipBlanks();
    }
  }
  bool hasComma = false;
  if (state_ == State::inArray && !isFirst_ && peek(&character) && character == ',') {
    hasComma = true;
    ++place_;
    skipBlanks();
  }
  record_.line = line_;
  if (!peek(&character)) {
    if (state_ == State::inArray) *problem = "the array is not closed";
    return false;
  }
  if (state_ == State::inArray && character == ']' && !hasComma) {
    ++place_;
    skipBlanks();
    state_ = State::end;
    record_.line = line_;
    if (peek(&character)) *problem = "there is something behind the array";
    return false;
  }
  if (state_ == State::inArray && !isFirst_ && !hasComma) {
    *problem = "a comma or the end of the array was expected";
    return false;
  }
  isFirst_ = false;
  if (character == '{') return true;
  *problem = "an object was expected";
  return false;
}

/// Copies the object that begins here, up to the bracket that closes it. False when there is none.
bool JsonReader::takeObject() {
  object_.clear();
  std::size_t depth = 0;
  bool isInText = false;
  bool isEscaped = false;
  char character = 0;
  while (peek(&character)) {
    const std::size_t first = place_;
    bool isComplete = false;
    while (place_ < end_ && !isComplete) {
      character = buffer_[place_++];
      if (character == '\n') ++line_;
      if (isEscaped) {
        isEscaped = false;
      } else if (isInText) {
        isEscaped = character == '\\';
        isInText = character != '"';
      } else if (character == '"') {
        isInText = true;
      } else if (character == '{' || character == '[') {
        ++depth;
      } else if (character == '}' || character == ']') {
        isComplete = --depth == 0;
      }
    }
    object_.append(buffer_.data() + first, place_ - first);
    if (isComplete) return true;
    if (object_.size() > mostRecordBytes_) {
      status_ = tooLongRecord(record_.line, mostRecordBytes_);
      return false;
    }
  }
  return false;
}

std::size_t JsonReader::indexOf(const std::string& name) {
  const auto [row, isNew] = indexes_.try_emplace(name, names_.size());
  if (isNew) {
    names_.push_back(name);
    values_.emplace_back();
  }
  return row->second;
}

void JsonReader::parseObject() {
  // The values of the record before stand here still.
  for (Value& value : values_) {
    value.text.clear();
    value.form = FieldForm::missing;
  }
  if (!isWellFormed(object_)) record_.problem = "there is a byte that stands for no character";
  if (record_.problem.empty()) {
    hideSurrogates(&object_);
    Handler handler(*this);
    if (!Json::sax_parse(object_, &handler)) record_.problem = handler.problem();
  }
  record_.fields.clear();
  for (const Value& value : values_) record_.fields.push_back({value.text, value.form});
}

Status JsonReader::next(bool* hasRecord) {
  *hasRecord = false;
  record_.fields.clear();
  record_.problem.clear();
  if (state_ == State::end) return status_;
  if (!findObject(&record_.problem)) {
    state_ = State::end;
    if (!status_) return status_;
    if (record_.problem.empty()) return {};
    record_.problem += "; nothing from here on can be read";
    *hasRecord = true;
    return {};
  }
  const bool isComplete = takeObject();
  if (!status_) return status_;
  *hasRecord = true;
  if (!isComplete) {
    state_ = State::end;
    record_.problem = "the object is not closed; nothing from here on can be read";
    return {};
  }
  parseObject();
  return {};
}

}  // namespace store::exchange
