// The class registry: classes registered from a designed container of
// samples or bare, and nameless copies made from them into any parent.
#include "velkin/controls/hclasslist.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/vcl/core/filer.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/ext_panels.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "platform/vcl/stdctrls/std_label.h"

// A designed form with a hidden panel of samples and an empty panel.
class TSamplesForm : public Forms::TForm {
  VCL_CLASS();

 public:
  explicit TSamplesForm(Classes::TComponent* owner) : TForm(owner) { ReadDesign(); }
  Extctrls::TPanel* Samples = nullptr;
  Extctrls::TPanel* Empty = nullptr;
};
VCL_COMPONENT_IMPL(TSamplesForm, Forms::TForm, VCL_FIELD(Samples), VCL_FIELD(Empty))

namespace {

// An array that makes its own holders and counts what it was given.
class CountingArray : public HClassArray {
 public:
  HClassHolder* CreateNew(const System::TMetaClass* cls, Controls::TControl* prototype) override {
    ++made;
    return HClassArray::CreateNew(cls, prototype);
  }
  void ItemAdded(HClassHolder* holder) override { added += holder->Name().c_str() + std::string(" "); }
  int made = 0;
  std::string added;
};

TEST(HClassArray, CopiesOfRegisteredSamplesAreNamelessAndKeepTheSamplesValues) {
  TSamplesForm form(nullptr);
  CountingArray classes;
  classes.Register(form.Samples);
  ASSERT_EQ(4, classes.Count());
  EXPECT_EQ(4, classes.made);
  EXPECT_EQ("TButton TEdit TLabel TPanel ", classes.added) << "in child order, each announced once added";
  EXPECT_EQ(std::string("SampleButton"), form.Samples->GetControl(0)->GetName().c_str()) << "the sample keeps its name";

  // Two copies of every sample into a visible parent: same class, no name,
  // the sample's texts, bounds and colours.
  Extctrls::TPanel target(&form);
  target.SetParent(&form);
  const int before = form.GetComponentCount();
  for (int copy = 0; copy < 2; ++copy) {
    for (int i = 0; i < classes.Count(); ++i) {
      Controls::TControl* sample = form.Samples->GetControl(i);
      auto* made = dynamic_cast<Controls::TControl*>(classes[i]->Create(&form, &target));
      ASSERT_NE(nullptr, made) << sample->GetName().c_str();
      EXPECT_EQ(sample->ClassType(), made->ClassType());
      EXPECT_EQ(std::string(""), made->GetName().c_str());
      EXPECT_EQ(&form, made->GetOwner());
      EXPECT_EQ(&target, made->GetParent());
      EXPECT_STREQ(sample->GetText().c_str(), made->GetText().c_str()) << sample->GetName().c_str();
      EXPECT_EQ(sample->GetColor(), made->GetColor()) << sample->GetName().c_str();
      EXPECT_EQ(sample->GetLeft(), made->GetLeft()) << sample->GetName().c_str();
      EXPECT_EQ(sample->GetWidth(), made->GetWidth()) << sample->GetName().c_str();
      EXPECT_EQ(sample->GetHeight(), made->GetHeight()) << sample->GetName().c_str();
    }
  }
  EXPECT_EQ(before + 8, form.GetComponentCount());
  EXPECT_EQ(12, static_cast<Stdctrls::TEdit*>(target.GetControl(1))->GetMaxLength());
  EXPECT_EQ(Extctrls::bvLowered, static_cast<Extctrls::TPanel*>(target.GetControl(3))->GetBevelOuter());

  // Without a parent, the copy is only owned.
  Controls::TControl* loose = dynamic_cast<Controls::TControl*>(classes[0]->Create(&form, nullptr));
  ASSERT_NE(nullptr, loose);
  EXPECT_EQ(nullptr, loose->GetParent());
  EXPECT_EQ(std::string("&Go"), loose->GetText().c_str());
  delete loose;

  // Without an owner, the caller owns the copy.
  Classes::TComponent* orphan = classes[1]->Create(nullptr, nullptr);
  ASSERT_NE(nullptr, orphan);
  EXPECT_EQ(nullptr, orphan->GetOwner());
  delete orphan;

  // An empty container, and counts of none, register nothing.
  classes.Register(form.Empty);
  classes.Register(static_cast<Controls::TWinControl*>(nullptr));
  const System::TMetaClass* bare[] = {Stdctrls::TButton::StaticClass()};
  classes.Register(bare, 0);
  classes.Register(bare, -1);
  EXPECT_EQ(4, classes.Count());
}

TEST(HClassArray, BareClassesMakeDefaultObjectsAndUnmakeableOnesGiveNull) {
  Classes::TComponent owner(nullptr);
  const System::TMetaClass* bare[] = {Stdctrls::TButton::StaticClass(), Stdctrls::TLabel::StaticClass(),
                                      Controls::TGraphicControl::StaticClass()};
  HClassArray classes;
  classes.Register(bare, 3);
  ASSERT_EQ(3, classes.Count());
  EXPECT_EQ(std::string("TLabel"), classes[1]->Name().c_str());
  EXPECT_EQ(nullptr, classes[0]->GetPrototype());

  Stdctrls::TButton reference(nullptr);
  auto* button = dynamic_cast<Stdctrls::TButton*>(classes[0]->Create(&owner, nullptr));
  ASSERT_NE(nullptr, button);
  EXPECT_EQ(reference.GetWidth(), button->GetWidth());
  EXPECT_STREQ(reference.GetText().c_str(), button->GetText().c_str());
  EXPECT_EQ(nullptr, classes[2]->Create(&owner, nullptr)) << "a class without a factory";
  EXPECT_EQ(1, owner.GetComponentCount());

  HClassHolder nothing(nullptr, nullptr);
  EXPECT_EQ(std::string(""), nothing.Name().c_str());
  EXPECT_EQ(nullptr, nothing.Create(&owner, nullptr));
}

TEST(HClassHolder, AStreamThatDoesNotFitTheClassFailsWithoutLeavingACopyBehind) {
  TSamplesForm form(nullptr);
  // A button's values read into an edit: the button's TabOrder fits, its
  // caption does not exist on an edit.
  HClassHolder mismatched(Stdctrls::TEdit::StaticClass(), form.Samples->GetControl(0));
  ASSERT_NE(nullptr, mismatched.GetPrototype());
  const int before = form.GetComponentCount();
  EXPECT_THROW(mismatched.Create(&form, form.Empty), Classes::EReadError);
  EXPECT_EQ(before, form.GetComponentCount());
  EXPECT_EQ(0, form.Empty->GetControlCount());
}

}  // namespace
