#pragma once
/// \file
/// Unit Vcl_utils: a number that reads and writes equally as a date-time,
/// published as a sub-object of a component.
#include "platform/vcl/core/classes.h"
#include "platform/vcl/core/system.h"
#include "velkin/velkin_api.h"

/// One floating-point value, also seen as a TDateTime (the same number of
/// days). A read hook computes the value on demand, a write hook filters
/// assignments, and OnChange follows every accepted assignment.
class VELKIN_API HCustomTimedValue : public Classes::TPersistent {
  VCL_CLASS();

 public:
  /// Supplies the value on every read.
  using TGetValueEvent = System::TClosure<double()>;
  /// Gives the value to store for the one assigned.
  using TSetValueEvent = System::TClosure<double(double)>;

  /// The value, through the read hook when one is set (its result is kept).
  double GetValue() { return DoGetValue(); }
  /// Nothing happens for the stored value itself (exactly equal, the read
  /// hook not consulted); otherwise the write hook's result is stored and
  /// OnChange raised.
  void SetValue(double value);
  /// Stores value as it is: no write hook, no OnChange.
  void SetNoChange(double value) { value_ = value; }
  ///@{
  /// The value as a date-time.
  System::TDateTime GetTimeValue() { return System::TDateTime(GetValue()); }
  void SetTimeValue(System::TDateTime value) { SetValue(value.Val); }
  ///@}

  System::TNotifyEvent GetOnChange() const { return onChange_; }
  void SetOnChange(System::TNotifyEvent value) { onChange_ = value; }
  TGetValueEvent GetOnGetValue() const { return onGetValue_; }
  void SetOnGetValue(TGetValueEvent value) { onGetValue_ = value; }
  TSetValueEvent GetOnSetValue() const { return onSetValue_; }
  void SetOnSetValue(TSetValueEvent value) { onSetValue_ = value; }

  /// Another timed value's value (through its read hook, then this one's
  /// write rules); anything else as TPersistent does.
  void Assign(Classes::TPersistent* source) override;

 protected:
  virtual void DoChange();
  virtual double DoGetValue();
  virtual void DoSetValue(double value);

 private:
  double value_ = 0;
  System::TNotifyEvent onChange_;
  TGetValueEvent onGetValue_;
  TSetValueEvent onSetValue_;
};

/// A timed value that streams: Value, TimeValue and OnChange are published.
class VELKIN_API HTimedValue : public HCustomTimedValue {
  VCL_CLASS();
};
