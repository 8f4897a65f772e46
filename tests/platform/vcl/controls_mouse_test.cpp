// The mouse, colour and font of controls: clicks reach the control under the
// mouse (windowless ones through their parent), Color and Font follow the
// parent until set, front-to-back order, coordinates, and a control that
// paints itself on its canvas.
#include <gtest/gtest.h>

#include <string>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/ext_panels.h"
#include "platform/vcl/forms.h"
#include "platform/vcl/std_edits.h"
#include "platform/vcl/std_label.h"

using namespace Controls;

namespace {

// What the mouse events of a control saw, as text.
struct MouseLog {
  std::string text;
  void Down(System::TObject*, TMouseButton b, TShiftState s, int x, int y) {
    text += "down" + std::to_string(b) + (s.Contains(ssDouble) ? "d" : "") + "@" + std::to_string(x) + "," +
            std::to_string(y) + " ";
  }
  void Up(System::TObject*, TMouseButton b, TShiftState, int x, int y) {
    text += "up" + std::to_string(b) + "@" + std::to_string(x) + "," + std::to_string(y) + " ";
  }
  void Click(System::TObject*) { text += "click "; }
  void DblClick(System::TObject*) { text += "dblclick "; }
  void Watch(TControl* c) {
    c->SetOnMouseDown({this, &MouseLog::Down});
    c->SetOnMouseUp({this, &MouseLog::Up});
    c->SetOnClick({this, &MouseLog::Click});
    c->SetOnDblClick({this, &MouseLog::DblClick});
  }
};

void Mouse(HWND wnd, UINT msg, int x, int y, WPARAM keys = 0) { SendMessageA(wnd, msg, keys, MAKELPARAM(x, y)); }

TEST(TControlMouse, ClicksGoToTheControlUnderTheMouse) {
  Forms::TForm form(nullptr);
  form.SetBorderStyle(Forms::bsNone);
  form.SetBounds(0, 0, 300, 200);
  auto* back = new Stdctrls::TLabel(&form);
  back->SetParent(&form);
  back->SetAutoSize(false);
  back->SetBounds(10, 10, 100, 40);
  auto* front = new Stdctrls::TLabel(&form);
  front->SetParent(&form);
  front->SetAutoSize(false);
  front->SetBounds(50, 20, 100, 40);
  MouseLog backLog, frontLog, formLog;
  backLog.Watch(back);
  frontLog.Watch(front);
  formLog.Watch(&form);
  const HWND wnd = form.GetHandle();

  struct Case {
    const char* what;
    void (*act)(HWND);
    const char* back;
    const char* front;
    const char* form;
  };
  const Case cases[] = {
      {"a press and release on the front label",
       [](HWND w) {
         Mouse(w, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
         Mouse(w, WM_LBUTTONUP, 61, 31);
       },
       "", "down0@10,10 up0@11,11 click ", ""},
      {"on the part of the back label left uncovered",
       [](HWND w) {
         Mouse(w, WM_LBUTTONDOWN, 20, 15, MK_LBUTTON);
         Mouse(w, WM_LBUTTONUP, 20, 15);
       },
       "down0@10,5 up0@10,5 click ", "", ""},
      {"released outside: the label keeps the mouse, no click",
       [](HWND w) {
         Mouse(w, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
         Mouse(w, WM_LBUTTONUP, 250, 150);
       },
       "", "down0@10,10 up0@200,130 ", ""},
      {"a double click",
       [](HWND w) {
         Mouse(w, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
         Mouse(w, WM_LBUTTONUP, 60, 30);
         Mouse(w, WM_LBUTTONDBLCLK, 60, 30, MK_LBUTTON);
         Mouse(w, WM_LBUTTONUP, 60, 30);
       },
       "", "down0@10,10 up0@10,10 click dblclick down0d@10,10 up0@10,10 ", ""},
      {"the right button presses but does not click",
       [](HWND w) {
         Mouse(w, WM_RBUTTONDOWN, 60, 30, MK_RBUTTON);
         Mouse(w, WM_RBUTTONUP, 60, 30);
       },
       "", "down1@10,10 up1@10,10 ", ""},
      {"on the form itself",
       [](HWND w) {
         Mouse(w, WM_LBUTTONDOWN, 200, 150, MK_LBUTTON);
         Mouse(w, WM_LBUTTONUP, 200, 150);
       },
       "", "", "down0@200,150 up0@200,150 click "},
  };
  for (const Case& c : cases) {
    backLog.text = frontLog.text = formLog.text = "";
    c.act(wnd);
    EXPECT_EQ(c.back, backLog.text) << c.what;
    EXPECT_EQ(c.front, frontLog.text) << c.what;
    EXPECT_EQ(c.form, formLog.text) << c.what;
  }

  // Brought to the front, the back label takes the overlap; the disabled one
  // lets the mouse through to what lies below.
  back->BringToFront();
  EXPECT_EQ(back, form.GetControl(form.GetControlCount() - 1));
  backLog.text = frontLog.text = "";
  Mouse(wnd, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
  Mouse(wnd, WM_LBUTTONUP, 60, 30);
  EXPECT_EQ("down0@50,20 up0@50,20 click ", backLog.text);
  back->SetEnabled(false);
  backLog.text = frontLog.text = "";
  Mouse(wnd, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
  Mouse(wnd, WM_LBUTTONUP, 60, 30);
  EXPECT_EQ("", backLog.text);
  EXPECT_EQ("down0@10,10 up0@10,10 click ", frontLog.text);

  // A handler that frees its control: the parent goes on safely.
  struct Freer {
    void Free(System::TObject* sender) { delete sender; }
  } freer;
  front->SetOnClick({&freer, &Freer::Free});
  Mouse(wnd, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
  Mouse(wnd, WM_LBUTTONUP, 60, 30);
  EXPECT_EQ(1, form.GetControlCount());
  Mouse(wnd, WM_LBUTTONDOWN, 60, 30, MK_LBUTTON);
  Mouse(wnd, WM_LBUTTONUP, 60, 30);
}

TEST(TControlMouse, CoordinatesAreTheClientAreasOnTheScreen) {
  Forms::TForm form(nullptr);
  form.SetBounds(100, 80, 300, 200);
  auto* panel = new Extctrls::TPanel(&form);
  panel->SetParent(&form);
  panel->SetBounds(20, 30, 150, 100);
  auto* label = new Stdctrls::TLabel(&form);
  label->SetParent(panel);
  label->SetBounds(5, 7, 40, 20);
  POINT origin{0, 0};
  ClientToScreen(panel->GetHandle(), &origin);
  const MyPoint p = label->ClientToScreen({1, 2});
  EXPECT_EQ(origin.x + 6, p.x);
  EXPECT_EQ(origin.y + 9, p.y);
  const MyPoint back = label->ScreenToClient(p);
  EXPECT_EQ(1, back.x);
  EXPECT_EQ(2, back.y);
}

// The font of a window as GDI sees it.
LONG WindowFontHeight(HWND wnd) {
  LOGFONTA f{};
  GetObjectA(reinterpret_cast<HFONT>(SendMessageA(wnd, WM_GETFONT, 0, 0)), sizeof f, &f);
  return f.lfHeight;
}

TEST(TControlLook, ColorAndFontFollowTheParentUntilSet) {
  Forms::TForm form(nullptr);
  auto* panel = new Extctrls::TPanel(&form);
  panel->SetParent(&form);
  auto* inner = new Extctrls::TPanel(&form);
  inner->SetParent(panel);
  auto* edit = new Stdctrls::TEdit(&form);
  edit->SetParent(panel);
  form.GetHandle();

  EXPECT_EQ(Graphics::clWindow, edit->GetColor()) << "an edit has its own colour";
  EXPECT_FALSE(edit->GetParentColor());
  form.SetColor(Graphics::clRed);
  EXPECT_EQ(Graphics::clRed, panel->GetColor());
  EXPECT_EQ(Graphics::clRed, inner->GetColor()) << "through every level";
  EXPECT_TRUE(inner->GetParentColor());
  EXPECT_EQ(Graphics::clWindow, edit->GetColor());
  inner->SetColor(Graphics::clBlue);
  EXPECT_FALSE(inner->GetParentColor());
  form.SetColor(Graphics::clLime);
  EXPECT_EQ(Graphics::clLime, panel->GetColor());
  EXPECT_EQ(Graphics::clBlue, inner->GetColor()) << "set colour kept";
  inner->SetParentColor(true);
  EXPECT_EQ(Graphics::clLime, inner->GetColor()) << "taken again";

  const LONG message = WindowFontHeight(edit->GetHandle());
  EXPECT_NE(0, message) << "the system message font to start with";
  form.GetFont()->SetHeight(-30);
  EXPECT_EQ(-30, WindowFontHeight(edit->GetHandle())) << "the window got the parent's new font";
  EXPECT_EQ(-30, inner->GetFont()->GetHeight());
  EXPECT_TRUE(edit->GetParentFont());
  edit->GetFont()->SetHeight(-12);
  EXPECT_FALSE(edit->GetParentFont());
  form.GetFont()->SetHeight(-40);
  EXPECT_EQ(-12, WindowFontHeight(edit->GetHandle())) << "its own font kept";
  EXPECT_EQ(-40, WindowFontHeight(inner->GetHandle()));

  auto* late = new Stdctrls::TEdit(&form);
  late->SetParent(&form);
  EXPECT_EQ(-40, WindowFontHeight(late->GetHandle())) << "a new child takes the font when it comes in";
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
  const OwnedWindowDC screen(nullptr);
  const OwnedMemoryDC dc(CreateCompatibleDC(screen.get()));
  const OwnedBitmap bitmap(CreateCompatibleBitmap(screen.get(), 20, 20));
  const HGDIOBJ old = SelectObject(dc.get(), bitmap.get());
  SendMessageA(wnd, WM_PAINT, reinterpret_cast<WPARAM>(dc.get()), 0);
  std::string picture;
  for (int y = 0; y < 20; y += 4) {
    for (int x = 0; x < 20; x += 4) {
      const COLORREF c = GetPixel(dc.get(), x, y);
      picture += c == RGB(255, 255, 0) ? '.' : c == RGB(0, 0, 0) ? '#' : c == RGB(255, 0, 0) ? 'r' : '?';
    }
    picture += '\n';
  }
  SelectObject(dc.get(), old);
  return picture;
}

struct FormPainter {
  void Paint(System::TObject* sender) {
    Graphics::TCanvas* canvas = static_cast<Forms::TForm*>(sender)->GetCanvas();
    canvas->GetBrush()->SetColor(Graphics::clYellow);
    canvas->FillRect({0, 0, 20, 20});
  }
};

TEST(TCustomControl, PaintsOnItsCanvasAsAFormInOnPaint) {
  Forms::TForm form(nullptr);
  auto* cross = new TCross(&form);
  cross->SetParent(&form);
  cross->SetBounds(0, 0, 20, 20);
  cross->SetColor(Graphics::clYellow);
  EXPECT_EQ("#....\n.#...\n..#..\n...#.\n....#\n", PaintedCorner(cross->GetHandle()));
  EXPECT_EQ(1, cross->paints);

  // The form's OnPaint draws first, its windowless controls over it.
  delete cross;
  FormPainter painter;
  form.SetOnPaint({&painter, &FormPainter::Paint});
  auto* label = new Stdctrls::TLabel(&form);
  label->SetParent(&form);
  label->SetAutoSize(false);
  label->SetColor(Graphics::clRed);
  label->SetBounds(8, 8, 8, 8);
  EXPECT_EQ(".....\n.....\n..rr.\n..rr.\n.....\n", PaintedCorner(form.GetHandle()));
}

}  // namespace
