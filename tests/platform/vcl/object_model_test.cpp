#include <gtest/gtest.h>

#include "platform/vcl/vcl.h"

namespace {

class TThing : public TPersistent {
  VCL_CLASS();
};
VCL_CLASS_IMPL(TThing, TPersistent)

TEST(ObjectModel, AssignWithoutOverrideRaisesConvertError) {
  TThing a, b;
  try {
    a.Assign(&b);
    FAIL() << "no exception";
  } catch (EConvertError& e) {
    EXPECT_STREQ("Cannot assign a TThing to a TThing", e.Message.c_str());
  }
}

}  // namespace
