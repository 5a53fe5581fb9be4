// Stories of a field of bytes: a picture that is looked at, loaded and saved.
#include <string>

#include "tests/ui/form/sample_pictures.h"
#include "tests/ui/remote/story_test.h"
#include "tests/ui/remote/user_input.h"
#include "views/bytes/bytes_ids.h"
#include "views/form/popup_ids.h"

using testing::ElementsAre;

namespace {

constexpr int kPhoto = 1200;

class BytesStory : public StoryTest {
 protected:
  void makePhotos(const std::wstring& value) {
    makeDatabase(path(), {L"CREATE TABLE 'Photos' (photo Image, note Text)",
                          (L"INSERT INTO Photos VALUES (" + value + L", 'n')").c_str()});
  }

  /// The dialog of the first field, which has the focus.
  HWND openBytes(User& user) {
    user.showPage(OpenedDatabase::kFormPage);
    if (user.hasMouse()) {
      user.pressEditor(kPhoto);
      user.pressEditor(kPhoto);
    } else {
      EXPECT_TRUE(remote::waitUntil([&] { return remote::control(user.main(), kPhoto) != nullptr; }));
      userinput::press(VK_F2);
    }
    return user.dialog(L"photo");
  }
  static std::wstring note(HWND dialog) { return remote::text(GetDlgItem(dialog, IDC_BYTES_NOTE)); }
};

TEST_P(BytesStory, APictureIsLoadedIntoARecordAndStored) {
  makePhotos(L"NULL");
  const Bytes picture = samples::bytesOf(samples::kPng);
  testsupport::writeFile(file("photo.png"), {reinterpret_cast<const char*>(picture.data()), picture.size()});
  User& user = start();
  const HWND dialog = openBytes(user);
  EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_BYTES_PICTURE)));
  user.press(dialog, IDC_BYTES_LOAD);
  user.chooseFile(file("photo.png"));
  EXPECT_TRUE(remote::waitUntil([&] { return note(dialog) == L"PNG, 3 \x00D7 2 points"; }));
  EXPECT_TRUE(IsWindowVisible(GetDlgItem(dialog, IDC_BYTES_PICTURE)));
  user.accept(dialog);
  end();
  EXPECT_THAT(stored("SELECT lower(hex(photo)) FROM Photos"), ElementsAre(std::string(samples::kPng)));
}

TEST_P(BytesStory, APictureIsSavedInAFileAndCleared) {
  makePhotos(L"x'" + std::wstring(samples::kJpeg.begin(), samples::kJpeg.end()) + L"'");
  User& user = start();
  const HWND dialog = openBytes(user);
  EXPECT_TRUE(remote::waitUntil([&] { return note(dialog) == L"JPEG, 8 \x00D7 8 points"; }));
  user.press(dialog, IDC_BYTES_SAVE);
  user.chooseFile(file("saved.jpg"));
  user.answer(L"Quivane", L"The bytes were saved in\n" + file("saved.jpg").wstring(), IDOK);
  user.press(dialog, IDC_BYTES_CLEAR);
  EXPECT_TRUE(remote::waitUntil([&] { return IsWindowVisible(GetDlgItem(dialog, IDC_ZOOM_TEXT)) != FALSE; }));
  user.accept(dialog);
  end();
  EXPECT_THAT(stored("SELECT photo IS NULL FROM Photos"), ElementsAre("1"));
  const Bytes picture = samples::bytesOf(samples::kJpeg);
  EXPECT_EQ(testsupport::contentOf(file("saved.jpg")), std::string(picture.begin(), picture.end()));
}

TELL_WITH_BOTH_HANDS(BytesStory);

}  // namespace
