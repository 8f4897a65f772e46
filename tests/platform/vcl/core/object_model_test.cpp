#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <tuple>
#include <vector>

#include "platform/vcl/vcl.h"
#include "tests/platform/vcl/test_helpers.h"
#include "tests/script_samples.h"

// Records the block each plain delete frees, to show that deleting a framework
// object through any base gives back the block that new returned. Blocks come
// from malloc; ReleaseBlock keeps that pairing out of the compiler's sight.
static void* lastFreed = nullptr;
__attribute__((noinline)) static void ReleaseBlock(void* p) { std::free(lastFreed = p); }
void* operator new(std::size_t n) {
  if (void* p = std::malloc(n ? n : 1)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept { ReleaseBlock(p); }
void operator delete(void* p, std::size_t) noexcept { ReleaseBlock(p); }

namespace {

struct TThing : TPersistent {
  VCL_CLASS();
  int value = 0;
};
VCL_CLASS_IMPL(TThing, TPersistent)

struct TSubThing : TThing {
  VCL_CLASS();
};
VCL_CLASS_IMPL(TSubThing, TThing)

struct TOther : TPersistent {
  VCL_CLASS();
};
VCL_CLASS_IMPL(TOther, TPersistent)

TEST(VclObjectModel, MetaClassNamesParentsAndInheritance) {
  TSubThing sub;
  std::vector<std::string> chain;
  for (const TMetaClass* m = static_cast<TObject&>(sub).ClassType(); m; m = m->ClassParent())
    chain.push_back(m->ClassName());
  EXPECT_EQ((std::vector<std::string>{"TSubThing", "TThing", "TPersistent", "TObject"}), chain);

  EXPECT_TRUE(sub.ClassNameIs("tSuBtHiNg"));
  for (const char* name : {"TSubThin", "TSubThingX", ""}) EXPECT_FALSE(sub.ClassNameIs(name)) << name;

  EXPECT_TRUE(sub.InheritsFrom(TThing::StaticClass()) && sub.InheritsFrom(TObject::StaticClass()));
  EXPECT_FALSE(sub.InheritsFrom(TOther::StaticClass()) ||
               TThing::StaticClass()->InheritsFrom(TSubThing::StaticClass()));
  // Framework classes from another module answer the same way.
  EXPECT_TRUE(EConvertError::StaticClass()->InheritsFrom(Exception::StaticClass()));
}

// Knows how to copy itself into a TThing.
struct TValue : TPersistent {
  VCL_CLASS();
  void AssignTo(TPersistent* dest) override {
    if (auto* t = dynamic_cast<TThing*>(dest))
      t->value = 70;
    else
      TPersistent::AssignTo(dest);
  }
};
VCL_CLASS_IMPL(TValue, TPersistent)

TEST(VclObjectModel, AssignDispatchAndErrorTexts) {
  TValue a;
  TThing thing;
  thing.Assign(&a);  // TThing has no Assign of its own: a's AssignTo does the work
  EXPECT_EQ(70, thing.value);
  TOther other;
  using vcl_test::ErrorOf;
  EXPECT_EQ("Cannot assign a TOther to a TThing", ErrorOf<EConvertError>([&] { thing.Assign(&other); }));
  EXPECT_EQ("Cannot assign a TValue to a TOther", ErrorOf<EConvertError>([&] { other.Assign(&a); }));
  EXPECT_EQ("Cannot assign a nil to a TThing", ErrorOf<EConvertError>([&] { thing.Assign(nullptr); }));
}

std::vector<std::string> events;

struct TDerived : TObject {
  ~TDerived() override { events.push_back("~TDerived"); }
  void BeforeDestruction() override { events.push_back("before " + Who()); }
  virtual std::string Who() const { return "TDerived"; }
};

// TObject is not the first base here, so its address is not the block's.
struct Payload {
  virtual ~Payload() { events.push_back("~Payload"); }
  char bytes[40] = {};
};
struct TMixed : Payload, TDerived {
  ~TMixed() override { events.push_back("~TMixed"); }
  std::string Who() const override { return "TMixed"; }
};

TEST(VclObjectModel, BeforeDestructionRunsFirstWithVirtualDispatch) {
  auto* mixed = new TMixed;
  void* block = mixed;  // the most derived object starts the block
  TObject* asObject = mixed;
  ASSERT_NE(block, static_cast<void*>(asObject));
  events.clear();
  lastFreed = nullptr;
  delete asObject;
  EXPECT_EQ(block, lastFreed) << "freed a pointer into the middle of the block";
  EXPECT_EQ((std::vector<std::string>{"before TMixed", "~TMixed", "~TDerived", "~Payload"}), events);
}

struct Target {
  virtual ~Target() = default;
  int Add(int x) { return base + x; }
  virtual int Which(int) { return 1; }
  int base = 5;
};
struct DerivedTarget : Target {
  int Which(int) override { return 2; }
};

TEST(VclObjectModel, ClosureSetEqualityAndCalls) {
  using Fn = TClosure<int(int)>;
  Target t;
  EXPECT_EQ(0, Fn()(3)) << "an unset closure does nothing";
  EXPECT_FALSE(Fn(&t, static_cast<int (Target::*)(int)>(nullptr)).IsSet()) << "null method";

  Fn add(&t, &Target::Add);
  t.base = 6;
  EXPECT_EQ(9, add(3)) << "bound to the object, not a copy";
  EXPECT_FALSE(Fn(&t, &Target::Which) == add) << "other method";
  DerivedTarget d;
  EXPECT_EQ(2, Fn(&d, &Target::Which)(0)) << "virtual method dispatches";
}

enum class TShape : int { Circle, Square, Triangle, Star };

TEST(VclObjectModel, SetOperatorsAndRange) {
  using Shapes = Set<TShape, 0, 3>;
  Shapes s{TShape::Circle, TShape::Star};
  s << TShape::Square >> TShape::Circle;
  EXPECT_TRUE(s == (Shapes{TShape::Square, TShape::Star}));
  EXPECT_TRUE((s + Shapes{TShape::Circle}) == (Shapes{TShape::Circle, TShape::Square, TShape::Star}));
  EXPECT_TRUE((s * Shapes{TShape::Star, TShape::Triangle}) == Shapes{TShape::Star});
  EXPECT_TRUE((s - Shapes{TShape::Star}) == Shapes{TShape::Square});
  // A range that does not start at 0; values outside it are ignored.
  Set<int, -2, 2> small{-2, 2, 3, -3};
  EXPECT_TRUE(small == (Set<int, -2, 2>{-2, 2}));
  EXPECT_FALSE(small.Contains(3) || small.Contains(-3));
}

TEST(VclObjectModel, AnsiStringIndexesAndConversions) {
  const AnsiString s("Hello");
  EXPECT_EQ("Ho", std::string({s[1], s[5]}));
  for (int outside : {0, 6}) EXPECT_EQ('\0', s[outside]) << outside;
  EXPECT_EQ(3, s.Pos("llo"));
  EXPECT_EQ(0, s.Pos(""));

  // clang-format off
  const std::tuple<int, int, const char*> subs[] = {{2, 3, "ell"}, {4, 100, "lo"}, {6, 1, ""}, {0, 2, "H"}, {-1, 3, "H"},
      {1, 0, ""}, {1, -1, ""}, {INT_MIN, INT_MAX, ""}, {2, INT_MAX, "ello"}, {INT_MAX, 1, ""}};
  // clang-format on
  for (const auto& [start, count, expected] : subs)
    EXPECT_EQ(expected, s.SubString(start, count).str()) << "SubString(" << start << ", " << count << ")";

  for (const char* bad : {"12a", "", "-", "0x", "1 2", "--1", "2147483648", "$80000000", "99999999999999999999"})
    EXPECT_EQ(-1, AnsiString(bad).ToIntDef(-1)) << "\"" << bad << "\"";
  const std::pair<const char*, int> nums[] = {{" -42 ", -42}, {"+7", 7},    {"010", 10},
                                              {"$1F", 31},    {"0x1f", 31}, {"-$10", -16}};
  for (const auto& [text, expected] : nums) EXPECT_EQ(expected, AnsiString(text).ToIntDef(-1)) << "\"" << text << "\"";
  EXPECT_EQ(INT_MIN, AnsiString("-2147483648").ToIntDef(-1));
  EXPECT_EQ(INT_MAX, AnsiString("2147483647").ToIntDef(-1));

  EXPECT_EQ(std::string("a\0b", 3), AnsiString("a\0b", 3).str()) << "counted, may hold NUL";
  AnsiString grown("ab");
  grown.SetLength(4);
  EXPECT_EQ(std::string("ab\0\0", 4), grown.str());
}

// Upper and lower case as the letters have them, also where a letter's other
// case takes another number of bytes ("\u0131" is two bytes in UTF-8, "I" one;
// "\u023f" two, its capital three).
TEST(VclObjectModel, AnsiStringCaseOfEveryLetter) {
  const char* texts[] = {"Crème brûlée", "Щука и ёж", "Ωμέγα", "\u0131\u0131x", "\u023f\u023f-\u2c7e", "a\U0001F600b"};
  for (const char* utf8 : texts) {
    std::string text;
    if (!script_samples::InAnsi(utf8, text)) continue;
    std::wstring upper = script_samples::Wide(utf8), lower = upper;
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
    std::string expected;
    if (script_samples::InAnsi(script_samples::Utf8(upper).c_str(), expected)) {
      EXPECT_EQ(expected, AnsiString(text.c_str()).UpperCase().str()) << utf8;
    }
    if (script_samples::InAnsi(script_samples::Utf8(lower).c_str(), expected)) {
      EXPECT_EQ(expected, AnsiString(text.c_str()).LowerCase().str()) << utf8;
    }
  }
}

}  // namespace
