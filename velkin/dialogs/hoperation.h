#pragma once
/// \file
/// Unit Hoperation: what a long job holds to tell the user how far it is and
/// to learn whether the user wants it stopped.
#include <cstdarg>

#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/closure.h"
#include "velkin/velkin_api.h"

class THLongOperationForm;

/// A long job's view of the process's one progress window (THLongOperationForm,
/// made on first need and freed when its last holder lets it go). Text shows
/// the window, a null text lets it go; progress, the abort button and its
/// caption, the colour and whether the owner form is disabled can be set; the
/// job polls isAborted. Each operation can be turned to the caller's own
/// handler instead (the hooks), and none of them changes the base package's
/// pending I/O error number.
class VELKIN_API HOperation {
 public:
  ///@{
  /// Hook types: a set hook is called instead of the window's own work. The
  /// text hook's args points to the va_list of the format's arguments.
  using TNotifyHook = System::TClosure<void()>;
  using TTextHook = System::TClosure<void(const char* format, void* args)>;
  using TIntHook = System::TClosure<void(int value)>;
  using TBoolHook = System::TClosure<void(bool value)>;
  using TColorHook = System::TClosure<void(const Graphics::TColor& value)>;
  using TCaptionHook = System::TClosure<void(const System::AnsiString& value)>;
  using TQueryHook = System::TClosure<bool()>;
  ///@}

  /// Shows text, taken as a format without arguments ("%%" is a percent
  /// sign; any other conversion is shown as written, never read from
  /// arguments that are not there). A null owner means the main form.
  HOperation(Controls::TWinControl* owner, const char* text);
  HOperation(Controls::TWinControl* owner, const System::AnsiString& text);
  explicit HOperation(Controls::TWinControl* owner = nullptr);
  /// Lets the shared window go when it exists.
  virtual ~HOperation();
  HOperation(const HOperation&) = delete;
  HOperation& operator=(const HOperation&) = delete;

  /// Show counter 1, every hook cleared; holds the shared window when it exists.
  void Init();
  /// Raises the show counter (each SetText(nullptr) lowers it).
  void IncShow();
  /// printf-style text on the window; null lowers the show counter and, at
  /// 0, lets the window go.
  void SetText(const char* format, ...);
  void SetTextV(const char* format, va_list args);
  /// 0..100; 0 hides the bar.
  void SetProgress(int value);
  /// Shows or hides the abort button; an earlier press is forgotten.
  void SetAbort(bool value);
  /// Whether the owner form is disabled while the window shows.
  void SetModal(bool value);
  void SetColor(const Graphics::TColor& value);
  void SetButtonCaption(const System::AnsiString& value);
  /// Whether abort was pressed since the last call: each press is told once.
  bool isAborted();
  /// Whether the window is shown; makes it (hidden) when there is none.
  bool isShowed();

  Controls::TWinControl* GetOwner() const { return owner_; }
  int GetShowCount() const { return showCount_; }

  /// The shared window, or null when there is none.
  static THLongOperationForm* SharedForm();

  ///@{
  /// Hooks, one per operation.
  TNotifyHook GetOnIncShow() const { return onIncShow_; }
  void SetOnIncShow(TNotifyHook value) { onIncShow_ = value; }
  TTextHook GetOnSetText() const { return onSetText_; }
  void SetOnSetText(TTextHook value) { onSetText_ = value; }
  TIntHook GetOnSetProgress() const { return onSetProgress_; }
  void SetOnSetProgress(TIntHook value) { onSetProgress_ = value; }
  TBoolHook GetOnSetAbort() const { return onSetAbort_; }
  void SetOnSetAbort(TBoolHook value) { onSetAbort_ = value; }
  TBoolHook GetOnSetModal() const { return onSetModal_; }
  void SetOnSetModal(TBoolHook value) { onSetModal_ = value; }
  TColorHook GetOnSetColor() const { return onSetColor_; }
  void SetOnSetColor(TColorHook value) { onSetColor_ = value; }
  TCaptionHook GetOnSetButtonCaption() const { return onSetButtonCaption_; }
  void SetOnSetButtonCaption(TCaptionHook value) { onSetButtonCaption_ = value; }
  TQueryHook GetOnIsAborted() const { return onIsAborted_; }
  void SetOnIsAborted(TQueryHook value) { onIsAborted_ = value; }
  TQueryHook GetOnIsShowed() const { return onIsShowed_; }
  void SetOnIsShowed(TQueryHook value) { onIsShowed_ = value; }
  ///@}

 private:
  /// The shared window, made when missing; the show counter becomes 1.
  THLongOperationForm* Form();
  void ShowText(const char* format, va_list args, bool withArguments);
  void ConstructText(const char* text, ...);

  Controls::TWinControl* owner_ = nullptr;
  int showCount_ = 1;
  TNotifyHook onIncShow_;
  TTextHook onSetText_;
  TIntHook onSetProgress_;
  TBoolHook onSetAbort_;
  TBoolHook onSetModal_;
  TColorHook onSetColor_;
  TCaptionHook onSetButtonCaption_;
  TQueryHook onIsAborted_;
  TQueryHook onIsShowed_;
};
