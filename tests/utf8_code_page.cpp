// Linked into every test program built with a UTF-8 manifest
// (velkin_utf8_test): its cases mean nothing unless the manifest took.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

class Utf8CodePage : public testing::Environment {
 public:
  void SetUp() override { ASSERT_EQ(CP_UTF8, GetACP()) << "the manifest did not make the ANSI code page UTF-8"; }
};

const testing::Environment* const utf8 = testing::AddGlobalTestEnvironment(new Utf8CodePage);

}  // namespace
