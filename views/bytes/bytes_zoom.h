#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "base/string.h"
#include "data/outcome.h"
#include "data/values/bytes.h"
#include "owners/handles.h"
#include "views/bytes/picture_head.h"
#include "views/dialog/dialog_growth.h"
#include "views/dialog/modal_dialog.h"

/// What the dialog of a field of bytes needs of the program. All of it is set, and lasts as long as the
/// dialog runs.
struct BytesZoomHost {
  /// Gives the bytes as the file holds them.
  std::function<Outcome(Bytes& bytes)> read;
  /// The user chooses the file into which they are written; none when he cancels. `suggestion` is its name at
  /// first.
  std::function<std::optional<String>(const String& suggestion)> chooseTarget;
  /// Writes them there.
  std::function<Outcome(const String& path)> save;
  /// The user chooses a file whose bytes are taken; none when he cancels.
  std::function<std::optional<String>()> chooseSource;
};

/// What a field of bytes holds, as its editor has it.
struct ShownBytes {
  String text;                 ///< the pairs of digits, all of them or the beginning
  std::uint64_t count = 0;     ///< of the bytes
  const Bytes* own = nullptr;  ///< those that were loaded and are not stored yet; else the file's are shown
  bool readOnly = false;
  bool canBeTyped = false;  ///< the text says all of them
};

/// The dialog that shows the bytes of a field: the picture that they are, or else pairs of digits, which can
/// be typed where they are few. They can be loaded from a file, saved in one, and cleared. Nothing of the
/// field is changed by it.
class BytesZoom final : private ModalDialog {
 public:
  /// What the user has confirmed.
  enum class Change : std::uint8_t { none, text, bytes };

  /// `shown.own` outlives the dialog.
  BytesZoom(String caption, ShownBytes shown, BytesZoomHost host);

  /// Runs the dialog over `owner`.
  Change run(HWND owner);

  /// After Change::text: what was typed; the empty text for a field that was cleared.
  const String& text() const { return shown_.text; }
  /// After Change::bytes: what was loaded.
  Bytes takeBytes() { return std::move(loaded_); }

 private:
  void opened() override;
  bool command(WORD id, WORD notification) override;
  void ended() override;
  void load();
  void save();
  void clear();
  void confirm();
  void cancel() { close(IDCANCEL); }

  void showStored();
  void show(const Bytes& bytes);
  bool showPicture(const Bytes& bytes);
  void showText(const String& text, bool canBeTyped);
  void showBitmap(UniqueBitmap bitmap);
  void note(const std::wstring& text);
  void updateButtons();
  String suggestedName() const;
  bool isStoredShown() const;

  static const std::span<const ControlGrowth> kGrowth;

  String caption_;
  ShownBytes shown_;
  BytesZoomHost host_;
  DialogGrowth growth_;
  std::optional<PictureHead> picture_;  // that is shown
  UniqueBitmap bitmap_;
  Bytes loaded_;
  Change change_ = Change::none;
};
