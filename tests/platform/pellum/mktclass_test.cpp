// The class factory: components of a class made with an owner; classes that
// cannot be made give null; a constructor's own error reaches the caller.
#include "platform/pellum/mktclass.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/core/string_list.h"
#include "platform/vcl/stdctrls/ext_panels.h"

// A component whose constructor fails.
class TFailing : public Classes::TComponent {
  VCL_CLASS();

 public:
  explicit TFailing(Classes::TComponent* owner) : TComponent(owner) { throw std::runtime_error("cannot be made"); }
};
VCL_COMPONENT_IMPL(TFailing, Classes::TComponent)

namespace {

TEST(Mktclass, MakesComponentsOfAClassWithAnOwner) {
  Classes::TComponent owner(nullptr);
  Classes::TComponent* made = Mktclass::HCreateClassObject(&owner, Extctrls::TPanel::StaticClass());
  ASSERT_NE(nullptr, dynamic_cast<Extctrls::TPanel*>(made));
  EXPECT_EQ(&owner, made->GetOwner());
  EXPECT_EQ(made, owner.GetComponent(0));

  // Every class the framework registers, exactly that class.
  for (const char* name :
       {"TForm",     "TScrollBox",   "TButton",   "TCheckBox",  "TRadioButton", "TEdit",    "TMemo",        "TLabel",
        "TListBox",  "TComboBox",    "TGroupBox", "TScrollBar", "TPanel",       "TBevel",   "TSpeedButton", "TBitBtn",
        "TTrackBar", "TProgressBar", "TUpDown",   "TMainMenu",  "TPopupMenu",   "TMenuItem"}) {
    const System::TMetaClass* cls = Classes::FindClass(name);
    Classes::TComponent* c = Mktclass::HCreateClassObject(&owner, cls);
    ASSERT_NE(nullptr, c) << name;
    EXPECT_EQ(cls, c->ClassType()) << name;
    EXPECT_EQ(&owner, c->GetOwner()) << name;
    delete c;
  }

  Classes::TComponent* free = Mktclass::HCreateClassObject(nullptr, Classes::TComponent::StaticClass());
  ASSERT_NE(nullptr, free);
  EXPECT_EQ(nullptr, free->GetOwner());
  delete free;

  const struct {
    const char* what;
    const System::TMetaClass* cls;
  } none[] = {
      {"no class", nullptr},
      {"not a component", Classes::TStringList::StaticClass()},
      {"a class without a factory", Controls::TGraphicControl::StaticClass()},
  };
  for (const auto& c : none) EXPECT_EQ(nullptr, Mktclass::HCreateClassObject(&owner, c.cls)) << c.what;
  EXPECT_EQ(1, owner.GetComponentCount()) << "nothing else was made";

  EXPECT_THROW(Mktclass::HCreateClassObject(&owner, TFailing::StaticClass()), std::runtime_error);
  EXPECT_EQ(1, owner.GetComponentCount()) << "the failed component left its owner's list";
}

}  // namespace
