#include "views/bytes/bytes_zoom.h"

#include <algorithm>

#include "gmock/gmock.h"
#include "tests/support/exclusive_lock.h"
#include "tests/ui/form/form_fixture.h"
#include "tests/ui/form/sample_pictures.h"
#include "tests/ui/support/dialog_script.h"
#include "tests/ui/support/graphics_objects.h"
#include "tests/ui/support/message_boxes.h"
#include "tests/ui/support/test_database.h"
#include "tests/ui/support/window_reading.h"
#include "tests/ui/support/with_com.h"
#include "views/bytes/bytes_ids.h"
#include "views/bytes/picture.h"
#include "views/form/popup_ids.h"
#include "views/form/text_field_editor.h"

namespace {

using samples::bytesOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// As the dialog tells it.
std::vector<std::wstring> textsOf(const std::vector<MessageBoxes::Box>& boxes) {
  std::vector<std::wstring> texts;
  for (const MessageBoxes::Box& box : boxes) texts.push_back(box.text);
  return texts;
}

class BytesZoomTest : public FormFixture {
 protected:
  /// A table of one record, with a field of bytes.
  void showBytes(const std::wstring& value) {
    showTable(L"CREATE TABLE 'T' (photo Image, note Text)",
              {(L"INSERT INTO T VALUES (" + value + L", 'n')").c_str()});
  }
  void showBytes(std::string_view digits) {
    showBytes(L"x'" + std::wstring(digits.begin(), digits.end()) + L"'");
  }

  /// Opens the dialog of the first field; `use` has to close it.
  void open(const DialogScript::Step& use) {
    DialogScript script(use);
    SendMessageW(textEditor(), kZoomMessage, 0, 0);
    EXPECT_EQ(script.count(), 1);
  }
  /// Three bytes from a file, over the two that are there.
  void loadMoreThanTheFieldTakes() {
    showTable(L"CREATE TABLE 'T' (photo Image CHECK (length(photo) < 3), note Text)",
              {L"INSERT INTO T VALUES (x'4142', 'n')"});
    prompts().file = write(bytesOf("505152")).c_str();
    open([&](HWND dialog) {
      press(dialog, IDC_BYTES_LOAD);
      press(dialog, IDOK);
    });
  }
  static bool isShown(HWND dialog, int id) { return (styleOf(GetDlgItem(dialog, id)) & WS_VISIBLE) != 0; }
  static bool isEnabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; }
  static std::wstring note(HWND dialog) { return textOf(GetDlgItem(dialog, IDC_BYTES_NOTE)); }
  static std::wstring digits(HWND dialog) { return textOf(GetDlgItem(dialog, IDC_ZOOM_TEXT)); }
  static void press(HWND dialog, int id) { SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(id), 0); }

  /// The first field's value as the file has it: "NULL" or "X'...'".
  std::wstring stored() {
    Database database;
    String text;
    if (database.open(path().c_str()) && database.openRecordset(L"Select quote(photo) From [T]")) {
      text = database.valueText(0);
    }
    currentRecord = 1;
    return text.text();
  }
  static std::wstring quoted(const Bytes& bytes) {
    std::wstring text = L"X'";
    for (const std::uint8_t byte : bytes) {
      text += L"0123456789ABCDEF"[byte >> 4];
      text += L"0123456789ABCDEF"[byte & 15];
    }
    return text + L"'";
  }

  std::filesystem::path write(const Bytes& bytes) {
    const std::filesystem::path file = path().parent_path() / "picture.bin";
    testsupport::writeFile(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    return file;
  }
  static Bytes contentOf(const std::filesystem::path& file) {
    const std::string content = testsupport::contentOf(file);
    return {content.begin(), content.end()};
  }

 private:
  WithCom com_;
};

// ---- Looking

struct FormatRow {
  std::string_view digits;
  const wchar_t* note;
};

class EachFormatTest : public BytesZoomTest, public testing::WithParamInterface<FormatRow> {};

TEST_P(EachFormatTest, IsShownAsAPictureAndLookedAtWithoutAChange) {
  showBytes(GetParam().digits);
  open([](HWND dialog) {
    EXPECT_EQ(textOf(dialog), L"photo");
    EXPECT_EQ(note(dialog), GetParam().note);
    EXPECT_TRUE(isShown(dialog, IDC_BYTES_PICTURE));
    EXPECT_FALSE(isShown(dialog, IDC_ZOOM_TEXT));
    const auto shown = reinterpret_cast<HBITMAP>(
        SendDlgItemMessageW(dialog, IDC_BYTES_PICTURE, STM_GETIMAGE, IMAGE_BITMAP, 0));
    BITMAP about{};
    EXPECT_NE(GetObjectW(shown, sizeof(about), &about), 0);
    RECT room{};
    GetClientRect(GetDlgItem(dialog, IDC_BYTES_PICTURE), &room);
    EXPECT_EQ(about.bmWidth, room.right) << "what is beside it is white";
    EXPECT_EQ(about.bmHeight, room.bottom);
    EXPECT_TRUE(isEnabled(dialog, IDC_BYTES_LOAD));
    EXPECT_TRUE(isEnabled(dialog, IDC_BYTES_SAVE));
    EXPECT_TRUE(isEnabled(dialog, IDC_BYTES_CLEAR));
    DialogScript::close(dialog, IDOK);
  });
  EXPECT_FALSE(view().takeChange());
  commit();
  EXPECT_EQ(stored(), quoted(bytesOf(GetParam().digits)));
}

INSTANTIATE_TEST_SUITE_P(Pictures, EachFormatTest,
                         testing::Values(FormatRow{samples::kPng, L"PNG, 3 \x00D7 2 points"},
                                         FormatRow{samples::kGif, L"GIF, 3 \x00D7 2 points"},
                                         FormatRow{samples::kBmp, L"BMP, 3 \x00D7 2 points"},
                                         FormatRow{samples::kJpeg, L"JPEG, 8 \x00D7 8 points"}));

TEST_F(BytesZoomTest, BytesThatAreNoPictureAreShownAndTypedAsDigits) {
  showBytes("4142");
  open([](HWND dialog) {
    EXPECT_EQ(digits(dialog), L"41 42");
    EXPECT_EQ(note(dialog), L"");
    EXPECT_FALSE(isShown(dialog, IDC_BYTES_PICTURE));
    SetDlgItemTextW(dialog, IDC_ZOOM_TEXT, L"43 44 45");
    SendDlgItemMessageW(dialog, IDC_ZOOM_TEXT, EM_SETMODIFY, TRUE, 0);
    press(dialog, IDOK);
  });
  commit();
  EXPECT_EQ(stored(), L"X'434445'");
}

TEST_F(BytesZoomTest, ADamagedPictureIsSaidToBeAndItsBytesAreShown) {
  showBytes(samples::kPng.substr(0, 96));
  open([](HWND dialog) {
    EXPECT_EQ(note(dialog), L"This PNG picture is damaged.");
    EXPECT_TRUE(isShown(dialog, IDC_ZOOM_TEXT));
    EXPECT_THAT(digits(dialog), StartsWith(L"89 50 4E 47"));
    DialogScript::close(dialog, IDOK);
  });
  EXPECT_FALSE(view().takeChange());
}

TEST_F(BytesZoomTest, APictureThatWouldTakeAllMemoryIsNotDecoded) {
  std::string bomb(samples::kPng);
  bomb.replace(32, 16, "0000ffff0000ffff");
  showBytes(bomb);
  open([](HWND dialog) {
    EXPECT_EQ(note(dialog), L"Too large to be shown: 65535 \x00D7 65535 points");
    EXPECT_TRUE(isShown(dialog, IDC_ZOOM_TEXT));
    DialogScript::close(dialog, IDCANCEL);
  });
}

TEST_F(BytesZoomTest, EveryCutAndEveryWrongByteOfAPictureLeavesTheProgramUp) {
  const WithCom com;
  for (const std::string_view sample : {samples::kPng, samples::kGif, samples::kBmp, samples::kJpeg}) {
    const Bytes whole = bytesOf(sample);
    for (std::size_t place = 0; place < whole.size(); ++place) {
      Bytes wrong = whole;
      wrong[place] = static_cast<std::uint8_t>(wrong[place] ^ 0xFF);
      if (const auto head = readPictureHead(wrong)) decodePicture(wrong, *head, {50, 50});
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(place));
      if (const auto head = readPictureHead(cut)) decodePicture(cut, *head, {50, 50});
    }
  }
}

TEST_F(BytesZoomTest, ItsGraphicsObjectsGoWithIt) {
  showBytes(samples::kPng);
  const auto look = [&] { open([](HWND dialog) { DialogScript::close(dialog, IDCANCEL); }); };
  look();
  const int before = graphicsObjectCount();
  for (int time = 0; time < 5; ++time) look();
  EXPECT_EQ(graphicsObjectCount(), before);
}

TEST_F(BytesZoomTest, BytesBehindALockAreSaidToBeUnreadable) {
  showBytes(samples::kPng);
  const auto lock = lockExclusively(path().wstring());
  ASSERT_TRUE(lock->isHeld());
  open([](HWND dialog) {
    EXPECT_EQ(note(dialog), L"The bytes can't be read now.");
    EXPECT_TRUE(isShown(dialog, IDC_ZOOM_TEXT));
    DialogScript::close(dialog, IDCANCEL);
  });
}

TEST_F(BytesZoomTest, TheKeyF2OpensItAndTheTextOfAnotherField) {
  showBytes(samples::kPng);
  int opened = 0;
  DialogScript script([&](HWND dialog) {
    EXPECT_EQ(GetDlgItem(dialog, IDC_BYTES_LOAD) != nullptr, opened == 0);
    ++opened;
    DialogScript::close(dialog, IDCANCEL);
  });
  for (int field : {0, 1}) {
    SendMessageW(textEditor(field), WM_KEYDOWN, VK_F2, 1);
    dispatchPosted();
  }
  EXPECT_EQ(script.count(), 2);
}

// ---- Loading and clearing

TEST_F(BytesZoomTest, AFileIsLoadedShownAndStored) {
  showBytes(L"NULL");
  prompts().file = write(bytesOf(samples::kPng)).c_str();
  open([&](HWND dialog) {
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_SAVE)) << "there is nothing yet";
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_CLEAR));
    press(dialog, IDC_BYTES_LOAD);
    EXPECT_EQ(note(dialog), L"PNG, 3 \x00D7 2 points");
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_SAVE)) << "it is not in the file yet";
    press(dialog, IDOK);
  });
  EXPECT_THAT(prompts().filesAskedFor, ElementsAre(FileChoice::bytesFrom));
  EXPECT_EQ(stored(), L"NULL") << "not before the record is stored";
  open([&](HWND dialog) {
    EXPECT_EQ(note(dialog), L"PNG, 3 \x00D7 2 points");
    DialogScript::close(dialog, IDCANCEL);
  });
  commit();
  EXPECT_EQ(stored(), quoted(bytesOf(samples::kPng)));
}

TEST_F(BytesZoomTest, BytesThatDifferOnlyWhereNobodySeesItAreStored) {
  showBytes(L"zeroblob(5000)");
  Bytes bytes(5000);
  bytes[4000] = 1;
  prompts().file = write(bytes).c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    press(dialog, IDOK);
  });
  commit();
  EXPECT_EQ(stored(), quoted(bytes));
}

TEST_F(BytesZoomTest, AFileWithoutABytesIsAValueOfNone) {
  showBytes("4142");
  prompts().file = write({}).c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    press(dialog, IDOK);
  });
  commit();
  EXPECT_EQ(stored(), L"X''");
}

TEST_F(BytesZoomTest, WhatIsTypedOverLoadedBytesCounts) {
  showBytes("4142");
  prompts().file = write(bytesOf("5051")).c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    press(dialog, IDOK);
  });
  EXPECT_EQ(textOf(textEditor()), L"50 51");
  SetWindowTextW(textEditor(), L"60 61");
  commit();
  EXPECT_EQ(stored(), L"X'6061'");
}

TEST_F(BytesZoomTest, CancelForgetsWhatWasLoaded) {
  showBytes("4142");
  prompts().file = write(bytesOf("5051")).c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    EXPECT_EQ(digits(dialog), L"50 51");
    press(dialog, IDCANCEL);
  });
  EXPECT_FALSE(view().takeChange());
  commit();
  EXPECT_EQ(stored(), L"X'4142'");
}

TEST_F(BytesZoomTest, ClearLeavesNoValue) {
  showBytes(samples::kPng);
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_CLEAR);
    EXPECT_TRUE(isShown(dialog, IDC_ZOOM_TEXT));
    EXPECT_EQ(note(dialog), L"");
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_CLEAR));
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_SAVE));
    press(dialog, IDOK);
  });
  commit();
  EXPECT_EQ(stored(), L"NULL");
}

TEST_F(BytesZoomTest, WhatWasLoadedGoesWithWhatIsDiscarded) {
  loadMoreThanTheFieldTakes();
  prompts().agrees = true;
  EXPECT_TRUE(document().canLeaveRecord());
  document().loadRecord();
  EXPECT_EQ(textOf(textEditor()), L"41 42");
  open([&](HWND dialog) {
    EXPECT_EQ(digits(dialog), L"41 42");
    press(dialog, IDCANCEL);
  });
  EXPECT_EQ(stored(), L"X'4142'");
}

TEST_F(BytesZoomTest, WhatCouldNotBeStoredIsStillThere) {
  loadMoreThanTheFieldTakes();
  prompts().agrees = false;
  for (int time = 0; time < 2; ++time) EXPECT_FALSE(document().canLeaveRecord());
  EXPECT_EQ(textOf(textEditor()), L"50 51 52");
}

TEST_F(BytesZoomTest, AFileThatCanNotBeLoadedIsTold) {
  showBytes("4142");
  MessageBoxes boxes;
  prompts().file = (path().parent_path() / "nowhere.png").c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    EXPECT_EQ(digits(dialog), L"41 42");
    press(dialog, IDOK);
  });
  EXPECT_THAT(textsOf(boxes.take()), ElementsAre(StartsWith(L"The file could not be loaded.\n")));
  EXPECT_FALSE(view().takeChange());
}

TEST_F(BytesZoomTest, AFileThatIsTooLargeIsTold) {
  showBytes("4142");
  MessageBoxes boxes;
  const std::filesystem::path file = write({});
  std::filesystem::resize_file(file, 100'000'001);
  prompts().file = file.c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    press(dialog, IDCANCEL);
  });
  EXPECT_THAT(textsOf(boxes.take()),
              ElementsAre(L"The file could not be loaded.\nIt has more than 100,000,000 bytes."));
}

// ---- Saving

TEST_F(BytesZoomTest, TheBytesAreSavedAsTheyAre) {
  showBytes(samples::kPng);
  const std::filesystem::path file = path().parent_path() / "out.png";
  prompts().file = file.c_str();
  MessageBoxes boxes;
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_SAVE);
    press(dialog, IDCANCEL);
  });
  EXPECT_THAT(textsOf(boxes.take()), ElementsAre(L"The bytes were saved in\n" + file.wstring()));
  EXPECT_THAT(prompts().filesAskedFor, ElementsAre(FileChoice::bytesTo));
  EXPECT_EQ(prompts().suggestedFile, L"photo.png");
  EXPECT_EQ(contentOf(file), bytesOf(samples::kPng));
}

TEST_F(BytesZoomTest, TheDatabaseIsNeverOverwritten) {
  showBytes(samples::kPng);
  MessageBoxes boxes;
  for (const wchar_t* const ending : {L"", L"-journal", L"-wal"}) {
    prompts().file = (path().wstring() + ending).c_str();
    open([&](HWND dialog) {
      press(dialog, IDC_BYTES_SAVE);
      press(dialog, IDCANCEL);
    });
    EXPECT_THAT(textsOf(boxes.take()), ElementsAre(StartsWith(L"The bytes could not be saved.\n"))) << ending;
  }
  EXPECT_EQ(stored(), quoted(bytesOf(samples::kPng)));
}

TEST_F(BytesZoomTest, BytesThatAnotherProgramHasChangedAreNotSaved) {
  showBytes(samples::kPng);
  const std::filesystem::path file = path().parent_path() / "out.png";
  prompts().file = file.c_str();
  MessageBoxes boxes;
  open([&](HWND dialog) {
    runStatements(path(), {L"UPDATE T SET photo = x'00'"});
    press(dialog, IDC_BYTES_SAVE);
    press(dialog, IDCANCEL);
  });
  EXPECT_THAT(
      textsOf(boxes.take()),
      ElementsAre(L"The bytes could not be saved.\nAnother program has changed the record since it was "
                  L"read."));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(BytesZoomTest, AFieldThatCanNotBeWrittenCanOnlyBeSaved) {
  showTable(L"CREATE TABLE 'T' (note Text, photo Image GENERATED ALWAYS AS (x'4142'))",
            {L"INSERT INTO T (note) VALUES ('n')"});
  DialogScript script([](HWND dialog) {
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_LOAD));
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_CLEAR));
    EXPECT_TRUE(isEnabled(dialog, IDC_BYTES_SAVE));
    EXPECT_NE(styleOf(GetDlgItem(dialog, IDC_ZOOM_TEXT)) & ES_READONLY, 0u);
    DialogScript::close(dialog, IDOK);
  });
  SendMessageW(textEditor(1), kZoomMessage, 0, 0);
  EXPECT_EQ(script.count(), 1);
}

TEST_F(BytesZoomTest, BytesInAFieldOfTextAreShownAndSavedAndNotReplaced) {
  const std::wstring png(samples::kPng.begin(), samples::kPng.end());
  showTable(L"CREATE TABLE 'T' (note Text)", {(L"INSERT INTO T VALUES (x'" + png + L"')").c_str()});
  open([](HWND dialog) {
    EXPECT_EQ(note(dialog), L"PNG, 3 \x00D7 2 points");
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_LOAD));
    EXPECT_FALSE(isEnabled(dialog, IDC_BYTES_CLEAR));
    EXPECT_TRUE(isEnabled(dialog, IDC_BYTES_SAVE));
    DialogScript::close(dialog, IDOK);
  });
  EXPECT_FALSE(view().takeChange());
}

TEST_F(BytesZoomTest, AFormThatIsTakenDownUnderTheDialogTakesNothing) {
  showBytes("4142");
  prompts().file = write(bytesOf("5051")).c_str();
  open([&](HWND dialog) {
    press(dialog, IDC_BYTES_LOAD);
    view().tearDown();
    press(dialog, IDOK);
  });
  EXPECT_EQ(stored(), L"X'4142'");
}

}  // namespace
