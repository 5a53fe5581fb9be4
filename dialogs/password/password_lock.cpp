#include "dialogs/password/password_lock.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

#include "base/settings/app_settings.h"
#include "base/settings/settings_store.h"
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

/// Whether anybody can enter it: another program, or a hand, may have written anything in its place.
bool isTypable(const String& password) {
  const std::wstring_view text = password.text();
  constexpr wchar_t kFirstVisible = L' ';
  return text.size() <= PasswordDialog::kLongestPassword &&
         std::all_of(text.begin(), text.end(), [](wchar_t character) { return character >= kFirstVisible; });
}

void tell(HWND next, const wchar_t* caption, const wchar_t* text, UINT icon) {
  showUnownedBox(next, text, caption, icon);
}

/// Who can't know the password is not left without a way back in.
void tellIfUntypable(HWND next, const String& stored) {
  if (isTypable(stored)) return;
  tell(next, L"Incorrect Password!",
       L"The password among the settings can't be typed: another program has changed it.\nDelete its value "
       L"PasswordItem, and every password is right.",
       MB_ICONEXCLAMATION);
}

/// False when the passwords that were typed change nothing: the user was told why.
bool isChangeAllowed(HWND owner, const PasswordDialog& dialog, const String& stored) {
  if (!isSamePassword(dialog.text(0), stored)) {
    tell(owner, L"Incorrect Password!", L"You have entered the old password incorrectly,\nplease try again",
         MB_ICONEXCLAMATION);
    tellIfUntypable(owner, stored);
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
    tellIfUntypable(owner, stored);
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
