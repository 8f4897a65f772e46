// What a modal question puts back: the windows it disabled, the foreground
// window, the focus and the I/O error number; the progress window gives way.
#include "velkin/dialogs/msg_state.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/ostrel/ioerror.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "velkin/dialogs/hoperation.h"

namespace {

TEST(SaveMsgState, PutsBackWindowsFocusForegroundAndErrorNumber) {
  Forms::Application->Initialize();
  Forms::TForm main(nullptr), box(nullptr), off(nullptr);
  auto* edit = new Stdctrls::TEdit(&main);
  edit->SetParent(&main);
  for (Forms::TForm* f : {&main, &box, &off}) f->Show();
  off.SetEnabled(false);
  HOperation progress(nullptr, "Copying");
  ASSERT_NE(nullptr, HOperation::SharedForm());
  SetForegroundWindow(main.GetHandle());
  edit->SetFocus();
  ASSERT_EQ(edit->GetHandle(), GetFocus());
  SetErrorN(5);
  {
    SaveMsgState state(box.GetHandle());
    EXPECT_EQ(nullptr, HOperation::SharedForm()) << "the progress window gives way";
    EXPECT_FALSE(IsWindowEnabled(main.GetHandle()));
    EXPECT_TRUE(IsWindowEnabled(box.GetHandle())) << "the question's window stays enabled";
    SetForegroundWindow(box.GetHandle());
    SetFocus(box.GetHandle());
    SetErrorN(0);
  }
  EXPECT_TRUE(IsWindowEnabled(main.GetHandle()));
  EXPECT_FALSE(IsWindowEnabled(off.GetHandle())) << "disabled before: stays disabled";
  EXPECT_EQ(main.GetHandle(), GetForegroundWindow());
  EXPECT_EQ(edit->GetHandle(), GetFocus());
  EXPECT_EQ(5, GetIOErrorN());
  for (Forms::TForm* f : {&main, &box, &off}) f->Hide();
}

}  // namespace
