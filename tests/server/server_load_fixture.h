#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/store/exchange/bytes/byte_source.h"
#include "platform/store/exchange/export.h"
#include "platform/store/exchange/import.h"
#include "tests/server/server_fixture.h"

namespace store {

/// Notes what is rejected, and goes on until `whileStoring` says no.
class LoadObserver : public exchange::ImportObserver, public exchange::ExportObserver {
 public:
  bool goesOn(bool isStoring, std::int64_t, std::int64_t) override {
    return !isStoring || !whileStoring || whileStoring();
  }
  bool goesOn(std::int64_t) override { return true; }
  Status rejected(const exchange::Record& record, const std::string& reason) override {
    std::string fields;
    for (const exchange::Field& field : record.fields) {
      if (keepsFields) fields += std::string(field.text) + ",";
    }
    rejects.push_back(std::to_string(record.line) + ": " + fields + " " +
                      reason.substr(0, reason.find('\n')));
    return {};
  }

  bool keepsFields = true;
  std::vector<std::string> rejects;
  std::function<bool()> whileStoring;
};

/// Imports into the table t.
class ServerLoadFixture : public StoreTest {
 protected:
  Status tryImport(const std::string& file, exchange::ImportMode mode = exchange::ImportMode::allOrNothing) {
    exchange::MemorySource source(file);
    exchange::ImportPlan plan;
    observer_.rejects.clear();
    options_.table = "t";
    Status status = exchange::planImport(*backend_, source, options_, observer_, &plan);
    if (status) status = exchange::runImport(*backend_, source, plan, mode, observer_, &result_);
    return status;
  }
  void import(const std::string& file, exchange::ImportMode mode = exchange::ImportMode::allOrNothing) {
    const Status status = tryImport(file, mode);
    ASSERT_TRUE(status) << status.message();
  }
  std::string onServer(const std::string& sql) { return OtherProgram(path_).ask(sql); }

  LoadObserver observer_;
  exchange::ImportOptions options_;
  exchange::ImportResult result_;
};

}  // namespace store
