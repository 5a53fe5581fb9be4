#pragma once

#include <windows.h>

#include <oleauto.h>

#include <vector>

#include "platform/store/automation/values/com_values.h"

namespace automation {

/// The arguments of a late-bound call of Execute, with a place of their own for the number of records. The
/// system's dispatching can write the number back only where the caller gave a reference to a VARIANT: where
/// he gave nothing or a plain value, Wine makes the call and reports a type mismatch afterwards, as if the
/// statement had not been run.
class ExecuteArguments {
 public:
  /// The caller's references and the values in `given` must outlive the object. Throws std::bad_alloc.
  explicit ExecuteArguments(const DISPPARAMS& given);
  ExecuteArguments(const ExecuteArguments&) = delete;
  ExecuteArguments& operator=(const ExecuteArguments&) = delete;

  /// What to call with, each argument in the place where the caller has it. Holds as long as this object.
  DISPPARAMS* get() { return &parameters_; }

 private:
  std::vector<VARIANT> values_;  // nothing in it is owned
  OwnedVariant place_;
  DISPPARAMS parameters_;
};

}  // namespace automation
