// Who is let in to a server's database: passwords that a link has, that somebody types, and that are
// remembered.
#include <chrono>
#include <cstdlib>

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

/// A database that is open and loses its conversation, after which the server wants another password.
class ServerNewPasswordTest : public ServerLoginTest {
 protected:
  void openWith(const std::string& password) {
    OpenOptions options;
    if (!password.empty()) options.password = password;
    const Status status = openPath(utf8Of(path_), options, &open_);
    ASSERT_TRUE(status) << status.message();
  }
  void loseConversation() const {
    runOnServer("SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE usename = 'quivane_locked'",
                "postgres");
    EXPECT_EQ(ErrorCode::inputOutput, tryReading().code());
  }
  Status tryReading() const {
    std::unique_ptr<RowSource> rows;
    return open_->openRows("t", SourceKind::table, &rows);
  }

  std::unique_ptr<Backend> open_;
};

TEST_F(ServerNewPasswordTest, AnotherOneIsAskedForAndTaken) {
  makeLink();
  openWith(kPassword);
  setPassword("another");
  EXPECT_TRUE(open_->takeRefusal()) << "nothing was refused so far";
  EXPECT_TRUE(tryReading()) << "as long as the conversation goes on";
  loseConversation();
  EXPECT_TRUE(open_->takeRefusal()) << "a lost conversation is no refusal";
  const Status refused = tryReading();
  EXPECT_EQ(ErrorCode::passwordWanted, refused.code());
  EXPECT_EQ(0u, refused.message().find("The server does not take the password any more: "))
      << refused.message();
  EXPECT_EQ(refused.message(), open_->takeRefusal().message());
  EXPECT_TRUE(open_->takeRefusal()) << "once for each";
  Status given = open_->givePassword("wrong");
  EXPECT_EQ(ErrorCode::passwordWanted, given.code());
  EXPECT_EQ(0u, given.message().find("The server does not take the password: ")) << given.message();
  EXPECT_EQ(ErrorCode::passwordWanted, tryReading().code());
  given = open_->givePassword("another");
  EXPECT_TRUE(given) << given.message();
  EXPECT_TRUE(tryReading());
  EXPECT_TRUE(tryOpening()) << "it is remembered";
}

TEST_F(ServerNewPasswordTest, OneOfTheLinkIsNotAskedForButToldOf) {
  makeLink("PWD={a b;{c}}}}'\"+%41=\\\xC3\xA9}\n");
  openWith("");
  setPassword("another");
  loseConversation();
  const Status refused = tryReading();
  EXPECT_EQ(ErrorCode::cannotOpen, refused.code());
  EXPECT_EQ(0u, refused.message().find("The server does not take the link's password any more: "))
      << refused.message();
  EXPECT_TRUE(open_->takeRefusal());
  EXPECT_EQ(ErrorCode::notAvailable, open_->givePassword("another").code());
}

/// A server that writes its reasons in another language than English.
class ServerLanguageTest : public ServerNewPasswordTest {
 protected:
  void SetUp() override {
    ServerNewPasswordTest::SetUp();
    language_ = std::getenv("QUIVANE_TEST_SERVER_LANGUAGE");
    if (language_ == nullptr) GTEST_SKIP() << "The system has no other language for the server.";
    setLanguage(language_);
  }
  void TearDown() override {
    if (language_ != nullptr) setLanguage("C.UTF-8");
    ServerNewPasswordTest::TearDown();
  }
  static void setLanguage(const std::string& language) {
    runOnServer("ALTER SYSTEM SET lc_messages = '" + language + "'", "postgres");
    runOnServer("SELECT pg_reload_conf()", "postgres");
    // The server takes it for those who come later.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    std::string present;
    while (present != language && std::chrono::steady_clock::now() < deadline) {
      FileDsn dsn;
      ASSERT_TRUE(readFileDsn(linkTo("postgres"), &dsn));
      OdbcConnection connection(connectionTextOf(dsn), {});
      Answer answer;
      if (ask(connection, "SHOW lc_messages", {}, &answer)) present = answer.at(0).at(0).value_or("");
    }
    ASSERT_EQ(language, present);
  }

  const char* language_ = nullptr;
};

TEST_F(ServerLanguageTest, AWrongPasswordIsKnownForOne) {
  makeLink();
  const Status status = tryOpening("wrong");
  EXPECT_EQ(ErrorCode::passwordWanted, status.code());
  EXPECT_EQ(0u, status.message().find("The server does not take the password: ")) << status.message();
  EXPECT_EQ(std::string::npos, status.message().find("password authentication"))
      << "the words are not English";
  EXPECT_TRUE(tryOpening(kPassword));
  setPassword("another");
  EXPECT_EQ(ErrorCode::passwordWanted, tryOpening().code()) << "what was remembered is not taken";
  EXPECT_EQ(kWantsNone, tryOpening().message()) << "and forgotten";
}

TEST_F(ServerLanguageTest, APasswordThatIsRightIsNotBlamedForWhatElseIsWrong) {
  makeLink();
  link_.replace(link_.find("DATABASE=" + database_), 9 + database_.size(), "DATABASE=none_such");
  testsupport::writeFile(path_, link_);
  EXPECT_EQ(ErrorCode::cannotOpen, tryOpening(kPassword).code());
  EXPECT_EQ(ErrorCode::passwordWanted, tryOpening("wrong").code());
}

TEST_F(ServerLanguageTest, AnotherOneIsAskedForWhereTheFormerOneIsNotTakenAnyMore) {
  makeLink();
  openWith(kPassword);
  setPassword("another");
  loseConversation();
  EXPECT_EQ(ErrorCode::passwordWanted, tryReading().code());
  EXPECT_TRUE(open_->givePassword("another"));
  EXPECT_TRUE(tryReading());
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
