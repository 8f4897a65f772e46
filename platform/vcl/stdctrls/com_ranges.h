#pragma once
/// \file
/// Range controls: scroll bars, track bars, progress bars and up-down buttons
/// over the system's SCROLLBAR and common-control windows.
#include "platform/vcl/controls/controls.h"
#include "platform/vcl/core/typinfo.h"

namespace Stdctrls {

/// Which way a scroll bar lies.
enum TScrollBarKind { sbHorizontal, sbVertical };
VCL_ENUM_INFO(TScrollBarKind, sbHorizontal, sbVertical)

/// A scroll bar over the system's SCROLLBAR window. Position moves between
/// Min and Max; the arrows move it by SmallChange, the track by LargeChange.
class VCL_API TScrollBar : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TScrollBar(Classes::TComponent* owner);

  TScrollBarKind GetKind() const { return kind_; }
  void SetKind(TScrollBarKind value);
  int GetMin() const { return min_; }
  void SetMin(int value) { SetParams(position_, value, max_); }
  int GetMax() const { return max_; }
  void SetMax(int value) { SetParams(position_, min_, value); }
  int GetPosition() const { return position_; }
  /// Kept within Min..Max; fires OnChange when it moved.
  void SetPosition(int value) { SetParams(value, min_, max_); }
  /// All three at once; a Max below Min is taken as Min.
  void SetParams(int position, int min, int max);
  int GetSmallChange() const { return smallChange_; }
  void SetSmallChange(int value) { smallChange_ = value; }
  int GetLargeChange() const { return largeChange_; }
  void SetLargeChange(int value) { largeChange_ = value; }
  /// After the position moved, by the user or by code.
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void Notified(Controls::TMessage& message) override;

 private:
  void UpdateWindow();

  TScrollBarKind kind_ = sbHorizontal;
  int min_ = 0, max_ = 100, position_ = 0;
  int smallChange_ = 1, largeChange_ = 1;
  System::TNotifyEvent onChange_;
};

}  // namespace Stdctrls

/// Unit ComCtrls, ranges: the common controls that show or pick a number.
namespace Comctrls {

/// Which way a track bar lies.
enum TTrackBarOrientation { trHorizontal, trVertical };
VCL_ENUM_INFO(TTrackBarOrientation, trHorizontal, trVertical)
/// Which way an up-down's arrows point.
enum TUDOrientation { udHorizontal, udVertical };
VCL_ENUM_INFO(TUDOrientation, udHorizontal, udVertical)
/// The half of an up-down that was clicked.
enum TUDBtnType { btNext, btPrev };
/// OnClick of an up-down: which half.
using TUDClickEvent = System::TClosure<void(System::TObject* Sender, TUDBtnType Button)>;
/// OnChanging of an up-down: a handler clears AllowChange to keep the position.
using TUDChangingEvent = System::TClosure<void(System::TObject* Sender, bool& AllowChange)>;

/// A track bar (slider): Position between Min and Max, the window's own.
class VCL_API TTrackBar : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TTrackBar(Classes::TComponent* owner);

  int GetMin() const { return min_; }
  void SetMin(int value);
  int GetMax() const { return max_; }
  void SetMax(int value);
  /// The window's position once there is one (the user drags it).
  int GetPosition() const;
  /// Kept within Min..Max.
  void SetPosition(int value);
  TTrackBarOrientation GetOrientation() const { return orientation_; }
  void SetOrientation(TTrackBarOrientation value);
  /// A tick every Frequency positions.
  int GetFrequency() const { return frequency_; }
  void SetFrequency(int value);
  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void DestroyWnd() override;
  void Notified(Controls::TMessage& message) override;

 private:
  void Changed();

  int min_ = 0, max_ = 10, frequency_ = 1;
  mutable int position_ = 0;
  TTrackBarOrientation orientation_ = trHorizontal;
  System::TNotifyEvent onChange_;
};

/// A progress bar. The native window holds 16-bit values: Min, Max and
/// Position keep the low 16 bits of what is set, sign-extended (70000 is
/// kept as 4464), so the control and its window always agree.
class VCL_API TProgressBar : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TProgressBar(Classes::TComponent* owner);

  int GetMin() const { return min_; }
  void SetMin(int value);
  int GetMax() const { return max_; }
  void SetMax(int value);
  int GetPosition() const { return position_; }
  /// Kept within Min..Max.
  void SetPosition(int value);
  int GetStep() const { return step_; }
  void SetStep(int value) { step_ = value; }
  /// Moves Position by Step, or by delta.
  void StepIt() { StepBy(step_); }
  void StepBy(int delta) { SetPosition(position_ + delta); }
  /// A continuous bar instead of blocks.
  bool GetSmooth() const { return smooth_; }
  void SetSmooth(bool value);

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;

 private:
  void UpdateWindow();

  int min_ = 0, max_ = 100, position_ = 0, step_ = 10;
  bool smooth_ = false;
};

/// An up-down: two arrows that move a 16-bit Position between Min and Max
/// by Increment (as the native window does), optionally shown in an
/// Associate control (an edit beside it). OnChanging may refuse a move;
/// OnClick tells which arrow was pressed.
class VCL_API TCustomUpDown : public Controls::TWinControl {
  VCL_CLASS();

 public:
  explicit TCustomUpDown(Classes::TComponent* owner);

  short GetMin() const { return min_; }
  void SetMin(short value);
  short GetMax() const { return max_; }
  void SetMax(short value);
  /// The window's position once there is one.
  short GetPosition() const;
  /// Kept within Min..Max (either may be the larger, as natively).
  void SetPosition(short value);
  int GetIncrement() const { return increment_; }
  void SetIncrement(int value);
  /// Past one end the position goes round to the other.
  bool GetWrap() const { return wrap_; }
  void SetWrap(bool value);
  TUDOrientation GetOrientation() const { return orientation_; }
  void SetOrientation(TUDOrientation value);
  /// The control showing the position; the up-down sits at its right edge.
  Controls::TWinControl* GetAssociate() const { return associate_; }
  void SetAssociate(Controls::TWinControl* value);

  TUDClickEvent GetOnClick() const { return onClick_; }
  void SetOnClick(TUDClickEvent value) { onClick_ = value; }
  TUDChangingEvent GetOnChanging() const { return onChanging_; }
  void SetOnChanging(TUDChangingEvent value) { onChanging_ = value; }

 protected:
  void CreateParams(Controls::TCreateParams& params) override;
  void CreateWnd() override;
  void DestroyWnd() override;
  void Notified(Controls::TMessage& message) override;
  void Notification(Classes::TComponent* component, Classes::TOperation operation) override;
  virtual bool CanChange();
  using TWinControl::Click;
  virtual void Click(TUDBtnType button) { onClick_(this, button); }

 private:
  void UpdateWindow();

  short min_ = 0, max_ = 100;
  mutable short position_ = 0;
  int increment_ = 1;
  bool wrap_ = false;
  TUDOrientation orientation_ = udVertical;
  bool pending_ = false;  // an allowed arrow press waiting for its new position
  TUDBtnType pendingButton_ = btNext;
  short pendingFrom_ = 0;
  Controls::TWinControl* associate_ = nullptr;
  TUDClickEvent onClick_;
  TUDChangingEvent onChanging_;
};

/// The up-down to make instances of.
class VCL_API TUpDown : public TCustomUpDown {
  VCL_CLASS();

 public:
  using TCustomUpDown::TCustomUpDown;
};

}  // namespace Comctrls
