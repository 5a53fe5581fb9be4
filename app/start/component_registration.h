#pragma once

/// Registers the data-access components when they are not registered yet, and again when the program's
/// folder was moved: when the registered module is not the one beside this program. Each library
/// registers itself; failures are ignored: opening a database tells what is missing.
void registerComponents();
