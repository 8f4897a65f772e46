// Timed values: the equality rule, the read and write hooks, Assign, and a
// component that owns one streaming its value and its change event.
#include "velkin/controls/vcl_timed_value.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/vcl/core/component.h"
#include "platform/vcl/core/filer.h"
#include "platform/vcl/core/object_text.h"
#include "platform/vcl/core/sysutils.h"

// A component publishing a timed value and a method for its change event.
class TAlarm : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TAlarm(Classes::TComponent* owner) : TComponent(owner) {}
  HTimedValue* GetWhen() { return &when_; }
  void WhenChanged(System::TObject*) { ++changes; }
  int changes = 0;

 private:
  HTimedValue when_;
};
VCL_COMPONENT_IMPL(TAlarm, Classes::TComponent, VCL_PROPERTY_READONLY(When),
                   VCL_METHOD(WhenChanged, System::TNotifyEvent))

namespace {

struct Recorder {
  int changes = 0;
  int reads = 0;
  double next = 0;
  double seen = 0;  // the value as OnChange found it
  void Changed(System::TObject* sender) {
    ++changes;
    seen = static_cast<HCustomTimedValue*>(sender)->GetValue();
  }
  double Clamp(double v) { return v < 0 ? 0 : v > 100 ? 100 : v; }
  double Read() {
    ++reads;
    return next;
  }
};

TEST(HCustomTimedValue, ChangesOnlyForANewValueAndHooksComputeAndFilterIt) {
  Recorder r;
  HCustomTimedValue v;
  EXPECT_EQ(0.0, v.GetValue());
  v.SetOnChange({&r, &Recorder::Changed});
  v.SetValue(0);
  EXPECT_EQ(0, r.changes) << "the value it has already";
  v.SetValue(2.5);
  v.SetValue(2.5);
  EXPECT_EQ(1, r.changes) << "the same value twice: one change";
  EXPECT_EQ(2.5, r.seen) << "OnChange sees the new value";
  EXPECT_EQ(2.5, v.GetTimeValue().Val) << "both views read one number";
  v.SetTimeValue(System::TDateTime(45000.75));
  EXPECT_EQ(45000.75, v.GetValue());
  EXPECT_EQ(2, r.changes);
  v.SetNoChange(7);
  EXPECT_EQ(7.0, v.GetValue());
  EXPECT_EQ(2, r.changes) << "SetNoChange raises nothing";

  v.SetOnSetValue({&r, &Recorder::Clamp});
  v.SetValue(150);
  EXPECT_EQ(100.0, v.GetValue());
  EXPECT_EQ(100.0, r.seen) << "OnChange sees what the write hook made of it";
  v.SetValue(150);
  EXPECT_EQ(4, r.changes) << "150 differs from the stored 100 both times";
  v.SetValue(100);
  EXPECT_EQ(4, r.changes);
  v.SetValue(-3);
  EXPECT_EQ(0.0, v.GetValue());

  // A read hook supplies every read and its result is stored; the equality
  // test looks at the stored value only.
  HCustomTimedValue computed;
  computed.SetOnChange({&r, &Recorder::Changed});
  computed.SetOnGetValue({&r, &Recorder::Read});
  r.next = 9;
  EXPECT_EQ(9.0, computed.GetValue());
  EXPECT_EQ(9.0, computed.GetTimeValue().Val);
  EXPECT_EQ(2, r.reads);
  const int before = r.changes;
  r.next = 1;
  computed.SetValue(9);
  EXPECT_EQ(before, r.changes) << "9 is the stored value: no change, whatever the hook would say";

  // Assign reads the source through its hook and writes through this one.
  HCustomTimedValue target;
  target.SetOnSetValue({&r, &Recorder::Clamp});
  target.SetOnChange({&r, &Recorder::Changed});
  r.next = 250;
  target.Assign(&computed);
  EXPECT_EQ(100.0, target.GetValue());
  EXPECT_EQ(before + 1, r.changes);
  Classes::TComponent other(nullptr);
  EXPECT_THROW(target.Assign(&other), Sysutils::EConvertError);
  EXPECT_EQ(100.0, target.GetValue());
}

TEST(HTimedValue, AnOwnersStreamKeepsTheValueAndTheChangeEvent) {
  TAlarm alarm(nullptr);
  alarm.GetWhen()->SetOnChange({&alarm, &TAlarm::WhenChanged});
  alarm.GetWhen()->SetValue(46000.375);
  Classes::TMemoryStream stream;
  stream.WriteComponent(&alarm);

  Classes::TMemoryStream text;
  stream.SetPosition(0);
  Classes::ObjectBinaryToText(&stream, &text);
  const std::string described(static_cast<char*>(text.GetMemory()), static_cast<size_t>(text.GetSize()));
  EXPECT_NE(std::string::npos, described.find("When.Value = 46000.375")) << described;
  EXPECT_NE(std::string::npos, described.find("When.TimeValue = 46000.375")) << described;
  EXPECT_NE(std::string::npos, described.find("When.OnChange = WhenChanged")) << described;

  TAlarm copy(nullptr);
  stream.SetPosition(0);
  stream.ReadComponent(&copy);
  EXPECT_EQ(46000.375, copy.GetWhen()->GetValue());
  EXPECT_EQ(46000.375, copy.GetWhen()->GetTimeValue().Val);
  const int before = copy.changes;
  copy.GetWhen()->SetValue(1);
  EXPECT_EQ(before + 1, copy.changes) << "the event is bound to the copy's own method";
  EXPECT_EQ(0, alarm.changes - 1) << "the original heard only its own change";
}

}  // namespace
