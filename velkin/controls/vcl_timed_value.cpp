#include "velkin/controls/vcl_timed_value.h"

#include "platform/vcl/core/typinfo.h"

VCL_CLASS_IMPL(HCustomTimedValue, Classes::TPersistent)
VCL_CLASS_IMPL(HTimedValue, HCustomTimedValue, VCL_PROPERTY(Value), VCL_PROPERTY(TimeValue), VCL_PROPERTY(OnChange))

void HCustomTimedValue::SetValue(double value) {
  if (value != value_) DoSetValue(value);
}

void HCustomTimedValue::Assign(Classes::TPersistent* source) {
  if (auto* other = dynamic_cast<HCustomTimedValue*>(source)) {
    SetValue(other->GetValue());
    return;
  }
  TPersistent::Assign(source);
}

void HCustomTimedValue::DoChange() { onChange_(this); }

double HCustomTimedValue::DoGetValue() {
  if (onGetValue_) value_ = onGetValue_();
  return value_;
}

void HCustomTimedValue::DoSetValue(double value) {
  value_ = onSetValue_ ? onSetValue_(value) : value;
  DoChange();
}
