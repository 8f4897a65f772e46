// Streams: positions, short transfers, sizes and copies in memory; files made,
// read back and refused with the file's name and the system's reason; a
// module's resource read in place.
#include "platform/vcl/core/streams.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/platform/vcl/test_helpers.h"

namespace {

using namespace Classes;
using namespace vcl_test;

TEST(TMemoryStream, PositionsSizesAndShortTransfers) {
  TMemoryStream s;
  s.WriteBuffer("hello, world", 12);
  EXPECT_EQ(12, s.GetPosition());
  const struct {
    const char* what;
    int64_t offset;
    TSeekOrigin origin;
    int64_t position;
  } seeks[] = {
      {"from the start", 7, soBeginning, 7},
      {"back from here", -2, soCurrent, 5},
      {"from the end", -5, soEnd, 7},
      {"before the start: refused", -100, soCurrent, 7},
      {"past the end is allowed", 20, soBeginning, 20},
  };
  for (const auto& k : seeks) EXPECT_EQ(k.position, s.Seek(k.offset, k.origin)) << k.what;
  char buffer[16] = {};
  EXPECT_EQ(0, s.Read(buffer, 4)) << "nothing past the end";
  s.WriteBuffer("!", 1);
  EXPECT_EQ(21, s.GetSize()) << "a write past the end fills the gap";
  EXPECT_EQ(0, static_cast<char*>(s.GetMemory())[15]);

  s.SetPosition(7);
  EXPECT_EQ(5, s.Read(buffer, 5));
  EXPECT_EQ("world", std::string(buffer, 5));
  s.SetPosition(18);
  EXPECT_EQ("Stream read error", ErrorOf<EReadError>([&] { s.ReadBuffer(buffer, 5); })) << "a short read";
  s.SetSize(5);
  EXPECT_EQ(5, s.GetPosition()) << "cut: the position stays inside";

  TMemoryStream copy;
  EXPECT_EQ(5, copy.CopyFrom(&s, 0)) << "0: the whole source from its start";
  EXPECT_EQ("hello", std::string(static_cast<char*>(copy.GetMemory()), 5));
  s.SetPosition(1);
  copy.Clear();
  EXPECT_EQ(3, copy.CopyFrom(&s, 3));
  EXPECT_EQ("ell", std::string(static_cast<char*>(copy.GetMemory()), 3));
  EXPECT_THROW(copy.CopyFrom(&s, 10), EReadError) << "more than the source holds";
}

TEST(TFileStream, FilesAreMadeReadAndRefusedWithTheirName) {
  char dir[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  const AnsiString path = AnsiString(dir) + "velkin_stream_test.bin";
  {
    TMemoryStream out;
    out.WriteBuffer("\x01\x02\x03\xFF", 4);
    out.SaveToFile(path);
  }
  TMemoryStream in;
  in.LoadFromFile(path);
  ASSERT_EQ(4, in.GetSize());
  EXPECT_EQ(0, std::memcmp(in.GetMemory(), "\x01\x02\x03\xFF", 4));
  {
    TFileStream file(path, fmOpenReadWrite);
    EXPECT_EQ(4, file.GetSize());
    file.SetSize(2);
    EXPECT_EQ(0, file.GetPosition());
    file.Seek(0, soEnd);
    file.WriteBuffer("z", 1);
  }
  in.LoadFromFile(path);
  EXPECT_EQ("\x01\x02z", std::string(static_cast<char*>(in.GetMemory()), 3));
  DeleteFileA(path.c_str());

  const AnsiString missing = AnsiString(dir) + "no_such_dir\\file.bin";
  const std::string error = ErrorOf<EFOpenError>([&] { TFileStream file(missing, fmOpenRead); });
  EXPECT_EQ(0u, error.find("Cannot open file \"" + Str(missing) + "\". ")) << error;
  EXPECT_GT(error.size(), static_cast<size_t>(missing.Length()) + 22) << "the system's reason follows";
  EXPECT_THROW(TFileStream(missing, fmCreate), EFCreateError);
}

TEST(TResourceStream, ReadsAModulesResourceInPlace) {
  HMODULE vcl = GetModuleHandleA("vcl.dll");
  ASSERT_TRUE(vcl);
  TResourceStream version(vcl, "#1", MAKEINTRESOURCEA(16));  // the version information
  WORD length = 0;
  version.ReadBuffer(&length, sizeof length);
  EXPECT_EQ(version.GetSize(), length) << "the block says how long it is";
  version.SetPosition(6);
  wchar_t key[16] = {};
  version.ReadBuffer(key, sizeof key - 2);
  EXPECT_EQ(std::wstring(L"VS_VERSION_INFO"), std::wstring(key));
  EXPECT_THROW(version.WriteBuffer("x", 1), EWriteError);
  EXPECT_EQ("Resource NOPE not found",
            ErrorOf<EResNotFound>([&] { TResourceStream none(vcl, "NOPE", MAKEINTRESOURCEA(10)); }));
}

}  // namespace
