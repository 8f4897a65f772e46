// Components: ownership, names, notifications and making a class by name.
#include "platform/vcl/core/component.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/vcl/core/class_registry.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Classes;
using vcl_test::ErrorOf;

namespace {

// Writes what it hears and when it goes into a shared log.
struct TProbe : TComponent {
  VCL_CLASS();
  explicit TProbe(TComponent* owner, std::vector<std::string>* log = nullptr) : TComponent(owner), log_(log) {}
  ~TProbe() override {
    if (log_)
      log_->push_back(Label() + " freed" + (GetComponentState().Contains(csDestroying) ? "" : " (not destroying)"));
  }
  std::string Label() const { return GetName().IsEmpty() ? "?" : GetName().c_str(); }

 protected:
  void Notification(TComponent* c, TOperation op) override {
    TComponent::Notification(c, op);
    if (log_) log_->push_back(Label() + (op == opInsert ? " +" : " -") + static_cast<TProbe*>(c)->Label());
  }

 private:
  std::vector<std::string>* log_;
};
VCL_COMPONENT_IMPL(TProbe, TComponent)

std::string Joined(const std::vector<std::string>& log) {
  std::string s;
  for (const auto& l : log) s += (s.empty() ? "" : ", ") + l;
  return s;
}

TEST(TComponent, OwnerFreesWhatItOwnsAndForgetsWhatOthersFree) {
  std::vector<std::string> log;
  auto* owner = new TProbe(nullptr, &log);
  owner->SetName("Owner");
  auto* a = new TProbe(owner, &log);
  a->SetName("A");
  auto* b = new TProbe(owner, &log);
  b->SetName("B");
  auto* c = new TProbe(owner, &log);
  c->SetName("C");
  EXPECT_EQ(3, owner->GetComponentCount());
  EXPECT_EQ(1, b->GetComponentIndex());
  log.clear();

  delete b;  // freed by someone other than its owner
  EXPECT_EQ("A -B, B -B, C -B, Owner -B, B freed", Joined(log)) << "everyone of the owner hears it";
  ASSERT_EQ(2, owner->GetComponentCount());
  EXPECT_EQ(c, owner->GetComponent(1));

  // A component that is not owned asks to hear when c goes.
  TProbe watcher(nullptr, &log);
  watcher.SetName("W");
  watcher.FreeNotification(c);
  log.clear();
  delete owner;
  EXPECT_EQ("W -C, C freed, A freed, Owner freed", Joined(log)) << "owned ones go last first, marked destroying";

  // On the stack: the destructor does what delete does, after the derived
  // parts are gone.
  {
    TProbe stackOwner(nullptr, &log);
    stackOwner.SetName("S");
    (new TProbe(&stackOwner, &log))->SetName("X");
    EXPECT_NE(nullptr, stackOwner.FindComponent("x")) << "names compare without case";
    log.clear();
  }
  EXPECT_EQ("S freed (not destroying), X freed", Joined(log));
}

TEST(TComponent, NamesAreIdentifiersUniqueAmongTheOwnersComponents) {
  TComponent owner(nullptr);
  auto* first = new TComponent(&owner);
  first->SetName("Button1");
  auto* second = new TComponent(&owner);
  second->SetName("Edit1");
  struct Row {
    const char* name;
    const char* error;  // empty: accepted
  };
  const Row rows[] = {
      {"Edit2", ""},
      {"_x9", ""},
      {"", ""},
      {"9lives", "'9lives' is not a valid component name"},
      {"two words", "'two words' is not a valid component name"},
      {"Button1", "A component named Button1 already exists"},
      {"BUTTON1", "A component named BUTTON1 already exists"},
  };
  for (const Row& r : rows) {
    second->SetName("Edit1");
    EXPECT_EQ(r.error, ErrorOf<EComponentError>([&] { second->SetName(r.name); })) << "name '" << r.name << "'";
    EXPECT_EQ(std::string(*r.error ? "Edit1" : r.name), second->GetName().c_str()) << "name after '" << r.name << "'";
  }
  // Moving a component into an owner that has its name taken is refused too.
  TComponent other(nullptr);
  auto* clash = new TComponent(&other);
  clash->SetName("Button1");
  EXPECT_EQ("A component named Button1 already exists",
            ErrorOf<EComponentError>([&] { owner.InsertComponent(clash); }));
  EXPECT_EQ(&other, clash->GetOwner());

  EXPECT_EQ("List index out of bounds (2)", ErrorOf<EListError>([&] { owner.GetComponent(2); }));
  EXPECT_EQ("List index out of bounds (-1)", ErrorOf<EListError>([&] { owner.GetComponent(-1); }));
}

TEST(ClassRegistry, ClassesAreMadeByNameWithAnOwner) {
  RegisterClasses({TProbe::StaticClass(), TComponent::StaticClass()});
  RegisterClasses({TProbe::StaticClass()});  // again: nothing
  EXPECT_EQ(TProbe::StaticClass(), GetClass("tprobe"));
  EXPECT_EQ(nullptr, GetClass("TNobody"));
  const auto listed = [] {
    const auto all = GetRegisteredClasses();
    return std::count(all.begin(), all.end(), TProbe::StaticClass());
  };
  EXPECT_EQ(1, listed()) << "listed once among the registered classes";

  TComponent owner(nullptr);
  TComponent* made = CreateComponent(FindClass("TProbe"), &owner);
  EXPECT_EQ(&owner, made->GetOwner());
  EXPECT_THROW(CreateComponent(TPersistent::StaticClass(), &owner), EComponentError) << "not a component";
  UnRegisterClass(TProbe::StaticClass());
  EXPECT_EQ(nullptr, GetClass("TProbe"));
  EXPECT_EQ(0, listed());
}

}  // namespace
