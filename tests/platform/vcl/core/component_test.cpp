// Components: ownership, names, notifications and making a class by name.
#include "platform/vcl/core/component.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/vcl/core/class_registry.h"
#include "tests/platform/vcl/test_helpers.h"

using namespace Classes;
using vcl_test::ErrorOf;
using vcl_test::Str;

namespace {

// Writes what it hears and when it goes into a shared log; asks to hear its
// siblings unless told otherwise.
struct TProbe : TComponent {
  VCL_CLASS();
  explicit TProbe(TComponent* owner, std::vector<std::string>* log = nullptr, bool siblings = true)
      : TComponent(owner), log_(log) {
    SetSiblingNotification(siblings);
  }
  void HearSiblings(bool value) { SetSiblingNotification(value); }
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
  EXPECT_EQ("A -B, B -B, C -B, Owner -B, B freed", Joined(log)) << "the owner and every one that asked hear it";
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

TEST(TComponent, OnlyTheOwnerAndThoseWhoAskedHearComponentsComeAndGo) {
  std::vector<std::string> log;
  TProbe owner(nullptr, &log, false), other(nullptr, &log, false);
  owner.SetName("Owner");
  other.SetName("Other");
  (new TProbe(&owner, &log, false))->SetName("Q");
  auto* ear = new TProbe(&owner, &log);
  ear->SetName("E");
  const struct {
    const char* step;
    std::function<void()> act;
    const char* heard;
  } steps[] = {
      {"a quiet one comes and goes", [&] { delete new TProbe(&owner, &log, false); },
       "E +?, Owner +?, E -?, Owner -?, ? freed"},
      {"the one that asked stops",
       [&] {
         ear->HearSiblings(false);
         delete new TProbe(&owner, &log, false);
       },
       "Owner +?, Owner -?, ? freed"},
      {"it asks again and moves",
       [&] {
         ear->HearSiblings(true);
         other.InsertComponent(ear);
       },
       "E -E, Owner -E, E +E, Other +E"},
      {"its new owner tells it", [&] { delete new TProbe(&other, &log, false); },
       "E +?, Other +?, E -?, Other -?, ? freed"},
      {"its old owner no longer", [&] { delete new TProbe(&owner, &log, false); }, "Owner +?, Owner -?, ? freed"},
  };
  for (const auto& s : steps) {
    log.clear();
    s.act();
    EXPECT_EQ(s.heard, Joined(log)) << s.step;
  }
}

// Counts the times it hears that target goes.
struct TWatcher : TComponent {
  explicit TWatcher(TComponent* target = nullptr) : TComponent(nullptr), target_(target) {}
  void Notification(TComponent* c, TOperation op) override {
    TComponent::Notification(c, op);
    if (op == opRemove && (!target_ || c == target_)) ++heard;
  }
  TComponent* target_;
  int heard = 0;
};

TEST(TComponent, FreeNotificationsReachEachLinkOnceWhicheverSideGoesFirst) {
  // Many watch one: two stop watching and one is freed first; the rest hear once.
  auto* target = new TComponent(nullptr);
  std::vector<std::unique_ptr<TWatcher>> watchers;
  for (int i = 0; i < 40; ++i) {
    watchers.push_back(std::make_unique<TWatcher>(target));
    target->FreeNotification(watchers.back().get());
    watchers.back()->FreeNotification(target);  // twice the same link: still one
  }
  target->RemoveFreeNotification(watchers[7].get());
  watchers[20]->RemoveFreeNotification(target);
  watchers[30].reset();
  delete target;
  for (int i = 0; i < 40; ++i)
    if (watchers[i]) {
      EXPECT_EQ(i == 7 || i == 20 ? 0 : 1, watchers[i]->heard) << "watcher " << i;
    }

  // One watches many, freed in a scrambled order.
  TWatcher one;
  std::vector<TComponent*> targets;
  for (int i = 0; i < 40; ++i) one.FreeNotification(targets.emplace_back(new TComponent(nullptr)));
  for (int i = 0; i < 40; ++i) delete targets[(i * 17) % 40];
  EXPECT_EQ(40, one.heard);
}

TEST(TComponent, PlacesAndNamesFollowRemovalsRenamesAndMoves) {
  TComponent owner(nullptr), other(nullptr);
  std::vector<TComponent*> kept;  // what owner should hold, in order
  int made = 0;
  const auto add = [&](int count) {
    for (int i = 0; i < count; ++i, ++made) {
      kept.push_back(new TComponent(&owner));
      if (made % 3) kept.back()->SetName(AnsiString("C") + AnsiString(made));  // a third nameless
    }
  };
  const auto take = [&](size_t at) {
    TComponent* c = kept[at];
    kept.erase(kept.begin() + static_cast<std::ptrdiff_t>(at));
    return c;
  };
  const auto check = [&](const char* step) {
    ASSERT_EQ(static_cast<int>(kept.size()), owner.GetComponentCount()) << step;
    for (int i = 0; i < static_cast<int>(kept.size()); ++i) {
      ASSERT_EQ(kept[i], owner.GetComponent(i)) << step << ": component " << i;
      ASSERT_EQ(i, kept[i]->GetComponentIndex()) << step << ": index of " << i;
      if (!kept[i]->GetName().IsEmpty()) {
        ASSERT_EQ(kept[i], owner.FindComponent(kept[i]->GetName().LowerCase()))
            << step << ": " << Str(kept[i]->GetName());
      }
    }
  };
  add(300);
  check("made");
  for (size_t at = 5; at < kept.size(); at += 6) delete take(at);
  check("every sixth freed");
  add(40);
  check("added after holes");
  const AnsiString gone = kept[10]->GetName();
  kept[10]->SetName("Renamed");
  kept[11]->SetName(kept[11]->GetName().UpperCase());
  EXPECT_EQ(nullptr, owner.FindComponent(gone)) << "the old name";
  check("renamed");
  for (int i = 0; i < 5; ++i) other.InsertComponent(take(20 + i));
  EXPECT_EQ(5, other.GetComponentCount());
  for (int i = 0; i < 5; ++i) EXPECT_EQ(i, other.GetComponent(i)->GetComponentIndex()) << "moved " << i;
  for (size_t k = 0; kept.size() > 60; ++k) delete take(k * 7 % (kept.size() / 2));
  check("most freed from the front half");
  for (int i = 0; i < 3; ++i) delete take(kept.size() - 1);
  check("freed from the back");
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
