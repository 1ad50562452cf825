// Drivers for the C interface over files: whole files read into memory, and the version resources of damaged
// copies of a real library. Each answer must equal the C++ interface's for the same input and keep the buffer
// protocol of the C headers.
#include "CapiChecks.h"
#include "Fuzz.h"
#include "Inputs.h"
#include "RegistryFixture.h"
#include "TestSupport.h"

#include <TavUtil.h>

#include "capi/TavUtilC.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <list>
#include <memory>

namespace fuzz {
namespace {

// ---- whole files ------------------------------------------------------------------------------------------

struct TextFileHandle {
    tav_textfile file = tav_textfile_create();
    ~TextFileHandle() { tav_textfile_destroy(file); }
};

TEST(Fuzz, CapiTextFile) {
    auto dir = std::make_shared<tavtest::TempDir>(L"fuzzcapitext");
    CreateDirectoryW(((*dir) / L"folder").c_str(), nullptr);
    RunDriver({"capi-textfile",
               {L"plain.txt", L"folder", L"missing.txt", L"", L"a\x00E9.txt"},
               nullptr,
               [dir](const Input& input) {
                   Rng rng(input.choices);
                   const std::wstring path = FileNameInside(dir->path(), input.text);
                   const DeletedAfterwards cleanup{path};
                   if (!rng.OneIn(8)) {
                       size_t length = std::vector<size_t>{0, 1, 2, 3, 4095, 4096, 65536}[rng.Below(7)];
                       if (rng.OneIn(2))
                           length = rng.Below(3000);
                       std::string bytes(length, '\0');
                       for (char& byte : bytes)
                           byte = static_cast<char>(rng.OneIn(4) ? 0 : rng.Below(256));
                       tavtest::WriteFileBytes(path, bytes);
                   }
                   cTextFile file;
                   const int32_t read = file.Read(CStdStr<wchar_t>(path)) ? 1 : 0;
                   TextFileHandle c;
                   const int32_t got = tav_textfile_read(c.file, path.c_str());
                   Expect(got == read, "tav_textfile_read gives " + Num(got) + ", the C++ " + Num(read));
                   uint32_t size = 0xFFFFFFFF;
                   Expect(tav_textfile_size(c.file, &size) == TAV_OK && size == file.GetSize(),
                          "tav_textfile_size gives " + Num(size));
                   const size_t bytes = file.GetBuffer() ? file.GetSize() : 0;

                   // Bytes, without a terminator: the size query fails only when there is something to copy.
                   size_t needed = kUnset;
                   int32_t code = tav_textfile_bytes(c.file, nullptr, 0, &needed);
                   Expect(code == (bytes == 0 ? TAV_OK : TAV_E_BUFFER_TOO_SMALL) && needed == bytes,
                          "tav_textfile_bytes size query gives " + Num(code));
                   std::vector<char> buffer(bytes + 8, '\x5A');
                   if (bytes > 0) {
                       code = tav_textfile_bytes(c.file, buffer.data(), bytes - 1, &needed);
                       Expect(code == TAV_E_BUFFER_TOO_SMALL && needed == bytes &&
                                  std::all_of(buffer.begin(), buffer.end(), [](char b) { return b == '\x5A'; }),
                              "tav_textfile_bytes one byte short");
                   }
                   for (size_t capacity : {bytes, SIZE_MAX}) {
                       code = tav_textfile_bytes(c.file, buffer.data(), capacity, nullptr);
                       Expect(code == TAV_OK && (bytes == 0 || SameBytes(buffer.data(), file.GetBuffer(), bytes)) &&
                                  std::all_of(buffer.begin() + static_cast<ptrdiff_t>(bytes), buffer.end(),
                                              [](char b) { return b == '\x5A'; }),
                              "tav_textfile_bytes: the bytes differ from the C++ buffer");
                   }
                   Expect(tav_textfile_bytes(c.file, nullptr, 1, nullptr) == TAV_E_NULL_ARGUMENT &&
                              tav_textfile_read(c.file, nullptr) == TAV_E_NULL_ARGUMENT &&
                              tav_textfile_read(nullptr, path.c_str()) == TAV_E_NULL_HANDLE &&
                              tav_textfile_size(nullptr, &size) == TAV_E_NULL_HANDLE &&
                              tav_textfile_bytes(nullptr, nullptr, 0, nullptr) == TAV_E_NULL_HANDLE,
                          "null handles and pointers");
                   return std::string("r") + Num(read) + " s" + Num(bytes > 2 ? 3 : bytes);
               },
               true,
               200});
}

// ---- version resources of damaged copies ------------------------------------------------------------------

struct VerInfoHandle {
    tav_verinfo info = tav_verinfo_create();
    ~VerInfoHandle() { tav_verinfo_destroy(info); }
};

void CheckVersionRecord(const char* what, int32_t got, const tav_version_number& version, int expected,
                        CVerNum& number) {
    Expect(got == (expected ? 1 : 0) && version.major == number.GetMajor() && version.minor == number.GetMinor() &&
               version.fix == number.GetFix() && version.build == number.GetBuild() &&
               version.valid == (number.IsValid() ? 1 : 0),
           std::string(what) + " gives " + Num(got) + " and a record that differs from the C++ number");
}

TEST(Fuzz, CapiVerInfo) {
    // The file tests' fixture library, its version resource damaged in copies (as the VerInfo driver does).
    const auto damage = std::make_shared<DamagedVersionResource>();
    ASSERT_TRUE(damage->found()) << "verfix_translation.dll (built with the file tests) and its version resource";
    auto dir = std::make_shared<tavtest::TempDir>(L"fuzzcapiver");
    auto turn = std::make_shared<uint64_t>(0);
    RunDriver(
        {"capi-verinfo", {L""}, nullptr, [=](const Input& input) {
             Rng rng(input.choices);
             const std::string bytes = damage->Copy(rng);
             const std::wstring path = (*dir) / (L"copy" + std::to_wstring(++*turn % 4) + L".dll");
             tavtest::WriteFileBytes(path, bytes);

             CVerInfo info;
             const int loaded = info.Init(path.c_str());
             VerInfoHandle c;
             const int32_t got = tav_verinfo_init(c.info, path.c_str());
             Expect(got == loaded, "tav_verinfo_init gives " + Num(got) + ", the C++ " + Num(loaded));
             int fields = 0;
             for (int32_t field : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, Number(rng)}) {
                 const bool known = field >= 0 && field <= 14;
                 CStdStr<wchar_t> value;
                 const int found = known ? info.GetField(static_cast<VERFIELD>(field), value) : 0;
                 fields += found != 0;
                 CheckText(
                     "tav_verinfo_field(" + Num(field) + ")",
                     [&](wchar_t* b, size_t cap, size_t* w) { return tav_verinfo_field(c.info, field, b, cap, w); },
                     known ? (found ? 1 : 0) : TAV_E_UNKNOWN_ENUM, found ? value : CStdStr<wchar_t>());
             }
             CVerNum number;
             tav_version_number version;
             int expected = info.GetFileVersionNum(&number);
             CheckVersionRecord("tav_verinfo_file_version", tav_verinfo_file_version(c.info, &version), version,
                                expected, number);
             CVerNum product;
             expected = info.GetProductVersionNum(&product);
             CheckVersionRecord("tav_verinfo_product_version", tav_verinfo_product_version(c.info, &version), version,
                                expected, product);
             CheckText(
                 "tav_verinfo_language_code",
                 [&](wchar_t* b, size_t cap, size_t* w) { return tav_verinfo_language_code(c.info, b, cap, w); },
                 TAV_OK, info.GetLanguageCode());
             CheckText(
                 "tav_verinfo_code_page",
                 [&](wchar_t* b, size_t cap, size_t* w) { return tav_verinfo_code_page(c.info, b, cap, w); }, TAV_OK,
                 info.GetKbdCodePage());
             CheckText(
                 "tav_verinfo_file_name",
                 [&](wchar_t* b, size_t cap, size_t* w) { return tav_verinfo_file_name(c.info, b, cap, w); }, TAV_OK,
                 info.GetFileName());
             Expect(tav_verinfo_init(nullptr, path.c_str()) == TAV_E_NULL_HANDLE &&
                        tav_verinfo_init(c.info, nullptr) == TAV_E_NULL_ARGUMENT &&
                        tav_verinfo_field(nullptr, 0, nullptr, 0, nullptr) == TAV_E_NULL_HANDLE &&
                        tav_verinfo_file_version(c.info, nullptr) == TAV_E_NULL_ARGUMENT,
                    "null handles and pointers");
             return std::string("i") + Num(loaded != 0) + " f" + Num(fields);
         }});
}

}  // namespace
}  // namespace fuzz
