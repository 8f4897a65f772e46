#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "platform/vcl/vcl.h"

// Records the block each plain delete frees, to show that deleting a framework
// object through any base gives back the block that new returned. Blocks come
// from malloc; ReleaseBlock keeps that pairing out of the compiler's sight.
namespace {
void* lastFreed = nullptr;
__attribute__((noinline)) void ReleaseBlock(void* p) {
  lastFreed = p;
  std::free(p);
}
}  // namespace
void* operator new(std::size_t n) {
  if (void* p = std::malloc(n ? n : 1)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept { ReleaseBlock(p); }
void operator delete(void* p, std::size_t) noexcept { ReleaseBlock(p); }

namespace {

class TThing : public TPersistent {
  VCL_CLASS();

 public:
  int value = 0;
};
VCL_CLASS_IMPL(TThing, TPersistent)

class TSubThing : public TThing {
  VCL_CLASS();
};
VCL_CLASS_IMPL(TSubThing, TThing)

class TOther : public TPersistent {
  VCL_CLASS();
};
VCL_CLASS_IMPL(TOther, TPersistent)

TEST(VclObjectModel, MetaClassNamesParentsAndInheritance) {
  TSubThing sub;
  TObject* asObject = &sub;
  EXPECT_EQ(TSubThing::StaticClass(), asObject->ClassType());
  EXPECT_EQ("TSubThing", asObject->ClassName());

  std::vector<std::string> chain;
  for (const TMetaClass* m = asObject->ClassType(); m; m = m->ClassParent()) chain.push_back(m->ClassName());
  EXPECT_EQ((std::vector<std::string>{"TSubThing", "TThing", "TPersistent", "TObject"}), chain);
  EXPECT_EQ(TThing::StaticClass(), sub.ClassParent());

  for (const char* name : {"TSubThing", "tsubthing", "TSUBTHING", "tSuBtHiNg"})
    EXPECT_TRUE(sub.ClassNameIs(name)) << name;
  for (const char* name : {"TSubThin", "TSubThingX", "TThing", "", " TSubThing"})
    EXPECT_FALSE(sub.ClassNameIs(name)) << name;
  EXPECT_FALSE(TSubThing::StaticClass()->ClassNameIs(nullptr));

  EXPECT_TRUE(sub.InheritsFrom(TSubThing::StaticClass()));
  EXPECT_TRUE(sub.InheritsFrom(TThing::StaticClass()));
  EXPECT_TRUE(sub.InheritsFrom(TObject::StaticClass()));
  EXPECT_FALSE(sub.InheritsFrom(TOther::StaticClass()));
  EXPECT_FALSE(TThing::StaticClass()->InheritsFrom(TSubThing::StaticClass()));
  EXPECT_FALSE(sub.InheritsFrom(nullptr));
  // Framework classes from another module answer the same way.
  EXPECT_TRUE(EConvertError::StaticClass()->InheritsFrom(Exception::StaticClass()));
  EXPECT_EQ(TObject::StaticClass(), Exception::StaticClass()->ClassParent());
}

// Copies from its own kind; hands itself to TOther targets in AssignTo.
class TValue : public TPersistent {
  VCL_CLASS();

 public:
  int value = 0;
  void Assign(TPersistent* source) override {
    if (auto* v = dynamic_cast<TValue*>(source)) {
      value = v->value;
      return;
    }
    TPersistent::Assign(source);
  }

 protected:
  void AssignTo(TPersistent* dest) override {
    if (auto* t = dynamic_cast<TThing*>(dest)) {
      t->value = value * 10;
      return;
    }
    TPersistent::AssignTo(dest);
  }
};
VCL_CLASS_IMPL(TValue, TPersistent)

std::string AssignMessage(TPersistent& dest, TPersistent* source) {
  try {
    dest.Assign(source);
  } catch (EConvertError& e) {
    return e.Message.c_str();
  }
  return "(no exception)";
}

TEST(VclObjectModel, AssignDispatchAndErrorTexts) {
  TValue a, b;
  a.value = 7;
  b.Assign(&a);
  EXPECT_EQ(7, b.value) << "Assign override";

  TThing thing;
  thing.Assign(&a);  // TThing has no Assign of its own: a's AssignTo does the work
  EXPECT_EQ(70, thing.value);

  TOther other;
  TSubThing sub;
  EXPECT_EQ("Cannot assign a TOther to a TThing", AssignMessage(thing, &other));
  EXPECT_EQ("Cannot assign a TSubThing to a TValue", AssignMessage(a, &sub));
  EXPECT_EQ("Cannot assign a TValue to a TOther", AssignMessage(other, &a));
  EXPECT_EQ("Cannot assign a nil to a TThing", AssignMessage(thing, nullptr));
  EXPECT_EQ("Cannot assign a nil to a TValue", AssignMessage(a, nullptr));

  // The error is an Exception and a std::exception with the same text.
  try {
    other.Assign(&thing);
    FAIL() << "no exception";
  } catch (std::exception& e) {
    EXPECT_STREQ("Cannot assign a TThing to a TOther", e.what());
    auto* framework = dynamic_cast<Exception*>(&e);
    ASSERT_NE(nullptr, framework);
    EXPECT_TRUE(framework->ClassNameIs("EConvertError"));
  }
}

std::vector<std::string> events;

class TBase : public TObject {
 public:
  ~TBase() override { events.push_back("~TBase"); }
  void BeforeDestruction() override { events.push_back("before " + Who()); }
  virtual std::string Who() const { return "TBase"; }
};

class TDerived : public TBase {
 public:
  ~TDerived() override { events.push_back("~TDerived"); }
  std::string Who() const override { return "TDerived"; }
};

// TObject is not the first base here, so its address is not the block's.
struct Payload {
  virtual ~Payload() { events.push_back("~Payload"); }
  char bytes[40] = {};
};
class TMixed : public Payload, public TDerived {
 public:
  ~TMixed() override { events.push_back("~TMixed"); }
  std::string Who() const override { return "TMixed" + std::to_string(sizeof bytes); }
};

TEST(VclObjectModel, BeforeDestructionRunsFirstWithVirtualDispatch) {
  events.clear();
  TObject* d = new TDerived;
  delete d;
  EXPECT_EQ((std::vector<std::string>{"before TDerived", "~TDerived", "~TBase"}), events);

  events.clear();
  auto* mixed = new TMixed;
  void* block = mixed;  // the most derived object starts the block
  TObject* asObject = mixed;
  ASSERT_NE(block, static_cast<void*>(asObject));
  lastFreed = nullptr;
  delete asObject;
  void* freed = lastFreed;
  EXPECT_EQ(block, freed) << "freed a pointer into the middle of the block";
  EXPECT_EQ((std::vector<std::string>{"before TMixed40", "~TMixed", "~TDerived", "~TBase", "~Payload"}), events);

  events.clear();
  auto* viaDerived = new TMixed;
  block = viaDerived;
  delete static_cast<TDerived*>(viaDerived);
  freed = lastFreed;
  EXPECT_EQ(block, freed);
  EXPECT_EQ("before TMixed40", events.at(0));

  events.clear();
  { TDerived onStack; }
  EXPECT_EQ((std::vector<std::string>{"~TDerived", "~TBase"}), events) << "no BeforeDestruction without delete";
}

class Target {
 public:
  virtual ~Target() = default;
  int Add(int x) { return base + x; }
  int Peek(int x) const { return base * 100 + x; }
  virtual int Which(int) { return 1; }
  int base = 5;
};
class DerivedTarget : public Target {
 public:
  int Which(int) override { return 2; }
};

TEST(VclObjectModel, ClosureSetEqualityAndCalls) {
  using Fn = TClosure<int(int)>;
  Target t, u;
  Fn unset;
  EXPECT_FALSE(unset.IsSet());
  EXPECT_EQ(0, unset(3)) << "an unset closure does nothing";
  EXPECT_FALSE(Fn(&t, static_cast<int (Target::*)(int)>(nullptr)).IsSet()) << "null method";
  EXPECT_TRUE(Fn(static_cast<Target*>(nullptr), &Target::Add).IsSet()) << "the method part decides";
  EXPECT_TRUE(Fn(nullptr) == unset);

  Fn add(&t, &Target::Add), peek(&t, &Target::Peek);
  EXPECT_TRUE(add.IsSet());
  EXPECT_EQ(8, add(3));
  EXPECT_EQ(503, peek(3)) << "const method";
  EXPECT_EQ(&t, add.Data());
  t.base = 6;
  EXPECT_EQ(9, add(3)) << "bound to the object, not a copy";

  Fn copy = add;
  EXPECT_TRUE(copy == add);
  EXPECT_TRUE(Fn(&t, &Target::Add) == add);
  EXPECT_FALSE(Fn(&u, &Target::Add) == add) << "other object";
  EXPECT_FALSE(peek == add) << "other method";
  EXPECT_FALSE(unset == add);

  DerivedTarget d;
  Fn which(&d, &Target::Which);
  EXPECT_EQ(2, which(0)) << "virtual method dispatches";
}

enum class TShape : int { Circle, Square, Triangle, Star };

TEST(VclObjectModel, SetMembershipAndOperators) {
  using Shapes = Set<TShape, 0, 3>;
  Shapes s{TShape::Circle, TShape::Star};
  EXPECT_TRUE(s.Contains(TShape::Circle));
  EXPECT_FALSE(s.Contains(TShape::Square));
  s << TShape::Square >> TShape::Circle;
  EXPECT_TRUE(s == (Shapes{TShape::Square, TShape::Star}));
  EXPECT_TRUE((s + Shapes{TShape::Circle}) == (Shapes{TShape::Circle, TShape::Square, TShape::Star}));
  EXPECT_TRUE((s * Shapes{TShape::Star, TShape::Triangle}) == Shapes{TShape::Star});
  EXPECT_TRUE((s - Shapes{TShape::Star}) == Shapes{TShape::Square});
  EXPECT_TRUE(Shapes().Empty());
  EXPECT_FALSE(s.Empty());
  EXPECT_TRUE(s.Clear().Empty());

  // A range that does not start at 0; values outside it are ignored.
  Set<int, -2, 2> small{-2, 2, 3, -3};
  EXPECT_TRUE(small.Contains(-2));
  EXPECT_TRUE(small.Contains(2));
  EXPECT_FALSE(small.Contains(3));
  EXPECT_FALSE(small.Contains(-3));
  EXPECT_TRUE(small == (Set<int, -2, 2>{-2, 2}));
}

TEST(VclObjectModel, AnsiStringIndexesAndConversions) {
  const AnsiString s("Hello");
  EXPECT_EQ('H', s[1]);
  EXPECT_EQ('o', s[5]);
  EXPECT_EQ('\0', s[0]);
  EXPECT_EQ('\0', s[6]);
  EXPECT_EQ('\0', s[-100]);
  EXPECT_EQ(3, s.Pos("llo"));
  EXPECT_EQ(0, s.Pos("xyz"));
  EXPECT_EQ(0, s.Pos(""));

  struct Sub {
    int start, count;
    const char* expected;
  } const subs[] = {{1, 5, "Hello"},      {2, 3, "ell"},    {4, 100, "lo"},  {5, 1, "o"}, {6, 1, ""},
                    {0, 2, "H"},          {-1, 3, "H"},     {1, 0, ""},      {1, -1, ""}, {INT_MIN, INT_MAX, ""},
                    {2, INT_MAX, "ello"}, {INT_MAX, 1, ""}, {INT_MIN, 5, ""}};
  for (const Sub& c : subs)
    EXPECT_EQ(c.expected, s.SubString(c.start, c.count).str()) << "SubString(" << c.start << ", " << c.count << ")";

  struct Num {
    const char* text;
    int expected;
  } const nums[] = {{"42", 42},
                    {" -42 ", -42},
                    {"+7", 7},
                    {"010", 10},
                    {"$1F", 31},
                    {"0x1f", 31},
                    {"-$10", -16},
                    {"2147483647", 2147483647},
                    {"-2147483648", INT_MIN},
                    {"2147483648", -1},
                    {"$80000000", -1},
                    {"12a", -1},
                    {"", -1},
                    {"-", -1},
                    {"0x", -1},
                    {"1 2", -1},
                    {"--1", -1},
                    {"99999999999999999999", -1}};
  for (const Num& n : nums) EXPECT_EQ(n.expected, AnsiString(n.text).ToIntDef(-1)) << "\"" << n.text << "\"";

  EXPECT_EQ(std::string("a\0b", 3), AnsiString("a\0b", 3).str()) << "counted, may hold NUL";
  EXPECT_TRUE(AnsiString(nullptr, 5).IsEmpty());
  AnsiString grown("ab");
  grown.SetLength(4);
  EXPECT_EQ(std::string("ab\0\0", 4), grown.str());
}

}  // namespace
