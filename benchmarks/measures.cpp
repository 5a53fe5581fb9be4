#include "benchmarks/measures.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>

#include "benchmarks/bare_database.h"
#include "benchmarks/heap_count.h"
#include "platform/store/rows/recordset.h"
#include "platform/store/rows/utf.h"
#include "platform/store/sqlite/database_file.h"

namespace bench {

namespace {

constexpr int kMoves = 10'000;
constexpr int kWrites = 20;
constexpr std::size_t kLevelColumn = 5;

// The optimiser must not see that nobody wants the results.
volatile std::int64_t sink = 0;

void require(const store::Status& status) {
  if (status) return;
  std::fprintf(stderr, "bench: %s\n", status.message().c_str());
  std::exit(1);
}

std::shared_ptr<store::Backend> openBackend(const std::string& path) {
  std::unique_ptr<store::Backend> backend;
  require(store::openDatabase(path, {}, &backend));
  return backend;
}

std::unique_ptr<store::Recordset> openRecordset(const std::shared_ptr<store::Backend>& backend,
                                                const char* sql) {
  std::unique_ptr<store::RowSource> rows;
  require(backend->openRows(sql, store::SourceKind::text, &rows));
  auto recordset = std::make_unique<store::Recordset>(backend, std::move(rows), store::CursorType::keyset,
                                                      store::LockType::optimistic);
  require(recordset->load());
  return recordset;
}

constexpr const char* kAllRecords = "Select * from [Measurements]";
constexpr const char* kSortedRecords = "Select * from [Measurements] order by [Level]";
constexpr const char* kNoRecords = "Select * from [Measurements] where 0";

/// Reads every field of the current record as UTF-16 and returns the number of units.
std::int64_t readFields(store::Recordset& recordset, std::u16string& units) {
  std::int64_t count = 0;
  std::array<char, 32> digits{};
  for (std::size_t column = 0; column < recordset.columns().size(); ++column) {
    store::Cell cell;
    require(recordset.cell(column, &cell));
    std::string_view text = cell.bytes;
    if (cell.kind == store::CellKind::integer) {
      text = {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), cell.integer).ptr};
    } else if (cell.kind == store::CellKind::real) {
      text = {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), cell.real).ptr};
    }
    if (units.size() < text.size()) units.resize(text.size());
    count += static_cast<std::int64_t>(store::decodeUtf8(text, units.data()));
  }
  return count;
}

void copyTo(const std::string& path, const std::string& copy) {
  std::error_code error;
  // The library's own way of overwriting fails on Windows (mingw-w64, GCC 12).
  std::filesystem::remove(copy, error);
  if (!error) std::filesystem::copy_file(path, copy, error);
  if (!error) return;
  std::fprintf(stderr, "bench: %s: %s\n", copy.c_str(), error.message().c_str());
  std::exit(1);
}

/// As the program opens a file: what is changed can be taken back.
std::shared_ptr<store::Backend> openKeeping(const std::string& path) {
  constexpr std::size_t kMostBytes = 128 * 1024 * 1024;
  std::shared_ptr<store::Backend> backend = openBackend(path);
  backend->history()->keep(kMostBytes);
  return backend;
}

/// What both sides measure on; made once, kept for all measurements.
struct Bench {
  Bench(const std::string& path, const std::string& scratchPath, const std::string& bareScratchPath)
      : bare(path),
        bareScratch(bareScratchPath),
        backend(openBackend(path)),
        scratchBackend(openKeeping(scratchPath)),
        recordset(openRecordset(backend, kAllRecords)),
        scratch(openRecordset(scratchBackend, kAllRecords)) {}

  std::int64_t anyRecord() {
    return std::uniform_int_distribution<std::int64_t>(0, recordset->recordCount() - 1)(random);
  }

  BareDatabase bare;
  BareDatabase bareScratch;
  std::shared_ptr<store::Backend> backend;
  std::shared_ptr<store::Backend> scratchBackend;
  std::unique_ptr<store::Recordset> recordset;
  std::unique_ptr<store::Recordset> scratch;
  std::mt19937_64 random{20010309};
  std::u16string units;
  std::int64_t level = 0;
};

/// The second of two times, which finds the file in the system's memory. On a connection of its own: with two
/// that stay open the ratio also depends on which was opened first.
double openKeyset(const std::string& path) {
  const std::shared_ptr<store::Backend> backend = openBackend(path);
  const auto open = [&] { sink = sink + openRecordset(backend, kAllRecords)->recordCount(); };
  open();
  return secondsOf(open);
}

double scanBare(const std::string& path) {
  BareDatabase bare(path);
  const auto scan = [&] { sink = sink + bare.scanRowIds(); };
  scan();
  return secondsOf(scan);
}

void moveAndRead(Bench& bench, bool relative) {
  for (int move = 0; move < kMoves; ++move) {
    const std::int64_t target = bench.anyRecord();
    require(relative
                ? bench.recordset->move(target + 1 - bench.recordset->position(), store::MoveOrigin::current)
                : bench.recordset->move(target, store::MoveOrigin::first));
    sink = sink + readFields(*bench.recordset, bench.units);
  }
}

void fetchBare(Bench& bench) {
  for (int fetch = 0; fetch < kMoves; ++fetch) sink = sink + bench.bare.fetchRow(bench.anyRecord() + 1);
  bench.bare.endReading();
}

void changeRecords(Bench& bench) {
  for (int write = 0; write < kWrites; ++write) {
    require(bench.scratch->move(bench.anyRecord(), store::MoveOrigin::first));
    require(bench.scratch->setValue(kLevelColumn, ++bench.level));
    require(bench.scratch->update());
  }
}

void changeBare(Bench& bench) {
  for (int write = 0; write < kWrites; ++write)
    bench.bareScratch.changeRow(bench.anyRecord() + 1, ++bench.level);
}

}  // namespace

double secondsOf(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::vector<Measure> makeMeasures(const std::string& path, const std::string& scratchPath) {
  // One each, so that neither side finds the other's changes.
  const std::string bareScratchPath = scratchPath + ".bare";
  copyTo(path, scratchPath);
  copyTo(path, bareScratchPath);
  auto bench = std::make_shared<Bench>(path, scratchPath, bareScratchPath);
  const auto fetch = [bench] { return secondsOf([&] { fetchBare(*bench); }); };
  return {
      {"open the keyset", "ms", 1e3, 1, 1.3, [path] { return openKeyset(path); },
       [path] { return scanBare(path); }, kRounds},
      {"absolute move and 10 fields", "us", 1e6, kMoves, 2,
       [bench] { return secondsOf([&] { moveAndRead(*bench, false); }); }, fetch, kRounds},
      {"relative move and 10 fields", "us", 1e6, kMoves, 2,
       [bench] { return secondsOf([&] { moveAndRead(*bench, true); }); }, fetch, kRounds},
      {"one durable change", "ms", 1e3, kWrites, 1.2,
       [bench] { return secondsOf([&] { changeRecords(*bench); }); },
       [bench] { return secondsOf([&] { changeBare(*bench); }); }, kRounds},
  };
}

double bytesPerRecord(const std::string& path) {
  const std::shared_ptr<store::Backend> backend = openBackend(path);
  // The first recordset of each kind also fills caches that stay.
  openRecordset(backend, kSortedRecords).reset();
  const std::size_t before = heapBytes();
  const auto empty = openRecordset(backend, kNoRecords);
  const std::size_t between = heapBytes();
  const auto full = openRecordset(backend, kSortedRecords);
  const std::size_t after = heapBytes();
  const double difference = static_cast<double>(after - between) - static_cast<double>(between - before);
  return difference / static_cast<double>(full->recordCount());
}

bool report(const Measure& measure, double engineSeconds, double bareSeconds,
            const std::string& figuresPath) {
  const double scale = measure.unitsPerSecond / measure.operations;
  const double ratio = engineSeconds / bareSeconds;
  const bool within = ratio <= measure.limit;
  std::printf("  %-30s %10.3f %s   bare %10.3f %s   ratio %5.2f   (at most %.1f)%s\n", measure.name.c_str(),
              engineSeconds * scale, measure.unit.c_str(), bareSeconds * scale, measure.unit.c_str(), ratio,
              measure.limit, within ? "" : "   OVER THE LIMIT");
  if (!figuresPath.empty()) {
    if (std::FILE* file = std::fopen(figuresPath.c_str(), "a")) {
      std::fprintf(file, "%s\t%.9g\t%.9g\t%s\n", measure.name.c_str(), engineSeconds * scale,
                   bareSeconds * scale, measure.unit.c_str());
      std::fclose(file);
    }
  }
  return within;
}

}  // namespace bench
