// TavUtil.dll carries the product's version resource; read here with the raw version API.
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace {

std::wstring DllPath() { return tavtest::BinDir() + L"\\TavUtil.dll"; }

std::wstring QueryString(const std::vector<BYTE>& block, const wchar_t* name) {
    std::wstring path = std::wstring(L"\\StringFileInfo\\040904b0\\") + name;
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), path.c_str(), &value, &length) || value == nullptr)
        return L"<missing>";
    return static_cast<const wchar_t*>(value);
}

TEST(Package, DllCarriesProductVersionResource) {
    DWORD handle = 0;
    DWORD size = GetFileVersionInfoSizeW(DllPath().c_str(), &handle);
    ASSERT_GT(size, 0u);
    std::vector<BYTE> block(size);
    ASSERT_TRUE(GetFileVersionInfoW(DllPath().c_str(), 0, size, block.data()));
    EXPECT_EQ(QueryString(block, L"ProductName"), L"Trimdial");
    EXPECT_EQ(QueryString(block, L"CompanyName"), L"Velmorax");
    EXPECT_EQ(QueryString(block, L"LegalCopyright"), L"Copyright (c) 2026 the TavUtil authors");
    EXPECT_EQ(QueryString(block, L"FileVersion"), TAVUTIL_EXPECTED_VERSION);
    EXPECT_EQ(QueryString(block, L"ProductVersion"), TAVUTIL_EXPECTED_VERSION);

    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
    std::wstring expected = TAVUTIL_EXPECTED_VERSION;
    std::wstring numeric = std::to_wstring(HIWORD(fixed->dwFileVersionMS)) + L"." +
                           std::to_wstring(LOWORD(fixed->dwFileVersionMS)) + L"." +
                           std::to_wstring(HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(numeric, expected);
}

TEST(Package, DllIsA64BitImage) {
    HMODULE module = LoadLibraryW(DllPath().c_str());
    ASSERT_NE(module, nullptr);
    auto dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    auto nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(reinterpret_cast<const BYTE*>(module) + dos->e_lfanew);
    EXPECT_EQ(nt->FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
    FreeLibrary(module);
}

}  // namespace
