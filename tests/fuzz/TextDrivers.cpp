// Drivers for the entry points that work on text alone: the script parser, the escape of literal text,
// StringCut, the string-resource constructor, version numbers, stripTrailingArgument, CFileName's pure
// string work and the support query.
#include "Fuzz.h"
#include "Inputs.h"
#include "Models.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <climits>
#include <cwctype>

namespace fuzz {
namespace {

std::string Num(long long n) { return std::to_string(n); }

// ---- the script language ----------------------------------------------------------------------------

const std::vector<Text> kKeyNames = {L"ENTER",     L"enter", L"TAB",    L"F1",     L"F16",    L"BREAK",
                                     L"QUEUESYNC", L"ESC",   L"SLEEP",  L"BKSP",   L"DEL",    L"ENTR",
                                     L"F17",       L"",      L"a",      L"A",      L"}",      L"{",
                                     L"+",         L"~",     L"\x00E9", L"\x4E2D", L"\xD800", L"QUEUESYNCX"};
const std::vector<Text> kCounts = {L"0",    L"1",          L"-1",          L"2",           L"6143", L"6144",
                                   L"6145", L"2147483647", L"-2147483648", L"-2147483647", L"x",    L"",
                                   L"  7",  L"+3",         L"3x",          L"00012"};
const std::vector<Text> kCommandWords = {
    L"{PostCommand 1f4}", L"{SendCommand 8001}", L"{SendMessage 400 1 2}", L"{PostMessage 401 ffffffff 0}",
    L"{Menu 0 1}",        L"{Menu 9 9}",         L"{menu -1 0}",           L"{POSTCOMMAND}",
    L"{PostCommand"};

Text ScriptItem(Rng& rng, int depth, bool commands) {
    switch (rng.Below(depth > 6 ? 5 : 9)) {
    case 0:
    case 1: {
        const Text plain = L"abcXYZ019 .,;'/-=\\`!@#$&_|<>?:\"\x00E9\x20AC\x4E2D";
        return Text(1, plain[rng.Below(static_cast<uint32_t>(plain.size()))]);
    }
    case 2: return Text(1, L"[]~"[rng.Below(3)]);
    case 3: {
        Text brace = L"{" + rng.Pick(kKeyNames);
        if (rng.OneIn(2))
            brace += L" " + rng.Pick(kCounts);
        return rng.OneIn(20) ? brace : brace + L"}";
    }
    case 4: return commands && rng.OneIn(2) ? rng.Pick(kCommandWords) : Text(rng.OneIn(2) ? L"{}}" : L"{{}");
    case 5:
    case 6: return Text(1, L"+^%*"[rng.Below(4)]) + ScriptItem(rng, depth + 1, commands);
    default: {
        Text group = L"(";
        for (uint32_t n = rng.Below(5); n > 0; --n)
            group += ScriptItem(rng, depth + 1, commands);
        return rng.OneIn(15) ? group : group + L")";
    }
    }
}

Text Script(Rng& rng, bool commands) {
    Text script;
    for (uint32_t n = rng.Below(rng.OneIn(10) ? 400 : 12); n > 0; --n)
        script += ScriptItem(rng, 0, commands);
    return script;
}

const std::vector<Text> kScriptSeeds = {L"",
                                        L"abc",
                                        L"+(ab)c",
                                        L"{ENTER 3}",
                                        L"{ENTER 0}",
                                        L"{ENTER x}",
                                        L"{ENTR}",
                                        L"{ENTER",
                                        L"(ab",
                                        L"{a}",
                                        L"{A}",
                                        L"{}}",
                                        L"{{}",
                                        L"{QUEUESYNC}",
                                        L"{QUEUESYNC 5}",
                                        L"^c",
                                        L"^cx",
                                        L"x{PostCommand 1f4}",
                                        L"[+a]",
                                        L"[{F13}",
                                        L"50{%} {(}a{+}b{)}",
                                        L"+a+b",
                                        L"^(%(*a))",
                                        L"{a 6144}",
                                        L"{a 6145}",
                                        L"{A 6142}",
                                        L"{a -1}",
                                        L"()",
                                        L"{BREAK}",
                                        L"~~~",
                                        L"{F1 2 extra}",
                                        L"((a)(b))",
                                        L"{ }",
                                        L"{  }",
                                        L"{a }",
                                        L"{a 3"};

TEST(Fuzz, Parser) {
    RunDriver({"parser", kScriptSeeds, [](Rng& rng) { return Script(rng, false); },
               [](const Input& input) {
                   SKERR result = tav::keys::ParseKeyScript(input.text.c_str());
                   const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
                   Expect(queue.Count() >= 0 && queue.Count() <= tav::keys::KeyQueue::kCapacity, "count in range");
                   Expect(result <= SKERR_STRINGTOOLONG, "a parse result: " + Num(result));
                   if (auto expected = model::ParseScript(input.text)) {
                       Expect(expected->result == result,
                              "result " + Num(result) + ", the model says " + Num(expected->result));
                       if (result == SKERR_NONE) {
                           std::vector<WORD> entries;
                           for (int i = 0; i < queue.Count(); ++i)
                               entries.push_back(queue.At(i));
                           Expect(entries == expected->entries, "the queue differs from the model's (" +
                                                                    Num(entries.size()) + " against " +
                                                                    Num(expected->entries.size()) + " entries)");
                       }
                   }
                   return "r" + Num(result) + " n" +
                          Num(queue.Count() > 20 ? 20 + queue.Count() / 1000 : queue.Count());
               }});
}

TEST(Fuzz, Escape) {
    RunDriver({"escape", kScriptSeeds, [](Rng& rng) { return Script(rng, true); },
               [](const Input& input) {
                   CString text(input.text.c_str());
                   SendKeysRemoveSpecialChars(text);
                   Expect(text.str() == model::Escape(input.text), "the escape differs from the model's");
                   // Escaped text parses without a language error: only a full queue can stop it.
                   SKERR result = tav::keys::ParseKeyScript(text.str().c_str());
                   Expect(result == SKERR_NONE || result == SKERR_STRINGTOOLONG,
                          "escaped text does not parse: " + Num(result));
                   return "r" + Num(result) + " grew" + Num(text.str().size() > input.text.size());
               }});
}

// ---- strings ----------------------------------------------------------------------------------------

int Width(uint64_t choices) {
    const int widths[] = {INT_MIN, INT_MIN + 3, -5, -1, 0, 1, 2, 3, 4, 5, 7, 10, 40, 80, 1000, INT_MAX - 1, INT_MAX};
    Rng rng(choices);
    return rng.OneIn(4) ? static_cast<int>(rng.Below(200)) : widths[rng.Below(sizeof widths / sizeof *widths)];
}

TEST(Fuzz, StringCut) {
    std::vector<Text> seeds = {L"",
                               L"   ",
                               L"aaa bbb ccc",
                               L"aaaaaaaaaaaaaaaaaaaa",
                               L"a\r\nb\n\rc  d",
                               L"  lead and trail  ",
                               L"exactly7 x",
                               L"one two three four five six seven"};
    RunDriver({"stringcut", seeds,
               [](Rng& rng) {
                   Text text;
                   for (uint32_t n = rng.Below(30); n > 0; --n)
                       text += rng.OneIn(3) ? Text(1, L" \r\n"[rng.Below(3)]) : Text(1 + rng.Below(12), L'w');
                   return text;
               },
               [](const Input& input) {
                   int width = Width(input.choices);
                   std::list<CStdStr<wchar_t>> pieces = StringCut(CStdStr<wchar_t>(input.text), width);
                   std::list<Text> expected = model::StringCut(input.text, width);
                   Expect(pieces.size() == expected.size(), "pieces: " + Num(pieces.size()) + ", the model has " +
                                                                Num(expected.size()) + " (width " + Num(width) + ")");
                   auto e = expected.begin();
                   for (const CStdStr<wchar_t>& piece : pieces)
                       Expect(Same(piece, *e++), "a piece differs from the model's (width " + Num(width) + ")");
                   return "p" + Num(pieces.size() > 10 ? 10 : pieces.size()) + " w" +
                          Num(width < 0    ? -1
                              : width > 80 ? 81
                                           : width);
               },
               false});
}

TEST(Fuzz, ResourceString) {
    RunDriver({"resource", {L"one"}, nullptr, [](const Input& input) {
                   Rng rng(input.choices);
                   UINT id = rng.OneIn(3) ? static_cast<UINT>(rng.Below(0x10000))
                                          : std::vector<UINT>{0, 1, 2, 3, 101, 300, 0xFFFF, 0xFFFE}[rng.Below(8)];
                   // Identifiers, and text that is no identifier: the pointer of a real string.
                   if (rng.OneIn(4)) {
                       CStdStr<wchar_t> text(input.text.c_str());
                       Expect(text == input.text.c_str(), "text given as text is kept");
                       return std::string("text");
                   }
                   CStdStr<wchar_t> loaded(MAKEINTRESOURCEW(id));
                   Text expected;
                   for (HMODULE module : {GetModuleHandleW(nullptr), GetModuleHandleW(L"TavUtil.dll")}) {
                       const wchar_t* resource = nullptr;
                       int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&resource), 0);
                       if (length > 0 && resource != nullptr) {
                           expected.assign(resource, static_cast<size_t>(length));
                           break;
                       }
                   }
                   Expect(Same(loaded, expected), "identifier " + Num(id) + " loads \"" + Narrow(loaded) + "\"");
                   return "id " + Num(loaded.size() > 0);
               }});
}

// ---- version numbers --------------------------------------------------------------------------------

TEST(Fuzz, VerNum) {
    std::vector<Text> seeds = {L"5.10.1234", L"", L"x", L"1..2", L"70000.1", L"1.2.3.4.5", L".1.", L"2.0.0.0"};
    RunDriver(
        {"vernum", seeds, VersionText, [](const Input& input) {
             CVerNum number(input.text.c_str());
             Rng rng(input.choices);
             CVerNum other(static_cast<unsigned short>(rng.Below(3)), static_cast<unsigned short>(rng.Below(3)),
                           static_cast<unsigned short>(rng.Below(3)), static_cast<unsigned short>(rng.Below(3)));
             if (rng.OneIn(2))
                 other.Set(VersionText(rng).c_str());
             int there = number.Compare(other);
             int back = other.Compare(number);
             Expect(there >= 0 && there <= 5 && back >= 0 && back <= 5, "a comparison out of range");
             Expect(number.Compare(number) == CVerNum::VERNUM_EQUAL, "a number equals itself");
             auto expected = model::ParseVersion(input.text);
             if (expected) {
                 unsigned short got[4] = {number.GetMajor(), number.GetMinor(), number.GetFix(), number.GetBuild()};
                 for (int i = 0; i < 4; ++i)
                     Expect(got[i] == expected->part[i],
                            "part " + Num(i) + " is " + Num(got[i]) + ", the model says " + Num(expected->part[i]));
                 Expect(number.IsValid() == expected->valid, "valid flag");
                 model::Version theirs;
                 theirs.part[0] = other.GetMajor(), theirs.part[1] = other.GetMinor();
                 theirs.part[2] = other.GetFix(), theirs.part[3] = other.GetBuild();
                 Expect(there == model::CompareVersions(*expected, theirs), "comparison differs from the model's");
                 Expect(back == model::CompareVersions(theirs, *expected), "reverse comparison differs");
             }
             return "c" + Num(there) + Num(back) + " v" + Num(number.IsValid());
         }});
}

// ---- command lines, textually -------------------------------------------------------------------------

Text CommandLine(Rng& rng) {
    const std::vector<Text> pieces = {
        L"\"",   L"C:\\tools\\x.exe", L"x.EXE", L"x.Exe", L".exe",     L" ",      L"  ", L"/s",
        L"-x",   L"C:\\a b\\x.exe",   L"ab",    L"abcd",  L"%WINDIR%", L"%NOPE%", L"\\", L"notepad",
        L".com", L"\x00E9",           L"\xD800"};
    Text line;
    for (uint32_t n = rng.Below(8); n > 0; --n)
        line += rng.Pick(pieces);
    return line;
}

const std::vector<Text> kCommandLineSeeds = {L"\"C:\\a b\\x.exe\" arg",
                                             L"C:\\tools\\x.exe /s",
                                             L"C:\\tools\\x.Exe /s",
                                             L"abc",
                                             L"ab c.exe",
                                             L"",
                                             L"\"C:\\Program Files\\App\\app.exe\" -x",
                                             L"%WINDIR%\\notepad.exe a.txt",
                                             L"x.exe",
                                             L"\"",
                                             L"a\"b\" c"};

TEST(Fuzz, StripTrailingArgument) {
    RunDriver(
        {"striptrailing", kCommandLineSeeds, CommandLine,
         [](const Input& input) {
             CStdStr<wchar_t> line(input.text);
             std::optional<Text> expected = model::StripTrailingArgument(input.text);
             try {
                 stripTrailingArgument(line);
             } catch (const std::out_of_range&) {  // settled: a blank within the first four units
                 Expect(!expected, "threw out_of_range; the model says \"" + Narrow(expected.value_or(L"")) + "\"");
                 return std::string("throws");
             }
             Expect(expected.has_value(), "the model says it throws");
             Expect(Same(line, *expected), "\"" + Narrow(line) + "\", the model says \"" + Narrow(*expected) + "\"");
             return std::string(line.size() == input.text.size() ? "kept" : "cut");
         },
         false});
}

// ---- CFileName: string work ---------------------------------------------------------------------------

const std::vector<Text> kPathSeeds = {L"C:\\dir\\sub\\file.txt",
                                      L"D:\\dir\\sub",
                                      L"D:\\dir\\sub\\",
                                      L"\\\\srv\\share\\x.doc",
                                      L"file.txt",
                                      L"C:",
                                      L"C:file",
                                      L"a/b/c.d",
                                      L".",
                                      L"..\\x",
                                      L"C:\\dir\\old.txt",
                                      L"",
                                      L"\\",
                                      L"abcd",
                                      L"ab.c",
                                      L"x.tx"};

std::string Check(const char* what, const Text& got, const Text& expected) {
    Expect(Same(got, expected),
           std::string(what) + ": \"" + Narrow(got) + "\", the model says \"" + Narrow(expected) + "\"");
    return got.empty() ? "0" : "1";
}

TEST(Fuzz, FileName) {
    RunDriver({"filename", kPathSeeds, PathText, [](const Input& input) {
                   Rng rng(input.choices);
                   const Text& path = input.text;
                   Text file = rng.OneIn(3) ? PathText(rng) : Text(L"a"),
                        ext = rng.OneIn(3) ? PathText(rng) : Text(L"txt");
                   CFileName name(path.c_str());
                   Expect(Text(name.c_str()) == path, "the text is kept as given");
                   model::Parts parts = model::Split(path);
                   std::string outcome = parts.ok ? "split " : "nosplit ";
                   outcome += Check("GetDrive", name.GetDrive(), parts.drive);
                   outcome += Check("GetPathNoDrive", name.GetPathNoDrive(), parts.dir);
                   outcome += Check("GetFile", name.GetFile(), parts.file);
                   outcome += Check("GetExtension", name.GetExtension(), parts.ext);
                   outcome += Check("GetPath", name.GetPath(), parts.drive + parts.dir);
                   CStdStr<wchar_t> folder, whole;
                   name.Split(folder, whole);
                   Check("Split path", folder, parts.drive + parts.dir);
                   Check("Split file", whole, parts.file + parts.ext);

                   Text composed = parts.ok ? model::Compose(parts.drive, parts.dir, file, ext) : Text();
                   CFileName renamed = name;
                   renamed.SetFilename(file.c_str(), ext.c_str());
                   outcome += Check("SetFilename", renamed.c_str(), composed);
                   Check("FromPathAndFile", CFileName::FromPathAndFile(path.c_str(), file.c_str(), ext.c_str()).c_str(),
                         composed);
                   size_t n = path.size();
                   Text threePart = n >= 5 && path[n - 4] != L'.' ? model::Compose(L"", path, file, ext) : path;
                   outcome += Check("three-part constructor",
                                    CFileName(path.c_str(), file.c_str(), ext.c_str()).c_str(), threePart);
                   CFileName appended = name;
                   appended.AppendDirectory(file.c_str());
                   Check("AppendDirectory", appended.c_str(), model::Compose(L"", path, file, L""));
                   wchar_t self[MAX_PATH];
                   DWORD length = GetModuleFileNameW(nullptr, self, MAX_PATH);
                   model::Parts own = model::Split(Text(self, length));
                   Check("module constructor", CFileName(CFileName::ExeInstance, file.c_str(), ext.c_str()).c_str(),
                         own.ok ? model::Compose(own.drive, own.dir, file, ext) : Text());

                   CStdStr<wchar_t> text(path);
                   size_t dot = path.rfind(L'.');
                   Expect(CFileName::StripExtension(text) == (dot != Text::npos), "StripExtension result");
                   Check("StripExtension", text, dot != Text::npos ? path.substr(0, dot) : path);
                   text = path;
                   size_t backslash = path.rfind(L'\\');
                   Expect(CFileName::StripPath(text) == (backslash != Text::npos), "StripPath result");
                   Check("StripPath", text, backslash != Text::npos ? path.substr(backslash + 1) : path);
                   text = path;
                   try {
                       bool stripped = CFileName::StripTrailingSeparator(text);
                       Expect(!path.empty(), "StripTrailingSeparator on an empty text throws");
                       bool ends = path.back() == L'\\';
                       Expect(stripped == ends, "StripTrailingSeparator result");
                       Check("StripTrailingSeparator", text, ends ? path.substr(0, n - 1) : path);
                   } catch (const std::out_of_range&) {  // settled for the empty text
                       Expect(path.empty(), "StripTrailingSeparator threw on a text that is not empty");
                       outcome += " throws";
                   }
                   CFileName::FileExists(path.c_str());
                   return outcome;
               }});
}

// ---- the support query ----------------------------------------------------------------------------------

Text RegistryText(HKEY root, const wchar_t* path, const wchar_t* name, DWORD maxBytes, bool* found) {
    *found = false;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return {};
    std::vector<BYTE> data(maxBytes + 2, 0);
    DWORD size = maxBytes;
    LONG status = RegQueryValueExW(key, name, nullptr, nullptr, data.data(), &size);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS)
        return {};
    *found = true;
    const wchar_t* text = reinterpret_cast<const wchar_t*>(data.data());
    return Text(text, wcsnlen(text, size / sizeof(wchar_t)));
}

// The facts of the query, from the system as the rules name them.
struct Facts {
    Text locale, version, installTime;
};
Facts SupportFacts() {
    Facts facts;
    bool found = false;
    facts.locale = RegistryText(HKEY_LOCAL_MACHINE, L"Software\\velmorax\\", L"Locale", 20, &found);
    if (!found)
        facts.locale = GetUserDefaultLangID() != 0 ? std::to_wstring(GetUserDefaultLangID()) : L"";
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    DWORD size = GetFileVersionInfoSizeW(self, nullptr);
    std::vector<BYTE> block(size);
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (size && GetFileVersionInfoW(self, 0, size, block.data()) &&
        VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length)) {
        wchar_t text[64];
        swprintf(text, 64, L"%u.%2.2u.%u", HIWORD(fixed->dwProductVersionMS), LOWORD(fixed->dwProductVersionMS), 0u);
        facts.version = text;
    }
    facts.installTime = RegistryText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Velmorax\\TrimDial\\CurrentVersion\\Setup",
                                     L"InstallationTime", 4096, &found);
    if (!found)
        facts.installTime = L"0";
    return facts;
}

Text Carried(const Text& address, const Text& key) {
    size_t at = address.find(key);
    if (at == Text::npos)
        return {};
    size_t amp = address.find(L'&', at);
    size_t from = at + key.size();
    return address.substr(from, amp == Text::npos ? Text::npos : (amp < from ? 0 : amp - from));
}

Text Lower(Text text) {
    for (wchar_t& ch : text)
        if (ch >= L'A' && ch <= L'Z')
            ch = static_cast<wchar_t>(ch - L'A' + L'a');
    return text;
}

TEST(Fuzz, SupportQuery) {
    const SupportAddresses addresses = MakeSupportAddresses();
    const std::vector<Text>& hosts = addresses.hosts;
    const Facts facts = SupportFacts();
    RunDriver({"support", addresses.seeds, [addresses](Rng& rng) { return addresses.Generate(rng); },
               [hosts, facts](const Input& input) {
                   CSWandDeviceInfo info;
                   CStdStr<wchar_t> query = info.search(CStdStr<wchar_t>(input.text));
                   Text lower = Lower(input.text);
                   bool support = false;
                   for (const Text& host : hosts)
                       support = support || lower.find(host) != Text::npos;
                   Text expected;
                   if (support) {
                       Text locale = Carried(input.text, L"L=");
                       if (locale.empty())
                           locale = facts.locale;
                       Text button = Carried(input.text, L"B=");
                       if (button.empty())
                           button = L"-1";
                       std::vector<Text> parameters;
                       if (!locale.empty())
                           parameters.push_back(L"L=" + locale);
                       if (!facts.version.empty())
                           parameters.push_back(L"V=" + facts.version);
                       parameters.push_back(L"D=K.0.0.7");
                       parameters.push_back(L"P=IEEE1394");
                       parameters.push_back(L"B=" + button);
                       parameters.push_back(L"T=" + facts.installTime);
                       expected = L"?";
                       for (size_t i = 0; i < parameters.size(); ++i)
                           expected += (i ? L"&" : L"") + parameters[i];
                   }
                   Expect(Same(query, expected),
                          "\"" + Narrow(query) + "\", the model says \"" + Narrow(expected) + "\"");
                   return std::string(support ? "support" : "other");
               },
               false});
}

}  // namespace
}  // namespace fuzz
