#pragma once

/// Whether the data-access components are registered, and where there are some beside this program, those:
/// not so when the program's folder was moved. By any thread. Throws std::bad_alloc.
bool areComponentsRegistered();

/// Registers them. Each library registers itself; failures are ignored: opening a database tells what is
/// missing.
void registerComponents();
