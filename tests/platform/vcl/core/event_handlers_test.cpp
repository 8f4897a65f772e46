// Callables made into events: fired by a real control while their keeper
// lives, dead once it goes (even when its cell serves another keeper), and
// what equality and the method form make of them.
#include "platform/vcl/core/event_handlers.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/vcl/forms/application.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_buttons.h"

namespace {

using System::TEventHandlers;
using System::TNotifyEvent;

TEST(TEventHandlers, ALambdaFiresFromAButtonWhileItsKeeperLives) {
  Forms::Application->Initialize();
  Forms::TForm form(nullptr);
  auto* button = new Stdctrls::TButton(&form);
  button->SetParent(&form);
  form.Show();
  const auto click = [button] { SendMessageA(button->GetHandle(), BM_CLICK, 0, 0); };

  std::string log;
  System::TObject* sender = nullptr;
  auto first = std::make_unique<TEventHandlers>();
  button->SetOnClick(first->Add([&log, &sender](System::TObject* s) {
    log += "first ";
    sender = s;
  }));
  click();
  EXPECT_EQ("first ", log);
  EXPECT_EQ(button, sender);

  const TNotifyEvent dead = button->GetOnClick();
  first.reset();
  click();
  EXPECT_EQ("first ", log) << "called after its keeper went";

  // The next keeper takes the cell the first gave back; the old closure must
  // not reach the callable kept there now.
  TEventHandlers second;
  const TNotifyEvent now = second.Add([&log](System::TObject*) { log += "second "; });
  dead(nullptr);
  EXPECT_EQ("first ", log) << "a dead closure called a later keeper's callable";
  button->SetOnClick(now);
  click();
  EXPECT_EQ("first second ", log);
  second.Clear();
  click();
  EXPECT_EQ("first second ", log) << "called after Clear";
  form.Hide();
}

int Twice(int x) { return 2 * x; }
int Thrice(int x) { return 3 * x; }

TEST(TEventHandlers, EqualityAndTheMethodFormOfCallables) {
  using Fn = System::TClosure<int(int)>;
  TEventHandlers on;
  int base = 10;
  const auto add = [&base](int x) { return base + x; };
  const Fn a = on.Add(add), b = on.Add(add), copy = a;
  base = 20;
  EXPECT_EQ(21, a(1)) << "captures by reference are the caller's";
  EXPECT_TRUE(copy == a);
  EXPECT_FALSE(a == b) << "two Adds are two handlers";

  const Fn back = Fn::FromMethod(a.ToMethod());
  EXPECT_TRUE(back == a);
  EXPECT_EQ(22, back(2));

  const Fn kept = on.Add(std::function<int(int)>(Thrice));
  EXPECT_EQ(9, kept(3));
  EXPECT_EQ(3, on.GetCount());

  // A free function needs no keeper.
  const Fn twice = &Twice;
  EXPECT_EQ(8, twice(4));
  EXPECT_TRUE(twice == Fn(&Twice));
  EXPECT_FALSE(twice == Fn(&Thrice));
  EXPECT_FALSE(Fn(static_cast<int (*)(int)>(nullptr)).IsSet());
}

}  // namespace
