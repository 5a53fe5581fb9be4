// The bytes are a bookmark that a client hands back.
#include "platform/store/rows/keyset.h"
#include "tests/fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t length) {
  const std::string_view bytes = fuzz::textOf(data, length);
  const std::optional<store::Key> key = store::keyOfBookmark(bytes);
  if (!key) return 0;
  fuzz::require(bookmarkOf(*key) == bytes, "only bytes that a bookmark has are taken for one");
  store::KeySet keys(std::holds_alternative<std::int64_t>(*key) ? store::KeySet::Kind::rowId
                                                                : store::KeySet::Kind::tuple);
  for (int count = 0; count < 3; ++count) keys.append(*key);
  fuzz::require(keys.find(*key, 1) == 1, "a key is found where it is");
  fuzz::require(bookmarkOf(keys.keyAt(2)) == bytes, "a key comes back as it went in");
  return 0;
}
