// Makes a database with one table of N records for benchmarks and trials: the same bytes for the same N,
// because nothing but N and the pinned SQLite goes into it.

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace {

constexpr std::int64_t kMostRecords = 100'000'000;

constexpr const char* kTable =
    "CREATE TABLE Measurements (Id Integer, Station Varchar (40), Observer Varchar (60), Place Varchar "
    "(255), "
    "Count SmallInt, Level Integer, Valid Bit, Taken Datetime, Reading Double, Remarks Text)";

constexpr std::array<std::string_view, 12> kStations{"Harbour", "Old Mill", "Hill Top",  "North Gate",
                                                     "Lagoon",  "Quarry",   "Bridge 7",  "Lighthouse",
                                                     "Weir",    "Orchard",  "Station 9", "Marsh"};
constexpr std::array<std::string_view, 10> kObservers{
    "Anna Lindqvist", "Νίκος Παπάς",  "Иван Соколов", "田中 花子",  "José Álvarez",
    "Maeve O'Brien",  "Łukasz Nowak", "Chidi Okafor", "Zoë Müller", "Ngọc Trần"};
constexpr std::array<std::string_view, 8> kRemarks{"Calm, clear sky.",
                                                   "Wind from the west, gusts now and then.",
                                                   "The gauge was cleaned before the reading.",
                                                   "Rain since the early morning; the path was under water.",
                                                   "Read twice, the second value counts.",
                                                   "A heron stood on the gauge.",
                                                   "Instrument changed for the spare one.",
                                                   "Fog, visibility under a hundred metres."};

// A full-period linear congruential generator (Knuth's constants); its high bits are good enough here.
class Numbers {
 public:
  std::uint32_t next(std::uint32_t limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::uint32_t>((state_ >> 33) % limit);
  }

 private:
  std::uint64_t state_ = 20010309;
};

struct Closer {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

bool run(sqlite3* connection, const char* sql) {
  return sqlite3_exec(connection, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool bindText(sqlite3_stmt* statement, int position, std::string_view text) {
  return sqlite3_bind_text(statement, position, text.data(), static_cast<int>(text.size()),
                           SQLITE_TRANSIENT) == SQLITE_OK;
}

std::string dateText(Numbers& numbers) {
  std::array<char, 64> text{};
  const unsigned year = 1990 + numbers.next(40);
  const unsigned month = 1 + numbers.next(12);
  const unsigned day = 1 + numbers.next(28);
  const unsigned hour = numbers.next(24);
  const unsigned minute = numbers.next(60);
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02u %02u:%02u:00", year, month, day, hour, minute);
  return text.data();
}

std::string remarksText(Numbers& numbers) {
  std::string text;
  for (std::uint32_t left = 1 + numbers.next(5); left > 0; --left) {
    if (!text.empty()) text += "\r\n";
    text += kRemarks[numbers.next(kRemarks.size())];
  }
  return text;
}

bool bindRecord(sqlite3_stmt* insert, std::int64_t number, Numbers& numbers) {
  bool bound = sqlite3_bind_int64(insert, 1, number) == SQLITE_OK;
  bound = bound && bindText(insert, 2, kStations[numbers.next(kStations.size())]);
  bound = bound && bindText(insert, 3, kObservers[numbers.next(kObservers.size())]);
  const std::string place =
      "Plot " + std::to_string(numbers.next(997)) + ", row " + std::to_string(numbers.next(89));
  bound = bound && bindText(insert, 4, place);
  bound = bound && sqlite3_bind_int(insert, 5, static_cast<int>(numbers.next(2000)) - 1000) == SQLITE_OK;
  bound = bound && sqlite3_bind_int(insert, 6, static_cast<int>(numbers.next(2'000'000))) == SQLITE_OK;
  bound = bound && sqlite3_bind_int(insert, 7, static_cast<int>(numbers.next(2))) == SQLITE_OK;
  bound = bound && bindText(insert, 8, dateText(numbers));
  bound = bound && sqlite3_bind_double(insert, 9, numbers.next(10'000'000) / 1024.0) == SQLITE_OK;
  return bound && bindText(insert, 10, remarksText(numbers));
}

bool fill(sqlite3* connection, std::int64_t count) {
  if (!run(connection, "PRAGMA synchronous=OFF") || !run(connection, "PRAGMA journal_mode=OFF")) return false;
  if (!run(connection, kTable) || !run(connection, "BEGIN")) return false;
  sqlite3_stmt* prepared = nullptr;
  const char* sql = "INSERT INTO Measurements VALUES (?,?,?,?,?,?,?,?,?,?)";
  if (sqlite3_prepare_v2(connection, sql, -1, &prepared, nullptr) != SQLITE_OK) return false;
  const std::unique_ptr<sqlite3_stmt, Closer> insert(prepared);
  Numbers numbers;
  for (std::int64_t number = 1; number <= count; ++number) {
    if (!bindRecord(insert.get(), number, numbers)) return false;
    if (sqlite3_step(insert.get()) != SQLITE_DONE) return false;
    sqlite3_reset(insert.get());
  }
  return run(connection, "COMMIT");
}

}  // namespace

int main(int argc, char** argv) {
  std::int64_t count = -1;
  if (argc == 3) {
    const char* end = argv[1] + std::strlen(argv[1]);
    const auto read = std::from_chars(argv[1], end, count);
    if (read.ptr != end || read.ec != std::errc()) count = -1;
  }
  if (count < 0 || count > kMostRecords) {
    std::fprintf(stderr, "usage: make_data N FILE   (N from 0 to %lld; FILE must not exist)\n",
                 static_cast<long long>(kMostRecords));
    return 2;
  }
  const std::string path = argv[2];
  if (std::FILE* existing = std::fopen(path.c_str(), "rb")) {
    std::fclose(existing);
    std::fprintf(stderr, "make_data: %s exists already\n", path.c_str());
    return 1;
  }
  // Made beside its place and moved there, so that no half-made file is ever taken for a whole one.
  const std::string making = path + ".making";
  std::remove(making.c_str());
  sqlite3* opened = nullptr;
  const int result = sqlite3_open(making.c_str(), &opened);
  std::unique_ptr<sqlite3, Closer> connection(opened);
  const bool filled = result == SQLITE_OK && fill(connection.get(), count);
  if (!filled) std::fprintf(stderr, "make_data: %s\n", sqlite3_errmsg(connection.get()));
  connection.reset();
  if (filled && std::rename(making.c_str(), path.c_str()) == 0) return 0;
  if (filled) std::perror("make_data");
  std::remove(making.c_str());
  return 1;
}
