#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/settings/settings_store.h"
#include "gtest/gtest.h"
#include "owners/handles.h"
#include "owners/live_resources.h"

/// A test with a registry of its own: while it runs, HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE of this
/// process lead to two fresh, empty keys below the real current user, which are removed afterwards. So
/// nothing that the user has stored is read or changed. At its end no resource may be left open.
class RegistryTest : public testing::Test {
 protected:
  using Bytes = std::vector<unsigned char>;

  struct Value {
    DWORD type = REG_NONE;
    Bytes bytes;
    bool operator==(const Value&) const = default;
  };

  void SetUp() override {
    liveBefore_ = LiveResources::countOfAll();
    scratchPath_ = L"Software\\Quivane tests " + std::to_wstring(GetCurrentProcessId());
    RegDeleteTreeW(HKEY_CURRENT_USER, scratchPath_.c_str());
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, scratchPath_.c_str(), scratch_.put()), ERROR_SUCCESS);
    // The ways into the real keys, for as long as their names are taken.
    ASSERT_EQ(RegOpenCurrentUser(KEY_ALL_ACCESS, realUser_.put()), ERROR_SUCCESS);
    redirect(HKEY_CURRENT_USER, L"user");
    redirect(HKEY_LOCAL_MACHINE, L"machine");
  }

  void TearDown() override {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    scratch_.reset();
    EXPECT_EQ(RegDeleteTreeW(realUser_.get(), scratchPath_.c_str()), ERROR_SUCCESS);
    realUser_.reset();
    EXPECT_EQ(LiveResources::countOfAll(), liveBefore_) << "a resource was left open";
  }

  /// Makes keys of the settings impossible to create: none that lasts may lie below one that doesn't.
  void forbidWriting() {
    UniqueRegistryKey key;
    ASSERT_EQ(RegCreateKeyExW(scratch_.get(), L"volatile user", 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, key.put(), nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(HKEY_CURRENT_USER, key.get()), ERROR_SUCCESS);
  }

  static std::wstring pathOf(const wchar_t* subkey) {
    return std::wstring(L"Software\\MorvaleSoftware\\Quivane for Pocket PC\\") + subkey;
  }

  static bool keyExists(const wchar_t* subkey) {
    UniqueRegistryKey key;
    return RegOpenKeyExW(HKEY_CURRENT_USER, pathOf(subkey).c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS;
  }

  static void makeKey(const wchar_t* subkey) {
    UniqueRegistryKey key;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, pathOf(subkey).c_str(), key.put()), ERROR_SUCCESS);
  }

  static void setRaw(const wchar_t* subkey, const wchar_t* name, DWORD type, const Bytes& bytes) {
    UniqueRegistryKey key;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, pathOf(subkey).c_str(), key.put()), ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExW(key.get(), name, 0, type, bytes.data(), static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
  }

  /// What is stored; REG_NONE and no bytes when the value is missing.
  static Value raw(const wchar_t* subkey, const wchar_t* name) {
    UniqueRegistryKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, pathOf(subkey).c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) {
      return {};
    }
    Value value;
    DWORD byteCount = 0;
    if (RegQueryValueExW(key.get(), name, nullptr, &value.type, nullptr, &byteCount) != ERROR_SUCCESS) {
      return {};
    }
    value.bytes.resize(byteCount);
    RegQueryValueExW(key.get(), name, nullptr, nullptr, value.bytes.data(), &byteCount);
    return value;
  }

  static Bytes bytesOfText(const std::wstring& text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    return Bytes(bytes, bytes + text.size() * sizeof(wchar_t));
  }

  static Value textValue(const std::wstring& text) { return {REG_SZ, bytesOfText(text + L'\0')}; }

  static Value dwordValue(std::uint32_t value) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
    return {REG_DWORD, Bytes(bytes, bytes + sizeof value)};
  }

 private:
  void redirect(HKEY predefined, const wchar_t* name) {
    UniqueRegistryKey key;
    ASSERT_EQ(RegCreateKeyW(scratch_.get(), name, key.put()), ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(predefined, key.get()), ERROR_SUCCESS);
  }

  long liveBefore_ = 0;
  std::wstring scratchPath_;
  UniqueRegistryKey scratch_;
  UniqueRegistryKey realUser_;
};
