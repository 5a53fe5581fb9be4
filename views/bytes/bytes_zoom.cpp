#include "views/bytes/bytes_zoom.h"

#include <cwchar>
#include <utility>

#include "base/showable_text.h"
#include "base/wait_cursor.h"
#include "data/handles/file_bytes.h"
#include "data/values/binary_text.h"
#include "platform/pocketshell/handheld_windows.h"
#include "views/bytes/bytes_ids.h"
#include "views/bytes/picture.h"
#include "views/dialog/dialog_place.h"
#include "views/form/popup_ids.h"
#include "views/shared/child_control.h"

const std::span<const ControlGrowth> BytesZoom::kGrowth = [] {
  static constexpr ControlGrowth kControls[] = {
      {.id = IDC_ZOOM_TEXT, .wider = true, .higher = true},
      {.id = IDC_BYTES_PICTURE, .wider = true, .higher = true},
      {.id = IDC_BYTES_NOTE, .wider = true, .down = true},
      {.id = IDC_BYTES_LOAD, .right = true, .down = true},
      {.id = IDC_BYTES_SAVE, .right = true, .down = true},
      {.id = IDC_BYTES_CLEAR, .right = true, .down = true},
      {.id = IDOK, .right = true, .down = true},
      {.id = IDCANCEL, .right = true, .down = true},
  };
  return std::span<const ControlGrowth>(kControls);
}();

BytesZoom::BytesZoom(String caption, ShownBytes shown, BytesZoomHost host)
    : caption_(std::move(caption)), shown_(std::move(shown)), host_(std::move(host)), growth_(kGrowth) {}

BytesZoom::Change BytesZoom::run(HWND owner) {
  return runTemplate(IDD_BYTES_ZOOM, owner) == IDOK ? change_ : Change::none;
}

void BytesZoom::opened() {
  growWithScreen(window());
  growth_.begin(window());
  growth_.layOut();
  centreDialog(window(), kPopupRaise);
  SetWindowTextW(window(), showableText(caption_.text()).c_str());
  SendMessageW(control(IDC_ZOOM_TEXT), EM_SETLIMITTEXT, 0, 0);
  EnableWindow(control(IDC_BYTES_LOAD), !shown_.readOnly);
  showStored();
}

bool BytesZoom::command(WORD id, WORD notification) {
  static constexpr DialogCommand<BytesZoom> kCommands[] = {
      {IDOK, BN_CLICKED, &BytesZoom::confirm},          {IDCANCEL, BN_CLICKED, &BytesZoom::cancel},
      {IDC_BYTES_LOAD, BN_CLICKED, &BytesZoom::load},   {IDC_BYTES_SAVE, BN_CLICKED, &BytesZoom::save},
      {IDC_BYTES_CLEAR, BN_CLICKED, &BytesZoom::clear}, {IDC_ZOOM_TEXT, EN_CHANGE, &BytesZoom::updateButtons},
  };
  return answerCommand<BytesZoom>(*this, kCommands, id, notification);
}

void BytesZoom::ended() {
  SendMessageW(control(IDC_BYTES_PICTURE), STM_SETIMAGE, IMAGE_BITMAP, 0);
}

// ---- What is shown

/// What the editor holds at the opening of the dialog.
void BytesZoom::showStored() {
  const WaitCursor wait;
  if (shown_.own) {
    show(*shown_.own);
    return;
  }
  Bytes bytes;
  Outcome read;
  if (shown_.count > 0 && shown_.count <= kMostFileBytes) read = host_.read(bytes);
  if (!showPicture(bytes)) showText(shown_.text, shown_.canBeTyped);
  if (!read) note(L"The bytes can't be read now.");
}

void BytesZoom::show(const Bytes& bytes) {
  if (showPicture(bytes)) return;
  showText(textOfBytes(bytes), bytes.size() <= kMostShownByteCount);
}

/// False, and the note says why, when they are no picture that can be shown.
bool BytesZoom::showPicture(const Bytes& bytes) {
  note(L"");
  const std::optional<PictureHead> head = readPictureHead(bytes);
  if (!head) return false;
  const std::wstring points = std::to_wstring(head->width) + L" \x00D7 " + std::to_wstring(head->height);
  if (head->width != 0 && head->height != 0 && !mayBeDecoded(*head)) {
    note(L"Too large to be shown: " + points + L" points");
    return false;
  }
  RECT room{};
  GetClientRect(control(IDC_BYTES_PICTURE), &room);
  const SIZE size{room.right, room.bottom};
  UniqueBitmap bitmap = decodePicture(bytes, *head, size);
  if (!bitmap) {
    note(std::wstring(L"This ") + nameOf(head->format) + L" picture is damaged.");
    return false;
  }
  note(std::wstring(nameOf(head->format)) + L", " + points + L" points");
  picture_ = head;
  // The control would colour what is beside a smaller one like its first point.
  showBitmap(centredOnWhite(bitmap, size));
  return true;
}

void BytesZoom::showBitmap(UniqueBitmap bitmap) {
  const HWND picture = control(IDC_BYTES_PICTURE);
  SendMessageW(picture, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap.get()));
  bitmap_ = std::move(bitmap);
  ShowWindow(picture, SW_SHOW);
  ShowWindow(control(IDC_ZOOM_TEXT), SW_HIDE);
  SetFocus(control(IDOK));
  updateButtons();
}

void BytesZoom::showText(const String& text, bool canBeTyped) {
  const HWND edit = control(IDC_ZOOM_TEXT);
  picture_.reset();
  ShowWindow(control(IDC_BYTES_PICTURE), SW_HIDE);
  ShowWindow(edit, SW_SHOW);
  SetWindowTextW(edit, showableText(text.text()).c_str());
  SendMessageW(edit, EM_SETREADONLY, shown_.readOnly || !canBeTyped, 0);
  SendMessageW(edit, EM_SETMODIFY, FALSE, 0);
  // With all of it selected, as a dialog does by itself, the next key would replace all of them.
  SetFocus(edit);
  SendMessageW(edit, EM_SETSEL, 0, 0);
  updateButtons();
}

void BytesZoom::note(const std::wstring& text) {
  SetWindowTextW(control(IDC_BYTES_NOTE), text.c_str());
}

bool BytesZoom::isStoredShown() const {
  const bool isTyped = SendMessageW(control(IDC_ZOOM_TEXT), EM_GETMODIFY, 0, 0) != 0;
  return change_ == Change::none && !shown_.own && shown_.count > 0 && !isTyped;
}

void BytesZoom::updateButtons() {
  const bool isEmpty = !picture_ && GetWindowTextLengthW(control(IDC_ZOOM_TEXT)) == 0;
  EnableWindow(control(IDC_BYTES_SAVE), isStoredShown());
  EnableWindow(control(IDC_BYTES_CLEAR), !shown_.readOnly && !isEmpty);
}

// ---- What the user does

void BytesZoom::load() {
  const std::optional<String> path = host_.chooseSource();
  if (!path) return;
  Bytes bytes;
  if (const Outcome read = readFile(*path, bytes); !read) {
    tell((std::wstring(L"The file could not be loaded.\n") + read.reason().text()).c_str());
    return;
  }
  loaded_ = std::move(bytes);
  change_ = Change::bytes;
  const WaitCursor wait;
  show(loaded_);
}

void BytesZoom::save() {
  const std::optional<String> path = host_.chooseTarget(suggestedName());
  if (!path) return;
  const Outcome saved = host_.save(*path);
  const std::wstring text = saved ? std::wstring(L"The bytes were saved in\n") + path->text()
                                  : std::wstring(L"The bytes could not be saved.\n") + saved.reason().text();
  tell(text.c_str());
}

void BytesZoom::clear() {
  loaded_.clear();
  change_ = Change::text;
  note(L"");
  showText(String(), true);
}

void BytesZoom::confirm() {
  const HWND edit = control(IDC_ZOOM_TEXT);
  if (!picture_ && !shown_.readOnly && SendMessageW(edit, EM_GETMODIFY, 0, 0) != 0) change_ = Change::text;
  if (change_ == Change::text) shown_.text = windowText(edit);
  close(IDOK);
}

/// The field's name, as far as a file can be called so.
String BytesZoom::suggestedName() const {
  constexpr std::size_t kLongest = 60;
  std::wstring name = showableText(caption_.text()).substr(0, kLongest);
  for (wchar_t& character : name) {
    if (character < L' ' || std::wcschr(L"\\/:*?\"<>|", character)) character = L'_';
  }
  if (picture_) name += endingOf(picture_->format);
  return name.c_str();
}
