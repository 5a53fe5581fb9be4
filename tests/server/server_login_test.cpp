// Who is let in to a server's database: passwords that a link has, that somebody types, and that are
// remembered.
#include <chrono>

#include "platform/store/dsn/file_dsn.h"
#include "platform/store/odbc/driver/answer.h"
#include "platform/store/sql/dialect.h"
#include "tests/server/server_fixture.h"

namespace store {
namespace {

constexpr const char* kWantsNone = "The server wants a password.";
// Each sign of it means something to somebody on the way.
constexpr const char* kPassword = "a b;{c}}'\"+%41=\\\xC3\xA9";

class ServerLoginTest : public StoreTest {
 protected:
  void SetUp() override {
    // with-server lets this one in only with a password.
    runOnServer(
        "DO $$ BEGIN IF NOT EXISTS (SELECT FROM pg_roles WHERE rolname = 'quivane_locked') THEN CREATE ROLE "
        "quivane_locked LOGIN; END IF; END $$",
        "postgres");
    setPassword(kPassword);
    runOnServer("CREATE TABLE t (k integer PRIMARY KEY); GRANT SELECT ON t TO quivane_locked", database_);
  }
  void TearDown() override { runOnServer("DROP TABLE t", database_); }

  static void setPassword(const std::string& password) {
    runOnServer("ALTER ROLE quivane_locked PASSWORD " + quotedText(password), "postgres");
  }
  /// A link that nothing was remembered for.
  void makeLink(const std::string& more = {}) {
    static int made = 0;
    link_ = linkTo(database_, more + "ApplicationName=test" + std::to_string(++made) + "\n");
    link_.replace(link_.find("UID=quivane"), 11, "UID=quivane_locked");
    testsupport::writeFile(path_, link_);
  }
  Status tryOpening(const std::optional<std::string>& password = std::nullopt) {
    OpenOptions options;
    options.password = password;
    std::unique_ptr<Backend> backend;
    const Status status = openPath(utf8Of(path_), options, &backend);
    EXPECT_EQ(static_cast<bool>(status), backend != nullptr);
    EXPECT_EQ(link_, testsupport::contentOf(path_)) << "a password is never stored";
    return status;
  }

  std::string link_;
};

TEST_F(ServerLoginTest, APasswordIsAskedForOnceAndRememberedAsLongAsItIsRight) {
  makeLink();
  Status status = tryOpening();
  EXPECT_EQ(ErrorCode::passwordWanted, status.code());
  EXPECT_EQ(kWantsNone, status.message());
  status = tryOpening("wrong");
  EXPECT_EQ(ErrorCode::passwordWanted, status.code());
  EXPECT_NE(std::string::npos, status.message().find("does not take the password")) << status.message();
  EXPECT_EQ(kWantsNone, tryOpening().message()) << "a wrong one is not remembered";
  status = tryOpening(kPassword);
  EXPECT_TRUE(status) << status.message();
  EXPECT_TRUE(tryOpening());
  setPassword("another");
  EXPECT_EQ(ErrorCode::passwordWanted, tryOpening().code());
  EXPECT_EQ(kWantsNone, tryOpening().message()) << "and what isn't right any more is forgotten";
  EXPECT_TRUE(tryOpening("another"));
}

TEST_F(ServerLoginTest, TheConnectionThatBringsTheOtherKeysIsLetInToo) {
  runOnServer("INSERT INTO t SELECT generate_series(1, 5000)", database_);
  makeLink();
  ASSERT_TRUE(tryOpening(kPassword));
  open();
  const auto rows = records("Select * from [t]");
  ASSERT_TRUE(rows->moveLast());
  EXPECT_EQ("5000", textOf(*rows, 0));
}

TEST_F(ServerLoginTest, ThePasswordOfALinkIsTakenAndNobodyIsAskedForAnother) {
  makeLink("PWD={a b;{c}}}}'\"+%41=\\\xC3\xA9}\n");
  Status status = tryOpening();
  EXPECT_TRUE(status) << status.message();
  makeLink("PWD=wrong\n");
  status = tryOpening();
  EXPECT_EQ(ErrorCode::cannotOpen, status.code());
  EXPECT_NE(std::string::npos, status.message().find("link's password")) << status.message();
  EXPECT_EQ(std::string::npos, status.message().find("wrong")) << "no message holds it";
  makeLink("PWD=\n");
  EXPECT_EQ(kWantsNone, tryOpening().message()) << "an empty one is none";
  EXPECT_TRUE(tryOpening(kPassword));
}

class ServerEncryptionTest : public StoreTest {
 protected:
  void TearDown() override { setEncryption("off"); }

  static void setEncryption(const std::string& state) {
    runOnServer("ALTER SYSTEM SET ssl = " + state, "postgres");
    runOnServer("SELECT pg_reload_conf()", "postgres");
    // The server takes it for those who come later.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (settingOfServer() != state && std::chrono::steady_clock::now() < deadline) {
    }
    ASSERT_EQ(state, settingOfServer());
  }
  static std::string settingOfServer() {
    FileDsn dsn;
    EXPECT_TRUE(readFileDsn(linkTo("postgres"), &dsn));
    OdbcConnection connection(connectionTextOf(dsn), {});
    Answer answer;
    return ask(connection, "SHOW ssl", {}, &answer) ? answer.at(0).at(0).value_or("") : "";
  }
  Status tryOpening(const std::string& mode) {
    testsupport::writeFile(path_, linkTo(database_, mode));
    std::unique_ptr<Backend> backend;
    Status status = openPath(utf8Of(path_), {}, &backend);
    backend_ = std::move(backend);
    return status;
  }
  /// Whether the conversation is encrypted, by what the server says.
  std::string isEncrypted() {
    std::unique_ptr<RowStream> rows;
    bool hasRow = false;
    Status status = backend_->openStream("SELECT ssl::text FROM pg_stat_ssl WHERE pid = pg_backend_pid()",
                                         SourceKind::text, &rows);
    if (status) status = rows->next(&hasRow);
    EXPECT_TRUE(status) << status.message();
    return hasRow ? std::string(rows->cell(0).bytes) : std::string();
  }
  std::string described() {
    std::string text = "untouched";
    const Status status = backend_->describeServer(&text);
    EXPECT_TRUE(status) << status.message();
    return text;
  }
};

TEST_F(ServerEncryptionTest, ItIsOnWhereTheServerCanUnlessTheLinkSaysOtherwise) {
  setEncryption("on");
  ASSERT_TRUE(tryOpening(""));
  EXPECT_EQ("true", isEncrypted());
  ASSERT_TRUE(tryOpening("SSLmode=require\n"));
  EXPECT_EQ("true", isEncrypted());
  ASSERT_TRUE(tryOpening("SSLmode=disable\n"));
  EXPECT_EQ("false", isEncrypted());
}

TEST_F(ServerEncryptionTest, WhatTheConnectionIsIsToldByTheServer) {
  setEncryption("on");
  ASSERT_TRUE(tryOpening(""));
  const std::string version = OtherProgram(path_).ask(
      "SELECT split_part(setting, ' ', 1) FROM pg_settings WHERE name = 'server_version'");
  const std::string server = ", PostgreSQL " + version + " at 127.0.0.1";
  EXPECT_EQ("Encrypted (TLSv1.3)" + server, described());
  ASSERT_TRUE(tryOpening("SSLmode=disable\n"));
  EXPECT_EQ("Not encrypted" + server, described());
  setEncryption("off");
  ASSERT_TRUE(tryOpening(""));
  EXPECT_EQ("Not encrypted" + server, described());
}

TEST_F(ServerEncryptionTest, AServerThatDoesNotSayWhatTheConnectionIsIsDescribedAllTheSame) {
  ASSERT_TRUE(tryOpening(""));
  // As one that is only like PostgreSQL: the name finds a table that lacks the columns.
  run("CREATE TABLE public.pg_stat_ssl (a integer)");
  run("ALTER ROLE quivane SET search_path TO public, pg_catalog");
  backend_.reset();
  ASSERT_TRUE(tryOpening(""));
  const std::string text = described();
  run("ALTER ROLE quivane RESET search_path");
  EXPECT_EQ(0u, text.find("The server doesn't tell whether the connection is encrypted, PostgreSQL "))
      << text;
}

TEST_F(ServerEncryptionTest, WithoutTheServerThereIsAReasonInsteadOfADescription) {
  const auto endAll = [&] {
    runOnServer("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE datname = '" + database_ + "'",
                "postgres");
  };
  ASSERT_TRUE(tryOpening(""));
  endAll();
  std::string text = "untouched";
  EXPECT_EQ(ErrorCode::inputOutput, backend_->describeServer(&text).code());
  EXPECT_EQ("untouched", text);
  EXPECT_EQ(0u, described().find("Not encrypted")) << "the next question connects anew";
}

TEST_F(ServerEncryptionTest, WithoutItOnlyALinkThatRequiresItIsRefused) {
  ASSERT_TRUE(tryOpening(""));
  EXPECT_EQ("false", isEncrypted());
  const Status status = tryOpening("SSLmode=require\n");
  EXPECT_EQ(ErrorCode::cannotOpen, status.code());
  EXPECT_NE(std::string::npos, status.message().find("SSL")) << status.message();
}

TEST_F(ServerEncryptionTest, ACertificateThatNobodyVouchesForIsRefusedByWhoAsks) {
  setEncryption("on");
  EXPECT_EQ(ErrorCode::cannotOpen, tryOpening("SSLmode=verify-full\n").code());
}

}  // namespace
}  // namespace store
