#include "platform/store/odbc/driver/diagnostics.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

#include "platform/store/rows/utf.h"

namespace store {

namespace {

constexpr std::size_t kStateLength = 5;

/// The code for each state that begins like this: the first row that fits. The states are those of the SQL
/// standard, of ODBC ("Appendix A: ODBC Error Codes") and of PostgreSQL ("Appendix A. PostgreSQL Error
/// Codes").
struct CodeOfStates {
  std::string_view beginning;
  ErrorCode code;
};
constexpr std::array<CodeOfStates, 37> kCodes{{
    {"08", ErrorCode::inputOutput},      {"0A", ErrorCode::notAvailable},
    {"21", ErrorCode::errorsInCommand},  {"22", ErrorCode::conversion},
    {"23", ErrorCode::constraint},       {"25006", ErrorCode::readOnly},
    {"28", ErrorCode::cannotOpen},       {"34", ErrorCode::structureChanged},
    {"3D", ErrorCode::cannotOpen},       {"3F", ErrorCode::noTable},
    {"40", ErrorCode::locked},           {"42501", ErrorCode::readOnly},
    {"42P01", ErrorCode::noTable},       {"42S02", ErrorCode::noTable},
    {"42703", ErrorCode::badColumn},     {"42S22", ErrorCode::badColumn},
    {"42P07", ErrorCode::tableExists},   {"42S01", ErrorCode::tableExists},
    {"42710", ErrorCode::tableExists},   {"42", ErrorCode::errorsInCommand},
    {"44", ErrorCode::constraint},       {"53200", ErrorCode::outOfMemory},
    {"53", ErrorCode::inputOutput},      {"54", ErrorCode::tooLarge},
    {"55P03", ErrorCode::locked},        {"55006", ErrorCode::locked},
    {"55", ErrorCode::illegalOperation}, {"57014", ErrorCode::stopped},
    {"57", ErrorCode::inputOutput},      {"58", ErrorCode::inputOutput},
    {"HY001", ErrorCode::outOfMemory},   {"HY008", ErrorCode::stopped},
    {"HY", ErrorCode::inputOutput},      {"IM", ErrorCode::cannotOpen},
    {"XX001", ErrorCode::damaged},       {"XX002", ErrorCode::damaged},
    {"XX", ErrorCode::inputOutput},
}};

/// "[maker][driver]ERROR: sentence;\nError while ..." without what is no part of the sentence.
std::string sentenceOf(std::string text) {
  while (text.starts_with('[')) {
    const std::size_t end = text.find(']');
    if (end == std::string::npos) break;
    text.erase(0, end + 1);
  }
  // The driver's own remark about the call stands behind the server's sentence.
  if (const std::size_t end = text.rfind(";\n"); end != std::string::npos) text.resize(end);
  for (const std::string_view level : {"ERROR: ", "FATAL: ", "PANIC: "}) {
    if (text.starts_with(level)) text.erase(0, level.size());
  }
  // PostgreSQL's library sets what it adds on lines of its own in from the left.
  for (std::size_t tab = 0; (tab = text.find("\n\t", tab)) != std::string::npos;) text.erase(tab + 1, 1);
  const auto isSpace = [](char sign) { return sign == ' ' || sign == '\n' || sign == '\r' || sign == '\t'; };
  text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isSpace));
  while (!text.empty() && isSpace(text.back())) text.pop_back();
  return text;
}

}  // namespace

Diagnosis diagnose(const OdbcFunctions& functions, SQLSMALLINT handleType, SQLHANDLE handle) {
  std::array<SQLWCHAR, kStateLength + 1> state{};
  std::vector<SQLWCHAR> message(1024);
  SQLINTEGER native = 0;
  SQLSMALLINT length = 0;
  SQLRETURN result = functions.getDiagnostics(handleType, handle, 1, state.data(), &native, message.data(),
                                              static_cast<SQLSMALLINT>(message.size()), &length);
  if (SQL_SUCCEEDED(result) && static_cast<std::size_t>(length) >= message.size() && length < 32000) {
    message.resize(static_cast<std::size_t>(length) + 1);
    result = functions.getDiagnostics(handleType, handle, 1, state.data(), &native, message.data(),
                                      static_cast<SQLSMALLINT>(message.size()), &length);
  }
  Diagnosis diagnosis;
  if (!SQL_SUCCEEDED(result)) return diagnosis;
  for (std::size_t index = 0; index < kStateLength && state[index] != 0; ++index) {
    diagnosis.state += static_cast<char>(state[index]);
  }
  const auto end = std::find(message.begin(), message.end(), SQLWCHAR{0});
  const std::u16string units(message.begin(), end);
  diagnosis.message = sentenceOf(toUtf8(units));
  return diagnosis;
}

ErrorCode codeOfState(std::string_view state) {
  for (const CodeOfStates& row : kCodes) {
    if (state.starts_with(row.beginning)) return row.code;
  }
  return state.empty() ? ErrorCode::inputOutput : ErrorCode::errorsInCommand;
}

bool endsConnection(std::string_view state) {
  return state.starts_with("08") || state.starts_with("57P");
}

Status statusOf(const Diagnosis& diagnosis) {
  const ErrorCode code = codeOfState(diagnosis.state);
  if (code == ErrorCode::stopped) return {code, "The statement was stopped."};
  std::string message = diagnosis.message;
  if (message.empty()) message = "The database's driver failed without a reason.";
  return {code, std::move(message)};
}

}  // namespace store
