// Letters that the interface font lacks: each has to look like itself, and not like the box for what is
// missing.
#include <algorithm>
#include <array>
#include <functional>
#include <set>
#include <string>

#include "gtest/gtest.h"
#include "owners/handles.h"
#include "platform/pocketshell/handheld_windows.h"
#include "platform/pocketshell/menu/menu_letters.h"
#include "platform/pocketshell/text/dialog_lists.h"
#include "platform/pocketshell/text/text_line.h"
#include "platform/pocketshell/zoom/present_zoom.h"
#include "tests/shell/drawn_picture.h"
#include "tests/shell/shell_fixture.h"

using namespace pocketshell;

namespace {

/// Two letters of each living script that the system tells apart; of most the interface font has none.
struct Script {
  const char* name;
  const wchar_t* one;
  const wchar_t* other;
};

constexpr std::array kScripts = {
    Script{"Latin", L"\u1E9E", L"\u0250"},      Script{"Greek", L"\u0391", L"\u03C9"},
    Script{"Cyrillic", L"\u0416", L"\u0457"},   Script{"Armenian", L"\u0540", L"\u0561"},
    Script{"Georgian", L"\u10E5", L"\u10D0"},   Script{"Hebrew", L"\u05D0", L"\u05E9"},
    Script{"Arabic", L"\u0639", L"\u0645"},     Script{"Urdu", L"\u0679", L"\u06D2"},
    Script{"Syriac", L"\u0710", L"\u0712"},     Script{"Thaana", L"\u0780", L"\u0781"},
    Script{"NKo", L"\u07CA", L"\u07CB"},        Script{"Ethiopic", L"\u12A0", L"\u121B"},
    Script{"Cherokee", L"\u13A0", L"\u13A1"},   Script{"Canadian Aboriginal", L"\u1401", L"\u1403"},
    Script{"Tifinagh", L"\u2D30", L"\u2D31"},   Script{"Vai", L"\uA500", L"\uA501"},
    Script{"Devanagari", L"\u0939", L"\u0926"}, Script{"Bengali", L"\u09AC", L"\u09B2"},
    Script{"Gurmukhi", L"\u0A17", L"\u0A30"},   Script{"Gujarati", L"\u0A97", L"\u0AB0"},
    Script{"Oriya", L"\u0B13", L"\u0B21"},      Script{"Tamil", L"\u0BA4", L"\u0BAE"},
    Script{"Telugu", L"\u0C24", L"\u0C17"},     Script{"Kannada", L"\u0C95", L"\u0CA8"},
    Script{"Malayalam", L"\u0D2E", L"\u0D32"},  Script{"Sinhala", L"\u0DC3", L"\u0DC4"},
    Script{"Thai", L"\u0E01", L"\u0E02"},       Script{"Lao", L"\u0E81", L"\u0E82"},
    Script{"Khmer", L"\u1780", L"\u1781"},      Script{"Burmese", L"\u1019", L"\u1014"},
    Script{"Tibetan", L"\u0F56", L"\u0F51"},    Script{"Mongolian", L"\u1820", L"\u182A"},
    Script{"Yi", L"\uA000", L"\uA001"},         Script{"Bopomofo", L"\u3105", L"\u3106"},
    Script{"Chinese", L"\u4E2D", L"\u6F22"},    Script{"Hiragana", L"\u3072", L"\u304C"},
    Script{"Katakana", L"\u30AB", L"\u30BF"},   Script{"Korean", L"\uD55C", L"\uAD6D"},
    Script{"Tai Le", L"\u1950", L"\u1951"},     Script{"Braille", L"\u2801", L"\u2802"},
    Script{"signs", L"\u2764", L"\u2605"},      Script{"emoji", L"\U0001F600", L"\U0001F44D"},
};

/// No font has a letter here.
constexpr wchar_t kMissing[] = L"\uE01F";

using Pixels = std::vector<std::uint32_t>;
using Drawer = std::function<Pixels(const wchar_t*)>;

void expectLetters(const Drawer& draw) {
  const Pixels box = draw(kMissing);
  const Pixels nothing = draw(L"");
  for (const Script& script : kScripts) {
    const Pixels one = draw(script.one);
    const Pixels other = draw(script.other);
    EXPECT_TRUE(one != nothing) << script.name << " shows nothing";
    EXPECT_TRUE(other != nothing) << script.name << " shows nothing";
    EXPECT_TRUE(one != other) << script.name << ": both look the same";
    EXPECT_TRUE(one != box) << script.name << " looks like what is missing";
    EXPECT_TRUE(other != box) << script.name << " looks like what is missing";
  }
}

constexpr int kWidth = 120;
constexpr int kHeight = 80;

Pixels pictureOf(HWND control) {
  const DrawnPicture picture(kWidth, kHeight);
  SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.dc()), PRF_CLIENT);
  return picture.pixels();
}

class LettersTest : public ShellTest {
 protected:
  HWND makeControl(const wchar_t* className, DWORD style) {
    return HandheldCreateWindow(0, className, L"", WS_CHILD | WS_VISIBLE | style, 0, 0, kWidth, kHeight,
                                top(), nullptr, GetModuleHandleW(nullptr), nullptr);
  }

  static void setItem(HWND list, int column, const wchar_t* text) {
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = const_cast<wchar_t*>(text);
    SendMessageW(list, LVM_SETITEMTEXTW, 0, reinterpret_cast<LPARAM>(&item));
  }

  static void addItem(HWND list) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.pszText = const_cast<wchar_t*>(L"x");
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }

  HWND makeGrid() {
    const HWND list = makeControl(WC_LISTVIEWW, LVS_REPORT | LVS_SINGLESEL);
    for (int column = 0; column < 2; ++column) {
      LVCOLUMNW description{};
      description.mask = LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
      description.cx = kWidth / 2;
      description.pszText = const_cast<wchar_t*>(L"x");
      description.iSubItem = column;
      SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column),
                   reinterpret_cast<LPARAM>(&description));
    }
    addItem(list);
    return list;
  }
};

TEST(TextLineTest, letters_of_every_living_script_look_like_themselves) {
  expectLetters([](const wchar_t* text) {
    const DrawnPicture picture(kWidth, kHeight);
    const HGDIOBJ former = SelectObject(picture.dc(), presentFont());
    drawTextLine(picture.dc(), text, {0, 0, kWidth, kHeight}, LinePlace::left);
    SelectObject(picture.dc(), former);
    return picture.pixels();
  });
}

TEST(TextLineTest, only_texts_with_letters_that_the_font_lacks_need_other_fonts) {
  const DrawnPicture picture(kWidth, kHeight);
  const HGDIOBJ former = SelectObject(picture.dc(), presentFont());
  EXPECT_FALSE(needsOtherFonts(picture.dc(), L""));
  EXPECT_FALSE(needsOtherFonts(picture.dc(), L"The Iliad"));
  EXPECT_FALSE(needsOtherFonts(picture.dc(), L"\u00C4rger \u0416"));
  EXPECT_TRUE(needsOtherFonts(picture.dc(), L"The Iliad \u05D0"));
  EXPECT_TRUE(needsOtherFonts(picture.dc(), L"\U0001F600"));
  SelectObject(picture.dc(), former);
}

TEST(TextLineTest, what_is_too_long_ends_with_an_ellipsis_inside_the_rectangle) {
  const DrawnPicture whole(kWidth, kHeight);
  const DrawnPicture cut(kWidth, kHeight);
  const DrawnPicture asCut(kWidth, kHeight);
  for (const DrawnPicture* picture : {&whole, &cut, &asCut}) SelectObject(picture->dc(), presentFont());
  const std::wstring text = L"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5";
  const int dots = textLineWidth(cut.dc(), L"...");
  const int width = textLineWidth(cut.dc(), text);
  ASSERT_GT(dots, 0);
  ASSERT_GT(width, 2 * dots);
  drawTextLine(whole.dc(), text, {0, 0, width, kHeight}, LinePlace::left);
  drawTextLine(cut.dc(), text, {0, 0, width - 1, kHeight}, LinePlace::left);
  EXPECT_TRUE(cut.pixels() != whole.pixels());
  std::size_t count = text.size();
  while (textLineWidth(cut.dc(), text.substr(0, count) + L"...") > width - 1) --count;
  drawTextLine(asCut.dc(), text.substr(0, count) + L"...", {0, 0, kWidth, kHeight}, LinePlace::left);
  EXPECT_TRUE(cut.pixels() == asCut.pixels());
  const Pixels pixels = cut.pixels();
  for (int y = 0; y < kHeight; ++y) {
    for (int x = width - 1; x < kWidth; ++x) {
      ASSERT_EQ(pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] & 0xFFFFFF,
                0xFFFFFFU);
    }
  }
}

TEST(TextLineTest, no_half_of_a_character_is_left_before_the_ellipsis) {
  const DrawnPicture cut(kWidth, kHeight);
  const DrawnPicture asCut(kWidth, kHeight);
  for (const DrawnPicture* picture : {&cut, &asCut}) SelectObject(picture->dc(), presentFont());
  const std::wstring face = L"\U0001F600";
  const int oneAndDots = textLineWidth(cut.dc(), face + L"...");
  ASSERT_GT(textLineWidth(cut.dc(), face + face + face + face), oneAndDots);
  drawTextLine(cut.dc(), face + face + face + face, {0, 0, oneAndDots, kHeight}, LinePlace::left);
  drawTextLine(asCut.dc(), face + L"...", {0, 0, oneAndDots, kHeight}, LinePlace::left);
  EXPECT_TRUE(cut.pixels() == asCut.pixels());
}

TEST_F(LettersTest, cells_of_a_grid_show_them) {
  const HWND list = makeGrid();
  for (const int column : {0, 1}) {
    SCOPED_TRACE(column);
    expectLetters([&](const wchar_t* text) {
      setItem(list, column, text);
      return pictureOf(list);
    });
  }
}

TEST_F(LettersTest, the_chosen_row_shows_them_in_its_own_colours) {
  const HWND list = makeGrid();
  setItem(list, 0, L"\u05D0");
  const Pixels before = pictureOf(list);
  SetFocus(list);
  LVITEMW chosen{};
  chosen.state = chosen.stateMask = LVIS_SELECTED;
  SendMessageW(list, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&chosen));
  const Pixels after = pictureOf(list);
  EXPECT_TRUE(after != before);
  const COLORREF highlight = GetSysColor(COLOR_HIGHLIGHT);
  const std::uint32_t stored = static_cast<std::uint32_t>(GetRValue(highlight)) << 16 |
                               static_cast<std::uint32_t>(GetGValue(highlight)) << 8 | GetBValue(highlight);
  const auto isHighlight = [&](std::uint32_t pixel) { return (pixel & 0xFFFFFF) == stored; };
  EXPECT_GT(std::count_if(after.begin(), after.end(), isHighlight), 100);
  EXPECT_EQ(std::count_if(before.begin(), before.end(), isHighlight), 0);
}

TEST_F(LettersTest, titles_of_columns_show_them) {
  const HWND list = makeGrid();
  const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
  expectLetters([&](const wchar_t* text) {
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = const_cast<wchar_t*>(text);
    SendMessageW(header, HDM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return pictureOf(header);
  });
}

TEST_F(LettersTest, labels_under_and_beside_icons_show_them) {
  for (const DWORD view : {LVS_ICON, LVS_SMALLICON, LVS_LIST}) {
    SCOPED_TRACE(view);
    const HWND list = makeControl(WC_LISTVIEWW, view);
    addItem(list);
    expectLetters([&](const wchar_t* text) {
      setItem(list, 0, text);
      return pictureOf(list);
    });
    DestroyWindow(list);
  }
}

TEST_F(LettersTest, static_texts_show_them) {
  const HWND label = makeControl(WC_STATICW, 0);
  expectLetters([&](const wchar_t* text) {
    SetWindowTextW(label, text);
    return pictureOf(label);
  });
}

TEST_F(LettersTest, every_line_of_a_static_text_shows_them) {
  const HWND label = makeControl(WC_STATICW, 0);
  expectLetters([&](const wchar_t* text) {
    SetWindowTextW(label, (std::wstring(L"\u05D0\n") + text).c_str());
    return pictureOf(label);
  });
  // A word that has no room in the first line is in the second.
  const std::wstring half = L"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6\u05D7\u05D8\u05D9\u05DA\u05DB";
  SetWindowTextW(label, (half + L" " + half).c_str());
  const Pixels broken = pictureOf(label);
  SetWindowTextW(label, (half + L"\n" + half).c_str());
  EXPECT_TRUE(broken == pictureOf(label));
}

TEST_F(LettersTest, texts_of_check_boxes_and_radio_buttons_show_them) {
  for (const DWORD type : {BS_AUTOCHECKBOX, BS_AUTORADIOBUTTON}) {
    SCOPED_TRACE(type);
    const HWND box = makeControl(WC_BUTTONW, type);
    expectLetters([&](const wchar_t* text) {
      SetWindowTextW(box, text);
      return pictureOf(box);
    });
    DestroyWindow(box);
  }
}

TEST_F(LettersTest, items_of_menus_show_them) {
  for (const UINT state : {0U, static_cast<UINT>(ODS_SELECTED), static_cast<UINT>(ODS_CHECKED)}) {
    SCOPED_TRACE(state);
    expectLetters([&](const wchar_t* text) {
      const DrawnPicture picture(kWidth, kHeight);
      DRAWITEMSTRUCT item{};
      item.CtlType = ODT_MENU;
      item.itemState = state;
      item.hDC = picture.dc();
      item.rcItem = {0, 0, kWidth, kHeight};
      drawMenuItem(item, text);
      return picture.pixels();
    });
  }
}

TEST_F(LettersTest, a_chosen_label_under_its_icon_is_drawn_nowhere_else) {
  const HWND list = makeControl(WC_LISTVIEWW, LVS_ICON | LVS_SINGLESEL | LVS_SHOWSELALWAYS);
  addItem(list);
  setItem(list, 0, L"\u05E1\u05E4\u05E8\u05D9\u05DD");
  SetFocus(list);
  LVITEMW chosen{};
  chosen.state = chosen.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  SendMessageW(list, LVM_SETITEMSTATE, 0, reinterpret_cast<LPARAM>(&chosen));
  const Pixels pixels = pictureOf(list);
  RECT icon = {LVIR_ICON, 0, 0, 0};
  RECT label = {LVIR_LABEL, 0, 0, 0};
  SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&icon));
  SendMessageW(list, LVM_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&label));
  int inside = 0;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const bool isDrawn =
          (pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] & 0xFFFFFF) != 0xFFFFFF;
      const bool isPlace = PtInRect(&icon, {x, y}) || PtInRect(&label, {x, y});
      if (isPlace) inside += isDrawn ? 1 : 0;
      EXPECT_FALSE(isDrawn && !isPlace) << x << ", " << y;
    }
  }
  EXPECT_GT(inside, 100);
}

TEST_F(LettersTest, tooltips_show_them_and_are_as_large) {
  const UniqueWindow tip(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0,
                                         0, 0, 0, top(), nullptr, GetModuleHandleW(nullptr), nullptr));
  HandheldEquipTip(tip.get());
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V1_SIZE;
  tool.uFlags = TTF_TRACK;
  tool.hwnd = top();
  tool.lpszText = const_cast<wchar_t*>(L"x");
  SendMessageW(tip.get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  const auto say = [&](const wchar_t* text) {
    SendMessageW(tip.get(), TTM_TRACKACTIVATE, FALSE, reinterpret_cast<LPARAM>(&tool));
    tool.lpszText = const_cast<wchar_t*>(text);
    SendMessageW(tip.get(), TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tip.get(), TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
    RECT client{};
    GetClientRect(tip.get(), &client);
    return SIZE{client.right, client.bottom};
  };
  expectLetters([&](const wchar_t* text) {
    say(text);
    return pictureOf(tip.get());
  });
  const SIZE one = say(L"\u05D0\u05D1\u05D2");
  const SIZE two = say(L"\u05D0\u05D1\u05D2\n\u05D0\u05D1\u05D2");
  const SIZE wide = say(L"\u05D0\u05D1\u05D2\u05D0\u05D1\u05D2");
  EXPECT_EQ(two.cx, one.cx);
  EXPECT_GT(two.cy, one.cy);
  EXPECT_EQ(wide.cy, one.cy);
  EXPECT_GT(wide.cx, one.cx);
}

TEST_F(LettersTest, a_box_grows_by_what_the_letters_need_more) {
  const HWND text = CreateWindowExW(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 10, 10, 60, 14, top(), nullptr,
                                    GetModuleHandleW(nullptr), nullptr);
  const HWND button = CreateWindowExW(0, WC_BUTTONW, L"OK", WS_CHILD | WS_VISIBLE, 10, 30, 60, 20, top(),
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
  const auto placeOf = [this](HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, top(), reinterpret_cast<POINT*>(&place), 2);
    return place;
  };
  RECT before{};
  GetWindowRect(top(), &before);
  SetWindowTextW(text, L"Any plain text that is much wider than its place");
  HandheldEquipBox(top());
  EXPECT_EQ(placeOf(button).top, 30) << "texts without such letters stay as the system has laid them out";
  SetWindowTextW(text,
                 L"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6 \u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6");
  HandheldEquipBox(top());
  RECT after{};
  GetWindowRect(top(), &after);
  const LONG grown = (after.bottom - after.top) - (before.bottom - before.top);
  EXPECT_GT(grown, 0);
  EXPECT_EQ(placeOf(text).bottom - placeOf(text).top, 14 + grown);
  EXPECT_EQ(placeOf(button).top, 30 + grown);
  EXPECT_EQ(placeOf(button).bottom - placeOf(button).top, 20);
}

/// A font may have so much above its letters that an editor, which goes by its own font, shows their upper
/// parts only.
TEST_F(LettersTest, editors_show_the_whole_of_them) {
  const auto inkOf = [](const Pixels& pixels) {
    return std::count_if(pixels.begin(), pixels.end(),
                         [](std::uint32_t pixel) { return (pixel & 0xFFFFFF) != 0xFFFFFF; });
  };
  const HWND editor = makeControl(WC_EDITW, 0);
  // There are no other fonts of these. Burmese loses no more than its undermost row.
  const std::set<std::string> cut = {"Tamil", "Tibetan", "Mongolian"};
  for (const Script& script : kScripts) {
    if (cut.contains(script.name)) continue;
    const std::wstring text = std::wstring(script.one) + script.other;
    SetWindowTextW(editor, text.c_str());
    const DrawnPicture whole(kWidth, kHeight);
    const HGDIOBJ former = SelectObject(whole.dc(), presentFont());
    drawTextLine(whole.dc(), text, {0, 0, kWidth, kHeight}, LinePlace::left);
    SelectObject(whole.dc(), former);
    const auto all = inkOf(whole.pixels());
    const auto lost = all - inkOf(pictureOf(editor));
    EXPECT_GE(lost, 0) << script.name;
    EXPECT_LE(lost, script.name == std::string("Burmese") ? all / 20 : 0) << script.name;
  }
}

/// Of a box of the test's window, which draws its entries as a dialog does.
class ListEntriesTest : public LettersTest {
 protected:
  ListEntriesTest() { DialogLists::attach(top()); }

  Pixels drawnEntry(UINT kind, HWND box, UINT entry, UINT state) const {
    const DrawnPicture picture(kWidth, kHeight);
    DRAWITEMSTRUCT item{};
    item.CtlType = kind;
    item.hwndItem = box;
    item.itemID = entry;
    item.itemState = state;
    item.hDC = picture.dc();
    item.rcItem = {0, 0, kWidth, kHeight};
    EXPECT_EQ(SendMessageW(top(), WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&item)), TRUE);
    return picture.pixels();
  }
};

TEST_F(ListEntriesTest, of_a_combo_box_show_them) {
  const HWND box = makeControl(WC_COMBOBOXW, CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS);
  expectLetters([&](const wchar_t* text) {
    SendMessageW(box, CB_RESETCONTENT, 0, 0);
    SendMessageW(box, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    return drawnEntry(ODT_COMBOBOX, box, 0, 0);
  });
}

TEST_F(ListEntriesTest, of_a_list_box_show_them) {
  const HWND box = makeControl(WC_LISTBOXW, LBS_OWNERDRAWFIXED | LBS_HASSTRINGS);
  expectLetters([&](const wchar_t* text) {
    SendMessageW(box, LB_RESETCONTENT, 0, 0);
    SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    return drawnEntry(ODT_LISTBOX, box, 0, 0);
  });
}

TEST_F(ListEntriesTest, of_two_columns_show_them_in_both) {
  const HWND box = makeControl(WC_LISTBOXW, LBS_OWNERDRAWFIXED | LBS_HASSTRINGS);
  for (const bool isSecond : {false, true}) {
    SCOPED_TRACE(isSecond);
    expectLetters([&](const wchar_t* text) {
      SendMessageW(box, LB_RESETCONTENT, 0, 0);
      const std::wstring entry = isSecond ? std::wstring(L"x\t") + text : std::wstring(text) + L"\tx";
      SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.c_str()));
      return drawnEntry(ODT_LISTBOX, box, 0, 0);
    });
  }
  // However long the first is, the second stands where it stands.
  const auto rightThird = [&](const wchar_t* entry) {
    SendMessageW(box, LB_RESETCONTENT, 0, 0);
    SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
    const Pixels whole = drawnEntry(ODT_LISTBOX, box, 0, 0);
    Pixels part;
    for (std::size_t i = 0; i < whole.size(); ++i) {
      if (i % kWidth >= kWidth * 2 / 3) part.push_back(whole[i]);
    }
    return part;
  };
  EXPECT_TRUE(rightThird(L"x\ty") == rightThird(L"a name that is far too long for its column\ty"));
  EXPECT_TRUE(rightThird(L"x\ty") != rightThird(L"x\tz"));
}

TEST_F(ListEntriesTest, are_marked_and_an_empty_box_has_none) {
  const HWND box = makeControl(WC_LISTBOXW, LBS_OWNERDRAWFIXED | LBS_HASSTRINGS);
  SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Books"));
  const Pixels plain = drawnEntry(ODT_LISTBOX, box, 0, 0);
  EXPECT_TRUE(plain != drawnEntry(ODT_LISTBOX, box, 0, ODS_SELECTED));
  EXPECT_TRUE(plain != drawnEntry(ODT_LISTBOX, box, 0, ODS_FOCUS));
  EXPECT_TRUE(plain != drawnEntry(ODT_LISTBOX, box, 0, ODS_DISABLED));
  const Pixels none = drawnEntry(ODT_LISTBOX, box, static_cast<UINT>(-1), 0);
  EXPECT_TRUE(std::all_of(none.begin(), none.end(), [&](std::uint32_t pixel) { return pixel == none[0]; }));
}

TEST_F(ListEntriesTest, are_as_high_as_the_letters) {
  MEASUREITEMSTRUCT item{};
  item.CtlType = ODT_LISTBOX;
  EXPECT_EQ(SendMessageW(top(), WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&item)), TRUE);
  const DrawnPicture picture(kWidth, kHeight);
  const HGDIOBJ former = SelectObject(picture.dc(), presentFont());
  TEXTMETRICW metrics{};
  GetTextMetricsW(picture.dc(), &metrics);
  SelectObject(picture.dc(), former);
  EXPECT_EQ(item.itemHeight, static_cast<UINT>(metrics.tmHeight));
}

TEST_F(LettersTest, a_label_of_plain_letters_is_left_to_the_control) {
  const HWND ours = makeControl(WC_STATICW, 0);
  const HWND systems = CreateWindowExW(0, WC_STATICW, L"", WS_CHILD | WS_VISIBLE, 0, 0, kWidth, kHeight,
                                       top(), nullptr, GetModuleHandleW(nullptr), nullptr);
  SendMessageW(systems, WM_SETFONT, reinterpret_cast<WPARAM>(HandheldGetFont()), FALSE);
  for (const HWND label : {ours, systems}) SetWindowTextW(label, L"Title && &more:");
  EXPECT_TRUE(pictureOf(ours) == pictureOf(systems));
}

}  // namespace
