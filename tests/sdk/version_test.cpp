// Every package DLL carries a version resource with the project's one version
// number, read back the way installers read it.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

namespace {

std::string Value(const std::vector<char>& block, const char* name) {
  char* text = nullptr;
  UINT size = 0;
  const std::string path = std::string("\\StringFileInfo\\040904B0\\") + name;
  if (!VerQueryValueA(block.data(), path.c_str(), reinterpret_cast<void**>(&text), &size) || !text) return "(none)";
  return text;
}

TEST(VersionInfo, EveryPackageCarriesTheProjectVersion) {
  for (const char* dll : {"ostrel.dll", "vcl.dll", "pellum.dll", "velkin.dll"}) {
    SCOPED_TRACE(dll);
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeA(dll, &ignored);
    ASSERT_NE(0u, size) << "no version resource";
    std::vector<char> block(size);
    ASSERT_TRUE(GetFileVersionInfoA(dll, 0, size, block.data()));

    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT fixedSize = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\", reinterpret_cast<void**>(&fixed), &fixedSize));
    EXPECT_EQ(VS_FFI_SIGNATURE, fixed->dwSignature);
    const DWORD expectedMs = MAKELONG(VELKIN_VERSION_MINOR, VELKIN_VERSION_MAJOR);
    const DWORD expectedLs = MAKELONG(0, VELKIN_VERSION_PATCH);
    EXPECT_EQ(expectedMs, fixed->dwFileVersionMS) << "file version major.minor";
    EXPECT_EQ(expectedLs, fixed->dwFileVersionLS) << "file version patch.0";
    EXPECT_EQ(expectedMs, fixed->dwProductVersionMS) << "product version major.minor";
    EXPECT_EQ(DWORD(VFT_DLL), fixed->dwFileType);

    EXPECT_EQ(VELKIN_VERSION, Value(block, "FileVersion"));
    EXPECT_EQ(VELKIN_VERSION, Value(block, "ProductVersion"));
    EXPECT_EQ("Velkin", Value(block, "ProductName"));
    EXPECT_EQ(dll, Value(block, "OriginalFilename"));
  }
}

}  // namespace
