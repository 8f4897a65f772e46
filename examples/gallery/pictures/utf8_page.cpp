// The gallery is a UTF-8 program (velkin_utf8_manifest): texts in several
// scripts given to the framework's controls, the message box and the input
// dialog as UTF-8, and typed into them, captured from their windows into
// utf8.png. A script no font of this system draws is left out, and named.
// Letters beyond the basic plane go to the edits, which draw them through
// the system's script shaping; the labels, the lists and the message box
// draw through GDI's text calls, which on some systems (this Wine) draw none.
#include <windows.h>
// After windows.h, which it needs.
#include <usp10.h>

#include <cstdio>
#include <string>
#include <vector>

#include "examples/gallery/pictures/picture_sheet.h"
#include "examples/gallery/pictures/pictures.h"
#include "examples/gallery/pictures/window_capture.h"
#include "platform/vcl/forms/application.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "platform/vcl/stdctrls/buttons.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "platform/vcl/stdctrls/std_lists.h"
#include "velkin/dialogs/hinput.h"
#include "velkin/dialogs/xmessagebox.h"

using namespace Forms;
using namespace Stdctrls;

namespace {

struct Script {
  const char* name;
  const char* text;
  const char* own;    // the script's or the language's name in it
  const char* typed;  // a name typed in it
};
const Script kScripts[] = {
    {"Latin", "Crème brûlée, naïve café, Ångström, Łódź", "Français", "Zoë"},
    {"Cyrillic", "Съешь же ещё этих мягких французских булок", "Русский", "Жанна"},
    {"Greek", "Ξεσκεπάζω την ψυχοφθόρα βδελυγμία", "Ελληνικά", "Ζωή"},
    {"CJK", "你好，世界 · こんにちは · 안녕하세요", "中文", "世界"},
    {"Gothic", "Gothic hwair, U+10348: 𐍈", "𐌲𐌿𐍄𐌹𐍃𐌺", "𐍈"},
};
// Beyond the basic plane, for the edits.
const char kEmoji[] = "😀";

// The code points of a UTF-8 text, one string of UTF-16 each.
std::vector<std::wstring> Letters(const char* utf8) {
  const std::wstring wide = Graphics::WideText(utf8, -1);
  std::vector<std::wstring> letters;
  for (size_t i = 0; i < wide.size(); ++i) {
    const bool pair = IS_HIGH_SURROGATE(wide[i]) && i + 1 < wide.size();
    letters.push_back(wide.substr(i, pair ? 2 : 1));
    if (pair) ++i;
  }
  return letters;
}

// What text looks like drawn in font, 48 pixels square: by GDI's text call,
// or shaped as the edits draw.
std::vector<uint32_t> Picture(HFONT font, const std::wstring& text, bool shaped) {
  const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  BITMAPINFO info{};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), 48, -48, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const OwnedBitmap dib(CreateDIBSection(dc.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  DCChanger use(dc.get());
  use.Select(font);
  use.Select(dib.get());
  RECT all{0, 0, 48, 48};
  FillRect(dc.get(), &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  SCRIPT_STRING_ANALYSIS analysis = nullptr;
  const int length = static_cast<int>(text.size());
  if (!shaped) {
    DrawTextW(dc.get(), text.c_str(), length, &all, DT_NOPREFIX);
  } else if (SUCCEEDED(ScriptStringAnalyse(dc.get(), text.c_str(), length, length * 3 / 2 + 16, -1,
                                           SSA_GLYPHS | SSA_FALLBACK, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                                           &analysis))) {
    ScriptStringOut(analysis, 0, 0, 0, nullptr, 0, 0, FALSE);
    ScriptStringFree(&analysis);
  }
  GdiFlush();
  return std::vector<uint32_t>(static_cast<uint32_t*>(bits), static_cast<uint32_t*>(bits) + 48 * 48);
}

// Whether an edit in font draws the letter beyond the basic plane: unlike a
// letter no font has.
bool Shapes(HFONT font, const char* utf8) {
  return Picture(font, Graphics::WideText(utf8, -1), true) != Picture(font, L"\U0010FFFD", true);
}

// Whether GDI's text calls draw every letter of text in font: a letter of
// the basic plane by its glyph; one beyond by drawing unlike a letter no font
// has.
bool Draws(HFONT font, const char* utf8) {
  const OwnedMemoryDC dc(CreateCompatibleDC(nullptr));
  DCChanger use(dc.get());
  use.Select(font);
  const std::vector<uint32_t> missing = Picture(font, L"\U0010FFFD", false);
  for (const std::wstring& letter : Letters(utf8)) {
    WORD glyph = 0;
    const bool drawn =
        letter.size() == 1
            ? GetGlyphIndicesW(dc.get(), letter.c_str(), 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS) == 1 && glyph != 0xFFFF
            : Picture(font, letter, false) != missing;
    if (!drawn) return false;
  }
  return true;
}

// The scripts font draws; the others' names are added to leftOut.
std::vector<const Script*> Drawn(HFONT font, std::string& leftOut) {
  std::vector<const Script*> drawn;
  for (const Script& s : kScripts) {
    if (Draws(font, s.text) && Draws(font, s.own)) {
      drawn.push_back(&s);
    } else if (leftOut.find(s.name) == std::string::npos) {
      leftOut += leftOut.empty() ? s.name : std::string(", ") + s.name;
    }
  }
  return drawn;
}

// The names typed in each of scripts, and the letter beyond the basic plane
// where an edit in font draws it.
std::string Typed(const std::vector<const Script*>& scripts, HFONT font) {
  std::string typed;
  for (const Script* s : scripts) typed += (typed.empty() ? "" : " ") + std::string(s->typed);
  return Shapes(font, kEmoji) ? typed + " " + kEmoji : typed;
}

template <class T>
T* Add(TForm* form, int left, int top, int width, int height, const char* text = "") {
  auto* control = new T(form);
  control->SetParent(form);
  control->SetBounds(left, top, width, height);
  control->SetText(text);
  return control;
}

// Characters as the keyboard sends them: through the application's loop
// here, through the modal one for a dialog.
void TypeInto(HWND edit, const std::string& utf8) {
  for (const wchar_t unit : Graphics::WideText(utf8.c_str(), -1)) PostMessageW(edit, WM_CHAR, unit, 1);
}

// The form: a label for each script its font draws, a list of their names,
// an edit typed into, a memo, a check box and a button with a Cyrillic
// mnemonic.
bool CaptureForm(Shot& shot, std::string& leftOut) {
  TForm form(nullptr);
  form.SetCaption("UTF-8 — Юникод — Ελληνικά");
  form.SetBorderStyle(bsDialog);
  form.SetPosition(poScreenCenter);
  // A face with the letters of more scripts, where this system has it.
  form.GetFont()->SetName("DejaVu Sans");
  const std::vector<const Script*> scripts = Drawn(form.GetFont()->GetHandle(), leftOut);
  auto* list = Add<TListBox>(&form, 372, 12, 178, 74);
  std::string lines;
  int y = 12;
  for (const Script* s : scripts) {
    Add<TLabel>(&form, 12, y, 340, 16, s->text);
    list->GetItems()->Add(s->own);
    lines += std::string(s->own) + ": " + s->typed + "\n";
    y += 24;
  }
  if (Shapes(form.GetFont()->GetHandle(), kEmoji)) lines += std::string("Emoji: ") + kEmoji;
  y = std::max(y, 86) + 8;
  Add<TLabel>(&form, 12, y + 4, 100, 16, "&Имя / Όνομα:");
  auto* edit = Add<TEdit>(&form, 120, y, 232, 24);
  auto* memo = Add<TMemo>(&form, 372, y, 178, 80);
  memo->GetLines()->SetText(lines.c_str());
  Add<TCheckBox>(&form, 12, y + 36, 340, 20, "Ζωή, Жанна, Zoë")->SetChecked(true);
  auto* done = Add<TButton>(&form, 470, y + 92, 80, 26, "&Готово");
  done->SetDefault(true);
  form.SetClientWidth(562);
  form.SetClientHeight(y + 130);
  form.Show();
  // Typed, as a user would: what reaches the program is UTF-8.
  const std::string typed = Typed(scripts, form.GetFont()->GetHandle());
  edit->SetFocus();
  TypeInto(edit->GetHandle(), typed);
  Application->ProcessMessages();
  const bool whole = std::string(edit->GetText().c_str()) == typed;
  std::printf("   typed \"%s\": the program has %s\n", typed.c_str(), whole ? "it whole" : edit->GetText().c_str());
  LetPaint(form.GetHandle());
  const bool captured = CaptureShot(form.GetHandle(), "Controls in DejaVu Sans; the edit typed into", shot);
  form.Hide();
  return captured && whole;
}

// The message font: the message box's and the built-in dialogs'.
OwnedFont MessageFont() {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = offsetof(NONCLIENTMETRICSA, iPaddedBorderWidth);
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return OwnedFont(CreateFontIndirectA(&metrics.lfMessageFont));
}

bool CaptureMessageBox(Shot& shot, std::string& leftOut) {
  const OwnedFont font = MessageFont();
  std::string text = "Texts in UTF-8, as the program gives them:";
  for (const Script* s : Drawn(font.get(), leftOut)) text += std::string("\n") + s->text;
  bool captured = false;
  WhileModal(
      [&] {
        XMessageBox(nullptr, text.c_str(), "Ελληνικά — Русский — Français",
                    MB_YESNOCANCEL | MB_ICONINFORMATION | XMB_DONOTASKAGAIN | XMB_NOSOUND, 0);
      },
      IsDialogBox,
      [&](HWND box) {
        Sleep(300);
        captured = CaptureShot(box, "The message box, in the message font", shot);
      });
  return captured;
}

// The input dialog typed into; what it gives back is what was typed.
bool CaptureInputDialog(Shot& shot, std::string& leftOut) {
  const OwnedFont font = MessageFont();
  const std::vector<const Script*> scripts = Drawn(font.get(), leftOut);
  std::string typed;
  System::AnsiString value;
  bool captured = false;
  WhileModal([&] { HInputDialog(nullptr, "Ввод — Εισαγωγή — Saisie", "Имя / όνομα / nom :", value); },
             [](HWND w) { return dynamic_cast<THInputForm*>(Controls::TWinControl::FindControl(w)) != nullptr; },
             [&](HWND w) {
               TEdit* text = dynamic_cast<THInputForm*>(Controls::TWinControl::FindControl(w))->txtText;
               const HWND edit = text->GetHandle();
               typed = Typed(scripts, text->GetFont()->GetHandle());
               PostMessageW(edit, EM_SETSEL, 0, -1);
               TypeInto(edit, typed);
               Sleep(500);
               RedrawWindow(w, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
               Sleep(300);
               captured = CaptureShot(w, "The input dialog, typed into", shot);
               PostMessageW(edit, WM_KEYDOWN, VK_RETURN, 1);  // OK: the value comes back
             });
  const bool whole = std::string(value.c_str()) == typed;
  std::printf("   the input dialog gave back %s\n", whole ? "what was typed" : value.c_str());
  return captured && whole;
}

}  // namespace

int RenderUtf8Page(const char* folderName) {
  const std::string folder = folderName ? folderName : "pictures";
  Application->Initialize();
  if (GetACP() != CP_UTF8)
    std::printf("   the code page is %u, not UTF-8: the texts show as it reads them\n", GetACP());
  std::string leftOut;
  Shot form, box, input;
  bool ok = CaptureForm(form, leftOut);
  ok = CaptureMessageBox(box, leftOut) && ok;
  ok = CaptureInputDialog(input, leftOut) && ok;
  std::string title = "Velkin in a UTF-8 program";
  if (!leftOut.empty()) {
    title += " (left out, no font here draws them: " + leftOut + ")";
    std::printf("   left out, no font here draws them: %s\n", leftOut.c_str());
  }
  return SaveShotSheet({{form}, {box, input}}, title.c_str(), folder + "\\utf8.png") && ok ? 1 : 0;
}
