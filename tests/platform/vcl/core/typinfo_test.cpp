// Published properties and methods: every class's defaults agree with what a
// new instance holds, values read and written by name and kind, sets and
// enumerations by their names, colours by name, events bound to a form's
// published methods by name, and clear errors for the rest.
#include "platform/vcl/core/typinfo.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/vcl/core/class_registry.h"
#include "platform/vcl/forms/forms.h"
#include "platform/vcl/stdctrls/std_buttons.h"
#include "platform/vcl/stdctrls/std_edits.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Typinfo;
using namespace vcl_test;

namespace {

class TPublishingForm : public Forms::TForm {
  VCL_CLASS();

 public:
  using TForm::TForm;
  std::string log;
  void ButtonClick(System::TObject* sender) { log += "click:" + std::string(sender->ClassName().c_str()) + ";"; }
  void EditKeyDown(System::TObject*, WORD& key, Controls::TShiftState) { log += "key:" + std::to_string(key) + ";"; }
};

}  // namespace

VCL_COMPONENT_IMPL(TPublishingForm, Forms::TForm, VCL_METHOD(ButtonClick, System::TNotifyEvent),
                   VCL_METHOD(EditKeyDown, Controls::TKeyEvent))

namespace {

TEST(Typinfo, EveryClassStartsAtItsPublishedDefaults) {
  std::vector<std::unique_ptr<System::TObject>> objects;
  for (const char* name : kStandardClasses) objects.emplace_back(Classes::FindClass(name)->Factory(nullptr));
  objects.emplace_back(new Controls::TCustomControl(nullptr));
  objects.emplace_back(new Graphics::TFont);
  objects.emplace_back(new Graphics::TPen);
  objects.emplace_back(new Graphics::TBrush);
  for (const auto& object : objects) {
    const System::TMetaClass* cls = object->ClassType();
    const auto props = GetPropList(cls);
    EXPECT_GE(props.size(), 2u) << cls->Name;
    for (const TPropInfo* p : props) {
      if (p->HasDefault) {
        EXPECT_TRUE(IsDefaultPropValue(object.get(), p)) << cls->Name << "." << p->Name;
      }
      // Each name once: a class's own entry replaces its parent's.
      int same = 0;
      for (const TPropInfo* q : props) same += lstrcmpiA(p->Name, q->Name) == 0;
      EXPECT_EQ(1, same) << cls->Name << "." << p->Name;
    }
  }
  // Parents' properties first, in their order.
  const auto button = GetPropList(Stdctrls::TButton::StaticClass());
  EXPECT_STREQ("Name", button[0]->Name);
  EXPECT_STREQ("Tag", button[1]->Name);
  EXPECT_STREQ("Left", button[2]->Name);
}

TEST(Typinfo, ValuesByNameAndKind) {
  Forms::TForm form(nullptr);
  auto* button = Make<Stdctrls::TButton>(&form, &form);
  const System::TMetaClass* cls = button->ClassType();
  const auto prop = [&](const char* name) {
    const TPropInfo* p = GetPropInfo(cls, name);
    EXPECT_NE(nullptr, p) << name;
    return p;
  };

  SetStrProp(button, prop("caption"), "&Go");
  EXPECT_EQ("&Go", Str(button->GetText())) << "names are case-insensitive";
  SetOrdProp(button, prop("Default"), 1);
  SetEnumProp(button, prop("Align"), "ALCLIENT");
  EXPECT_EQ(Controls::alClient, button->GetAlign());
  EXPECT_EQ("alClient", Str(GetEnumProp(button, prop("Align"))));
  EXPECT_EQ("True", Str(GetEnumProp(button, prop("Default")))) << "Boolean is an enumeration";

  // Colours: stored only when not the parent's; named where a name exists.
  const TPropInfo* color = prop("Color");
  EXPECT_TRUE(IsDefaultPropValue(button, color)) << "a parent's colour is not written";
  const TTypeInfo* colorType = color->PropType();
  long long value = 0;
  ASSERT_TRUE(colorType->IdentToInt && colorType->IdentToInt("clbtnface", value));
  EXPECT_EQ(Graphics::clBtnFace, value);
  SetOrdProp(button, color, Graphics::clInfoBk);
  EXPECT_FALSE(IsDefaultPropValue(button, color));
  EXPECT_STREQ("clInfoBk", colorType->IntToIdent(GetOrdProp(button, color)));
  EXPECT_EQ(nullptr, colorType->IntToIdent(0x123456)) << "a colour without a name";
  EXPECT_FALSE(colorType->IdentToInt("clNoSuch", value));

  // Sub-objects are read in place; a wrong class is refused.
  EXPECT_EQ(button->GetFont(), GetObjectProp(button, prop("Font")));
  Graphics::TPen pen;

  // Sets by the names of their elements.
  const TPropInfo* icons = GetPropInfo(form.ClassType(), "BorderIcons");
  EXPECT_EQ("[biSystemMenu,biMinimize,biMaximize]", Str(GetSetProp(&form, icons)));
  SetSetProp(&form, icons, "[ biHelp , biSystemMenu ]");
  EXPECT_EQ("[biSystemMenu,biHelp]", Str(GetSetProp(&form, icons)));
  SetSetProp(&form, icons, "[]");
  EXPECT_TRUE(form.GetBorderIcons().Empty());

  // Errors name the property and the value.
  const std::pair<const char*, std::function<void()>> errors[] = {
      {"Property Align: invalid value 'alMiddle'", [&] { SetEnumProp(button, prop("Align"), "alMiddle"); }},
      {"Property BorderIcons: invalid value 'biClose'", [&] { SetSetProp(&form, icons, "[biHelp,biClose]"); }},
      {"Property Caption: not an ordinal value", [&] { SetOrdProp(button, prop("Caption"), 1); }},
      {"Property Hint: not an enumeration", [&] { SetEnumProp(button, prop("Hint"), "x"); }},
      {"Property BorderIcons: a set without its closing ']'", [&] { SetSetProp(&form, icons, "[biHelp"); }},
      {"Property Font: an object of the wrong class", [&] { SetObjectProp(button, prop("Font"), &pen); }},
  };
  for (const auto& [message, act] : errors) EXPECT_EQ(message, ErrorOf<EPropertyError>(act));
  EXPECT_EQ(nullptr, GetPropInfo(cls, "NoSuchProperty"));
  EXPECT_EQ(Controls::alClient, button->GetAlign()) << "a refused value changes nothing";
  EXPECT_TRUE(form.GetBorderIcons().Empty());
}

TEST(Typinfo, EventsBindToPublishedMethodsByName) {
  TPublishingForm form(nullptr);
  auto* button = Make<Stdctrls::TButton>(&form, &form);
  auto* edit = Make<Stdctrls::TEdit>(&form, &form);

  const System::TMethod click = MethodAddress(&form, "buttonclick");
  ASSERT_TRUE(click.IsSet());
  const TPropInfo* onClick = GetPropInfo(button->ClassType(), "OnClick");
  EXPECT_TRUE(IsDefaultPropValue(button, onClick));
  SetMethodProp(button, onClick, click);
  EXPECT_FALSE(IsDefaultPropValue(button, onClick));
  button->Click();
  EXPECT_EQ("click:TButton;", form.log);
  EXPECT_EQ("ButtonClick", Str(MethodName(&form, GetMethodProp(button, onClick))));

  const TPropInfo* onKeyDown = GetPropInfo(edit->ClassType(), "OnKeyDown");
  SetMethodProp(edit, onKeyDown, MethodAddress(&form, "EditKeyDown"));
  WORD key = 'A';
  edit->GetOnKeyDown()(edit, key, {});
  EXPECT_EQ("click:TButton;key:65;", form.log);
  EXPECT_EQ("EditKeyDown", Str(MethodName(&form, GetMethodProp(edit, onKeyDown))));

  // A method fits an event only with the same signature; names are matched
  // against the published ones only.
  EXPECT_STREQ(onClick->PropType()->Signature, MethodSignature(form.ClassType(), "ButtonClick"));
  EXPECT_STRNE(onKeyDown->PropType()->Signature, MethodSignature(form.ClassType(), "ButtonClick"));
  EXPECT_EQ(nullptr, MethodSignature(form.ClassType(), "Close"));
  EXPECT_FALSE(MethodAddress(&form, "Close").IsSet());
  EXPECT_EQ("", Str(MethodName(button, GetMethodProp(button, onClick)))) << "not a method of the button";
  EXPECT_EQ(nullptr, GetPropInfo(form.ClassType(), "ButtonClick")) << "a method is not a property";
}

}  // namespace
