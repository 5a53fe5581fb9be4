#include "benchmarks/server_measures.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <libpq-fe.h>
#include <memory>
#include <utility>

#include "platform/store/opening/open_path.h"
#include "platform/store/rows/text_search.h"

namespace bench {

namespace {

using Clock = store::RowScan::Clock;

constexpr int kMoves = 200;
constexpr int kScreenfuls = 50;
constexpr int kRowsOfScreenful = 20;
constexpr int kChanges = 50;
constexpr int kFirstBlock = 1000;

constexpr std::array<const char*, 4> kTexts{"name", "street", "town", "note"};
constexpr std::array<const char*, 10> kColumns{"id", "name", "street", "town", "n1",
                                               "n2", "flag", "born",   "note", "price"};
constexpr const char* kNowhere = "heron on the gaugf";
constexpr const char* kAllColumns =
    "id::text, name::text, street::text, town::text, n1::text, n2::text, flag::text, born::text, note::text, "
    "price::text";

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "bench: %s\n", what.c_str());
  std::exit(1);
}

void require(const store::Status& status) {
  if (!status) fail(status.message());
}

/// The server by its own library.
class BareServer {
 public:
  BareServer(const std::string& port, const char* database)
      : connection_(
            PQconnectdb(
                ("host=127.0.0.1 user=quivane sslmode=disable port=" + port + " dbname=" + database).c_str()),
            PQfinish) {
    if (PQstatus(connection_.get()) != CONNECTION_OK) fail(PQerrorMessage(connection_.get()));
  }

  /// Runs a statement and looks at each value; returns how many rows came.
  int run(const std::string& sql) {
    const Result result(PQexec(connection_.get(), sql.c_str()), PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) fail(PQerrorMessage(connection_.get()));
    const int rows = PQntuples(result.get());
    for (int row = 0; row < rows; ++row) {
      for (int column = 0; column < PQnfields(result.get()); ++column) {
        looked_ += static_cast<std::size_t>(PQgetlength(result.get(), row, column));
      }
    }
    return rows;
  }

  std::vector<std::string> readRow(const std::string& sql) {
    const Result result(PQexec(connection_.get(), sql.c_str()), PQclear);
    if (PQntuples(result.get()) != 1) fail(PQerrorMessage(connection_.get()));
    std::vector<std::string> values;
    for (int column = 0; column < PQnfields(result.get()); ++column) {
      values.emplace_back(PQgetvalue(result.get(), 0, column));
    }
    return values;
  }

  /// Changes one row.
  void change(const std::string& sql, const std::vector<std::string>& values) {
    std::vector<const char*> texts;
    for (const std::string& value : values) texts.push_back(value.c_str());
    const Result result(PQexecParams(connection_.get(), sql.c_str(), static_cast<int>(texts.size()), nullptr,
                                     texts.data(), nullptr, nullptr, 0),
                        PQclear);
    if (PQntuples(result.get()) != 1) fail("the statement changed no row");
  }

 private:
  using Result = std::unique_ptr<PGresult, decltype(&PQclear)>;

  std::unique_ptr<PGconn, decltype(&PQfinish)> connection_;
  std::size_t looked_ = 0;
};

/// No text in the table is one that only a system can tell.
class NoTexts : public store::ValueTexts {
 public:
  bool writesPlainIntegers() const override { return true; }
  std::u16string_view numberSigns() const override { return u""; }
  bool textOf(const store::Cell&, const store::FieldType&, std::u16string*) override { return false; }
};

char16_t upperCase(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

class ServerBench {
 public:
  ServerBench(const std::string& port, const std::string& link, int count) : count_(count) {
    BareServer(port, "postgres").run("CREATE DATABASE bench");
    bare_ = std::make_unique<BareServer>(port, "bench");
    bare_->run(
        "CREATE TABLE big (id integer PRIMARY KEY, name text, street text, town text, n1 bigint, n2 bigint, "
        "flag boolean, born date, note text, price double precision)");
    bare_->run(
        "INSERT INTO big SELECT i, 'Name ' || i, 'Street ' || i::bigint * 7919 % 1000000, 'Town ' || i % "
        "1000, "
        "i::bigint * 37 % 100000, i::bigint * 41 % 100000, i % 2 = 0, date '2000-01-01' + i % 3000, "
        "'a note about the record ' || i, i * 0.5 FROM generate_series(1, " +
        std::to_string(count) + ") i");
    bare_->run("VACUUM ANALYZE big");
    std::ofstream(link) << "[ODBC]\nDRIVER=PostgreSQL Unicode\nSERVER=127.0.0.1\nPORT=" << port
                        << "\nDATABASE=bench\nUID=quivane\nSSLmode=disable\n";
    std::unique_ptr<store::Backend> backend;
    require(store::openPath(link, {}, &backend));
    backend_ = std::move(backend);
    walked_ = openAll();
  }

  double openByEngine() {
    std::unique_ptr<store::Recordset> opened;
    const double seconds = secondsOf([&] {
      opened = openAll();
      look(*opened);
    });
    return seconds;
  }
  double openByLibrary() {
    return secondsOf([&] {
      bare_->run("BEGIN READ ONLY");
      bare_->run("SELECT count(*) FROM big");
      bare_->run("DECLARE c NO SCROLL CURSOR FOR SELECT id::bigint FROM big ORDER BY id");
      bare_->run("FETCH FORWARD " + std::to_string(kFirstBlock) + " FROM c");
      bare_->run("ROLLBACK");
      readRows({1});
    });
  }

  double moveByEngine() {
    std::vector<int> places = somePlaces(kMoves);
    return secondsOf([&] {
      for (const int place : places) {
        require(walked_->setPosition(place));
        look(*walked_);
      }
    });
  }
  double moveByLibrary() {
    std::vector<int> places = somePlaces(kMoves);
    return secondsOf([&] {
      for (const int place : places) readRows({place});
    });
  }

  double screenfulByEngine() {
    std::vector<int> places = somePlaces(kScreenfuls);
    return secondsOf([&] {
      for (const int place : places) {
        walked_->readAhead(place, kRowsOfScreenful);
        for (int row = 0; row < kRowsOfScreenful; ++row) {
          require(walked_->setPosition(place + row));
          look(*walked_);
        }
      }
    });
  }
  double screenfulByLibrary() {
    std::vector<int> places = somePlaces(kScreenfuls);
    return secondsOf([&] {
      for (const int place : places) {
        std::vector<int> keys;
        for (int row = 0; row < kRowsOfScreenful; ++row) keys.push_back(place + row);
        readRows(keys);
      }
    });
  }

  double findByEngine() {
    require(walked_->moveFirst());
    return secondsOf([&] {
      store::TextSearch search(*walked_, {1, 2, 3, 8}, store::TextNeedle(asUnits(kNowhere), &folding_),
                               texts_);
      while (!walked_->isEof()) {
        std::int64_t passed = 0;
        require(search.passOver(count_, Clock::now() + std::chrono::milliseconds(50), &passed));
      }
    });
  }
  double findByLibrary() {
    std::string where;
    for (const char* column : kTexts) {
      where += (where.empty() ? "" : " OR ") + std::string(column) + " ILIKE '%" + kNowhere + "%'";
    }
    return secondsOf([&] { bare_->run("SELECT id FROM big WHERE " + where); });
  }

  double changeByEngine() {
    double seconds = 0;
    for (const int place : somePlaces(kChanges)) {
      require(walked_->setPosition(place));
      look(*walked_);
      seconds += secondsOf([&] {
        require(walked_->setValue(1, "changed " + std::to_string(++changes_)));
        require(walked_->update());
      });
    }
    return seconds;
  }
  /// The same statement, which says what was read.
  double changeByLibrary() {
    double seconds = 0;
    for (const int place : somePlaces(kChanges)) {
      std::string sql =
          "UPDATE big AS t SET name = $1::text::text WHERE t.id = '" + std::to_string(place) + "'::int4";
      std::vector<std::string> values = bare_->readRow(std::string("SELECT ") + kAllColumns +
                                                       " FROM big WHERE id = " + std::to_string(place));
      for (std::size_t column = 0; column < kColumns.size(); ++column) {
        const bool isNumber = column + 1 == kColumns.size();
        sql += std::string(" AND ") + kColumns[column] + (isNumber ? "" : "::text") +
               " IS NOT DISTINCT FROM $" + std::to_string(column + 2) +
               (isNumber ? "::text::float8" : "::text");
      }
      sql += " RETURNING t.id::bigint";
      values.insert(values.begin(), "changed " + std::to_string(++changes_));
      seconds += secondsOf([&] { bare_->change(sql, values); });
    }
    return seconds;
  }

 private:
  static std::u16string asUnits(std::string_view text) { return {text.begin(), text.end()}; }

  std::unique_ptr<store::Recordset> openAll() {
    std::unique_ptr<store::RowSource> rows;
    require(backend_->openRows("Select * from [big]", store::SourceKind::text, &rows));
    auto opened = std::make_unique<store::Recordset>(backend_, std::move(rows), store::CursorType::keyset,
                                                     store::LockType::optimistic);
    require(opened->load());
    if (opened->recordCount() != count_) fail("the table has another count");
    return opened;
  }
  static void look(store::Recordset& records) {
    store::Cell cell;
    for (std::size_t column = 0; column < records.columns().size(); ++column) {
      require(records.cell(column, &cell));
    }
  }
  void readRows(const std::vector<int>& keys) {
    std::string list;
    for (const int key : keys) list += (list.empty() ? "" : ", ") + std::to_string(key);
    bare_->run(std::string("SELECT id::bigint, ") + kAllColumns + " FROM big WHERE id IN (" + list + ")");
  }
  /// Both sides go to the same ones, in turns.
  std::vector<int> somePlaces(int count) {
    std::vector<int> places;
    std::uint64_t seed = 20260131;
    for (int place = 0; place < count; ++place) {
      seed = seed * 6364136223846793005u + 1442695040888963407u;
      places.push_back(1 + static_cast<int>((seed >> 33) % static_cast<std::uint64_t>(count_ - 100)));
    }
    return places;
  }

  int count_;
  int changes_ = 0;
  std::unique_ptr<BareServer> bare_;
  std::shared_ptr<store::Backend> backend_;
  std::unique_ptr<store::Recordset> walked_;
  NoTexts texts_;
  store::CaseFolding folding_{upperCase};
};

}  // namespace

std::vector<Measure> makeServerMeasures(const std::string& port, const std::string& link, int count) {
  const auto bench = std::make_shared<ServerBench>(port, link, count);
  const auto row = [&](const char* name, const char* unit, double unitsPerSecond, int operations,
                       double limit, double (ServerBench::*engine)(), double (ServerBench::*bare)()) {
    return Measure{name,
                   unit,
                   unitsPerSecond,
                   operations,
                   limit,
                   [bench, engine] { return (bench.get()->*engine)(); },
                   [bench, bare] { return (bench.get()->*bare)(); },
                   kLongRounds};
  };
  using Bench = ServerBench;
  return {row("open to the first record", "ms", 1e3, 1, 1.2, &Bench::openByEngine, &Bench::openByLibrary),
          row("move and 10 fields", "us", 1e6, kMoves, 1.2, &Bench::moveByEngine, &Bench::moveByLibrary),
          row("screenful of 20", "us", 1e6, kScreenfuls, 1.2, &Bench::screenfulByEngine,
              &Bench::screenfulByLibrary),
          row("find, no match", "ms", 1e3, 1, 1.1, &Bench::findByEngine, &Bench::findByLibrary),
          row("one change", "us", 1e6, kChanges, 1.2, &Bench::changeByEngine, &Bench::changeByLibrary)};
}

}  // namespace bench
