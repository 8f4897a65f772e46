#include "platform/vcl/forms/forms.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <tuple>
#include <utility>

#include "platform/vcl/core/filer.h"
#include "platform/vcl/core/typinfo.h"
#include "platform/vcl/forms/application.h"

namespace Forms {

using Controls::TCreateParams;
using Controls::TMessage;

VCL_COMPONENT_IMPL(TCustomForm, Controls::TWinControl, VCL_PROPERTY(Visible, false), VCL_PROPERTY(Caption),
                   VCL_PROPERTY(ClientWidth), VCL_PROPERTY(ClientHeight), VCL_PROPERTY(BorderStyle, bsSizeable),
                   VCL_PROPERTY(BorderIcons, (TBorderIcons{biSystemMenu, biMinimize, biMaximize})),
                   VCL_PROPERTY(Position, poDesigned), VCL_PROPERTY(KeyPreview, false), VCL_PROPERTY(Menu),
                   VCL_PROPERTY(ActiveControl), VCL_PROPERTY(PixelsPerInch), VCL_PROPERTY(Scaled, true),
                   VCL_PROPERTY(OnCreate), VCL_PROPERTY(OnDestroy), VCL_PROPERTY(OnShow), VCL_PROPERTY(OnHide),
                   VCL_PROPERTY(OnActivate), VCL_PROPERTY(OnDeactivate), VCL_PROPERTY(OnResize), VCL_PROPERTY(OnPaint),
                   VCL_PROPERTY(OnClose), VCL_PROPERTY(OnCloseQuery))
VCL_COMPONENT_IMPL(TForm, TCustomForm)
VCL_CLASS_IMPL(EInvalidOperation, Sysutils::Exception)

TCustomForm* GetParentForm(Controls::TControl* control) {
  Controls::TControl* top = control;
  while (top && top->GetParent()) top = top->GetParent();
  return dynamic_cast<TCustomForm*>(top);
}

TCustomForm::TCustomForm(Classes::TComponent* owner)
    : TWinControl(owner), canvas_(std::make_unique<Graphics::TCanvas>()) {
  SetVisible(false);
  SetBounds(0, 0, 400, 300);
  pixelsPerInch_ = Screen->GetPixelsPerInch();
  Screen->forms_.push_back(this);
}

void TCustomForm::ChangeScale(int m, int d) {
  const int left = GetLeft(), top = GetTop(), width = GetClientWidth(), height = GetClientHeight();
  DisableAlign();
  struct EnableAtEnd {
    TCustomForm* form;
    ~EnableAtEnd() { form->EnableAlign(); }
  } enable{this};
  TWinControl::ChangeScale(m, d);
  // The frame and the place on the screen are the system's: only the
  // client area grows.
  SetBounds(left, top, GetWidth(), GetHeight());
  SetClientWidth(MulDiv(width, m, d));
  SetClientHeight(MulDiv(height, m, d));
  RemeasureAnchors();  // the controls were scaled with it
}

void TCustomForm::GetChildren(Classes::TGetChildProc proc, Classes::TComponent* root) {
  if (root == this)
    for (int i = 0; i < GetComponentCount(); ++i)
      if (!GetComponent(i)->HasParent()) proc(GetComponent(i));
  TWinControl::GetChildren(proc, root);
}

void TCustomForm::Loaded() {
  // The frame is settled now (border style and menu were read): the client
  // area the design was made for, which its anchored controls measure from.
  if (loadedClientWidth_ >= 0) SetWidth(std::exchange(loadedClientWidth_, -1) + FrameSize().x);
  if (loadedClientHeight_ >= 0) SetHeight(std::exchange(loadedClientHeight_, -1) + FrameSize().y);
  RemeasureAnchors();
  TWinControl::Loaded();  // lays the design out, once
  Realign();              // the frame may have changed under the aligned controls
  const int screen = Screen->GetPixelsPerInch();
  if (!scaled_ || pixelsPerInch_ == screen) return;
  ScaleBy(screen, pixelsPerInch_);
  pixelsPerInch_ = screen;
}

void TCustomForm::ReadDesign() {
  if (!Classes::InitInheritedComponent(this, TCustomForm::StaticClass()))
    throw Classes::EResNotFound("Resource " + AnsiString(ClassName()) + " not found");
  DoCreate();
}

void TCustomForm::DoCreate() {
  if (created_) return;
  created_ = true;
  onCreate_(this);
}

TCustomForm::~TCustomForm() {
  DetachMenu();
  auto& forms = Screen->forms_;
  forms.erase(std::remove(forms.begin(), forms.end(), this), forms.end());
}

void TCustomForm::BeforeDestruction() {
  onDestroy_(this);
  TWinControl::BeforeDestruction();
}

void TCustomForm::CreateParams(TCreateParams& params) {
  TWinControl::CreateParams(params);
  params.Style &= ~(WS_POPUP | WS_CHILD | WS_VISIBLE);
  const bool sysMenu = borderIcons_.Contains(biSystemMenu);
  switch (borderStyle_) {
    case bsNone:
      params.Style |= WS_POPUP;
      break;
    case bsSingle:
    case bsSizeable:
      params.Style |= WS_CAPTION | (borderStyle_ == bsSizeable ? WS_THICKFRAME : WS_BORDER);
      if (sysMenu) params.Style |= WS_SYSMENU;
      if (sysMenu && borderIcons_.Contains(biMinimize)) params.Style |= WS_MINIMIZEBOX;
      if (sysMenu && borderIcons_.Contains(biMaximize)) params.Style |= WS_MAXIMIZEBOX;
      break;
    case bsDialog:
      params.Style |= WS_POPUP | WS_CAPTION | (sysMenu ? WS_SYSMENU : 0);
      params.ExStyle |= WS_EX_DLGMODALFRAME | WS_EX_WINDOWEDGE;
      break;
    case bsToolWindow:
    case bsSizeToolWin:
      params.Style |= WS_CAPTION | (sysMenu ? WS_SYSMENU : 0) | (borderStyle_ == bsSizeToolWin ? WS_THICKFRAME : 0);
      params.ExStyle |= WS_EX_TOOLWINDOW;
      break;
  }
  if (sysMenu && borderIcons_.Contains(biHelp) && borderStyle_ == bsDialog) params.ExStyle |= WS_EX_CONTEXTHELP;
}

void TCustomForm::SetBorderStyle(TFormBorderStyle value) {
  if (value == borderStyle_) return;
  borderStyle_ = value;
  if (HandleAllocated()) DestroyHandle();  // made again with the new frame on demand
}

void TCustomForm::SetBorderIcons(TBorderIcons value) {
  if (value == borderIcons_) return;
  borderIcons_ = value;
  if (HandleAllocated()) DestroyHandle();
}

namespace {

// Frame sizes by style, extended style and menu bar: asking the system costs
// more than a layout, and they change only with the system's settings.
struct FrameSizes {
  std::mutex lock;
  std::map<std::tuple<DWORD, DWORD, bool>, MyPoint> sizes;
};

FrameSizes& Frames() {
  static FrameSizes frames;
  return frames;
}

}  // namespace

MyPoint TCustomForm::FrameSize() const {
  TCreateParams params;
  const_cast<TCustomForm*>(this)->CreateParams(params);
  FrameSizes& frames = Frames();
  const std::lock_guard<std::mutex> held(frames.lock);
  auto [it, added] = frames.sizes.try_emplace({params.Style, params.ExStyle, menu_ != nullptr});
  if (added) {
    RECT r{0, 0, 0, 0};
    AdjustWindowRectEx(&r, params.Style, menu_ != nullptr, params.ExStyle);
    it->second = {r.right - r.left, r.bottom - r.top};
  }
  return it->second;
}

MyRect TCustomForm::GetClientRect() const {
  if (HandleAllocated()) return TWinControl::GetClientRect();
  const MyPoint frame = FrameSize();
  return {0, 0, std::max(0, GetWidth() - frame.x), std::max(0, GetHeight() - frame.y)};
}

void TCustomForm::SetClientWidth(int value) {
  // While a design is read the frame is not settled yet (border style and
  // menu may follow): Loaded applies it.
  if (GetComponentState().Contains(Classes::csLoading))
    loadedClientWidth_ = value;
  else
    SetWidth(value + FrameSize().x);
}

void TCustomForm::SetClientHeight(int value) {
  if (GetComponentState().Contains(Classes::csLoading))
    loadedClientHeight_ = value;
  else
    SetHeight(value + FrameSize().y);
}

void TCustomForm::CreateWnd() {
  TWinControl::CreateWnd();
  if (menu_ && HandleAllocated()) {
    ::SetMenu(GetHandle(), menu_->GetHandle());
    menu_->SetWindowHandle(GetHandle());
  }
}

void TCustomForm::DestroyWnd() {
  DetachMenu();
  TWinControl::DestroyWnd();
}

// The window lets go of the menu bar, which belongs to the menu object: a
// window destroys the bar it has.
void TCustomForm::DetachMenu() {
  if (!menu_ || !HandleAllocated()) return;
  ::SetMenu(GetHandle(), nullptr);
  if (menu_->GetWindowHandle() == GetHandle()) menu_->SetWindowHandle(nullptr);
}

void TCustomForm::SetMenu(Menus::TMainMenu* value) {
  if (value == menu_) return;
  DetachMenu();
  if (menu_) RemoveFreeNotification(menu_);
  menu_ = value;
  if (menu_) FreeNotification(menu_);
  if (menu_ && HandleAllocated()) {
    ::SetMenu(GetHandle(), menu_->GetHandle());
    menu_->SetWindowHandle(GetHandle());
  }
  // The window's WM_SIZE lays the controls out again; without one, here.
  if (!HandleAllocated()) Realign();
}

void TCustomForm::Notification(Classes::TComponent* component, Classes::TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation != Classes::opRemove) return;
  if (component == menu_) {
    DetachMenu();
    menu_ = nullptr;
  }
  if (component == activeControl_) activeControl_ = nullptr;
}

bool TCustomForm::IsShortCut(WORD key, Controls::TShiftState shift) { return menu_ && menu_->IsShortCut(key, shift); }

void TCustomForm::SetActiveControl(Controls::TWinControl* value) {
  if (value != activeControl_) {
    if (activeControl_) RemoveFreeNotification(activeControl_);
    if (value) FreeNotification(value);
  }
  activeControl_ = value;
  if (value && GetVisible() && value->CanFocus()) value->SetFocus();
}

// Centres the form the first time it is shown, as Position asks; a form to
// centre on that is missing or hidden gives way to the screen.
void TCustomForm::PlaceOnScreen() {
  if (placed_) return;
  placed_ = true;
  if (position_ == poDesigned) return;
  TCustomForm* centreOn = nullptr;
  if (position_ == poMainFormCenter) centreOn = Application->GetMainForm();
  if (position_ == poOwnerFormCenter) centreOn = dynamic_cast<TCustomForm*>(GetOwner());
  if (centreOn == this || (centreOn && !centreOn->GetVisible())) centreOn = nullptr;
  RECT area{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
  const MyRect around = centreOn ? centreOn->GetBoundsRect() : MyRect{area.left, area.top, area.right, area.bottom};
  SetBounds(around.left + (around.Width() - GetWidth()) / 2, around.top + (around.Height() - GetHeight()) / 2,
            GetWidth(), GetHeight());
}

void TCustomForm::FocusFirst() {
  if (activeControl_ && activeControl_->CanFocus()) {
    activeControl_->SetFocus();
  } else if (Controls::TWinControl* first = FindNextControl(nullptr, true)) {
    first->SetFocus();
  } else {
    ::SetFocus(GetHandle());
  }
}

void TCustomForm::Show() {
  HWND h = GetHandle();
  if (!h) return;
  PlaceOnScreen();
  const bool wasVisible = GetVisible();
  SetVisible(true);
  ShowWindow(h, SW_SHOW);
  SetForegroundWindow(h);
  if (!wasVisible) FocusFirst();
}

void TCustomForm::Hide() { SetVisible(false); }

// However Visible changes: OnShow before the window appears, OnHide before it
// goes (and the form loses the activation).
void TCustomForm::VisibleChanged() {
  if (GetVisible()) onShow_(this);
  if (!GetVisible()) onHide_(this);
  TWinControl::VisibleChanged();
}

bool TCustomForm::CloseQuery() {
  bool canClose = true;
  onCloseQuery_(this, canClose);
  return canClose;
}

void TCustomForm::Close() {
  if (modal_) {
    if (modalResult_ == Controls::mrNone) modalResult_ = Controls::mrCancel;
    return;  // the modal loop asks OnCloseQuery and OnClose
  }
  if (!CloseQuery()) return;
  TCloseAction action = caHide;
  onClose_(this, action);
  switch (action) {
    case caNone:
      return;
    case caHide:
      Hide();
      break;
    case caMinimize:
      if (HandleAllocated()) ShowWindow(GetHandle(), SW_MINIMIZE);
      break;
    case caFree:
      Release();
      break;
  }
  if (Application->GetMainForm() == this && action != caNone && action != caMinimize) Application->Terminate();
}

// Ends the modal loop unless OnCloseQuery or OnClose keep the form open.
void TCustomForm::CloseModal() {
  TCloseAction action = caHide;
  if (!CloseQuery()) action = caNone;
  if (action != caNone) onClose_(this, action);
  if (action == caNone) modalResult_ = Controls::mrNone;
  if (action == caFree) Release();
}

void TCustomForm::Release() {
  if (HandleAllocated())
    PostMessageA(GetHandle(), Controls::CM_RELEASE, 0, 0);
  else
    delete this;
}

namespace {

// What a modal run changed, put back however its loop ends (a result, or an
// exception out of it): the windows it disabled come back before the form
// goes, so that the activation passes to them and not to another
// application; then the activation and the focus go back.
class ModalRun {
 public:
  ModalRun(TCustomForm* form, bool& modal)
      : form_(form),
        modal_(modal),
        activeBefore_(GetActiveWindow()),
        focusBefore_(GetFocus()),
        disabled_(DisableTaskWindows(form->GetHandle())) {
    modal_ = true;
  }
  ModalRun(const ModalRun&) = delete;
  ModalRun& operator=(const ModalRun&) = delete;
  ~ModalRun() {
    try {
      End();
    } catch (...) {
      Application->HandleException(std::current_exception());  // an OnHide failing while another unwinds
    }
  }
  void End() {
    if (ended_) return;
    ended_ = true;
    modal_ = false;
    EnableTaskWindows(std::exchange(disabled_, nullptr));
    struct Back {
      HWND active, focus;
      ~Back() {
        if (active && IsWindow(active)) SetActiveWindow(active);
        if (focus && IsWindow(focus)) ::SetFocus(focus);
      }
    } back{activeBefore_, focusBefore_};
    form_->Hide();
  }

 private:
  TCustomForm* form_;
  bool& modal_;
  HWND activeBefore_, focusBefore_;
  TTaskWindowList* disabled_;
  bool ended_ = false;
};

}  // namespace

TModalResult TCustomForm::ShowModal() {
  if (GetVisible() || !GetEnabled()) throw EInvalidOperation("Cannot make a visible window modal");
  if (!GetHandle()) throw EInvalidOperation("Cannot create the form's window");
  ModalRun run(this, modal_);
  modalResult_ = Controls::mrNone;
  Show();
  while (modalResult_ == Controls::mrNone) {
    Application->HandleMessage();
    if (Application->GetTerminated()) modalResult_ = Controls::mrCancel;
    if (modalResult_ != Controls::mrNone) CloseModal();
  }
  run.End();
  return modalResult_;
}

void TCustomForm::WndProc(TMessage& message) {
  switch (message.Msg) {
    case WM_PAINT:
      if (onPaint_) {
        PaintOnCanvas(message, *canvas_, {this, &TCustomForm::Paint});
        return;
      }
      break;
    case WM_CLOSE:
      Close();
      return;
    case WM_SETTINGCHANGE:
    case WM_DISPLAYCHANGE:
    case WM_DPICHANGED: {
      const std::lock_guard<std::mutex> held(Frames().lock);
      Frames().sizes.clear();  // frames may be drawn otherwise now
      break;
    }
    case WM_COMMAND:
      // A menu's command: no control window, notification code 0.
      if (!message.LParam && HIWORD(message.WParam) == 0 && menu_ && menu_->DispatchCommand(LOWORD(message.WParam)))
        return;
      break;
    case Controls::CM_RELEASE:
      delete this;
      return;
    case WM_ACTIVATE:
      if (LOWORD(message.WParam) == WA_INACTIVE)
        onDeactivate_(this);
      else
        onActivate_(this);
      break;
    default:
      break;
  }
  TWinControl::WndProc(message);
}

}  // namespace Forms
