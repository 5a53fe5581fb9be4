#include "platform/store/odbc/driver/odbc_statement.h"

#include <algorithm>
#include <array>

#include "platform/store/odbc/driver/odbc_text.h"

namespace store {

namespace {

constexpr std::size_t kIntegersAtOnce = 1000;
constexpr std::size_t kUnitsAtOnce = 4096;
constexpr std::size_t kTextsAtOnce = 64;
// Not a whole number of pages, so that short texts do not all want the same place in the processor's cache.
constexpr std::size_t kTextStride = OdbcStatement::kMostTextBytes + 64;
static_assert(kTextStride % 4096 != 0);

SQLPOINTER pointerOf(std::uintptr_t number) {
  return reinterpret_cast<SQLPOINTER>(number);
}

Status unknownChange() {
  return {ErrorCode::inputOutput,
          "The server did not answer. Whether the change is stored is not known: look before you store it "
          "again."};
}

}  // namespace

/// All that the driver uses while it runs: it may go on with it when nobody waits any more.
struct OdbcStatement::Call {
  explicit Call(std::shared_ptr<OdbcSession> owner) : session(std::move(owner)) {}
  ~Call() { handle.reset(); }
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  std::shared_ptr<OdbcSession> session;
  OdbcStatementHandle handle;
  std::u16string sql;
  std::vector<std::u16string> values;
  std::vector<SQLLEN> lengths;
  bool isPrepared = false;
  std::vector<SQLWCHAR> buffer = std::vector<SQLWCHAR>(kUnitsAtOnce);  // for what is read
};

OdbcStatement::OdbcStatement(OdbcConnection& connection, Effect effect)
    : connection_(connection), effect_(effect) {}

OdbcStatement::~OdbcStatement() = default;

Status OdbcStatement::prepareHandle() {
  columnCount_ = 0;
  affected_ = 0;
  if (Status status = connection_.ensureOpen(); !status) return status;
  call_.reset();
  auto call = std::make_shared<Call>(connection_.session());
  const OdbcFunctions& functions = call->session->functions();
  if (!call->handle.make(functions, call->session->handle())) {
    return statusOf(diagnose(functions, SQL_HANDLE_DBC, call->session->handle()));
  }
  // What stands in braces is the server's own.
  functions.setStatementAttribute(call->handle.get(), SQL_ATTR_NOSCAN, pointerOf(SQL_NOSCAN_ON), 0);
  call_ = std::move(call);
  return {};
}

Status OdbcStatement::outcomeOf(SQLRETURN result, bool gaveUp) {
  if (gaveUp) {
    call_.reset();
    connection_.lose();
    if (effect_ == Effect::change) return unknownChange();
    return {ErrorCode::stopped, "The statement was stopped. The server did not answer."};
  }
  if (SQL_SUCCEEDED(result) || result == SQL_NO_DATA) return {};
  const Diagnosis diagnosis = diagnose(call_->session->functions(), SQL_HANDLE_STMT, call_->handle.get());
  Status status = statusOf(diagnosis);
  // By a limit of its own, or by its keeper.
  if (status.code() == ErrorCode::stopped && !wasCancelled_) {
    status = {ErrorCode::inputOutput, "The server has stopped the statement: " + diagnosis.message};
  }
  // A cancelling that the driver manager held back until the statement failed throws away why it did.
  if (wasCancelled_ && diagnosis.state.empty()) status = {ErrorCode::stopped, "The statement was stopped."};
  SQLINTEGER isDead = SQL_CD_FALSE;
  call_->session->functions().getConnectionAttribute(call_->session->handle(), SQL_ATTR_CONNECTION_DEAD,
                                                     &isDead, 0, nullptr);
  if (!endsConnection(diagnosis.state) && isDead != SQL_CD_TRUE) return status;
  call_.reset();
  connection_.lose();
  return {ErrorCode::inputOutput, "The connection to the server was lost: " + status.message()};
}

bool OdbcStatement::isPrepared(const std::u16string& sql) const {
  return call_ != nullptr && call_->isPrepared && call_->session == connection_.session() &&
         call_->sql == sql;
}

Status OdbcStatement::bind(const Parameters& parameters) {
  for (const std::optional<std::string>& value : parameters) {
    if (value && value->find('\0') != std::string::npos) {
      return {ErrorCode::conversion, "The server's texts can't hold a zero character."};
    }
  }
  const OdbcFunctions& functions = call_->session->functions();
  call_->values.clear();
  call_->lengths.clear();
  call_->values.reserve(parameters.size());
  call_->lengths.reserve(parameters.size());
  for (std::size_t index = 0; index < parameters.size(); ++index) {
    call_->values.push_back(parameters[index] ? toUtf16(*parameters[index]) : std::u16string());
    std::u16string& value = call_->values.back();
    const auto length = static_cast<SQLLEN>(value.size() * sizeof(char16_t));
    call_->lengths.push_back(parameters[index] ? length : SQL_NULL_DATA);
    const SQLRETURN bound =
        functions.bindParameter(call_->handle.get(), static_cast<SQLUSMALLINT>(index + 1), SQL_PARAM_INPUT,
                                SQL_C_WCHAR, SQL_WLONGVARCHAR, std::max<SQLULEN>(value.size(), 1), 0,
                                wideOf(value), length, &call_->lengths.back());
    if (!SQL_SUCCEEDED(bound)) return outcomeOf(bound, false);
  }
  return {};
}

Status OdbcStatement::run(std::string_view sql, const Parameters& parameters) {
  if (Status status = prepareHandle(); !status) return status;
  call_->sql = toUtf16(sql);
  if (Status status = bind(parameters); !status) return status;
  return execute([call = call_] {
    return call->session->functions().executeDirect(call->handle.get(), wideOf(call->sql),
                                                    static_cast<SQLINTEGER>(call->sql.size()));
  });
}

Status OdbcStatement::runPrepared(std::string_view sql, const Parameters& parameters) {
  std::function<SQLRETURN()> call;
  Status status = prepareCall(sql, parameters, &call);
  return status ? execute(std::move(call)) : status;
}

Status OdbcStatement::beginPrepared(std::string_view sql, const Parameters& parameters) {
  std::function<SQLRETURN()> call;
  Status status = prepareCall(sql, parameters, &call);
  if (status) connection_.begin({call_, call_->handle.get()}, std::move(call));
  return status;
}

Status OdbcStatement::endPrepared() {
  return noteAnswer(connection_.end(true));
}

void OdbcStatement::abandonPrepared() {
  // Whoever lost interest in the answer needn't know what became of it either.
  static_cast<void>(noteAnswer(connection_.end(false)));
}

Status OdbcStatement::prepareCall(std::string_view sql, const Parameters& parameters,
                                  std::function<SQLRETURN()>* ready) {
  std::u16string text = toUtf16(sql);
  if (isPrepared(text)) {
    columnCount_ = 0;
    affected_ = 0;
    call_->session->functions().freeStatement(call_->handle.get(), SQL_CLOSE);
  } else {
    if (Status status = prepareHandle(); !status) return status;
    call_->sql = std::move(text);
  }
  if (Status status = bind(parameters); !status) return status;
  *ready = [call = call_] {
    const OdbcFunctions& functions = call->session->functions();
    if (!call->isPrepared) {
      const SQLRETURN prepared =
          functions.prepare(call->handle.get(), wideOf(call->sql), static_cast<SQLINTEGER>(call->sql.size()));
      if (!SQL_SUCCEEDED(prepared)) return prepared;
      call->isPrepared = true;
    }
    return functions.execute(call->handle.get());
  };
  return {};
}

Status OdbcStatement::execute(std::function<SQLRETURN()> call) {
  return noteAnswer(connection_.perform({call_, call_->handle.get()}, std::move(call)));
}

Status OdbcStatement::noteAnswer(const OdbcConnection::Performed& performed) {
  wasCancelled_ = performed.wasCancelled;
  if (Status status = outcomeOf(performed.result, performed.gaveUp); !status) return status;
  const OdbcFunctions& functions = call_->session->functions();
  // A change that met no row answers nothing, whatever it was to return.
  if (performed.result == SQL_NO_DATA) return {};
  SQLSMALLINT columns = 0;
  functions.resultColumnCount(call_->handle.get(), &columns);
  columnCount_ = static_cast<std::size_t>(std::max<SQLSMALLINT>(columns, 0));
  SQLLEN rows = 0;
  functions.rowCount(call_->handle.get(), &rows);
  affected_ = std::max<SQLLEN>(rows, 0);
  return {};
}

Status OdbcStatement::answered() const {
  if (!wasCancelled_) return {};
  return effect_ == Effect::change ? unknownChange()
                                   : Status(ErrorCode::stopped, "The statement was stopped.");
}

Status OdbcStatement::describe(std::string_view sql) {
  if (Status status = prepareHandle(); !status) return status;
  call_->sql = toUtf16(sql);
  const OdbcConnection::Performed performed =
      connection_.perform({call_, call_->handle.get()}, [call = call_] {
        SQLSMALLINT count = 0;
        const SQLRETURN prepared = call->session->functions().prepare(
            call->handle.get(), wideOf(call->sql), static_cast<SQLINTEGER>(call->sql.size()));
        // Only this question makes some drivers ask the server.
        return SQL_SUCCEEDED(prepared)
                   ? call->session->functions().resultColumnCount(call->handle.get(), &count)
                   : prepared;
      });
  wasCancelled_ = performed.wasCancelled;
  if (Status status = outcomeOf(performed.result, performed.gaveUp); !status) return status;
  if (Status status = answered(); !status) return status;
  SQLSMALLINT columns = 0;
  call_->session->functions().resultColumnCount(call_->handle.get(), &columns);
  columnCount_ = static_cast<std::size_t>(std::max<SQLSMALLINT>(columns, 0));
  return {};
}

std::string OdbcStatement::columnText(std::size_t index, SQLUSMALLINT what) const {
  std::array<SQLWCHAR, 256> text{};
  SQLSMALLINT length = 0;
  const SQLRETURN result = call_->session->functions().columnAttribute(
      call_->handle.get(), static_cast<SQLUSMALLINT>(index + 1), what, text.data(),
      static_cast<SQLSMALLINT>(sizeof text), &length, nullptr);
  if (!SQL_SUCCEEDED(result)) return {};
  return fromWide(text.data(),
                  static_cast<std::size_t>(std::find(text.begin(), text.end(), 0) - text.begin()));
}

std::string OdbcStatement::columnName(std::size_t index) const {
  return columnText(index, SQL_DESC_NAME);
}

std::string OdbcStatement::columnTypeName(std::size_t index) const {
  return columnText(index, SQL_DESC_TYPE_NAME);
}

Status OdbcStatement::next(bool* hasRow) {
  if (Status status = answered(); !status) return status;
  if (columnCount_ == 0) {
    *hasRow = false;
    return {};
  }
  const SQLRETURN result = call_->session->functions().fetch(call_->handle.get());
  if (Status status = outcomeOf(result, false); !status) return status;
  *hasRow = SQL_SUCCEEDED(result);
  return {};
}

Status OdbcStatement::read(std::size_t index, std::optional<std::string>* value) {
  std::vector<SQLWCHAR>& buffer = call_->buffer;
  std::u16string units;
  for (;;) {
    SQLLEN length = 0;
    const SQLRETURN result = call_->session->functions().getData(
        call_->handle.get(), static_cast<SQLUSMALLINT>(index + 1), SQL_C_WCHAR, buffer.data(),
        static_cast<SQLLEN>(buffer.size() * sizeof(SQLWCHAR)), &length);
    if (result == SQL_NO_DATA) break;
    if (Status status = outcomeOf(result, false); !status) return status;
    if (length == SQL_NULL_DATA) {
      value->reset();
      return {};
    }
    const bool isWhole = result == SQL_SUCCESS;
    // A part fills the buffer but for its terminator.
    const std::size_t count =
        isWhole && length >= 0 ? static_cast<std::size_t>(length) / sizeof(SQLWCHAR) : buffer.size() - 1;
    const auto* read = reinterpret_cast<const char16_t*>(buffer.data());
    if (isWhole && units.empty()) {
      *value = fromWide(buffer.data(), std::min(count, buffer.size() - 1));
      return {};
    }
    units.append(read, std::min(count, buffer.size() - 1));
    if (isWhole) break;
  }
  *value = fromWide(reinterpret_cast<const SQLWCHAR*>(units.data()), units.size());
  return {};
}

OdbcStatement::TextBlock::TextBlock() : texts_(kTextsAtOnce * kTextStride), lengths_(kTextsAtOnce) {}

std::string_view OdbcStatement::TextBlock::at(std::size_t row) const {
  const SQLLEN length = lengths_[row];
  return {texts_.data() + row * kTextStride, length == SQL_NULL_DATA ? 0 : static_cast<std::size_t>(length)};
}

Status OdbcStatement::readTexts(TextBlock& block, const std::function<bool(std::string_view text)>& take) {
  if (Status status = answered(); !status) return status;
  if (columnCount_ == 0) return {};
  const OdbcFunctions& functions = call_->session->functions();
  SQLHSTMT handle = call_->handle.get();
  SQLULEN fetched = 0;
  functions.setStatementAttribute(handle, SQL_ATTR_ROW_ARRAY_SIZE, pointerOf(kTextsAtOnce), 0);
  functions.setStatementAttribute(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
  functions.bindColumn(handle, 1, SQL_C_BINARY, block.texts_.data(), static_cast<SQLLEN>(kTextStride),
                       block.lengths_.data());
  SQLRETURN result = SQL_SUCCESS;
  bool isReadable = true;
  while (isReadable) {
    // What the driver says nothing of is not taken for what was there before.
    std::fill(block.lengths_.begin(), block.lengths_.end(), SQLLEN{SQL_NO_TOTAL});
    result = functions.fetch(handle);
    if (!SQL_SUCCEEDED(result)) break;
    isReadable = fetched <= kTextsAtOnce;
    for (std::size_t row = 0; row < fetched && isReadable; ++row) {
      // Of a longer one only a part has come.
      const SQLLEN length = block.lengths_[row];
      isReadable = (length == SQL_NULL_DATA || length >= 0) &&
                   length <= static_cast<SQLLEN>(kMostTextBytes) && take(block.at(row));
    }
  }
  Status status = outcomeOf(result, false);
  if (status && !isReadable) status = {ErrorCode::inputOutput, "The server's answer can't be read."};
  // The block goes its own way; a handle that is used again must not know it.
  call_.reset();
  columnCount_ = 0;
  return status;
}

Status OdbcStatement::readIntegers(std::vector<std::int64_t>* integers) {
  if (Status status = answered(); !status) return status;
  if (columnCount_ == 0) return {};
  const OdbcFunctions& functions = call_->session->functions();
  SQLHSTMT handle = call_->handle.get();
  std::vector<std::int64_t> block(kIntegersAtOnce);
  std::vector<SQLLEN> lengths(kIntegersAtOnce);
  SQLULEN fetched = 0;
  functions.setStatementAttribute(handle, SQL_ATTR_ROW_ARRAY_SIZE, pointerOf(kIntegersAtOnce), 0);
  functions.setStatementAttribute(handle, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
  functions.bindColumn(handle, 1, SQL_C_SBIGINT, block.data(), sizeof(std::int64_t), lengths.data());
  SQLRETURN result = SQL_SUCCESS;
  while (SQL_SUCCEEDED(result = functions.fetch(handle))) {
    integers->insert(integers->end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(fetched));
  }
  Status status = outcomeOf(result, false);
  // The buffers go; a handle that is used again must not know them.
  call_.reset();
  columnCount_ = 0;
  return status;
}

}  // namespace store
