#pragma once

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>

#include "tests/store/hostile/damaged_images.h"
#include "tests/store/hostile/database_walk.h"
#include "tests/store/store_fixture.h"

namespace store {

/// Damaged files made by rule: each is refused, or opens and is walked, without a crash, a hang or a write.
/// The sanitizers of the native build watch.
class DamageTest : public StoreTest {
 protected:
  void SetUp() override {
    damaged_ = folder_.file("damaged.cdb");
    // One of everything on many small pages: overflow, free pages, inner pages, an index, a key of columns.
    prepare(
        "PRAGMA page_size = 512; CREATE TABLE t (id INTEGER PRIMARY KEY, a Text, b Blob);"
        "CREATE TABLE p (x Text, y Integer, PRIMARY KEY (x, y)) WITHOUT ROWID;"
        "CREATE INDEX i ON t (a); CREATE VIEW v AS SELECT a FROM t; CREATE TABLE gone (a Text)");
    prepare(
        "WITH RECURSIVE s(n) AS (VALUES (1) UNION ALL SELECT n + 1 FROM s WHERE n < 25) "
        "INSERT INTO t SELECT n, 'text ' || n, zeroblob(n * 45) FROM s; INSERT INTO p SELECT a, id FROM t;"
        "INSERT INTO gone SELECT printf('%0400d', id) FROM t; DELETE FROM gone WHERE rowid > 2");
  }

  void TearDown() override {
    if (refused_ + opened_ > 0) std::printf("%d files refused, %d opened\n", refused_, opened_);
  }

  /// Walks over the damaged file. `writes` changes it, too; it is then not compared.
  void expectHarmless(const std::string& what, const std::string& bytes, bool writes = false) {
    SCOPED_TRACE(what);
    writeBytes(damaged_, bytes);
    const std::clock_t start = std::clock();
    const int succeeded = walkDatabase(utf8Of(damaged_), {.writes = writes});
    // Of the processor, where the system tells it: other programs may keep it busy.
    EXPECT_LT(std::clock() - start, 5 * CLOCKS_PER_SEC);
    ++(succeeded == 0 ? refused_ : opened_);
    if (!writes) {
      EXPECT_EQ(bytes, bytesOf(damaged_)) << "was written";
    }
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
      std::filesystem::remove(utf8Of(damaged_) + suffix);
    }
  }
  DamageVisitor reading() {
    return [this](const std::string& what, const std::string& bytes) { expectHarmless(what, bytes); };
  }
  DamageVisitor writing() {
    return [this](const std::string& what, const std::string& bytes) { expectHarmless(what, bytes, true); };
  }

  std::filesystem::path damaged_;
  int refused_ = 0;
  int opened_ = 0;
};

}  // namespace store
