// The message box: the template it writes, the box a user sees and presses,
// its texts in the process's language, and the programming errors that end
// the process.
#include "velkin/dialogs/xmessagebox.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "tests/script_samples.h"
#include "tests/velkin/dialogs/dialog_watcher.h"
#include "tests/velkin/dialogs/text_fit.h"
#include "tests/velkin/resources/string_texts.h"
#include "velkin/dialogs/xmessagebox_seams.h"

namespace {

using namespace dialog_watcher;

// ---- the template, read back ----

struct Item {
  DWORD style;
  short x, y, cx, cy;
  WORD id, classCode;
  std::wstring text;
};
struct Template {
  DLGTEMPLATE header{};
  std::wstring caption;
  std::vector<Item> items;
  size_t end = 0;  // where reading stopped
};

Template Read(const std::vector<unsigned char>& bytes) {
  Template t;
  const unsigned char* at = bytes.data();
  const auto word = [&] {
    WORD w;
    std::memcpy(&w, at, 2);
    at += 2;
    return w;
  };
  const auto text = [&] {
    std::wstring s;
    for (WORD c; (c = word()) != 0;) s += static_cast<wchar_t>(c);
    return s;
  };
  std::memcpy(&t.header, at, 18);
  at += 18;
  EXPECT_EQ(0, word()) << "menu";
  EXPECT_EQ(0, word()) << "class";
  t.caption = text();
  for (int i = 0; i < t.header.cdit; ++i) {
    while ((at - bytes.data()) % 4) EXPECT_EQ(0, *at++) << "padding before item " << i;
    DLGITEMTEMPLATE h;
    std::memcpy(&h, at, 18);
    at += 18;
    EXPECT_EQ(0xFFFF, word()) << "item " << i << " class by atom";
    Item item{h.style, h.x, h.y, h.cx, h.cy, h.id, word(), {}};
    item.text = text();
    EXPECT_EQ(0, word()) << "item " << i << " creation data";
    EXPECT_EQ(0u, h.dwExtendedStyle);
    t.items.push_back(item);
  }
  t.end = at - bytes.data();
  return t;
}

LOGFONTA MessageFont() {
  NONCLIENTMETRICSA m{};
  m.cbSize = offsetof(NONCLIENTMETRICSA, iPaddedBorderWidth);
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, m.cbSize, &m, 0);
  return m.lfMessageFont;
}

// 96-DPI pixels on this screen.
int Px(int pixels) {
  OwnedMemoryDC display(CreateDCA("DISPLAY", nullptr, nullptr, nullptr));
  return MulDiv(pixels, GetDeviceCaps(display.get(), LOGPIXELSY), 96);
}

// What a text measures in the message font, as the box lays it out.
SIZE Measure(const char* text, UINT format, int width) {
  const LOGFONTA message = MessageFont();
  OwnedFont font(CreateFontIndirectA(&message));
  OwnedMemoryDC dc(CreateDCA("DISPLAY", nullptr, nullptr, nullptr));
  HGDIOBJ old = SelectObject(dc.get(), font.get());
  RECT r{0, 0, width, format & DT_SINGLELINE ? 16 : width};
  DrawTextA(dc.get(), text, -1, &r, DT_CALCRECT | DT_NOPREFIX | format);
  SelectObject(dc.get(), old);
  return {r.right, r.bottom};
}

TEST(XMessageBox, TemplateOfEachStyleWord) {
  const LONG units = GetDialogBaseUnits();
  const int bx = static_cast<short>(LOWORD(units)), by = static_cast<short>(HIWORD(units));
  const int cxIcon = GetSystemMetrics(SM_CXICON), cyIcon = GetSystemMetrics(SM_CYICON);
  const int screen = GetSystemMetrics(SM_CXSCREEN);
  const char* text = "Copy the folder and everything in it?";

  struct Row {
    const char* what;
    unsigned style;
    std::vector<WORD> buttons;  // ids in order
    int slots;                  // the row is laid out this many buttons wide
    WORD defaultId;
    const char* check;  // the check box's text, or null
  };
  const char *const ask = "Don't ask me again", *const tell = "Don't tell me again";
  const Row rows[] = {
      {"OK", MB_OK, {1}, 1, 1, nullptr},
      {"both to-all buttons", MB_YESNO | MB_ICONQUESTION | XMB_YESTOALL | XMB_NOTOALL, {6, 11, 7, 12}, 4, 6, nullptr},
      {"OK/Cancel with Yes to All: two shown, three laid out", MB_OKCANCEL | XMB_YESTOALL, {1, 2}, 3, 1, nullptr},
      {"third default", MB_ABORTRETRYIGNORE | MB_DEFBUTTON3 | MB_ICONWARNING, {3, 4, 5}, 3, 5, nullptr},
      {"fifth default of three falls back to the first", MB_YESNOCANCEL | XMB_DEFBUTTON5, {6, 7, 2}, 3, 6, nullptr},
      {"sixth default of six",
       MB_YESNOCANCEL | XMB_YESTOALL | XMB_NOTOALL | MB_HELP | XMB_DEFBUTTON6,
       {6, 11, 7, 12, 2, 300},
       6,
       300,
       nullptr},
      {"set 6 with help: OK and Help", 6 | MB_HELP, {1, 300}, 1, 1, nullptr},
      {"continue/abort", XMB_CONTINUEABORT | XMB_DONOTASKAGAIN | MB_ICONINFORMATION, {11, 3}, 2, 11, ask},
      {"asking wins over telling", MB_YESNO | XMB_DONOTTELLAGAIN | XMB_DONOTASKAGAIN, {6, 7}, 2, 6, ask},
      {"system-modal", MB_RETRYCANCEL | MB_SYSTEMMODAL | MB_ICONQUESTION | XMB_DONOTTELLAGAIN, {4, 2}, 2, 4, tell},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const std::vector<unsigned char> bytes = XMessageBoxTemplate(text, "Copying", row.style | XMB_NORESOURCE);
    const Template t = Read(bytes);
    EXPECT_EQ(bytes.size(), t.end) << "the buffer holds exactly what is written";
    EXPECT_EQ(L"Copying", t.caption);
    EXPECT_EQ(row.style & MB_SYSTEMMODAL ? 0x90C80882u : 0x90C80880u, t.header.style);
    EXPECT_EQ(0, t.header.x + t.header.y);

    // Pixels: icon, text, the button row, the check box, the dialog.
    const bool icon = (row.style & MB_ICONMASK) != 0;
    const SIZE m = Measure(text, DT_WORDBREAK, screen / 2 + Px(100) - (icon ? cxIcon + Px(16) : 0));
    const int shift = icon ? cxIcon + Px(8) : 0;
    const RECT textRect{Px(16) + shift, Px(16), m.cx + Px(28) + shift, m.cy + Px(21)};
    const int rowTop = std::max<int>(icon ? cyIcon + Px(10) : 0, textRect.bottom) + Px(8);
    const int rowWidth = row.slots * Px(88) - (Px(88) - Px(82));
    int boxWidth = icon ? textRect.right + Px(8) : textRect.right - textRect.left + Px(16);
    if (boxWidth <= rowWidth + Px(32)) boxWidth = rowWidth + Px(32);
    int boxHeight = rowTop + Px(23) + Px(10);
    std::vector<RECT> expected;
    std::vector<WORD> ids;
    if (icon) expected.push_back({Px(8), Px(8), cxIcon + Px(10), cyIcon + Px(10)}), ids.push_back(1000);
    expected.push_back(textRect), ids.push_back(1001);
    const int x0 = (boxWidth - rowWidth) / 2;
    for (size_t i = 0; i < row.buttons.size(); ++i) {
      const int left = x0 + static_cast<int>(i) * Px(88);
      expected.push_back({left, rowTop, left + Px(82), rowTop + Px(23)}), ids.push_back(row.buttons[i]);
    }
    if (row.check) {
      const int w = Measure(row.check, DT_SINGLELINE, screen / 3).cx;
      expected.push_back({Px(17), rowTop + Px(35), w + w / 3 + Px(17), rowTop + Px(51)}), ids.push_back(5555);
      boxHeight = rowTop + Px(59);
      boxWidth = std::max(boxWidth, w + w / 3 + Px(17));
    }
    EXPECT_EQ(boxWidth * 4 / bx, t.header.cx);
    EXPECT_EQ(boxHeight * 8 / by, t.header.cy);

    ASSERT_EQ(ids.size(), t.items.size());
    for (size_t i = 0; i < ids.size(); ++i) {
      const Item& item = t.items[i];
      const RECT& p = expected[i];
      SCOPED_TRACE("item " + std::to_string(i) + ", id " + std::to_string(ids[i]));
      EXPECT_EQ(ids[i], item.id);
      const bool button = ids[i] < 1000 || ids[i] == 5555;
      EXPECT_EQ(button ? 0x80 : 0x82, item.classCode);
      const DWORD style = ids[i] == 5555            ? 0x50010003
                          : !button                 ? 0x50000000
                          : ids[i] == row.defaultId ? 0x50010001
                                                    : 0x50010000;
      EXPECT_EQ(style, item.style);
      EXPECT_EQ(p.left * 4 / bx, item.x);
      EXPECT_EQ(p.top * 8 / by, item.y);
      EXPECT_EQ((p.right - p.left) * 4 / bx, item.cx);
      EXPECT_EQ((p.bottom - p.top) * 8 / by, item.cy);
    }
    EXPECT_EQ(L"Copy the folder and everything in it?", t.items[icon ? 1 : 0].text);
  }

  // Texts past 1023 characters are cut, counted as the template holds them,
  // whatever bytes each takes in the code page; a letter beyond the basic
  // plane (two units) is never cut in two.
  const struct {
    const char* letter;
    std::size_t kept;  // letters
  } lengths[] = {{"a", 1023}, {"«", 1023}, {"Щ", 1023}, {"😀", 511}};
  for (const auto& l : lengths) {
    std::string letter;
    if (!script_samples::InAnsi(l.letter, letter)) continue;
    std::string longText;
    for (int i = 0; i < 1100; ++i) longText += letter;
    const Template cut = Read(XMessageBoxTemplate(longText.c_str(), longText.c_str(), MB_OK | XMB_NORESOURCE));
    ASSERT_FALSE(cut.items.empty());
    std::wstring kept;
    for (std::size_t i = 0; i < l.kept; ++i) kept += script_samples::Wide(l.letter);
    EXPECT_EQ(kept, cut.caption) << "the caption, of " << l.letter;
    EXPECT_EQ(kept, cut.items[0].text) << "the text, of " << l.letter;
  }

  // The system's own box for a system-modal stop or exclamation: no template.
  EXPECT_TRUE(XMessageBoxTemplate(text, "x", MB_SYSTEMMODAL | MB_ICONSTOP).empty());
  EXPECT_TRUE(XMessageBoxTemplate(text, "x", MB_SYSTEMMODAL | MB_ICONEXCLAMATION | MB_YESNO).empty());
}

// The box is laid out for the letters its text stands for, however many
// bytes each takes: capitals with accents, and Cyrillic capitals shaped as
// Latin ones, are as wide as the Latin letters (the ink may differ by a
// pixel), and so are the boxes; read as bytes they would be twice as wide.
TEST(XMessageBox, LaidOutForTheLetters) {
  const struct {
    const char *text, *latin;
  } pairs[] = {{"ÀÉÎÕÜ ÀÉÎÕÜ ÀÉÎÕÜ", "AEIOU AEIOU AEIOU"}, {"АВЕКМНОРСТХ АВЕКМНОРСТХ", "ABEKMHOPCTX ABEKMHOPCTX"}};
  for (const auto& p : pairs) {
    std::string text;
    if (!script_samples::InAnsi(p.text, text)) continue;
    const Template t = Read(XMessageBoxTemplate(text.c_str(), "x", MB_OK | XMB_NORESOURCE | XMB_DONOTASKAGAIN));
    const Template l = Read(XMessageBoxTemplate(p.latin, "x", MB_OK | XMB_NORESOURCE | XMB_DONOTASKAGAIN));
    ASSERT_FALSE(t.items.empty() || l.items.empty()) << p.text;
    EXPECT_NEAR(l.items[0].cx, t.items[0].cx, 1) << p.text << ": the text's width";
    EXPECT_EQ(l.items[0].cy, t.items[0].cy) << p.text << ": its height";
    EXPECT_NEAR(l.header.cx, t.header.cx, 1) << p.text << ": the box's width";
  }
}

}  // namespace

// ---- the box on the screen ----

struct Button {
  int id;
  RECT rect;
  bool isDefault;
  LONG style;
  bool focused = false;
};

// The box's push buttons from left to right.
std::vector<Button> Buttons(HWND box) {
  std::vector<Button> buttons;
  for (HWND c = GetWindow(box, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
    const LONG style = GetWindowLongA(c, GWL_STYLE);
    if (ClassOf(c) != "Button" || (style & BS_TYPEMASK) > BS_DEFPUSHBUTTON) continue;
    buttons.push_back({GetDlgCtrlID(c), RectIn(c), (style & BS_TYPEMASK) == BS_DEFPUSHBUTTON, style});
  }
  std::sort(buttons.begin(), buttons.end(), [](const Button& a, const Button& b) { return a.rect.left < b.rect.left; });
  return buttons;
}

// Waits (bounded) while box is shown; whether it went.
bool Gone(HWND box) {
  return Until([box] { return !IsWindow(box) || !IsWindowVisible(box); }, 300);
}

struct HelpCall {
  std::string file;
  UINT command = 0;
  ULONG_PTR data = 0;
  int calls = 0;
} helpCall;
BOOL WINAPI RecordHelp(HWND, LPCSTR file, UINT command, ULONG_PTR data) {
  helpCall = {file, command, data, helpCall.calls + 1};
  return TRUE;
}
HLOCAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }
std::vector<UINT> beeps;
BOOL WINAPI RecordBeep(UINT type) {
  beeps.push_back(type);
  return TRUE;
}

std::string Executable() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return path;
}

TEST(XMessageBox, TheBoxAsAUserSeesAndPressesIt) {
  enum Do { Press, Escape, EscapeThenPress, CloseThenPress, TickThenPress, HelpThenPress };
  struct Row {
    const char* what;
    unsigned style;
    const char* caption;
    Do act;
    int press;  // the button pressed last
    int result;
    std::vector<int> ids;  // left to right
    int defaultId;
    bool closeGrayed;
  };
  const Row rows[] = {
      {"OK with Escape", MB_OK, "Note", Escape, 0, IDOK, {1}, 1, false},
      {"OK/Cancel with Escape", MB_OKCANCEL | MB_ICONINFORMATION, "Note", Escape, 0, IDCANCEL, {1, 2}, 1, false},
      {"Yes/No: Escape does nothing, then No", MB_YESNO, "Q", EscapeThenPress, IDNO, IDNO, {6, 7}, 6, true},
      {"Close ignored, then Yes", MB_YESNO | MB_ICONQUESTION, "Q", CloseThenPress, IDYES, IDYES, {6, 7}, 6, true},
      {"to all", MB_YESNO | XMB_YESTOALL | XMB_NOTOALL | MB_DEFBUTTON2, "Q", Press, 12, 12, {6, 11, 7, 12}, 11, true},
      {"ticked and No", MB_YESNO | XMB_DONOTASKAGAIN, "Q", TickThenPress, IDNO, 0x01000007, {6, 7}, 6, true},
      {"ticked, OK", MB_OK | XMB_DONOTTELLAGAIN | MB_ICONWARNING, "Q", TickThenPress, IDOK, 0x02000001, {1}, 1, false},
      {"Continue answers 11", XMB_CONTINUEABORT | XMB_DEFBUTTON5, "Q", Press, 11, 11, {11, 3}, 11, true},
      {"help, then Retry",
       MB_RETRYCANCEL | MB_HELP | MB_DEFBUTTON3,
       nullptr,
       HelpThenPress,
       IDRETRY,
       IDRETRY,
       {4, 2, 300},
       300,
       false},
      {"empty caption, Abort", MB_ABORTRETRYIGNORE | MB_ICONSTOP, "", Press, IDABORT, IDABORT, {3, 4, 5}, 3, true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    helpCall = {};
    beeps.clear();
    XMessageBoxSeams seams;
    seams.Help = &RecordHelp;
    seams.Beep = &RecordBeep;
    XMessageBoxSetSeams(seams);
    std::wstring caption, text;
    std::vector<Button> buttons;
    bool grayed = false, stayed = true, iconShown = false;
    Watcher watcher([&](HWND w) {
      caption = Text(w);
      text = Text(GetDlgItem(w, 1001));
      iconShown = GetDlgItem(w, 1000) != nullptr;
      buttons = Buttons(w);
      grayed = GetMenuState(GetSystemMenu(w, FALSE), SC_CLOSE, MF_BYCOMMAND) & MF_GRAYED;
      const DWORD thread = GetWindowThreadProcessId(w, nullptr);
      for (Button& b : buttons) b.focused = GetDlgItem(w, b.id) == FocusOf(thread).hwndFocus;
      // What comes first; Escape alone ends the box, the rest must leave it open.
      if (row.act == Escape || row.act == EscapeThenPress) Key(thread, VK_ESCAPE, w);
      if (row.act == Escape) return true;
      if (row.act == CloseThenPress) PostMessageA(w, WM_SYSCOMMAND, SC_CLOSE, 0);
      if (row.act == TickThenPress) Click(w, 5555);
      if (row.act == HelpThenPress) Click(w, 300);
      if (row.act != Press && row.act != TickThenPress) stayed = !Gone(w);
      Click(w, row.press);
      return true;
    });
    const int result = XMessageBox(nullptr, "Line one\nline two", row.caption, row.style, 77);
    EXPECT_TRUE(watcher.Join()) << "the box was not found";
    XMessageBoxSetSeams({});
    EXPECT_EQ(row.result, result);
    EXPECT_EQ(std::vector<UINT>{row.style & MB_ICONMASK}, beeps) << "the icon's sound";
    EXPECT_TRUE(stayed) << "the box closed on a key or command it ignores";
    const std::string title = row.caption && *row.caption ? row.caption : Executable();
    EXPECT_EQ(std::wstring(title.begin(), title.end()), caption);
    EXPECT_EQ(L"Line one\nline two", text);
    EXPECT_EQ((row.style & MB_ICONMASK) != 0, iconShown);
    EXPECT_EQ(row.closeGrayed, grayed);
    std::vector<int> ids;
    for (const Button& b : buttons) {
      ids.push_back(b.id);
      EXPECT_EQ(b.id == row.defaultId, b.isDefault) << "button " << b.id << " " << std::hex << b.style;
      EXPECT_EQ(b.id == row.defaultId, b.focused) << "button " << b.id << " has the focus";
    }
    EXPECT_EQ(row.ids, ids);
    for (size_t i = 1; i < buttons.size(); ++i)
      EXPECT_EQ(buttons[i - 1].rect.right - buttons[i - 1].rect.left, buttons[i].rect.right - buttons[i].rect.left);
    if (row.act == HelpThenPress) {
      const std::string exe = Executable();
      EXPECT_EQ(exe.substr(0, exe.rfind('.')) + ".hlp", helpCall.file);
      EXPECT_EQ(static_cast<UINT>(HELP_CONTEXT), helpCall.command);
      EXPECT_EQ(77u, helpCall.data);
    } else {
      EXPECT_EQ(0, helpCall.calls);
    }
  }
}

TEST(XMessageBox, SystemBoxForSystemModalStopsAndWhenMemoryFails) {
  struct Row {
    const char* what;
    unsigned style;
    bool failMemory;
    std::wstring caption;
    std::wstring text;
    int result;
  } const rows[] = {
      {"system-modal stop", MB_SYSTEMMODAL | MB_ICONSTOP | MB_OKCANCEL, false, L"Stop", L"Halt", IDOK},
      {"system-modal exclamation", MB_SYSTEMMODAL | MB_ICONEXCLAMATION, false, L"Stop", L"Halt", IDOK},
      {"no memory for the template", MB_YESNO, true, string_texts::Shown(1049), string_texts::Shown(1048), IDCANCEL},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    XMessageBoxSeams seams;
    if (row.failMemory) seams.Alloc = &NoMemory;
    XMessageBoxSetSeams(seams);
    std::wstring caption, text;
    bool ours = true;
    Watcher watcher([&](HWND w) {
      caption = Text(w);
      ours = GetDlgItem(w, 1001) != nullptr;
      for (HWND c = GetWindow(w, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT))
        if (ClassOf(c) == "Static" && !Text(c).empty()) text = Text(c);
      Click(w, IDOK);
      return true;
    });
    const int result = XMessageBox(nullptr, "Halt", "Stop", row.style, 0);
    EXPECT_TRUE(watcher.Join());
    XMessageBoxSetSeams({});
    EXPECT_EQ(row.result, result);
    EXPECT_FALSE(ours) << "the system's message box, not the template";
    EXPECT_EQ(row.caption, caption);
    EXPECT_EQ(row.text, text);
  }
}

TEST(XMessageBoxDeathTest, StyleWordsWithoutButtonsEndTheProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(XMessageBox(nullptr, "x", "x", MB_OK | XMB_YESTOALL, 0), "FALSE, file XMessageBox, line 770");
  EXPECT_DEATH(XMessageBox(nullptr, "x", "x", XMB_CONTINUEABORT | XMB_NOTOALL, 0), "FALSE, file XMessageBox, line 782");
  EXPECT_DEATH(XMessageBox(nullptr, "x", "x", 6, 0), "cItems > 0, file XMessageBox, line 791");
}

// The built-in text of a string id: the English table's.
std::wstring English(int id) {
  for (const auto& t : string_texts::texts)
    if (t.id == id) return std::wstring(t.text[0], t.text[0] + strlen(t.text[0]));
  return L"";
}

// Run under each language and screen density (CMakeLists.txt): every text in
// the table's language, none clipped, the row of buttons in proportion.
TEST(XMessageBox, TextsInTheScreensLanguageFitAtItsDensity) {
  OwnedMemoryDC display(CreateDCA("DISPLAY", nullptr, nullptr, nullptr));

  struct Row {
    unsigned style;
    std::vector<std::pair<int, int>> texts;  // control id, string id
  } const rows[] = {
      {MB_YESNOCANCEL | MB_ICONQUESTION | MB_HELP | XMB_YESTOALL | XMB_NOTOALL | XMB_DONOTASKAGAIN,
       {{6, 9007}, {11, 9012}, {7, 9008}, {12, 9013}, {2, 9002}, {300, 9006}, {5555, 9010}}},
      {MB_ABORTRETRYIGNORE | MB_ICONWARNING | XMB_DONOTTELLAGAIN, {{3, 9005}, {4, 9004}, {5, 9003}, {5555, 9011}}},
      {XMB_CONTINUEABORT | MB_ICONINFORMATION, {{11, 9009}, {3, 9005}}},
      {MB_OKCANCEL, {{1, 9001}, {2, 9002}}},
  };
  for (const Row& row : rows) {
    for (const bool builtIn : {false, true}) {
      SCOPED_TRACE(std::to_string(row.style) + (builtIn ? " built-in texts" : " string tables"));
      struct Shown {
        int id;
        std::wstring text;
        RECT client, extent, placed;
        LOGFONTA font;
        int ink;  // the text's last inked column drawn whole from the left, -1 for none
      };
      std::vector<Shown> shown;
      Watcher watcher([&](HWND w) {
        for (HWND c = GetWindow(w, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
          Shown s{GetDlgCtrlID(c), Text(c), {}, {}, RectIn(c), {}, -1};
          GetClientRect(c, &s.client);
          const HFONT font = reinterpret_cast<HFONT>(SendMessageA(c, WM_GETFONT, 0, 0));
          GetObjectA(font, sizeof s.font, &s.font);
          HGDIOBJ old = SelectObject(display.get(), font);
          s.extent = s.client;
          DrawTextW(display.get(), s.text.c_str(), -1, &s.extent,
                    DT_CALCRECT | (s.id == 1001 ? DT_WORDBREAK : DT_SINGLELINE));
          SelectObject(display.get(), old);
          if (s.id == 1001 || s.id == 5555)
            s.ink = text_fit::TextInkRight(font, s.text, s.client.right, s.client.bottom,
                                           s.id == 1001 ? DT_WORDBREAK | DT_EXPANDTABS : DT_SINGLELINE);
          shown.push_back(s);
        }
        Click(w, row.texts.front().first);
        return true;
      });
      beeps.clear();
      XMessageBoxSeams seams;
      seams.Beep = &RecordBeep;
      XMessageBoxSetSeams(seams);
      XMessageBox(nullptr, "A message of two lines\nthat the box must show whole.", "Fit",
                  row.style | XMB_NOSOUND | (builtIn ? XMB_NORESOURCE : 0), 0);
      XMessageBoxSetSeams({});
      ASSERT_TRUE(watcher.Join());
      EXPECT_TRUE(beeps.empty()) << "silent";
      std::vector<RECT> buttons;
      for (const Shown& s : shown) {
        SCOPED_TRACE("control " + std::to_string(s.id));
        for (const auto& [id, string] : row.texts) {
          if (id != s.id) continue;
          EXPECT_EQ(string == 9001 ? L"OK" : builtIn ? English(string) : string_texts::Shown(string), s.text);
        }
        if (s.id == 1000) continue;
        EXPECT_EQ(MessageFont().lfHeight, s.font.lfHeight) << "in the message font";
        // The room a control leaves around its text: a button's frame, a check box's box.
        const int frame = s.id == 5555 ? GetSystemMetrics(SM_CXMENUCHECK) + Px(4) : s.id == 1001 ? 0 : Px(6);
        EXPECT_LE(s.extent.right - s.extent.left + frame, s.client.right) << "text width";
        EXPECT_LE(s.extent.bottom - s.extent.top, s.client.bottom) << "text height";
        if (s.id == 1001 || s.id == 5555) {
          EXPECT_LT(s.ink + frame, s.client.right - 1) << "the text's ink as drawn, clear of the last column";
        }
        if (s.id < 1000) buttons.push_back(s.placed);
      }
      // In proportion to within one dialog unit: the template places controls in
      // whole units, and a dense screen's units are several pixels large.
      const LONG units = GetDialogBaseUnits();
      const int unitX = LOWORD(units) / 4 + 1, unitY = HIWORD(units) / 8 + 1;
      std::sort(buttons.begin(), buttons.end(), [](const RECT& a, const RECT& b) { return a.left < b.left; });
      for (size_t i = 0; i < buttons.size(); ++i) {
        EXPECT_NEAR(Px(82), buttons[i].right - buttons[i].left, unitX) << "button width in proportion";
        EXPECT_NEAR(Px(23), buttons[i].bottom - buttons[i].top, unitY) << "button height in proportion";
        if (i > 0) {
          EXPECT_NEAR(Px(6), buttons[i].left - buttons[i - 1].right, 2 * unitX) << "gap in proportion";
        }
      }
    }
  }
}
