#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/graphics/measuring_dc.h"

#include <string>
#include <vector>

namespace Stdctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TCustomEdit, Controls::TWinControl, VCL_PROPERTY(TabStop, true),
                   VCL_PROPERTY_STORED(Color, IsColorStored, Graphics::clWindow), VCL_PROPERTY(ParentColor, false),
                   VCL_PROPERTY(MaxLength, 0), VCL_PROPERTY(ReadOnly, false), VCL_PROPERTY(PasswordChar, 0),
                   VCL_PROPERTY(Text), VCL_PROPERTY(OnChange))
VCL_COMPONENT_IMPL(TEdit, TCustomEdit)

TCustomEdit::TCustomEdit(Classes::TComponent* owner) : TWinControl(owner) {
  SetTabStop(true);
  SetBounds(0, 0, 121, 21);
  SetColor(Graphics::clWindow);
}

void TCustomEdit::CreateParams(TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.SystemClass = "EDIT";
  params.Style |= ES_AUTOHSCROLL | (readOnly_ ? ES_READONLY : 0);
  params.ExStyle |= WS_EX_CLIENTEDGE;
}

void TCustomEdit::CreateWnd() {
  TWinControl::CreateWnd();
  if (!HandleAllocated()) return;
  HWND h = GetHandle();
  SendMessageA(h, EM_LIMITTEXT, maxLength_, 0);
  if (passwordChar_) SendMessageA(h, EM_SETPASSWORDCHAR, static_cast<unsigned char>(passwordChar_), 0);
  SendMessageA(h, EM_SETSEL, selStart_, selStart_ + selLength_);
}

void TCustomEdit::SetMaxLength(int value) {
  maxLength_ = value < 0 ? 0 : value;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_LIMITTEXT, maxLength_, 0);
}

void TCustomEdit::SetReadOnly(bool value) {
  readOnly_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETREADONLY, value, 0);
}

void TCustomEdit::SetPasswordChar(char value) {
  passwordChar_ = value;
  if (!HandleAllocated()) return;
  SendMessageA(GetHandle(), EM_SETPASSWORDCHAR, static_cast<unsigned char>(value), 0);
  Invalidate();
}

bool TCustomEdit::GetModified() { return HandleAllocated() && SendMessageA(GetHandle(), EM_GETMODIFY, 0, 0); }

void TCustomEdit::SetModified(bool value) {
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETMODIFY, value, 0);
}

int TCustomEdit::GetSelStart() {
  if (HandleAllocated()) {
    DWORD start = 0, end = 0;
    SendMessageA(GetHandle(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    selStart_ = static_cast<int>(start);
    selLength_ = static_cast<int>(end - start);
  }
  return selStart_;
}

void TCustomEdit::SetSelStart(int value) {
  selStart_ = value;
  selLength_ = 0;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETSEL, value, value);
}

int TCustomEdit::GetSelLength() {
  GetSelStart();
  return selLength_;
}

void TCustomEdit::SetSelLength(int value) {
  const int start = GetSelStart();
  selLength_ = value;
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETSEL, start, start + value);
}

AnsiString TCustomEdit::GetSelText() {
  const int start = GetSelStart();
  if (!HandleAllocated()) return GetText().SubString(start + 1, selLength_);
  // The window counts UTF-16 units, not the code page's bytes.
  const HWND h = GetHandle();
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(h)) + 1, L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(h, text.data(), static_cast<int>(text.size()))));
  if (start >= static_cast<int>(text.size()) || selLength_ <= 0) return AnsiString();
  const std::wstring part = text.substr(static_cast<size_t>(start), static_cast<size_t>(selLength_));
  return AnsiString(Graphics::AnsiText(part.data(), static_cast<int>(part.size())));
}

void TCustomEdit::SetSelText(const AnsiString& value) {
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(value.c_str()));
}

void TCustomEdit::SelectAll() {
  if (HandleAllocated()) SendMessageA(GetHandle(), EM_SETSEL, 0, -1);
}

void TCustomEdit::Notified(TMessage& message) {
  if (message.Msg == Controls::CN_COMMAND && HIWORD(message.WParam) == EN_CHANGE) onChange_(this);
}

}  // namespace Stdctrls

namespace Stdctrls {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TCustomMemo, TCustomEdit, VCL_PROPERTY(Lines), VCL_PROPERTY(ScrollBars, ssNone),
                   VCL_PROPERTY(WantReturns, true), VCL_PROPERTY(WantTabs, false), VCL_PROPERTY(WordWrap, true))
VCL_COMPONENT_IMPL(TMemo, TCustomMemo)

namespace {

// A memo's lines: its text split at its line breaks, read and written as a
// whole (the text lives in the window, or in the control until there is one).
class TMemoLines : public Classes::TStrings {
 public:
  explicit TMemoLines(TCustomMemo* memo) : memo_(memo) {}
  int GetCount() const override { return static_cast<int>(Split().size()); }
  AnsiString Get(int index) const override {
    const auto lines = Split();
    if (index < 0 || index >= static_cast<int>(lines.size())) IndexError(index);
    return AnsiString(lines[static_cast<size_t>(index)]);
  }
  void Put(int index, const AnsiString& value) override {
    auto lines = Split();
    if (index < 0 || index >= static_cast<int>(lines.size())) IndexError(index);
    lines[static_cast<size_t>(index)] = value.str();
    Join(lines);
  }
  void Insert(int index, const AnsiString& value) override {
    auto lines = Split();
    if (index < 0 || index > static_cast<int>(lines.size())) IndexError(index);
    lines.insert(lines.begin() + index, value.str());
    Join(lines);
  }
  void Delete(int index) override {
    auto lines = Split();
    if (index < 0 || index >= static_cast<int>(lines.size())) IndexError(index);
    lines.erase(lines.begin() + index);
    Join(lines);
  }
  void Clear() override { memo_->SetText(""); }
  AnsiString GetText() const override { return memo_->GetText(); }
  // Line breaks between the lines, none after the last: the same text as
  // the lines added one by one.
  void SetText(const AnsiString& value) override {
    Classes::TStringList lines;
    lines.SetText(value);
    std::vector<std::string> split;
    for (int i = 0; i < lines.GetCount(); ++i) split.push_back(lines.Get(i).str());
    Join(split);
  }

 private:
  // The text's lines, one more than its line breaks (CR LF, LF or CR), so
  // that an empty last line (as Join writes it) stays a line.
  std::vector<std::string> Split() const {
    const std::string text = memo_->GetText().str();
    std::vector<std::string> out;
    if (text.empty()) return out;
    std::string::size_type begin = 0;
    for (;;) {
      const std::string::size_type end = text.find_first_of("\r\n", begin);
      out.push_back(text.substr(begin, end == std::string::npos ? std::string::npos : end - begin));
      if (end == std::string::npos) return out;
      begin = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
    }
  }
  void Join(const std::vector<std::string>& lines) {
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i) text += lines[i] + (i + 1 < lines.size() ? "\r\n" : "");
    memo_->SetText(AnsiString(text));
  }
  TCustomMemo* memo_;
};

}  // namespace

void TCustomMemo::SetText(const AnsiString& value) {
  const bool changed = GetText() != value;
  TCustomEdit::SetText(value);
  if (changed) GetOnChange()(this);
}

TCustomMemo::TCustomMemo(Classes::TComponent* owner) : TCustomEdit(owner), lines_(std::make_unique<TMemoLines>(this)) {
  SetBounds(0, 0, 185, 89);
}

TCustomMemo::~TCustomMemo() = default;

void TCustomMemo::CreateParams(TCreateParams& params) {
  TCustomEdit::CreateParams(params);
  params.Style |= ES_MULTILINE | ES_AUTOVSCROLL | (wantReturns_ ? ES_WANTRETURN : 0);
  if (wordWrap_) params.Style &= ~ES_AUTOHSCROLL;
  if (scrollBars_ == ssVertical || scrollBars_ == ssBoth) params.Style |= WS_VSCROLL;
  if (scrollBars_ == ssHorizontal || scrollBars_ == ssBoth) params.Style |= WS_HSCROLL;
}

void TCustomMemo::SetScrollBars(TScrollStyle value) {
  if (value == scrollBars_) return;
  scrollBars_ = value;
  if (HandleAllocated()) DestroyHandle();
}

void TCustomMemo::SetWordWrap(bool value) {
  if (value == wordWrap_) return;
  wordWrap_ = value;
  if (HandleAllocated()) DestroyHandle();
}

// The window is asked what it wants without the key's message: an edit asked
// with one takes itself for a dialog's edit, which types no tabs and wants
// every Enter and Tab by that message.
void TCustomMemo::WndProc(TMessage& message) {
  if (message.Msg == WM_GETDLGCODE) message.LParam = 0;
  TCustomEdit::WndProc(message);
  if (message.Msg != WM_GETDLGCODE) return;
  if (wantTabs_)
    message.Result |= DLGC_WANTTAB;
  else
    message.Result &= ~DLGC_WANTTAB;
  if (!wantReturns_) message.Result &= ~DLGC_WANTALLKEYS;
}

}  // namespace Stdctrls
