// examples/hello as a user meets it: the window with its text and its one
// button, which closes it and so ends the program.
#include <gtest/gtest.h>

#include "tests/examples/example_process.h"

namespace {

using namespace example_driver;

TEST(HelloExample, TheButtonClosesTheWindowAndEndsTheProgram) {
  ExampleProcess hello(ExamplePath("VELKIN_EXAMPLE"));
  ASSERT_TRUE(hello.Started()) << ExamplePath("VELKIN_EXAMPLE");
  // A form class without class information of its own is a TForm to the system.
  HWND form = hello.WaitForWindow("TForm");
  ASSERT_NE(nullptr, form) << "no window";
  EXPECT_EQ("Hello", TextOf(form));
  HWND close = Child(form, "TButton", "Close");
  ASSERT_NE(nullptr, close);
  EXPECT_EQ(BS_DEFPUSHBUTTON, GetWindowLongA(close, GWL_STYLE) & BS_TYPEMASK) << "the default button";
  Picture({form}, "hello");

  Click(close);
  EXPECT_EQ(0, hello.WaitForExit());
}

}  // namespace
