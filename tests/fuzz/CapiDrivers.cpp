// Drivers for the C interface: every function of capi/TavUtilC.h that takes text or numbers from a person, a
// file or the registry, driven with hostile input. Each answer must equal the C++ interface's for the same
// input (text and code alike), and every text output must keep the buffer protocol of the header: the size
// query, a buffer one unit short (nothing written), the exact size, a capacity far larger than the answer,
// null buffers and null `needed`. Numbers outside an enumeration, and integer extremes, give the documented
// codes. The drivers cover strings, the script language (parsed only: nothing here types, posts, launches or
// shows anything), paths, command lines, version numbers, the support query, registry values written raw into
// a scratch key, key paths and the lookups of installed software by name, whole files and the version
// resources of damaged copies of a real library.
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
             return "p" + Num(pieces.size() > 5 ? 5 : pieces.size()) + " l" + Num(level) + " s" +
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
                   return "r" + Num(result) + " n" + Num(count > 20 ? 20 : count) + " k" + Num(code != 0);
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
             return "x" + Num(split) + " s" + Num(code) + " v" + Num(valid);
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
                   return "c" + Num(there) + Num(back) + " v" + Num(parsed.valid);
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

// ---- registry values ----------------------------------------------------------------------------------------

// The C interface's objects, released at the end of each input.
struct RegistryHandle {
    tav_registry key = tav_registry_create();
    ~RegistryHandle() { tav_registry_destroy(key); }
};
struct SettingsHandle {
    tav_settings settings = tav_settings_create();
    ~SettingsHandle() { tav_settings_destroy(settings); }
};

bool SameBytes(const void* a, const void* b, size_t size) { return std::memcmp(a, b, size) == 0; }

TEST(Fuzz, CapiRegistry) {
    std::wstring keyPath;
    const std::shared_ptr<HKEY__> key = ScratchKey(L"Capi", &keyPath);
    ASSERT_TRUE(key != nullptr);
    HKEY sub = nullptr;  // one subkey, so that an index can name something
    ASSERT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(key.get(), L"sub\x00E9", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &sub, nullptr));
    RegCloseKey(sub);
    RunDriver(
        {"capi-registry",
         {L"", L"value", L"Name With Blanks", L"\x00E9", L"a\\b"},
         nullptr,
         [key, keyPath](const Input& input) {
             Rng rng(input.choices);
             const RawValue value = RandomRawValue(rng);
             const DWORD type = value.type;
             const size_t length = value.data.size();
             const std::vector<BYTE>& data = value.data;
             const Text& name = input.text;
             const wchar_t* n = name.c_str();
             const LONG written = RegSetValueExW(key.get(), n, 0, type, data.data(), static_cast<DWORD>(length));

             // One key, read only.
             CRegistry registry(HKEY_CURRENT_USER, keyPath.c_str(), true);
             RegistryHandle c;
             Expect(tav_registry_open(c.key, TAV_HKEY_CURRENT_USER, keyPath.c_str(), 1) == 0, "tav_registry_open");
             CStdStr<wchar_t> text;
             const long status = registry.ReadStringValue(n, text);
             CheckText(
                 "tav_registry_read_string",
                 [&](wchar_t* b, size_t cap, size_t* w) { return tav_registry_read_string(c.key, n, b, cap, w); },
                 static_cast<int32_t>(status), text);
             unsigned long cppType = 0, cppSize = 0;
             const long cppQuery = registry.QueryValueEx(n, &cppType, nullptr, &cppSize);
             uint32_t cType = 0, cSize = 0;
             const int32_t cQuery = tav_registry_query_value(c.key, n, &cType, nullptr, &cSize);
             Expect(cQuery == cppQuery && cType == cppType && cSize == cppSize,
                    "tav_registry_query_value gives " + Num(cQuery) + " type " + Num(cType) + " size " + Num(cSize));

             // The typed settings store, on the same key.
             CRegistryClass settings;
             settings.SetRootKey(HKEY_CURRENT_USER);
             settings.SetKey(CString(keyPath.c_str()), 0);
             SettingsHandle s;
             tav_settings_set_root(s.settings, TAV_HKEY_CURRENT_USER);
             tav_settings_set_key(s.settings, keyPath.c_str(), 0);
             const CString valueName(n);
             const Text def = rng.OneIn(4) ? Text(L"default") : Text();
             CheckText(
                 "tav_settings_read_string",
                 [&](wchar_t* b, size_t cap, size_t* w) {
                     return tav_settings_read_string(s.settings, n, def.c_str(), b, cap, w);
                 },
                 TAV_OK, settings.ReadString(valueName, CString(def.c_str())).GetString());

             const uint32_t dwordDefault = static_cast<uint32_t>(Number(rng));
             uint32_t dword = 0;
             int32_t integer = 0, flag = 0;
             double real = 0;
             Expect(tav_settings_read_dword(s.settings, n, dwordDefault, &dword) == TAV_OK &&
                        dword == settings.ReadDword(valueName, dwordDefault),
                    "tav_settings_read_dword");
             Expect(tav_settings_read_int(s.settings, n, static_cast<int32_t>(dwordDefault), &integer) == TAV_OK &&
                        integer == settings.ReadInt(valueName, static_cast<int>(dwordDefault)),
                    "tav_settings_read_int");
             Expect(tav_settings_read_bool(s.settings, n, static_cast<int32_t>(dwordDefault), &flag) == TAV_OK &&
                        flag == settings.ReadBool(valueName, static_cast<int>(dwordDefault)),
                    "tav_settings_read_bool");
             Expect(tav_settings_read_color(s.settings, n, dwordDefault, &dword) == TAV_OK &&
                        dword == settings.ReadColor(valueName, dwordDefault),
                    "tav_settings_read_color");
             const double realDefault = static_cast<double>(static_cast<int32_t>(dwordDefault)) / 3;
             const double cppReal = settings.ReadFloat(valueName, realDefault);
             Expect(tav_settings_read_float(s.settings, n, realDefault, &real) == TAV_OK &&
                        SameBytes(&real, &cppReal, sizeof real),
                    "tav_settings_read_float");
             tav_date_time dateDefault = {realDefault, static_cast<int32_t>(rng.Below(4)) - 1, 0}, date;
             COleDateTime cppDefault;
             std::memcpy(static_cast<void*>(&cppDefault), &dateDefault, sizeof cppDefault);
             const COleDateTime cppDate = settings.ReadDateTime(valueName, cppDefault);
             Expect(tav_settings_read_date_time(s.settings, n, &dateDefault, &date) == TAV_OK &&
                        SameBytes(&date, &cppDate, sizeof date),
                    "tav_settings_read_date_time");

             const uint32_t binarySize = rng.Below(65);
             unsigned char cBinary[64] = {}, cppBinary[64] = {};
             const int32_t cRead = tav_settings_read_binary(s.settings, n, cBinary, binarySize);
             const int cppRead = settings.ReadBinary(valueName, cppBinary, binarySize);
             Expect(cRead == cppRead && SameBytes(cBinary, cppBinary, sizeof cBinary),
                    "tav_settings_read_binary(" + Num(binarySize) + ") gives " + Num(cRead));

             tav_rect rect = {1, 2, 3, 4};
             tav_point point = {5, 6};
             tav_size size = {7, 8};
             CRect cppRect(1, 2, 3, 4);
             CPoint cppPoint(5, 6);
             CSize cppSize2(7, 8);
             const int32_t shapes = tav_settings_read_rect(s.settings, n, &rect) * 100 +
                                    tav_settings_read_point(s.settings, n, &point) * 10 +
                                    tav_settings_read_size(s.settings, n, &size);
             const int cppShapes = settings.ReadRect(valueName, &cppRect) * 100 +
                                   settings.ReadPoint(valueName, &cppPoint) * 10 +
                                   settings.ReadSize(valueName, &cppSize2);
             Expect(shapes == cppShapes && SameBytes(&rect, &cppRect, sizeof rect) &&
                        SameBytes(&point, &cppPoint, sizeof point) && SameBytes(&size, &cppSize2, sizeof size),
                    "the geometry reads give " + Num(shapes) + ", the C++ " + Num(cppShapes));

             const int32_t exists = tav_settings_value_exists(s.settings, n);
             const int32_t dataSize = tav_settings_data_size(s.settings, n);
             const int32_t dataType = tav_settings_data_type(s.settings, n);
             Expect(exists == settings.ValueExists(valueName) && dataSize == settings.GetDataSize(valueName) &&
                        dataType == static_cast<int32_t>(settings.GetDataType(valueName)),
                    "exists, size or type differ: " + Num(exists) + " " + Num(dataSize) + " " + Num(dataType));

             const int32_t index = rng.OneIn(3) ? 0 : Number(rng);
             CString subkey;
             const int found = settings.GetSubKeyName(index, subkey);
             CheckText(
                 "tav_settings_subkey_name(" + Num(index) + ")",
                 [&](wchar_t* b, size_t cap, size_t* w) {
                     return tav_settings_subkey_name(s.settings, index, b, cap, w);
                 },
                 found, found ? Text(subkey.GetString()) : Text());

             size_t needed = kUnset;
             Expect(tav_registry_read_string(nullptr, n, nullptr, 0, &needed) == TAV_E_NULL_HANDLE &&
                        tav_registry_read_string(c.key, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                        tav_settings_read_string(nullptr, n, L"", nullptr, 0, &needed) == TAV_E_NULL_HANDLE &&
                        tav_settings_read_string(s.settings, n, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                        tav_settings_read_dword(s.settings, n, 0, nullptr) == TAV_E_NULL_ARGUMENT &&
                        tav_settings_read_binary(s.settings, n, nullptr, binarySize) == TAV_E_NULL_ARGUMENT &&
                        needed == kUnset,
                    "null handles and pointers");
             RegDeleteValueW(key.get(), n);
             return "w" + Num(written == ERROR_SUCCESS) + " t" + Num(type & 0xF) + " s" + Num(status) + " b" +
                    Num(cRead) + " r" + Num(shapes) + " k" + Num(found);
         },
         true,
         20000});
}

// ---- key paths and lookups by name ---------------------------------------------------------------------

// What the lookups by name can find: an App Paths entry, and a ProgID whose current version names a class with
// a local server, all with this process's id in their names. Their values are written raw (any type, any
// length) before each input that names them. Everything is deleted when the driver ends.
class LookupRegistrations {
public:
    LookupRegistrations()
        : pid_(std::to_wstring(GetCurrentProcessId())), app_(L"tavfuzz" + pid_), progId_(L"TavFuzz" + pid_ + L".App"),
          classId_(L"{7A5F0000-0000-4000-8000-" + Padded(pid_) + L"}"),
          appKey_(HKEY_LOCAL_MACHINE, AppKey(app_, L"exe")), curVer_(HKEY_CLASSES_ROOT, progId_ + L"\\CurVer"),
          version_(HKEY_CLASSES_ROOT, progId_ + L".1\\CLSID"), server_(HKEY_CLASSES_ROOT, ServerKey()) {
        ok_ = appKey_.ok() && curVer_.ok() && version_.ok() && server_.ok() && curVer_.Set(nullptr, progId_ + L".1") &&
              version_.Set(nullptr, classId_);
    }

    bool ok() const { return ok_; }
    const Text& app() const { return app_; }
    const Text& progId() const { return progId_; }
    // Whether `name` is the application's or the ProgID's (the registry compares names without case).
    bool Names(const Text& name) const {
        return CompareStringOrdinal(name.c_str(), -1, app_.c_str(), -1, TRUE) == CSTR_EQUAL ||
               CompareStringOrdinal(name.c_str(), -1, progId_.c_str(), -1, TRUE) == CSTR_EQUAL;
    }
    // The default values that the lookups read: the application's path and the class's server command.
    void Store(const RawValue& appPath, const RawValue& server) const {
        SetDefault(HKEY_LOCAL_MACHINE, AppKey(app_, L"exe"), appPath);
        SetDefault(HKEY_CLASSES_ROOT, ServerKey(), server);
    }
    // The App Paths key that FindApplicationPath opens for `app` and `ext`.
    static Text AppKey(const Text& app, const Text& ext) {
        return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\" + app + L"." + ext;
    }

private:
    static Text Padded(const Text& digits) { return Text(12 - std::min<size_t>(12, digits.size()), L'0') + digits; }
    Text ServerKey() const { return L"CLSID\\" + classId_ + L"\\LocalServer32"; }
    static void SetDefault(HKEY root, const Text& path, const RawValue& value) {
        RegSetKeyValueW(root, path.c_str(), nullptr, value.type, value.data.data(),
                        static_cast<DWORD>(value.data.size()));
    }

    Text pid_, app_, progId_, classId_;
    tavtest::RegistryFixture appKey_, curVer_, version_, server_;  // each removed with the keys it created
    bool ok_ = false;
};

// Whether root\path opens for reading in either registry view, as the library's read-only opens try them.
bool KeyOpens(HKEY root, const Text& path) {
    return tavtest::KeyExists(root, path) || tavtest::KeyExists(root, path, KEY_WOW64_32KEY);
}

Text KeyPathText(Rng& rng, const Text& app, const Text& progId) {
    const std::vector<Text> pieces = {
        L"a",    L"b",      L"\\",     L"\\\\", L"sub\x00E9",    L"Name With Blanks", L".", L"..", L"exe",
        L".exe", L"CurVer", L"CLSID",  L" ",    L"\x00C9",       L"\xD800",           L"*", L"?",  app,
        progId,  L".1",     L"%TEMP%", L"/",    Text(255, L'k'), Text(256, L'k')};
    Text path;
    for (uint32_t n = 1 + rng.Below(6); n > 0; --n)
        path += rng.Pick(pieces);
    return path;
}

// A lookup that found nothing answers 0 and an empty text: one exact call checks that. A lookup that found its
// text gets every step of the buffer protocol. Each step repeats the registry reads, and the protocol code is
// the same as for every other text output, so repeating it for every miss would only make the pass slower.
void CheckLookup(const std::string& what, const TextCall& call, bool found, const Text& text) {
    if (found) {
        CheckText(what, call, 1, text);
        return;
    }
    std::vector<wchar_t> buffer(1 + kGuardUnits, kGuard);
    size_t needed = kUnset;
    const int32_t got = call(buffer.data(), 1, &needed);
    Expect(got == 0 && needed == 1 && buffer[0] == 0 && Guarded(buffer, 1),
           what + ": a miss gives " + Num(got) + ", needed " + Num(static_cast<long long>(needed)));
}

// Under Wine 8 a ProgID that is not there costs the process two handles inside the platform: the library's
// read-only open tries the 32-bit view after the native one, and RegOpenKeyExW of HKEY_CLASSES_ROOT with
// KEY_WOW64_32KEY keeps one handle per call, found or not (measured: 1,000 calls, 1,000 more handles; none
// without the flag or on HKEY_LOCAL_MACHINE). The library closes every handle it is given. A long pass holds
// about three handles per input, and as they pile up the Wine server takes longer per input (its CPU time came
// to 1.5 times the driver's after 120,000 inputs, twice after 250,000): run the long pass in ranges of 100,000
// inputs, each in a fresh process.

// One answer of the lookups and key opens for an input: the C interface's against the C++ interface's, and the
// rules of their headers that need no second implementation.
struct KeyPathsDriver {
    std::shared_ptr<HKEY__> scratch;
    Text scratchPath;
    std::shared_ptr<LookupRegistrations> registered;

    // Keys below "made" are created by the input and deleted right after, so that the scratch key stays small.
    void DeleteMade() const { RegDeleteTreeW(scratch.get(), L"made"); }

    std::string Lookups(Rng& rng, const Text& text) const {
        // One lookup in four is for the registered name itself, so that answers that were found are checked too.
        const Text name = rng.OneIn(4) ? registered->app() : text;
        const Text ext = std::vector<Text>{L"exe", L"exe", L"", L"EXE", L"exe\\x", text}[rng.Below(6)];
        const Text progId = rng.OneIn(4) ? registered->progId() : text;
        const RawValue appPathValue = RandomRawValue(rng), serverValue = RandomRawValue(rng);
        if (registered->Names(name) || registered->Names(progId))  // only then does a lookup read them
            registered->Store(appPathValue, serverValue);
        const wchar_t* n = name.c_str();

        CStdStr<wchar_t> appPath(L"untouched");
        const bool app = FindApplicationPath(CStdStr<wchar_t>(name), appPath, CStdStr<wchar_t>(ext));
        // Found, or the path changed: only an existing key can do either (a missing key leaves the path as it was).
        const bool touched = appPath != L"untouched";
        Expect(!(app || touched) || KeyOpens(HKEY_LOCAL_MACHINE, LookupRegistrations::AppKey(name, ext)),
               "FindApplicationPath found \"" + Narrow(name) + "." + Narrow(ext) +
                   "\" or changed its path, and there is no such key");
        CheckLookup(
            "tav_software_application_path",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_software_application_path(n, ext.c_str(), b, c, w); },
            app, Text(appPath));

        CStdStr<wchar_t> server;
        const bool prog = FindMostRecentProgIdPath(CStdStr<wchar_t>(progId), server);
        Expect(!prog || KeyOpens(HKEY_CLASSES_ROOT, progId + L"\\CurVer"),
               "FindMostRecentProgIdPath found a server for a ProgID without CurVer");
        CheckLookup(
            "tav_software_progid_server",
            [&](wchar_t* b, size_t c, size_t* w) { return tav_software_progid_server(progId.c_str(), b, c, w); }, prog,
            Text(server));

        size_t needed = kUnset;
        Expect(tav_software_application_path(nullptr, L"exe", nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                   tav_software_application_path(n, nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT &&
                   tav_software_progid_server(nullptr, nullptr, 0, &needed) == TAV_E_NULL_ARGUMENT && needed == kUnset,
               "null names");
        return "a" + Num(app) + Num(touched) + " p" + Num(prog);
    }

    std::string Keys(Rng& rng, const Text& text) const {
        const bool below = !rng.OneIn(4);  // mostly below the scratch key, where the subkeys are
        const Text path = below ? scratchPath + L"\\" + text : text;
        const Text made = scratchPath + L"\\made\\" + text;

        long cppOpen;
        Text cppSubkeys;
        int32_t subkeyCount;
        {
            CRegistry cpp;
            cppOpen = cpp.OpenKey(HKEY_CURRENT_USER, path.c_str(), true);
            Expect((cppOpen == ERROR_SUCCESS) == (cpp.IsValid() == 1), "CRegistry::IsValid after an open");
            std::list<CStdStr<wchar_t>> names;
            for (const wchar_t* name = cpp.GetFirstSubkey(); name != nullptr; name = cpp.GetNextSubkey())
                names.emplace_back(name);
            cppSubkeys = Joined(names);
            subkeyCount = static_cast<int32_t>(names.size());
        }
        RegistryHandle c;
        Expect(tav_registry_open(c.key, TAV_HKEY_CURRENT_USER, path.c_str(), 1) == cppOpen &&
                   tav_registry_is_valid(c.key) == (cppOpen == ERROR_SUCCESS ? 1 : 0),
               "tav_registry_open (read-only) differs from the C++ open, " + Num(cppOpen));
        if (below)  // elsewhere the subkeys are other programs' and may change between the two reads
            CheckText(
                "tav_registry_subkeys",
                [&](wchar_t* b, size_t cap, size_t* w) { return tav_registry_subkeys(c.key, b, cap, w); }, subkeyCount,
                cppSubkeys);

        // One input in four creates its key (below "made", deleted after each creation), the rest only open.
        const int canCreate = rng.OneIn(4) ? 1 : 0;
        long cppMade = -1;
        if (canCreate) {
            {
                CRegistry cpp;
                cppMade = cpp.OpenKey(HKEY_CURRENT_USER, made.c_str(), false);
            }
            DeleteMade();
            RegistryHandle created;
            Expect(tav_registry_open(created.key, TAV_HKEY_CURRENT_USER, made.c_str(), 0) == cppMade,
                   "tav_registry_open (creating) differs from the C++ open, " + Num(cppMade));
            tav_registry_close(created.key);
            DeleteMade();
        }

        const Text settingsPath = canCreate ? made : path;
        CRegistryClass cpp;
        cpp.SetRootKey(HKEY_CURRENT_USER);
        const int cppSet = cpp.SetKey(CString(settingsPath.c_str()), canCreate);
        if (canCreate)
            DeleteMade();
        SettingsHandle s;
        tav_settings_set_root(s.settings, TAV_HKEY_CURRENT_USER);
        Expect(tav_settings_set_key(s.settings, settingsPath.c_str(), canCreate) == cppSet &&
                   tav_settings_path_is_valid(s.settings) == cpp.PathIsValid(),
               "tav_settings_set_key(" + Num(canCreate) + ") differs from the C++ SetKey, " + Num(cppSet));
        if (canCreate)
            DeleteMade();
        CheckText(
            "tav_settings_current_path",
            [&](wchar_t* b, size_t cap, size_t* w) { return tav_settings_current_path(s.settings, b, cap, w); }, TAV_OK,
            cpp.GetCurrentPath().GetString());

        const tav_hkey roots[] = {nullptr, TAV_HKEY_CURRENT_USER, TAV_HKEY_LOCAL_MACHINE, TAV_HKEY_CLASSES_ROOT};
        const tav_hkey root = roots[rng.Below(4)];
        const int cppExists = cpp.KeyExists(CString(text.c_str()), static_cast<HKEY>(root));
        Expect(tav_settings_key_exists(s.settings, text.c_str(), root) == cppExists,
               "tav_settings_key_exists differs from the C++ KeyExists, " + Num(cppExists));

        Expect(tav_registry_open(nullptr, TAV_HKEY_CURRENT_USER, path.c_str(), 1) == TAV_E_NULL_HANDLE &&
                   tav_registry_open(c.key, TAV_HKEY_CURRENT_USER, nullptr, 1) == TAV_E_NULL_ARGUMENT &&
                   tav_settings_set_key(s.settings, nullptr, 0) == TAV_E_NULL_ARGUMENT &&
                   tav_settings_set_key(nullptr, path.c_str(), 0) == TAV_E_NULL_HANDLE &&
                   tav_settings_key_exists(s.settings, nullptr, root) == TAV_E_NULL_ARGUMENT,
               "null handles and paths");
        return "o" + Num(cppOpen) + " m" + Num(cppMade) + " s" + Num(cppSet) + Num(canCreate) + " k" + Num(cppExists);
    }
};

TEST(Fuzz, CapiKeyPaths) {
    auto driver = std::make_shared<KeyPathsDriver>();
    driver->scratch = ScratchKey(L"CapiKeys", &driver->scratchPath);
    ASSERT_TRUE(driver->scratch != nullptr);
    for (const wchar_t* subkey : {L"a", L"a\\b", L"sub\x00E9", L"Name With Blanks", L"k"}) {
        tav::UniqueKey key;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(driver->scratch.get(), subkey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                                 key.put(), nullptr));
    }
    driver->registered = std::make_shared<LookupRegistrations>();
    ASSERT_TRUE(driver->registered->ok());
    const Text app = driver->registered->app(), progId = driver->registered->progId();
    RunDriver({"capi-keypaths",
               {app, progId, L"a", L"a\\b", L"", L"sub\x00E9", L"Name With Blanks\\", L"\\a", L"A\\B\\", L"k"},
               [app, progId](Rng& rng) { return KeyPathText(rng, app, progId); },
               [driver](const Input& input) {
                   Rng rng(input.choices);
                   return driver->Lookups(rng, input.text) + " " + driver->Keys(rng, input.text);
               },
               true,
               4096});
}

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
                   return "r" + Num(read) + " s" + Num(bytes > 2 ? 3 : bytes);
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
             return "i" + Num(loaded != 0) + " f" + Num(fields);
         }});
}

}  // namespace
}  // namespace fuzz
