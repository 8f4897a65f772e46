#pragma once
/// \file
/// Unit Forms, the application: the message loop, the main form and the
/// screen's list of forms.
#include <vector>

#include "platform/ostrel/owned_handle.h"
#include "platform/vcl/forms/forms.h"

namespace Forms {

/// OnException: gets what a message handler let out.
using TExceptionEvent = System::TClosure<void(System::TObject* Sender, const Sysutils::Exception& E)>;
/// OnIdle: Done = false asks to be called again before the loop waits.
using TIdleEvent = System::TClosure<void(System::TObject* Sender, bool& Done)>;

/// The program: its message loop, its main form and a hidden window of its
/// own. One instance, Application, made with the framework.
class VCL_API TApplication : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TApplication(Classes::TComponent* owner);
  ~TApplication() override;

  /// Makes the hidden window and takes over the exceptions of message handlers.
  void Initialize();
  /// Makes a form of class T owned by the application; the first becomes the
  /// main form.
  template <class T>
  void CreateForm(T*& reference) {
    reference = new T(this);
    if (!mainForm_) mainForm_ = reference;
    reference->DoCreate();
  }
  /// Shows the main form and runs the message loop until Terminate or until
  /// the main form is closed. An exception out of the loop (a queued thread
  /// call's, say) goes to HandleException and the loop goes on. Run may be
  /// called again once it has returned.
  void Run();
  /// Handles every message waiting now, then returns.
  void ProcessMessages();
  /// Handles one message, or idles (OnIdle, then waits for a message).
  void HandleMessage();
  /// Asks the program to end: Run returns once the message being handled is
  /// done, and a modal form open meanwhile ends with mrCancel. Posts WM_QUIT,
  /// so that a loop waiting for messages wakes and a system modal loop (a
  /// message box) ends too.
  void Terminate();
  /// True from Terminate (or a WM_QUIT taken by the application's loop) until
  /// a Run has ended because of it. Run leaves it false and takes the WM_QUIT
  /// that no loop took, so the next Run and modal forms shown after it work.
  /// A Terminate outside Run stands until the next Run, which returns at once
  /// without showing the main form; modal forms shown meanwhile end at once.
  bool GetTerminated() const { return terminated_; }

  TCustomForm* GetMainForm() const { return mainForm_; }
  /// The hidden window.
  HWND GetHandle();
  /// The program's name: the hidden window's text, the caption of the
  /// exception message box.
  AnsiString GetTitle() const { return title_; }
  void SetTitle(const AnsiString& value);

  TExceptionEvent GetOnException() const { return onException_; }
  void SetOnException(TExceptionEvent value) { onException_ = value; }
  TIdleEvent GetOnIdle() const { return onIdle_; }
  void SetOnIdle(TIdleEvent value) { onIdle_ = value; }
  ///@{
  /// Hints: the mouse resting HintPause ms on a control whose Hint is set
  /// and ShowHint true (the Hint of the nearest parent that has one) shows
  /// the hint's text before any '|' beside the mouse, for HintHidePause ms or
  /// until the mouse leaves the control, a button is pressed or a key typed.
  bool GetShowHint() const { return showHint_; }
  void SetShowHint(bool value);
  int GetHintPause() const { return hintPause_; }
  void SetHintPause(int value) { hintPause_ = value; }
  int GetHintHidePause() const { return hintHidePause_; }
  void SetHintHidePause(int value) { hintHidePause_ = value; }
  /// The hint shown now ("" for none), and the hint window (null until the
  /// first hint).
  AnsiString GetShownHint() const { return shownHint_; }
  HWND GetHintWindow() const { return hintWindow_.get(); }
  void CancelHint();
  ///@}

  /// OnException when set, else shows the message in a message box titled
  /// with Title.
  void HandleException(std::exception_ptr error);
  void ShowException(const Sysutils::Exception& e);

 protected:
  void Notification(Classes::TComponent* component, Classes::TOperation operation) override;

 private:
  bool ProcessMessage();
  bool IsShortCutMessage(const MSG& msg);
  void Idle();
  void HintMessage(const MSG& msg);
  void HintTimer();
  void HideHint();

  static void CALLBACK HintTimerProc(HWND, UINT, UINT_PTR, DWORD);

  TCustomForm* mainForm_ = nullptr;
  OwnedWindow handle_;
  AnsiString title_;
  bool terminated_ = false;
  TExceptionEvent onException_;
  TIdleEvent onIdle_;
  bool showHint_ = true;
  int hintPause_ = 500;
  int hintHidePause_ = 2500;
  Controls::TControl* hintControl_ = nullptr;  // the control under the mouse that has a hint
  OwnedWindow hintWindow_;
  AnsiString shownHint_;
  UINT_PTR hintTimer_ = 0;
};

/// The application.
extern VCL_API TApplication* Application;

/// The forms that exist and the one that is active.
class VCL_API TScreen : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TScreen(Classes::TComponent* owner) : TComponent(owner) {}
  int GetFormCount() const { return static_cast<int>(forms_.size()); }
  /// Raises EListError outside 0..FormCount-1.
  TCustomForm* GetForm(int index) const;
  /// The form of the active window of this thread, or null.
  TCustomForm* GetActiveForm() const;
  int GetWidth() const { return GetSystemMetrics(SM_CXSCREEN); }
  int GetHeight() const { return GetSystemMetrics(SM_CYSCREEN); }
  /// The screen's density (96 at 100 %).
  int GetPixelsPerInch() const;

 private:
  friend class TCustomForm;
  std::vector<TCustomForm*> forms_;
};

/// The screen.
extern VCL_API TScreen* Screen;

/// The windows DisableTaskWindows disabled.
struct TTaskWindowList {
  std::vector<HWND> Windows;
};
/// Disables every other enabled, visible top-level window of this thread
/// (keepEnabled stays as it is) and returns exactly those.
VCL_API TTaskWindowList* DisableTaskWindows(HWND keepEnabled);
/// Enables the windows of the list again (those that still exist) and frees it.
VCL_API void EnableTaskWindows(TTaskWindowList* list);

}  // namespace Forms
