#pragma once

#include <filesystem>
#include <initializer_list>
#include <string>

/// Registers the components of the bin folder, or takes the registration away. False when the module
/// can't be loaded or refuses.
bool registerBinComponents();
bool unregisterBinComponents();

/// Makes a database file through the data-access components and runs the statements in it, in order.
/// The components are registered first. Fails the running test when anything fails.
void makeDatabase(const std::filesystem::path& path, std::initializer_list<const wchar_t*> statements);

/// Runs statements in a database that exists, in order. Fails the running test when anything fails.
void runStatements(const std::filesystem::path& path, std::initializer_list<const wchar_t*> statements);

/// The default value of a key of HKEY_CLASSES_ROOT, empty when there is none.
std::wstring classesValue(const std::wstring& key);

/// The module that serves the components' Connection class, empty when none is registered.
std::wstring registeredComponents();
