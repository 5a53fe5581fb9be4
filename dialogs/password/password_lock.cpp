#include "dialogs/password/password_lock.h"

#include <cwchar>

#include "base/app_settings.h"
#include "base/settings_store.h"
#include "dialogs/password/password_dialog.h"
#include "views/shared/unowned_box.h"

namespace {

String inUpperCase(String text) {
  text.toUpperCase();
  return text;
}

bool isSamePassword(const String& one, const String& other) {
  return std::wcscmp(inUpperCase(one).text(), inUpperCase(other).text()) == 0;
}

bool readPassword(String& password) {
  return SettingsStore::read(Setting::password, password);
}

/// Writes it and looks whether it is there: the settings do not say what became of a value.
bool storePassword(const String& password) {
  SettingsStore::write(Setting::password, password);
  String stored;
  return readPassword(stored) && std::wcscmp(stored.text(), password.text()) == 0;
}

void tell(HWND next, const wchar_t* caption, const wchar_t* text, UINT icon) {
  showUnownedBox(next, text, caption, icon);
}

/// False when the passwords that were typed change nothing: the user was told why.
bool isChangeAllowed(HWND owner, const PasswordDialog& dialog, const String& stored) {
  if (!isSamePassword(dialog.text(0), stored)) {
    tell(owner, L"Incorrect Password!", L"You have entered the old password incorrectly,\nplease try again",
         MB_ICONEXCLAMATION);
    return false;
  }
  if (!isSamePassword(dialog.text(1), dialog.text(2))) {
    tell(owner, L"Password not changed!", L"The new password and confirmation must be the same",
         MB_ICONEXCLAMATION);
    return false;
  }
  return true;
}

}  // namespace

void checkPassword(HWND owner) {
  appUnlocked = false;
  PasswordDialog dialog = PasswordDialog::enter();
  bool confirmed = dialog.run(owner);
  String stored;
  if (!readPassword(stored)) {
    appUnlocked = true;
    return;
  }
  while (confirmed && !isSamePassword(dialog.text(0), stored)) {
    tell(owner, L"Incorrect Password!", L"You have entered the incorrect Password,\nplease try again",
         MB_ICONEXCLAMATION);
    confirmed = dialog.run(owner);
  }
  appUnlocked = confirmed;
}

LRESULT changePassword(HWND owner) {
  String stored;
  readPassword(stored);
  PasswordDialog dialog = PasswordDialog::change();
  do {
    if (!dialog.run(owner)) return 0;
  } while (!isChangeAllowed(owner, dialog, stored));
  if (storePassword(inUpperCase(dialog.text(1)))) {
    tell(owner, L"Password", L"Password successfully changed", MB_ICONINFORMATION);
  } else {
    tell(owner, L"Password", L"Password could not be changed", MB_ICONEXCLAMATION);
  }
  return 0;
}
