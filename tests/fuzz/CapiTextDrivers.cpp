// Drivers for the C interface over text alone: the functions that take text or numbers from a person, driven
// with hostile input. Each answer must equal the C++ interface's for the same input (text and code alike), and
// every text output must keep the buffer protocol of the C headers: the size query, a buffer one unit short
// (nothing written), the exact size, a capacity far larger than the answer, null buffers and null `needed`.
// Numbers outside an enumeration, and integer extremes, give the documented codes. Strings, the script
// language (parsed only: nothing here types, posts, launches or shows anything), paths, command lines,
// version numbers and the support query.
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

// ---- strings, enumerations and the log level names -----------------------------------------------------

void CheckEnumerations(Rng& rng) {
    const int32_t n = Number(rng);
    const bool level = n >= 0 && n <= 7;
    CheckText(
        "tav_log_level_name(" + Num(n) + ")",
        [n](wchar_t* b, size_t c, size_t* w) { return tav_log_level_name(n, b, c, w); },
        level ? TAV_OK : TAV_E_UNKNOWN_ENUM, level ? Text(VelmLog::ToString(static_cast<VelmLogLevel>(n))) : Text());
    if (!level) {  // valid levels would change the log for the rest of the run
        Expect(tav_log_set_reporting_level(n) == TAV_E_UNKNOWN_ENUM, "tav_log_set_reporting_level(" + Num(n) + ")");
        Expect(tav_log_write(n, L"f", n, L"g", L"m") == TAV_E_UNKNOWN_ENUM, "tav_log_write(" + Num(n) + ")");
    }
    if (n != TAV_LOG_TO_STDERR && n != TAV_LOG_TO_NONE)
        Expect(tav_log_set_output(n, nullptr) == (n == TAV_LOG_TO_FILE ? TAV_E_NULL_ARGUMENT : TAV_E_UNKNOWN_ENUM),
               "tav_log_set_output(" + Num(n) + ", null)");

    const bool field = n >= 0 && n <= 14;
    CStdStr<wchar_t> name;
    if (field)
        CVerInfo::GetFieldName(static_cast<VERFIELD>(n), name);
    CheckText(
        "tav_verinfo_field_name(" + Num(n) + ")",
        [n](wchar_t* b, size_t c, size_t* w) { return tav_verinfo_field_name(n, b, c, w); },
        field ? TAV_OK : TAV_E_UNKNOWN_ENUM, name);

    const bool question = n >= 0 && n <= 6;
    int32_t answer = tav_os_ask(n);
    if (question) {
        const OSInfo os;
        const bool answers[] = {os.useVxdDriver(),     os.useSysDriver(),         os.distinguishesLeftRightModifiers(),
                                os.isUSBSupported(),   os.isBluetoothSupported(), os.is802_11bSupported(),
                                os.IsUnderlying64Bit()};
        Expect(answer == (answers[n] ? 1 : 0), "tav_os_ask(" + Num(n) + ") gives " + Num(answer));
    } else {
        Expect(answer == TAV_E_UNKNOWN_ENUM, "tav_os_ask(" + Num(n) + ") gives " + Num(answer));
    }
}

TEST(Fuzz, CapiStrings) {
    auto quiet = std::make_shared<QuietLog>();
    std::vector<Text> seeds = {L"",         L"   ",      L"aaa bbb ccc", L"a\r\nb\n\rc  d", L"C:\\dir\\",
                               L"\\",       L"ERROR",    L"WARNING",     L"DEBUG4",         L"INFO   ",
                               L"C:\\a\\b", L"{ENTER}+", L"abc~%^()"};
    RunDriver(
        {"capi-strings", seeds,
         [](Rng& rng) {
             Text text;
             for (uint32_t n = rng.Below(30); n > 0; --n)
                 text += rng.OneIn(3) ? Text(1, L" \r\n\\"[rng.Below(4)]) : Text(1 + rng.Below(12), L'w');
             return text;
         },
         [quiet](const Input& input) {
             Rng rng(input.choices);
             const Text& text = input.text;
             const wchar_t* in = text.c_str();

             const int32_t width = Number(rng);
             const auto pieces = StringCut(CStdStr<wchar_t>(text), width);
             CheckText(
                 "tav_string_cut(width " + Num(width) + ")",
                 [&](wchar_t* b, size_t c, size_t* w) { return tav_string_cut(in, width, b, c, w); },
                 static_cast<int32_t>(pieces.size()), Joined(pieces));

             // Lengths far beyond the text give the text itself; the C++ call is capped so that it does not
             // grow a buffer of gigabytes for the comparison.
             const int32_t length = rng.OneIn(2) ? Number(rng) : static_cast<int32_t>(rng.Below(40));
             CString cut(in);
             const long long cap = static_cast<long long>(text.size()) + 64;
             SetStringLength(cut, static_cast<int>(length > cap ? cap : length));
             const Text cutText = cut.GetString();
             CheckText(
                 "tav_string_set_length(" + Num(length) + ")",
                 [&](wchar_t* b, size_t c, size_t* w) { return tav_string_set_length(in, length, b, c, w); }, TAV_OK,
                 cutText.substr(0, cutText.find(L'\0')));

             CStdStr<wchar_t> ensured(text), stripped(text);
             EnsureTrailingBackslash(ensured);
             StripTrailingBackslash(stripped);
             CheckText(
                 "tav_string_ensure_trailing_backslash",
                 [&](wchar_t* b, size_t c, size_t* w) { return tav_string_ensure_trailing_backslash(in, b, c, w); },
                 TAV_OK, ensured);
             CheckText(
                 "tav_string_strip_trailing_backslash",
                 [&](wchar_t* b, size_t c, size_t* w) { return tav_string_strip_trailing_backslash(in, b, c, w); },
                 TAV_OK, stripped);

             const int32_t level = tav_log_level_from_name(in);
             Expect(level == static_cast<int32_t>(VelmLog().FromString(in)),
                    "tav_log_level_from_name gives " + Num(level));

             CheckEnumerations(rng);

             size_t needed = kUnset;
             Expect(tav_string_cut(nullptr, width, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                        tav_string_set_length(nullptr, length, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                        tav_log_level_from_name(nullptr) == TAV_E_NULL_ARGUMENT && needed == kUnset,
                    "null text");
             return std::string("p") + Num(pieces.size() > 5 ? 5 : pieces.size()) + " l" + Num(level) + " s" +
                    Num(stripped.size() != text.size());
         },
         true});
}

// ---- the script language, parsed only -------------------------------------------------------------------

const std::vector<Text> kScriptSeeds = {
    L"",    L"abc",      L"+(ab)c",   L"{ENTER 3}",     L"{ENTER 0}", L"{ENTR}",    L"{ENTER",   L"(ab",
    L"{}}", L"{{}",      L"^c",       L"{QUEUESYNC 5}", L"[+a]",      L"{a 6144}",  L"{a 6145}", L"{a -1}",
    L"~~~", L"{F1 2 x}", L"^(%(*a))", L"{BREAK}",       L"{ENTER}",   L"QUEUESYNC", L"f5",       L"{PostCommand 1f4}"};

TEST(Fuzz, CapiKeys) {
    RunDriver({"capi-keys", kScriptSeeds, nullptr, [](const Input& input) {
                   const wchar_t* script = input.text.c_str();
                   const int32_t result = tav::keys::ParseKeyScript(script);
                   const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
                   std::vector<uint16_t> expected;
                   for (int i = 0; i < queue.Count(); ++i)
                       expected.push_back(queue.At(i));
                   const size_t count = expected.size();

                   // The entries: counted in entries, no terminator, nothing written when they do not fit.
                   size_t needed = kUnset;
                   int32_t got = tav_keys_parse(script, nullptr, 0, &needed);
                   Expect(got == (count == 0 ? result : TAV_E_BUFFER_TOO_SMALL),
                          "tav_keys_parse size query gives " + Num(got) + " for " + Num(count));
                   Expect(needed == count, "tav_keys_parse needs " + Num(static_cast<long long>(needed)) + " for " +
                                               Num(count) + " entries");
                   std::vector<uint16_t> entries(count + kGuardUnits, 0xFDFD);
                   if (count > 0) {
                       got = tav_keys_parse(script, entries.data(), count - 1, &needed);
                       Expect(got == TAV_E_BUFFER_TOO_SMALL, "tav_keys_parse one entry short gives " + Num(got));
                       Expect(std::all_of(entries.begin(), entries.end(), [](uint16_t e) { return e == 0xFDFD; }),
                              "tav_keys_parse one entry short: written");
                   }
                   for (size_t capacity : {count, count + 1, SIZE_MAX, SIZE_MAX / 2, SIZE_MAX / 2 + 1}) {
                       std::fill(entries.begin(), entries.end(), 0xFDFD);
                       needed = kUnset;
                       got = tav_keys_parse(script, entries.data(), capacity, &needed);
                       Expect(got == result, "tav_keys_parse(capacity " + Num(static_cast<long long>(capacity)) +
                                                 ") gives " + Num(got) + ", the C++ parse " + Num(result));
                       Expect(needed == count && std::equal(expected.begin(), expected.end(), entries.begin()),
                              "tav_keys_parse: the entries differ from the C++ queue");
                       Expect(std::all_of(entries.begin() + static_cast<ptrdiff_t>(count), entries.end(),
                                          [](uint16_t e) { return e == 0xFDFD; }),
                              "tav_keys_parse: written beyond the entries");
                   }
                   Expect(tav_keys_parse(script, nullptr, 1, &needed) == TAV_E_NULL_ARGUMENT,
                          "tav_keys_parse with a null buffer and a capacity");
                   Expect(tav_keys_parse(nullptr, nullptr, 0, nullptr) == TAV_E_NULL_ARGUMENT, "null script");

                   CString escaped(script);
                   SendKeysRemoveSpecialChars(escaped);
                   CheckText(
                       "tav_keys_escape",
                       [&](wchar_t* b, size_t c, size_t* w) { return tav_keys_escape(script, b, c, w); }, TAV_OK,
                       escaped.GetString());

                   const int32_t code = tav_keys_lookup_name(script);
                   Expect(code == tav::keys::LookupKeyName(script), "tav_keys_lookup_name gives " + Num(code));
                   return std::string("r") + Num(result) + " n" + Num(count > 20 ? 20 : count) + " k" + Num(code != 0);
               }});
}

// ---- paths ------------------------------------------------------------------------------------------------

CStdStr<wchar_t> Of(const CFileName& name) { return CStdStr<wchar_t>(name.c_str()); }

// A CFileName static stripper through the C interface: its 1 or 0 (or TAV_E_OUT_OF_RANGE) and the text.
template <typename Strip, typename CCall>
void CheckStripper(const char* what, const Text& text, Strip strip, CCall call) {
    CStdStr<wchar_t> s(text);
    int32_t code;
    try {
        code = strip(s) ? 1 : 0;
    } catch (const std::out_of_range&) {
        code = TAV_E_OUT_OF_RANGE;
    }
    CheckText(
        what, [&](wchar_t* b, size_t c, size_t* w) { return call(text.c_str(), b, c, w); }, code, s);
}

const std::vector<Text> kPathSeeds = {L"C:\\dir\\sub\\file.txt",
                                      L"D:\\dir\\sub\\",
                                      L"\\\\srv\\share\\x.doc",
                                      L"file.txt",
                                      L"C:",
                                      L"C:file",
                                      L"a/b/c.d",
                                      L"..\\x",
                                      L"",
                                      L"\\",
                                      L"abcd",
                                      L"x.tx"};

TEST(Fuzz, CapiPaths) {
    RunDriver({"capi-paths", kPathSeeds, PathText, [](const Input& input) {
                   Rng rng(input.choices);
                   const Text& path = input.text;
                   const wchar_t* p = path.c_str();
                   const Text file = rng.OneIn(3) ? PathText(rng) : Text(L"a");
                   const Text ext = rng.OneIn(3) ? PathText(rng) : Text(L"txt");
                   const wchar_t* f = file.c_str();
                   const wchar_t* e = ext.c_str();
                   CFileName name(p);

                   auto part = [&](const char* what, auto function, const CStdStr<wchar_t>& expected) {
                       CheckText(
                           what, [&](wchar_t* b, size_t c, size_t* w) { return function(p, b, c, w); }, TAV_OK,
                           expected);
                   };
                   part("tav_path_drive", tav_path_drive, name.GetDrive());
                   part("tav_path_dir_no_drive", tav_path_dir_no_drive, name.GetPathNoDrive());
                   part("tav_path_file", tav_path_file, name.GetFile());
                   part("tav_path_extension", tav_path_extension, name.GetExtension());
                   part("tav_path_dir", tav_path_dir, name.GetPath());
                   CStdStr<wchar_t> dir, whole;
                   name.Split(dir, whole);
                   CheckTwo(
                       "tav_path_split",
                       [&](wchar_t* b1, size_t c1, size_t* w1, wchar_t* b2, size_t c2, size_t* w2) {
                           return tav_path_split(p, b1, c1, w1, b2, c2, w2);
                       },
                       TAV_OK, dir, whole);

                   CheckText(
                       "tav_path_compose",
                       [&](wchar_t* b, size_t c, size_t* w) { return tav_path_compose(p, f, e, b, c, w); }, TAV_OK,
                       Of(CFileName(p, f, e)));
                   CheckText(
                       "tav_path_from_path_and_file",
                       [&](wchar_t* b, size_t c, size_t* w) { return tav_path_from_path_and_file(p, f, e, b, c, w); },
                       TAV_OK, Of(CFileName::FromPathAndFile(p, f, e)));
                   CFileName renamed(p);
                   renamed.SetFilename(f, e);
                   CheckText(
                       "tav_path_set_filename",
                       [&](wchar_t* b, size_t c, size_t* w) { return tav_path_set_filename(p, f, e, b, c, w); }, TAV_OK,
                       Of(renamed));
                   CFileName appended(p);
                   appended.AppendDirectory(f);
                   CheckText(
                       "tav_path_append_directory",
                       [&](wchar_t* b, size_t c, size_t* w) { return tav_path_append_directory(p, f, b, c, w); },
                       TAV_OK, Of(appended));
                   CheckText(
                       "tav_path_beside_exe",
                       [&](wchar_t* b, size_t c, size_t* w) { return tav_path_beside_exe(f, e, b, c, w); }, TAV_OK,
                       Of(CFileName(CFileName::ExeInstance, f, e)));

                   CheckStripper("tav_path_strip_extension", path, CFileName::StripExtension, tav_path_strip_extension);
                   CheckStripper("tav_path_strip_trailing_separator", path, CFileName::StripTrailingSeparator,
                                 tav_path_strip_trailing_separator);
                   CheckStripper("tav_path_strip_path", path, CFileName::StripPath, tav_path_strip_path);

                   const int32_t exists = tav_path_file_exists(p), pathExists = tav_path_exists(p);
                   Expect(exists == (CFileName::FileExists(p) ? 1 : 0), "tav_path_file_exists gives " + Num(exists));
                   Expect(pathExists == (name.Exists() ? 1 : 0), "tav_path_exists gives " + Num(pathExists));

                   size_t needed = kUnset;
                   Expect(tav_path_drive(nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                              tav_path_compose(p, nullptr, e, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                              tav_path_compose(p, f, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                              tav_path_append_directory(nullptr, f, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                              tav_path_file_exists(nullptr) == TAV_E_NULL_ARGUMENT && needed == kUnset,
                          "null texts");
                   return std::string(name.GetDrive().empty() ? "nodrive" : "drive") +
                          (name.GetFile().empty() ? " nofile" : " file") + " e" + Num(exists) + Num(pathExists);
               }});
}

// ---- command lines ----------------------------------------------------------------------------------------

Text CommandLine(Rng& rng) {
    const std::vector<Text> pieces = {L"\"",       L"C:\\windows\\notepad.exe",
                                      L"x.EXE",    L"x.Exe",
                                      L".exe",     L" ",
                                      L"  ",       L"/s",
                                      L"-x",       L"C:\\a b\\x.exe",
                                      L"ab",       L"abcd",
                                      L"%WINDIR%", L"%NOPE%",
                                      L"\\",       L"notepad",
                                      L".com",     L"\x00E9",
                                      L"\xD800"};
    Text line;
    for (uint32_t n = rng.Below(8); n > 0; --n)
        line += rng.Pick(pieces);
    return line;
}

TEST(Fuzz, CapiCommandLines) {
    std::vector<Text> seeds = {L"\"C:\\a b\\x.exe\" arg",      L"C:\\tools\\x.exe /s", L"abc", L"ab c.exe", L"",
                               L"%WINDIR%\\notepad.exe a.txt", L"notepad arg",         L"\"",  L"a\"b\" c", L"x.exe"};
    RunDriver(
        {"capi-cmdline", seeds, CommandLine,
         [](const Input& input) {
             Rng rng(input.choices);
             const wchar_t* line = input.text.c_str();

             CStdStr<wchar_t> program, args;
             const int32_t split = ExtractProgram(CStdStr<wchar_t>(input.text), program, args) ? 1 : 0;
             CheckTwo(
                 "tav_launch_extract_program",
                 [&](wchar_t* b1, size_t c1, size_t* w1, wchar_t* b2, size_t c2, size_t* w2) {
                     return tav_launch_extract_program(line, b1, c1, w1, b2, c2, w2);
                 },
                 split, program, args);

             CStdStr<wchar_t> stripped(input.text);
             int32_t code = TAV_OK;
             try {
                 stripTrailingArgument(stripped);
             } catch (const std::out_of_range&) {
                 code = TAV_E_OUT_OF_RANGE;
             }
             CheckText(
                 "tav_launch_strip_trailing_argument",
                 [&](wchar_t* b, size_t c, size_t* w) { return tav_launch_strip_trailing_argument(line, b, c, w); },
                 code, stripped);

             const int32_t strip = Number(rng);
             int32_t valid;
             try {
                 valid = isValidFile(CStdStr<wchar_t>(input.text), strip != 0) ? 1 : 0;
             } catch (const std::out_of_range&) {
                 valid = TAV_E_OUT_OF_RANGE;
             }
             const int32_t got = tav_launch_is_valid_file(line, strip);
             Expect(got == valid,
                    "tav_launch_is_valid_file(" + Num(strip) + ") gives " + Num(got) + ", the C++ " + Num(valid));
             Expect(tav_launch_is_valid_file(nullptr, strip) == TAV_E_NULL_ARGUMENT &&
                        tav_launch_strip_trailing_argument(nullptr, nullptr, 0, nullptr) == TAV_E_NULL_ARGUMENT &&
                        tav_launch_extract_program(nullptr, nullptr, 0, nullptr, nullptr, 0, nullptr) ==
                            TAV_E_NULL_ARGUMENT,
                    "null lines");
             return std::string("x") + Num(split) + " s" + Num(code) + " v" + Num(valid);
         },
         true, 512});
}

// ---- version numbers --------------------------------------------------------------------------------------

tav_version_number RandomVersion(Rng& rng) {
    auto part = [&rng]() -> uint16_t {
        return rng.OneIn(3) ? static_cast<uint16_t>(rng.Below(0x10000))
                            : std::vector<uint16_t>{0, 1, 2, 0x7FFF, 0x8000, 0xFFFF}[rng.Below(6)];
    };
    tav_version_number version;
    version.major = part(), version.minor = part(), version.fix = part(), version.build = part();
    version.valid = Number(rng);  // the flag is not read: only the parts are compared
    return version;
}

TEST(Fuzz, CapiVersions) {
    std::vector<Text> seeds = {L"5.10.1234", L"", L"x", L"1..2", L"70000.1", L"1.2.3.4.5", L".1.", L"2.0.0.0"};
    RunDriver({"capi-version", seeds, VersionText, [](const Input& input) {
                   Rng rng(input.choices);
                   const CVerNum number(input.text.c_str());
                   tav_version_number parsed;
                   std::memset(&parsed, 0xCD, sizeof parsed);
                   int32_t got = tav_version_parse(input.text.c_str(), &parsed);
                   Expect(got == TAV_OK, "tav_version_parse gives " + Num(got));
                   Expect(parsed.major == number.GetMajor() && parsed.minor == number.GetMinor() &&
                              parsed.fix == number.GetFix() && parsed.build == number.GetBuild() &&
                              parsed.valid == (number.IsValid() ? 1 : 0),
                          "tav_version_parse: the record differs from CVerNum's");

                   const tav_version_number other = RandomVersion(rng);
                   const tav_version_number& a = rng.OneIn(2) ? parsed : other;
                   const tav_version_number b = rng.OneIn(3) ? a : RandomVersion(rng);
                   const int32_t there = tav_version_compare(&a, &b), back = tav_version_compare(&b, &a);
                   CVerNum numberA(a.major, a.minor, a.fix, a.build), numberB(b.major, b.minor, b.fix, b.build);
                   Expect(there == numberA.Compare(numberB) && back == numberB.Compare(numberA),
                          "tav_version_compare gives " + Num(there) + " and " + Num(back) + ", CVerNum::Compare " +
                              Num(numberA.Compare(numberB)) + " and " + Num(numberB.Compare(numberA)));
                   Expect(tav_version_parse(nullptr, &parsed) == TAV_E_NULL_ARGUMENT &&
                              tav_version_parse(input.text.c_str(), nullptr) == TAV_E_NULL_ARGUMENT &&
                              tav_version_compare(nullptr, &b) == TAV_E_NULL_ARGUMENT &&
                              tav_version_compare(&a, nullptr) == TAV_E_NULL_ARGUMENT,
                          "null records");
                   return std::string("c") + Num(there) + Num(back) + " v" + Num(parsed.valid);
               }});
}

// ---- the support query --------------------------------------------------------------------------------------

// The C trigger's callbacks and the C++ trigger, answering the same device.
struct Device {
    bool has;
    int32_t kind;
    uint32_t number;
};

class FixedTrigger : public ITrigger, public ITriggerDevice {
public:
    explicit FixedTrigger(const Device& device) : device_(device) {}
    ITriggerDevice* GetCurrentDevice() override { return device_.has ? this : nullptr; }
    int GetDeviceKind() const override { return device_.kind; }
    unsigned int GetDeviceNumber() const override { return device_.number; }

private:
    Device device_;
};

int32_t HasDevice(void* context) { return static_cast<Device*>(context)->has ? 1 : 0; }
int32_t DeviceKind(void* context) { return static_cast<Device*>(context)->kind; }
uint32_t DeviceNumber(void* context) { return static_cast<Device*>(context)->number; }

TEST(Fuzz, CapiSupport) {
    const SupportAddresses addresses = MakeSupportAddresses();
    RunDriver(
        {"capi-support", addresses.seeds, [addresses](Rng& rng) { return addresses.Generate(rng); },
         [](const Input& input) {
             Rng rng(input.choices);
             const wchar_t* address = input.text.c_str();
             const CStdStr<wchar_t> query = CSWandDeviceInfo().search(CStdStr<wchar_t>(input.text));
             CheckText(
                 "tav_support_query",
                 [&](wchar_t* b, size_t c, size_t* w) { return tav_support_query(address, b, c, w); }, TAV_OK, query);

             // No trigger; a trigger without the has_device callback (no device in use); every callback.
             const unsigned form = rng.Below(3);
             Device device = {form == 2 && !rng.OneIn(4), Number(rng),
                              rng.OneIn(2) ? static_cast<uint32_t>(rng.Next()) : static_cast<uint32_t>(Number(rng))};
             FixedTrigger fixed(device);
             const CStdStr<wchar_t> expected =
                 SWAndDeviceInfoImpl(form == 0 ? nullptr : &fixed).search(CStdStr<wchar_t>(input.text));
             tav_trigger trigger = {&device, form == 1 ? nullptr : &HasDevice, &DeviceKind, &DeviceNumber};
             CheckText(
                 "tav_support_query_with_trigger(form " + Num(form) + ", kind " + Num(device.kind) + ")",
                 [&](wchar_t* b, size_t c, size_t* w) {
                     return tav_support_query_with_trigger(address, form == 0 ? nullptr : &trigger, b, c, w);
                 },
                 TAV_OK, expected);
             Expect(tav_support_query(nullptr, nullptr, 0, nullptr) == TAV_E_NULL_ARGUMENT &&
                        tav_support_query_with_trigger(nullptr, &trigger, nullptr, 0, nullptr) == TAV_E_NULL_ARGUMENT,
                    "null addresses");
             return std::string(query.empty() ? "other" : "support") + " f" + Num(form);
         },
         true});
}

}  // namespace
}  // namespace fuzz
