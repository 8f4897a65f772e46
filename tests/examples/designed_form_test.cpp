// examples/designed_form: the dialog read from its compiled design, answered
// with Enter (its default button) and with Escape (its cancel button).
#include <gtest/gtest.h>

#include "tests/examples/example_process.h"

namespace {

using namespace example_driver;

struct Dialog {
  HWND window = nullptr, edit = nullptr, ok = nullptr, cancel = nullptr;
};

// The dialog as the design lays it out.
Dialog FindDialog(const ExampleProcess& app) {
  Dialog d;
  d.window = app.WaitForWindow("TNameForm");
  if (!d.window) return d;
  d.edit = Child(d.window, "TEdit", "");
  d.ok = Child(d.window, "TButton", "OK");
  d.cancel = Child(d.window, "TButton", "Cancel");
  return d;
}

TEST(DesignedFormExample, EnterPressesTheDefaultButtonAndTheNameIsGreeted) {
  ExampleProcess app(ExamplePath("VELKIN_EXAMPLE"));
  ASSERT_TRUE(app.Started()) << ExamplePath("VELKIN_EXAMPLE");
  const Dialog d = FindDialog(app);
  ASSERT_NE(nullptr, d.window) << "no dialog";
  ASSERT_TRUE(d.edit && d.ok && d.cancel) << "the design's edit box and buttons";
  EXPECT_EQ("Your name", TextOf(d.window));
  EXPECT_EQ(BS_DEFPUSHBUTTON, GetWindowLongA(d.ok, GWL_STYLE) & BS_TYPEMASK) << "OK is the default button";
  EXPECT_EQ(BS_PUSHBUTTON, GetWindowLongA(d.cancel, GWL_STYLE) & BS_TYPEMASK);

  Type(d.edit, "Ann");
  ASSERT_TRUE(WaitUntil([&] { return TextOf(d.edit) == "Ann"; })) << TextOf(d.edit);
  Picture({d.window}, "designed-form");
  Key(d.edit, VK_RETURN);

  HWND box = app.WaitForWindow("#32770");
  ASSERT_NE(nullptr, box) << "no greeting";
  EXPECT_FALSE(IsWindowVisible(d.window)) << "the dialog closed first";
  EXPECT_EQ("Hello, Ann!", TextOf(GetDlgItem(box, 1001)));
  Click(GetDlgItem(box, IDOK));
  EXPECT_EQ(0, app.WaitForExit());
}

TEST(DesignedFormExample, EscapePressesTheCancelButtonAndNothingFollows) {
  ExampleProcess app(ExamplePath("VELKIN_EXAMPLE"));
  ASSERT_TRUE(app.Started());
  const Dialog d = FindDialog(app);
  ASSERT_TRUE(d.window && d.edit) << "no dialog";
  Type(d.edit, "Bob");
  ASSERT_TRUE(WaitUntil([&] { return TextOf(d.edit) == "Bob"; }));
  Key(d.edit, VK_ESCAPE);
  // Cancelled, the program ends at once, greeting no one (a greeting would
  // wait for its OK).
  EXPECT_EQ(1, app.WaitForExit());
}

}  // namespace
