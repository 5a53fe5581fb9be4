#pragma once

#include <string>

#include "owners/handles.h"

/// What the user has typed into the form and the dialogs that are open and what is stored nowhere yet, for
/// him to read: the file, the table and the number of the record, and each text under its name. Empty when
/// there is nothing. Passwords are left out. May throw std::bad_alloc.
std::wstring typedText();

/// As long as it lives, typedText() is given to the watch over faults after each message of the thread that
/// made it (the thread of the windows), before the next one is looked at. At most one.
class TypedTextKeeper {
 public:
  TypedTextKeeper();
  TypedTextKeeper(const TypedTextKeeper&) = delete;
  TypedTextKeeper& operator=(const TypedTextKeeper&) = delete;

 private:
  UniqueHook hook_;
};
