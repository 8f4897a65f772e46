// The mouse, colour and font of controls: clicks reach the control under the
// mouse (windowless ones through their parent), Color and Font follow the
// parent until set, front-to-back order, coordinates, and a control that
// paints itself on its canvas.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Controls;
using namespace vcl_test;

namespace {

// What the mouse events of a control saw, as text.
struct MouseLog {
  std::string text;
  void Down(System::TObject*, TMouseButton b, TShiftState s, int x, int y) {
    text += "down" + std::to_string(b) + (s.Contains(ssDouble) ? "d" : "") + At(x, y);
  }
  void Up(System::TObject*, TMouseButton b, TShiftState, int x, int y) { text += "up" + std::to_string(b) + At(x, y); }
  void Click(System::TObject*) { text += "click "; }
  void DblClick(System::TObject*) { text += "dblclick "; }
  static std::string At(int x, int y) { return "@" + std::to_string(x) + "," + std::to_string(y) + " "; }
  void Watch(TControl* c) {
    c->SetOnMouseDown({this, &MouseLog::Down});
    c->SetOnMouseUp({this, &MouseLog::Up});
    c->SetOnClick({this, &MouseLog::Click});
    c->SetOnDblClick({this, &MouseLog::DblClick});
  }
};

// Sends the mouse messages of a script: "L60,30 l61,31" is a left press at
// (60, 30) and its release at (61, 31); R and r the right button, D a double
// click.
void Play(HWND wnd, const char* script) {
  char what;
  int x, y, n;
  for (const char* p = script; std::sscanf(p, " %c%d,%d%n", &what, &x, &y, &n) == 3; p += n) {
    const UINT msgs[] = {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN, WM_RBUTTONUP};
    const WPARAM keys[] = {MK_LBUTTON, 0, MK_LBUTTON, MK_RBUTTON, 0};
    const size_t k = std::string("LlDRr").find(what);
    Mouse(wnd, msgs[k], x, y, keys[k]);
  }
}

TEST(TControlMouse, ClicksGoToTheControlUnderTheMouse) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  auto* back = Make<Stdctrls::TLabel>(&form, &form);
  auto* front = Make<Stdctrls::TLabel>(&form, &form);
  for (auto* l : {back, front}) l->SetAutoSize(false);
  back->SetBounds(10, 10, 100, 40);
  front->SetBounds(50, 20, 100, 40);
  MouseLog backLog, frontLog, formLog;
  backLog.Watch(back);
  frontLog.Watch(front);
  formLog.Watch(&form);
  const HWND wnd = form.GetHandle();

  const struct {
    const char* what;
    const char* script;
    const char *back, *front, *form;
  } cases[] = {
      {"a press and release on the front label", "L60,30 l61,31", "", "down0@10,10 up0@11,11 click ", ""},
      {"on the part of the back label left uncovered", "L20,15 l20,15", "down0@10,5 up0@10,5 click ", "", ""},
      {"released outside: the label keeps the mouse, no click", "L60,30 l250,150", "", "down0@10,10 up0@200,130 ", ""},
      {"a double click", "L60,30 l60,30 D60,30 l60,30", "",
       "down0@10,10 up0@10,10 click dblclick down0d@10,10 up0@10,10 ", ""},
      {"the right button presses but does not click", "R60,30 r60,30", "", "down1@10,10 up1@10,10 ", ""},
      {"on the form itself", "L200,150 l200,150", "", "", "down0@200,150 up0@200,150 click "},
      {"brought to the front, the back label takes the overlap", "L60,30 l60,30", "down0@50,20 up0@50,20 click ", "",
       ""},
      {"disabled, it lets the mouse through to what lies below", "L60,30 l60,30", "", "down0@10,10 up0@10,10 click ",
       ""},
  };
  for (const auto& c : cases) {
    if (&c == &cases[6]) back->BringToFront();
    if (&c == &cases[7]) back->SetEnabled(false);
    backLog.text = frontLog.text = formLog.text = "";
    Play(wnd, c.script);
    EXPECT_EQ(c.back, backLog.text) << c.what;
    EXPECT_EQ(c.front, frontLog.text) << c.what;
    EXPECT_EQ(c.form, formLog.text) << c.what;
  }

  EXPECT_EQ(back, form.GetControl(form.GetControlCount() - 1)) << "brought to the front: last of the controls";

  // A handler that frees its control: the parent goes on safely.
  System::TEventHandlers on;
  front->SetOnClick(on.Add([](System::TObject* sender) { delete sender; }));
  ClickAt(wnd, 60, 30);
  EXPECT_EQ(1, form.GetControlCount());
  ClickAt(wnd, 60, 30);

  // Coordinates: a windowless control's client area on the screen.
  auto* panel = Make<Extctrls::TPanel>(&form, &form, 20, 30, 150, 100);
  auto* inner = Make<Stdctrls::TLabel>(&form, panel, 5, 7, 40, 20);
  POINT origin{0, 0};
  ClientToScreen(panel->GetHandle(), &origin);
  const MyPoint p = inner->ClientToScreen({1, 2});
  EXPECT_EQ((MyPoint{origin.x + 6, origin.y + 9}), p);
  EXPECT_EQ((MyPoint{1, 2}), inner->ScreenToClient(p));
}

// The font of a window as GDI sees it.
LONG WindowFontHeight(TWinControl* c) {
  LOGFONTA f{};
  GetObjectA(reinterpret_cast<HFONT>(SendMessageA(c->GetHandle(), WM_GETFONT, 0, 0)), sizeof f, &f);
  return f.lfHeight;
}

TEST(TControlLook, ColorAndFontFollowTheParentUntilSet) {
  Forms::TForm form(nullptr);
  auto* panel = Make<Extctrls::TPanel>(&form, &form);
  auto* inner = Make<Extctrls::TPanel>(&form, panel);
  auto* edit = Make<Stdctrls::TEdit>(&form, panel);
  form.GetHandle();

  form.SetColor(Graphics::clRed);
  EXPECT_EQ(Graphics::clRed, panel->GetColor());
  EXPECT_EQ(Graphics::clRed, inner->GetColor()) << "through every level";
  EXPECT_EQ(Graphics::clWindow, edit->GetColor()) << "an edit has its own colour";
  inner->SetColor(Graphics::clBlue);
  form.SetColor(Graphics::clLime);
  EXPECT_EQ(Graphics::clLime, panel->GetColor());
  EXPECT_EQ(Graphics::clBlue, inner->GetColor()) << "set colour kept";
  inner->SetParentColor(true);
  EXPECT_EQ(Graphics::clLime, inner->GetColor()) << "taken again";

  EXPECT_NE(0, WindowFontHeight(edit)) << "the system message font to start with";
  form.GetFont()->SetHeight(-30);
  EXPECT_EQ(-30, WindowFontHeight(edit)) << "the window got the parent's new font";
  edit->GetFont()->SetHeight(-12);
  form.GetFont()->SetHeight(-40);
  EXPECT_EQ(-12, WindowFontHeight(edit)) << "its own font kept";
  EXPECT_EQ(-40, WindowFontHeight(inner));
  EXPECT_EQ(-40, WindowFontHeight(Make<Stdctrls::TEdit>(&form, &form)))
      << "a new child takes the font when it comes in";
}

// Paints a cross in its font colour over its Color.
class TCross : public TCustomControl {
 public:
  using TCustomControl::TCustomControl;
  int paints = 0;

 protected:
  void Paint() override {
    ++paints;
    TCustomControl::Paint();
    GetCanvas()->GetPen()->SetColor(Graphics::clBlack);
    GetCanvas()->MoveTo(0, 0);
    GetCanvas()->LineTo(GetWidth(), GetHeight());
  }
};

// Paints the 20x20 top-left corner of wnd into a memory bitmap through
// WM_PAINT and gives it as a picture every 4 pixels: '.' yellow, '#' black,
// 'r' red, '?' anything else.
std::string PaintedCorner(HWND wnd) {
  PaintTarget target(20, 20);
  SendMessageA(wnd, WM_PAINT, reinterpret_cast<WPARAM>(target.dc()), 0);
  std::string picture;
  for (int y = 0; y < 20; y += 4) {
    for (int x = 0; x < 20; x += 4) {
      const COLORREF c = target.At(x, y);
      picture += c == RGB(255, 255, 0) ? '.' : c == RGB(0, 0, 0) ? '#' : c == RGB(255, 0, 0) ? 'r' : '?';
    }
    picture += '\n';
  }
  return picture;
}

TEST(TCustomControl, PaintsOnItsCanvasAsAFormInOnPaint) {
  System::TEventHandlers on;
  Forms::TForm form(nullptr);
  auto* cross = Make<TCross>(&form, &form, 0, 0, 20, 20);
  cross->SetColor(Graphics::clYellow);
  EXPECT_EQ("#....\n.#...\n..#..\n...#.\n....#\n", PaintedCorner(cross->GetHandle()));
  EXPECT_EQ(1, cross->paints);

  // The form's OnPaint draws first, its windowless controls over it.
  delete cross;
  form.SetOnPaint(on.Add([&](System::TObject*) {
    form.GetCanvas()->GetBrush()->SetColor(Graphics::clYellow);
    form.GetCanvas()->FillRect({0, 0, 20, 20});
  }));
  auto* label = Make<Stdctrls::TLabel>(&form, &form);
  label->SetAutoSize(false);
  label->SetColor(Graphics::clRed);
  label->SetBounds(8, 8, 8, 8);
  EXPECT_EQ(".....\n.....\n..rr.\n..rr.\n.....\n", PaintedCorner(form.GetHandle()));
}

}  // namespace
