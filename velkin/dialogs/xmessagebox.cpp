#include "velkin/dialogs/xmessagebox.h"

#include <assert.h>
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

#include "platform/ostrel/dc_changer.h"
#include "platform/ostrel/oslib.h"
#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/core/sysutils.h"
#include "platform/vcl/graphics/measuring_dc.h"
#include "velkin/dialogs/xmessagebox_seams.h"

namespace {

constexpr int MaxItems = 20;
constexpr std::size_t MaxText = 1023;  // characters of the caption and of each item
constexpr int IconId = 1000;
constexpr int TextId = 1001;
constexpr int HelpId = 300;
constexpr int CheckId = 5555;

// Item kinds; the check box is written as a button.
constexpr unsigned char KindScroll = 0x7F, KindButton = 0x80, KindEdit = 0x81, KindStatic = 0x82, KindCheck = 0x83;

// The structure size from before the padded-border member, which every
// version of the system accepts.
constexpr UINT MetricsSize = offsetof(NONCLIENTMETRICSA, iPaddedBorderWidth);
static_assert(MetricsSize == 340);
static_assert(sizeof(DLGTEMPLATE) == 18 && sizeof(DLGITEMTEMPLATE) == 18,
              "the headers as the dialog manager reads them");

// Assertion failures name the expression and the line, and end the process
// through the runtime's handler.
void Check(bool ok, const char* expression, unsigned line) {
  if (!ok) _assert(expression, "XMessageBox", line);
}

// Captions of ids 9001..9013; 9001 has no string-table entry.
constexpr int FirstCaption = 9001, CaptionCount = 13;
// The string-table texts of the box shown when the template cannot be had.
constexpr int AllocationText = 1048, AllocationCaption = 1049;
const char* const fallback[CaptionCount] = {"OK",
                                            "Cancel",
                                            "&Ignore",
                                            "&Retry",
                                            "&Abort",
                                            "&Help",
                                            "&Yes",
                                            "&No",
                                            "&Continue",
                                            "Don't ask me again",
                                            "Don't tell me again",
                                            "Yes to &All",
                                            "No to A&ll"};

// The working state of one call; every call starts it afresh.
struct State {
  HWND owner = nullptr;
  HINSTANCE module = nullptr;
  HFONT font = nullptr;
  HICON icon = nullptr;
  unsigned defaultNumber = 1;
  unsigned buttons = 0;
  int defaultId = IDOK;
  int lastTextId = TextId;
  bool hasCancel = false, okOnly = false, askAgain = false, tellAgain = false;
  unsigned helpContext = 0;
  short baseX = 8, baseY = 16;  // GetDialogBaseUnits: pixels to dialog units
  DLGTEMPLATE header{};
  std::string captions[CaptionCount];
};
State state;
XMessageBoxSeams seams;

const char* Caption(int id) { return state.captions[id - FirstCaption].c_str(); }

// The library's string tables, or its language satellite's when one was found.
HINSTANCE LibraryModule() {
  return static_cast<HINSTANCE>(Sysutils::FindResourceHInstance(ModuleOf(reinterpret_cast<const void*>(&Check))));
}

std::string ExecutablePath() { return ModuleFileName(nullptr).Text(); }

// Whole texts of any length: a fixed buffer would cut a UTF-8 program's
// Russian caption inside a letter.
void FillCaptions(bool builtIn) {
  for (int i = 0; i < CaptionCount; ++i) {
    const System::AnsiString loaded =
        builtIn ? System::AnsiString() : Sysutils::LoadStr(state.module, FirstCaption + i);
    state.captions[i] = loaded.IsEmpty() ? fallback[i] : loaded.c_str();
  }
}

// At most most characters of text as the template holds them (UTF-16 units,
// never half a pair), whatever bytes they take in the code page.
std::string Cut(const std::string& text, std::size_t most) {
  if (text.size() <= most) return text;
  std::wstring wide = Graphics::WideText(text.c_str(), static_cast<int>(text.size()));
  if (wide.size() <= most) return text;
  wide.resize(IS_LOW_SURROGATE(wide[most]) ? most - 1 : most);
  const int n =
      WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
  std::string cut(static_cast<std::size_t>(n), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), cut.data(), n, nullptr, nullptr);
  return cut;
}

// Characters of an 8-bit text once converted; equal to its length in
// single-byte code pages, and what the writer really writes in the others.
int WideLength(const std::string& text) { return MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, nullptr, 0) - 1; }

struct MessageBoxItem {
  DLGITEMTEMPLATE header{};
  unsigned char classCode = KindStatic;
  std::string text;
};

// The items of the template being built, in creation order; the header and
// the item count are the state's.
class MessageBoxTemplate {
 public:
  void AddItem(unsigned char kind, int id, const RECT* r, const char* text) {
    WORD& count = state.header.cdit;
    Check(!items_[count], "m_pDlgItemArray[gdlgTempl.cdit] == NULL", 1032);
    auto item = std::make_unique<MessageBoxItem>();
    Check(item != nullptr, "m_pDlgItemArray[gdlgTempl.cdit]", 1040);
    DLGITEMTEMPLATE& h = item->header;
    if (r) {
      h.x = DialogX(r->left), h.y = DialogY(r->top);
      h.cx = DialogX(r->right - r->left), h.cy = DialogY(r->bottom - r->top);
    } else {
      h.cx = h.cy = 10;
    }
    h.id = static_cast<WORD>(id);
    item->text = text ? Cut(text, MaxText) : std::string();
    switch (kind) {
      case KindScroll:
        h.style = 0x50000003, item->classCode = KindScroll;
        break;
      case KindButton:
        h.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP, item->classCode = KindButton;
        if (++state.buttons == state.defaultNumber) {
          h.style |= BS_DEFPUSHBUTTON;
          state.defaultId = id;
        }
        break;
      case KindEdit:
        h.style = 0x50010004, item->classCode = KindEdit;
        break;
      case KindStatic:
        h.style = WS_CHILD | WS_VISIBLE, item->classCode = KindStatic;
        break;
      case KindCheck:
        h.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, item->classCode = KindButton;
        break;
      default:
        Check(false, "FALSE", 1273);
    }
    items_[count] = std::move(item);
    ++count;
    Check(count < MaxItems, "gdlgTempl.cdit < MaxItems", 1045);
  }

  int Size(const std::string& caption) const {
    int size = ((WideLength(caption) + 1) * 2 + 22 + 3) & ~3;
    const int count = state.header.cdit;
    for (int i = 0; i < count; ++i) {
      const int text = (WideLength(items_[i]->text) + 1) * 2;
      size += i + 1 < count ? (text + 27) & ~3 : text + 24;
    }
    return size;
  }

  // Writes the template into buffer, which holds exactly Size(caption) bytes.
  void Write(const std::string& caption, unsigned char* buffer, int size) const {
    unsigned char* at = buffer;
    const auto put = [&at](const void* data, std::size_t n) {
      std::memcpy(at, data, n);
      at += n;
    };
    const auto word = [&put](WORD w) { put(&w, sizeof w); };
    const auto text = [&at, buffer, size](const std::string& s, unsigned line) {
      const int room = static_cast<int>((buffer + size - at) / 2);
      const int n = MultiByteToWideChar(CP_ACP, 0, s.c_str(), -1, reinterpret_cast<wchar_t*>(at), room);
      Check(n > 0, "nActualChars > 0", line);
      at += n * 2;
    };
    put(&state.header, sizeof state.header);
    word(0);  // no menu
    word(0);  // the dialog class
    text(caption, 1157);
    for (int i = 0; i < state.header.cdit; ++i) {
      at = buffer + ((at - buffer + 3) & ~3);  // each item starts on a DWORD boundary
      put(&items_[i]->header, sizeof(DLGITEMTEMPLATE));
      word(0xFFFF);
      word(items_[i]->classCode);
      text(items_[i]->text, 1180);
      word(0);  // no creation data
    }
    Check(at - buffer == size, "pdest - pBuffer == nBufferSize", 1188);
  }

  static short DialogX(int pixels) { return static_cast<short>(pixels * 4 / state.baseX); }
  static short DialogY(int pixels) { return static_cast<short>(pixels * 8 / state.baseY); }

 private:
  std::unique_ptr<MessageBoxItem> items_[MaxItems];
};

int ButtonCount(unsigned set) {
  switch (set) {
    case MB_OK:
      return 1;
    case MB_OKCANCEL:
      return 2;
    case MB_ABORTRETRYIGNORE:
      return 3;
    case MB_YESNOCANCEL:
      return 3;
    case MB_YESNO:
      return 2;
    case MB_RETRYCANCEL:
      return 2;
    case XMB_CONTINUEABORT:
      return 2;
    default:
      return 0;
  }
}

int Width(const RECT& r) { return r.right - r.left; }

// How far right the ink of text laid out in r reaches in the message font,
// with a clear column after it: a renderer may draw past the measured end.
int InkRight(const char* text, const RECT& r, UINT flags) {
  const Graphics::TMeasuringDC measuring;
  measuring.UseFont(state.font);
  const std::wstring wide = Graphics::WideText(text, -1);
  return measuring.InkRight(wide.c_str(), static_cast<int>(wide.size()), r, flags) + 1;
}
int Height(const RECT& r) { return r.bottom - r.top; }

// Lays the box out in pixels with the message font and adds its items. The
// margins and button sizes are those of a 96-DPI screen, scaled to the
// screen's density so that the larger message font of a denser screen fits.
void Layout(MessageBoxTemplate& dialog, const char* text, unsigned style) {
  OwnedMemoryDC dc(CreateDCA("DISPLAY", nullptr, nullptr, nullptr));
  Check(bool(dc), "hdc", 647);
  DCChanger use(dc.get());
  use.Select(state.font);
  const int dpi = GetDeviceCaps(dc.get(), LOGPIXELSY);
  const auto px = [dpi](int pixels) { return MulDiv(pixels, dpi, 96); };

  const unsigned iconKind = style & MB_ICONMASK;
  const int cxIcon = GetSystemMetrics(SM_CXICON), cyIcon = GetSystemMetrics(SM_CYICON);
  int most = GetSystemMetrics(SM_CXSCREEN) / 2 + px(100);
  if (iconKind) most -= cxIcon + px(16);
  RECT measured{0, 0, most, most};
  // As the box shows it: the template holds the text, cut, converted from the code page.
  const std::string shown = Cut(text ? text : "", MaxText);
  const std::wstring wide = Graphics::WideText(shown.c_str(), -1);
  DrawTextW(dc.get(), wide.c_str(), -1, &measured, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
  measured.right = std::max<LONG>(measured.right, InkRight(shown.c_str(), measured, DT_WORDBREAK | DT_NOPREFIX));
  RECT textRect{px(16), px(16), measured.right + px(28), measured.bottom + px(21)};
  RECT box{0, 0, Width(textRect) + px(16), std::max<LONG>(Height(textRect) + px(16), px(70))};

  state.header.style = WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | DS_CENTER | DS_MODALFRAME;
  if (style & MB_SYSTEMMODAL) state.header.style |= DS_SYSMODAL;

  const LPCSTR stock = iconKind == MB_ICONHAND          ? IDI_HAND
                       : iconKind == MB_ICONQUESTION    ? IDI_QUESTION
                       : iconKind == MB_ICONEXCLAMATION ? IDI_EXCLAMATION
                       : iconKind == MB_ICONASTERISK    ? IDI_ASTERISK
                                                        : nullptr;
  state.icon = stock ? LoadIconA(nullptr, stock) : nullptr;
  int iconBottom = 0;
  if (state.icon) {
    OffsetRect(&textRect, cxIcon + px(8), 0);
    box.right = textRect.right + px(8);
    const RECT iconRect{px(8), px(8), cxIcon + px(10), cyIcon + px(10)};
    dialog.AddItem(KindStatic, IconId, &iconRect, "");
    iconBottom = iconRect.bottom;
  }
  dialog.AddItem(KindStatic, TextId, &textRect, text);

  const unsigned set = style & MB_TYPEMASK;
  int count = ButtonCount(set) + (style & MB_HELP ? 1 : 0);
  const bool yesNoOrOkCancel = (set & 4) || (set & 3);
  if (style & XMB_YESTOALL) {
    Check(yesNoOrOkCancel, "FALSE", 770);
    ++count;
  }
  if (style & XMB_NOTOALL) {
    Check(yesNoOrOkCancel, "FALSE", 782);
    ++count;
  }
  Check(count > 0, "cItems > 0", 791);

  // Buttons of 82 x 23 pixels, 88 apart, centred under the text.
  const int pitch = px(88), buttonWidth = px(82), buttonHeight = px(23);
  const LONG y = std::max<LONG>(iconBottom, textRect.bottom);
  RECT row{0, y + px(8), count * pitch - (pitch - buttonWidth), y + px(8) + buttonHeight};
  const unsigned field = (style & MB_DEFMASK) >> 8;
  state.defaultNumber = field <= 5 ? field + 1 : 1;
  if (state.defaultNumber > static_cast<unsigned>(count)) state.defaultNumber = 1;
  box.bottom = row.bottom + px(10);
  if (box.right <= row.right + px(32)) box.right = row.right + px(32);
  const int x0 = (Width(box) - Width(row)) / 2;

  int slot = 0;
  const auto button = [&](int id, int caption) {
    const RECT r{x0 + slot * pitch, row.top, x0 + slot * pitch + buttonWidth, row.top + buttonHeight};
    ++slot;
    dialog.AddItem(KindButton, id, &r, Caption(caption));
  };
  switch (set) {
    case MB_OK:
      button(IDOK, 9001), state.okOnly = true;
      break;
    case MB_OKCANCEL:
      button(IDOK, 9001), button(IDCANCEL, 9002), state.hasCancel = true;
      break;
    case MB_ABORTRETRYIGNORE:
      button(IDABORT, 9005), button(IDRETRY, 9004), button(IDIGNORE, 9003);
      break;
    case MB_YESNOCANCEL:
    case MB_YESNO:
      button(IDYES, 9007);
      if (style & XMB_YESTOALL) button(IDYESTOALL, 9012);
      button(IDNO, 9008);
      if (style & XMB_NOTOALL) button(IDNOTOALL, 9013);
      if (set == MB_YESNOCANCEL) button(IDCANCEL, 9002), state.hasCancel = true;
      break;
    case MB_RETRYCANCEL:
      button(IDRETRY, 9004), button(IDCANCEL, 9002), state.hasCancel = true;
      break;
    case XMB_CONTINUEABORT:
      button(IDYESTOALL, 9009), button(IDABORT, 9005);
      break;
    default:
      button(IDOK, 9001);
  }
  if (style & MB_HELP) button(HelpId, 9006);

  state.askAgain = style & XMB_DONOTASKAGAIN;
  state.tellAgain = !state.askAgain && (style & XMB_DONOTTELLAGAIN);
  if (state.askAgain || state.tellAgain) {
    const char* label = Caption(state.askAgain ? 9010 : 9011);
    RECT r{0, 0, GetSystemMetrics(SM_CXSCREEN) / 3, px(16)};
    DrawTextW(dc.get(), Graphics::WideText(label, -1).c_str(), -1, &r, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    const int w = std::max<int>(r.right, InkRight(label, r, DT_SINGLELINE | DT_NOPREFIX));
    // A third more for the box, and never less than the box and its gap.
    const int checkWidth = std::max(w + w / 3, w + GetSystemMetrics(SM_CXMENUCHECK) + px(8));
    const RECT check{px(17), row.top + px(35), checkWidth + px(17), row.top + px(51)};
    dialog.AddItem(KindCheck, CheckId, &check, label);
    row.bottom = check.bottom;
    box.bottom = row.top + px(59);
    if (Width(box) < checkWidth + px(17)) box.right = box.left + checkWidth + px(17);
  }
  if (box.bottom <= row.bottom) box.bottom = row.bottom + px(16);
  if (box.right < row.right + px(16)) box.right = row.right + px(16);

  state.header.cx = MessageBoxTemplate::DialogX(Width(box));
  state.header.cy = MessageBoxTemplate::DialogY(Height(box));
  state.lastTextId = TextId;
}

// Starts a call: the state afresh, the message font, the owner, the module.
// False when the system's own message box is to be shown instead.
bool Prepare(OwnedFont& font, void* owner, const char* text, std::string& caption, unsigned style, unsigned help,
             MessageBoxTemplate& dialog) {
  state.hasCancel = state.okOnly = state.askAgain = state.tellAgain = false;
  state.buttons = 0;
  state.defaultId = IDOK;
  state.helpContext = help;
  state.header = DLGTEMPLATE{};
  const LONG units = GetDialogBaseUnits();
  state.baseX = static_cast<short>(LOWORD(units)), state.baseY = static_cast<short>(HIWORD(units));

  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = MetricsSize;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, MetricsSize, &metrics, 0);
  font.reset(CreateFontIndirectA(&metrics.lfMessageFont));
  state.font = font.get();
  state.owner = owner ? static_cast<HWND>(owner) : GetDesktopWindow();
  state.module = LibraryModule();
  if (caption.empty()) caption = ExecutablePath();
  caption = Cut(caption, MaxText);
  // A system-modal stop or exclamation box is the system's own.
  if ((style & MB_ICONHAND) && (style & MB_SYSTEMMODAL)) return false;
  FillCaptions(style & XMB_NORESOURCE);
  Layout(dialog, text, style);
  return true;
}

LRESULT CALLBACK IconPainter(HWND window, UINT message, WPARAM, LPARAM) {
  // Every message ends here: the static's own procedure is not called.
  if (message == WM_PAINT) {
    const OwnedPaintDC paint(window);
    DrawIcon(paint.get(), 0, 0, state.icon);
  }
  return 0;
}

void ShowHelp(HWND dialog) {
  std::string file = ExecutablePath();
  const std::size_t dot = file.rfind('.');
  if (dot == std::string::npos) return;
  file.replace(dot, std::string::npos, ".hlp");
  const auto help = seams.Help ? seams.Help : &WinHelpA;
  if (state.helpContext)
    help(dialog, file.c_str(), HELP_CONTEXT, state.helpContext);
  else
    help(dialog, file.c_str(), HELP_PARTIALKEY, 0);
}

void InitDialog(HWND dialog) {
  {
    OwnedMemoryDC dc(CreateDCA("DISPLAY", nullptr, nullptr, nullptr));
    Check(bool(dc), "hdc", 528);
    DCChanger use(dc.get());
    use.Select(state.font);
  }
  const auto setFont = [&](HWND control) {
    SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(state.font), 0);
  };
  for (int id = TextId; id <= state.lastTextId; ++id) {
    HWND control = GetDlgItem(dialog, id);
    if (!IsWindow(control)) break;
    setFont(control);
  }
  for (int id = 1; id <= 17; ++id)
    if (HWND control = GetDlgItem(dialog, id)) setFont(control);
  if (HWND help = GetDlgItem(dialog, HelpId)) setFont(help);
  if (HWND check = GetDlgItem(dialog, CheckId)) {
    setFont(check);
    CheckDlgButton(dialog, CheckId, BST_UNCHECKED);
  }
  SetFocus(GetDlgItem(dialog, state.defaultId));
  if (!state.hasCancel && !state.okOnly)
    EnableMenuItem(GetSystemMenu(dialog, FALSE), SC_CLOSE, MF_BYCOMMAND | MF_GRAYED);
  if (state.icon) SetWindowLongPtrA(GetDlgItem(dialog, IconId), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&IconPainter));
}

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_INITDIALOG) {
    InitDialog(dialog);
    return 0;
  }
  if (message != WM_COMMAND) return 0;
  const int id = LOWORD(wParam);
  switch (id) {
    case IDCLOSE:
      break;
    case IDCANCEL:
      if (state.hasCancel)
        EndDialog(dialog, IDCANCEL);
      else if (state.okOnly)
        EndDialog(dialog, IDOK);
      break;
    case HelpId:
      ShowHelp(dialog);
      break;
    case CheckId:
      break;
    default: {
      int result = id;
      if (SendMessageA(GetDlgItem(dialog, CheckId), BM_GETCHECK, 0, 0) == BST_CHECKED) {
        if (state.askAgain) result |= XMB_DONOTASKAGAIN;
        if (state.tellAgain) result |= XMB_DONOTTELLAGAIN;
      }
      EndDialog(dialog, result);
    }
  }
  return 0;
}

}  // namespace

int XMessageBox(void* owner, const char* text, const char* caption, unsigned style, unsigned helpContext) {
  CheckDialogOwner(owner);
  OwnedFont font;
  std::string title = caption ? caption : "";
  MessageBoxTemplate dialog;
  // The font goes on every path, the system message box's included.
  if (!Prepare(font, owner, text, title, style, helpContext, dialog))
    return MessageBoxA(state.owner, text, title.c_str(), style);
  if (!(style & XMB_NOSOUND)) (seams.Beep ? seams.Beep : &MessageBeep)(style & MB_ICONMASK);

  const int size = dialog.Size(title);
  const auto alloc = seams.Alloc ? seams.Alloc : &LocalAlloc;
  OwnedLocal memory(alloc(LHND, size));
  if (!memory) {
    // English when the table cannot be read either.
    const System::AnsiString text = Sysutils::LoadStr(state.module, AllocationText),
                             caption = Sysutils::LoadStr(state.module, AllocationCaption);
    MessageBoxA(nullptr, text.IsEmpty() ? "Memory allocation for dialog template failed." : text.c_str(),
                caption.IsEmpty() ? "Allocation Failure" : caption.c_str(), MB_ICONEXCLAMATION);
    return IDCANCEL;
  }
  auto* buffer = static_cast<unsigned char*>(LocalLock(memory.get()));
  dialog.Write(title, buffer, size);
  const INT_PTR result =
      DialogBoxIndirectParamA(state.module, reinterpret_cast<LPCDLGTEMPLATEA>(buffer), state.owner, &DialogProc, 0);
  LocalUnlock(memory.get());
  return static_cast<int>(result);
}

void XMessageBoxSetSeams(const XMessageBoxSeams& value) { seams = value; }

std::vector<unsigned char> XMessageBoxTemplate(const char* text, const char* caption, unsigned style) {
  OwnedFont font;
  std::string title = caption ? caption : "";
  MessageBoxTemplate dialog;
  if (!Prepare(font, nullptr, text, title, style, 0, dialog)) return {};
  std::vector<unsigned char> bytes(dialog.Size(title));
  dialog.Write(title, bytes.data(), static_cast<int>(bytes.size()));
  return bytes;
}
