// Drivers for the entry points that touch the system: the command-word scan against a window of the test's
// own, directory creation under a temporary root, ExtractProgram and isValidFile on a temporary tree of
// real files, version resources of damaged copies of a real one, the text-file reader on odd files, and
// registry reads of values of random type and length written raw into a scratch key.
#include "Fuzz.h"
#include "Inputs.h"
#include "Models.h"
#include "TestSupport.h"
#include "TestWindow.h"

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <cwctype>
#include <fstream>

namespace fuzz {
namespace {

std::string Num(long long n) { return std::to_string(n); }

// ---- the command-word scan ----------------------------------------------------------------------------

struct Message {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    bool operator==(const Message& o) const { return message == o.message && wParam == o.wParam && lParam == o.lParam; }
};

// A top-level window with a menu bar (pop-ups 0 and 1, items 100, 101 and 200, 201) that, while armed,
// records every message it is sent or posted and handles none, so that no message can act on it.
class CommandTarget {
public:
    CommandTarget()
        : window_(Options(),
                  [](UINT message, WPARAM wParam, LPARAM lParam) { return Record(message, wParam, lParam); }) {
        Front();
    }

    bool Front() {
        for (int attempt = 0; attempt < 200 && GetForegroundWindow() != window_.hwnd(); ++attempt) {
            SetForegroundWindow(window_.hwnd());
            Pump();
            Sleep(10);
        }
        return GetForegroundWindow() == window_.hwnd();
    }
    void Arm() {
        Pump();
        received.clear();
        posted.clear();
        armed = true;
    }
    void Disarm() {
        // The posted messages: taken from the queue, recorded, and never dispatched.
        MSG msg;
        while (PeekMessageW(&msg, window_.hwnd(), 0, 0, PM_REMOVE))
            posted.push_back({msg.message, msg.wParam, msg.lParam});
        armed = false;
        Pump();
    }
    static inline std::vector<Message> received;  // sent: the window procedure saw them
    static inline std::vector<Message> posted;    // taken from the queue
    static inline bool armed = false;

private:
    static void Pump() {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
    }
    static tavtest::TestWindow::Options Options() {
        auto options = tavtest::TestWindow::Options().Titled(L"fuzz commands").Placed(10, 10, 300, 200);
        options.visible = true;
        options.menu = CreateMenu();
        for (UINT top = 0; top < 2; ++top) {
            HMENU popup = CreatePopupMenu();
            AppendMenuW(popup, MF_STRING, 100 * (top + 1), L"first");
            AppendMenuW(popup, MF_STRING, 100 * (top + 1) + 1, L"second");
            AppendMenuW(options.menu, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), top ? L"Edit" : L"File");
        }
        return options;
    }
    static bool Record(UINT message, WPARAM wParam, LPARAM lParam) {
        if (armed)
            received.push_back({message, wParam, lParam});
        return armed;
    }
    tavtest::TestWindow window_;
};

// What the scan must send or post, by the rules: every position (the start and each '{') is tried.
struct ExpectedScan {
    std::vector<Message> sent, posted;  // those the platform delivers to a window as they are
    bool anyCommand = false;
    bool menuFailed = false;
};

ExpectedScan ScanModel(const Text& script) {
    ExpectedScan scan;
    unsigned number = 0;
    for (size_t pos = 0; pos < script.size();) {
        size_t p = pos;
        while (p < script.size() && iswspace(script[p]))
            ++p;
        size_t wordEnd = p;
        while (wordEnd < script.size() && !iswspace(script[wordEnd]))
            ++wordEnd;
        Text word = script.substr(p, wordEnd - p);
        const wchar_t* rest = script.c_str() + wordEnd;
        swscanf(rest, L"%x", &number);
        auto is = [&](const wchar_t* command) { return _wcsicmp(word.c_str(), command) == 0; };
        // Messages of the system's own range may be refused when posted or treated specially when sent:
        // only the command and the application range are expected to arrive as they were sent.
        auto deliverable = [](UINT message) {
            return message == WM_COMMAND || (message >= WM_USER && message < 0x10000);
        };
        if (is(L"{PostCommand") || is(L"{SendCommand")) {
            (is(L"{PostCommand") ? scan.posted : scan.sent).push_back({WM_COMMAND, number, 0});
            scan.anyCommand = true;
        } else if (is(L"{SendMessage") || is(L"{PostMessage")) {
            unsigned message = number, wParam = 0, lParam = 0;
            swscanf(rest, L"%x %x %x", &message, &wParam, &lParam);
            if (deliverable(message))
                (is(L"{PostMessage") ? scan.posted : scan.sent)
                    .push_back({message, wParam, static_cast<LPARAM>(lParam)});
            scan.anyCommand = true;
        } else if (is(L"{Menu")) {
            int top = 0, item = 0;
            swscanf(rest, L"%d %d", &top, &item);
            if (top < 0 || top > 1 || item < 0 || item > 1) {
                scan.menuFailed = true;
                return scan;
            }
            scan.posted.push_back({WM_COMMAND, static_cast<WPARAM>(100 * (top + 1) + item), 0});
            scan.anyCommand = true;
        }
        size_t next = script.find(L'{', pos + 1);
        if (next == Text::npos)
            break;
        pos = next;
    }
    return scan;
}

Text CommandScript(Rng& rng) {
    const std::vector<Text> words = {L"{PostCommand",
                                     L"{SendCommand",
                                     L"{SendMessage",
                                     L"{PostMessage",
                                     L"{Menu",
                                     L"{postcommand",
                                     L"{MENU",
                                     L"{PostCommandX",
                                     L"{",
                                     L"PostCommand",
                                     L"x"};
    const std::vector<Text> numbers = {L"0",   L"1f4",  L"8001", L"ffffffff", L"100000000", L"-1", L"x",          L"",
                                       L"400", L"7fff", L"111",  L"0x10",     L"1",         L"2",  L"-2147483648"};
    const std::vector<Text> spaces = {L" ", L"  ", L"\t", L"\n", L"\r\n", L"\x3000", L""};
    Text script;
    for (uint32_t n = 1 + rng.Below(5); n > 0; --n) {
        if (rng.OneIn(3))
            script += Text(1, L"ab{}( "[rng.Below(6)]);
        script += rng.Pick(words);
        for (uint32_t k = rng.Below(4); k > 0; --k)
            script += rng.Pick(spaces) + rng.Pick(numbers);
        if (rng.OneIn(2))
            script += L"}";
    }
    return script;
}

TEST(Fuzz, CommandWords) {
    CommandTarget target;
    ASSERT_TRUE(target.Front()) << "the test window did not become the foreground window";
    std::vector<Text> seeds = {L"x{PostCommand 1f4}",
                               L"{SendCommand 8001}",
                               L"{SendMessage 400 1 2}",
                               L"{PostMessage 401 ffffffff 7}",
                               L"{Menu 0 1}",
                               L"{Menu 1 0}{Menu 5 5}",
                               L"{PostCommand}",
                               L"a{PostCommand 1}b{SendCommand 2}",
                               L"  {menu 1 1}",
                               L""};
    RunDriver(
        {"commandwords", seeds, CommandScript,
         [&target](const Input& input) {
             Expect(target.Front(), "the test window lost the foreground");
             // The tail makes the script fail to parse when no command word runs, so that nothing is typed:
             // "}}" closes any brace the script leaves open, and a two-unit name is no key.
             Text script = input.text + L"}}{\x01\x02}";
             target.Arm();
             SKERR result = tav::keys::RunKeyScript(script.c_str());
             target.Disarm();
             ExpectedScan expected = ScanModel(script);
             if (expected.menuFailed)
                 Expect(result == SKERR_MENUFAILED, "result " + Num(result) + ", the model says 8");
             else if (expected.anyCommand)
                 Expect(result == SKERR_NONE, "result " + Num(result) + ", the model says 0");
             else
                 Expect(result != SKERR_NONE && result != SKERR_MENUFAILED,
                        "result " + Num(result) + ": nothing should have run");
             auto inOrder = [](const std::vector<Message>& got, const std::vector<Message>& wanted, const char* how) {
                 size_t found = 0;
                 for (const Message& m : got)
                     if (found < wanted.size() && m == wanted[found])
                         ++found;
                 Expect(found == wanted.size(), std::string("the window was ") + how + " " + Num(found) + " of the " +
                                                    Num(wanted.size()) + " expected messages in order");
             };
             inOrder(CommandTarget::received, expected.sent, "sent");
             inOrder(CommandTarget::posted, expected.posted, "posted");
             return "r" + Num(result) + " s" + Num(expected.sent.size() > 3) + " p" + Num(expected.posted.size() > 3);
         },
         true, 20000});  // the scan costs time in the square of a script of many '{': kept to 20,000 units
}

// ---- directory creation -------------------------------------------------------------------------------

Text RelativePath(Rng& rng) {
    const std::vector<Text> parts = {
        L"a",     L"b", L"c", L"a b", L".", L"x<y", L"con", L"nul", L"dir.", L" ", L"\x65E5\x672C", Text(200, L'l'),
        L"f.txt", L"*", L"",  L"d"};
    Text path;
    for (uint32_t n = 1 + rng.Below(6); n > 0; --n)
        path += rng.Pick(parts) + (rng.OneIn(5) ? L"/" : L"\\");
    if (rng.OneIn(3))
        path += L"f.txt";
    return path;
}

TEST(Fuzz, MakeDirectory) {
    auto root = std::make_shared<std::unique_ptr<tavtest::TempDir>>(std::make_unique<tavtest::TempDir>(L"fuzzdir"));
    auto calls = std::make_shared<uint64_t>(0);
    RunDriver({"mkdir",
               {L"a\\b\\c\\f.txt", L"a\\", L"x\\y\\z\\", L"a b\\c.d\\"},
               RelativePath,
               [root, calls](const Input& input) {
                   if (++*calls % 2000 == 0)  // a fresh root now and then keeps the tree small
                       *root = std::make_unique<tavtest::TempDir>(L"fuzzdir");
                   Text relative = input.text;
                   for (size_t at = relative.find(L".."); at != Text::npos; at = relative.find(L"..", at))
                       relative[at + 1] = L'_';  // never climb out of the root
                   Rng rng(input.choices);
                   // Mostly under the root; sometimes a path without a drive letter whose first folder cannot
                   // exist, so that creation fails all the way up to a lone backslash.
                   Text path = rng.OneIn(4) ? (rng.OneIn(2) ? L"\\" : L"\\\\") + Text(L"tav<bad>\\") + relative
                                            : (**root).path() + L"\\" + relative;
                   CFileName name(path.c_str());
                   // Creation of a folder that is there already answers 0 (settled); the platform's own path rules
                   // (trailing blanks and dots, device names) decide the rest, so only that rule is checked.
                   CStdStr<wchar_t> folder = name.GetPath();
                   const std::wstring& under = (**root).path();
                   bool plain = folder.rfind(under, 0) == 0 &&
                                folder.substr(under.size()).find_first_not_of(L"abcd\\") == std::wstring::npos;
                   DWORD before = GetFileAttributesW(folder.c_str());
                   bool existed = before != INVALID_FILE_ATTRIBUTES && (before & FILE_ATTRIBUTE_DIRECTORY);
                   int created = name.CreateDirectoryW(rng.OneIn(3) ? 0 : 1);
                   Expect(!(plain && existed && created != 0), "created a folder that existed: " + Narrow(folder));
                   return "c" + Num(created != 0) + " e" + Num(name.Exists());
               },
               true,
               4096});
}

// ---- command lines against real files -------------------------------------------------------------------

// A temporary tree of files and folders with blanks, quotes and dots in their names; %FUZZROOT% names it.
class FileTree {
public:
    FileTree() : dir_(L"fuzzfiles") {
        for (const wchar_t* file : {L"prog", L"prog.exe", L"a b", L"x y.exe", L"app.exe", L"f\x00E9.exe", L"dot."})
            tavtest::WriteFileBytes(dir_ / file, "x");
        CreateDirectoryW((dir_ / L"folder").c_str(), nullptr);
        CreateDirectoryW((dir_ / L"Program Files").c_str(), nullptr);
        tavtest::WriteFileBytes(dir_ / L"Program Files\\app.exe", "x");
        tavtest::WriteFileBytes(dir_ / L"folder\\inner.exe", "x");
        SetEnvironmentVariableW(L"FUZZROOT", dir_.path().c_str());
    }
    const std::wstring& path() const { return dir_.path(); }

private:
    tavtest::TempDir dir_;
};

Text Line(Rng& rng, const Text& root) {
    const std::vector<Text> pieces = {root + L"\\prog",
                                      root + L"\\prog.exe",
                                      root + L"\\a b",
                                      root + L"\\x y.exe",
                                      root + L"\\Program Files\\app.exe",
                                      root + L"\\folder",
                                      L"%FUZZROOT%\\app.exe",
                                      L"%FUZZROOT%",
                                      L"%NOPE%",
                                      L"\"",
                                      L" ",
                                      L"  ",
                                      L"-x",
                                      L"/s",
                                      L"arg",
                                      L"\\",
                                      L"notepad",
                                      L"notepad.exe",
                                      L".exe",
                                      L"\x00E9",
                                      L"%",
                                      L"\t"};
    Text line;
    for (uint32_t n = 1 + rng.Below(6); n > 0; --n)
        line += rng.Pick(pieces);
    return line;
}

// The existence test the library documents for a candidate program: found by the search order, not a folder.
bool ProgramExists(const Text& candidate) {
    if (candidate.empty())
        return false;
    wchar_t found[512];
    DWORD length = SearchPathW(nullptr, candidate.c_str(), nullptr, 512, found, nullptr);
    if (length == 0 || length >= 512)
        return false;
    DWORD attributes = GetFileAttributesW(found);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::vector<Text> LineSeeds(const Text& root) {
    return {L"\"" + root + L"\\Program Files\\app.exe\" -x",
            root + L"\\Program Files\\app.exe -x",
            L"%FUZZROOT%\\app.exe a.txt",
            root + L"\\a b c",
            L"notepad arg",
            L"",
            L"\"",
            L" x",
            L"%WINDIR%\\notepad.exe a",
            L"\"" + root + L"\\a b\" arg"};
}

TEST(Fuzz, ExtractProgram) {
    auto tree = std::make_shared<FileTree>();
    Text root = tree->path();
    RunDriver({"extractprogram", LineSeeds(root), [root](Rng& rng) { return Line(rng, root); },
               [tree](const Input& input) {
                   CStdStr<wchar_t> program = L"untouched", args = L"untouched";
                   bool result = ExtractProgram(CStdStr<wchar_t>(input.text), program, args);
                   model::Extracted expected = model::ExtractProgram(input.text, ProgramExists);
                   Expect(result == expected.result, "result differs from the model's");
                   if (!result) {
                       Expect(program == L"untouched" && args == L"untouched", "outputs touched on an empty line");
                       return std::string("empty");
                   }
                   Expect(Same(program, expected.program),
                          "program \"" + Narrow(program) + "\", the model says \"" + Narrow(expected.program) + "\"");
                   Expect(Same(args, expected.args),
                          "args \"" + Narrow(args) + "\", the model says \"" + Narrow(expected.args) + "\"");
                   return std::string(args.empty() ? "whole" : "split");
               },
               true, 1024});  // each blank of a line is a candidate split, and each costs two path searches
}

TEST(Fuzz, IsValidFile) {
    auto tree = std::make_shared<FileTree>();
    Text root = tree->path();
    RunDriver(
        {"isvalidfile", LineSeeds(root), [root](Rng& rng) { return Line(rng, root) + (rng.OneIn(3) ? L"\\\\" : L""); },
         [tree](const Input& input) {
             bool stripArgs = (input.choices & 1) != 0;
             Text copy = input.text;
             if (stripArgs) {
                 std::optional<Text> stripped = model::StripTrailingArgument(copy);
                 if (!stripped) {
                     try {
                         isValidFile(CStdStr<wchar_t>(input.text), true);
                     } catch (const std::out_of_range&) {  // settled, as stripTrailingArgument
                         return std::string("throws");
                     }
                     Expect(false, "the model says it throws out_of_range");
                 }
                 copy = *stripped;
             }
             while (!copy.empty() && copy.back() == L'\\')
                 copy.pop_back();
             copy = model::Expand(copy);
             wchar_t found[512];
             bool expected = SearchPathW(nullptr, copy.c_str(), nullptr, 512, found, nullptr) != 0;
             bool result = isValidFile(CStdStr<wchar_t>(input.text), stripArgs);
             Expect(result == expected, "isValidFile says " + Num(result) + ", the search order says " + Num(expected));
             return "v" + Num(result) + " s" + Num(stripArgs);
         },
         true, 4096});
}

// ---- version resources ---------------------------------------------------------------------------------

TEST(Fuzz, VerInfo) {
    // A small library with a real version resource (the file tests' fixture), damaged in copies.
    const auto damage = std::make_shared<DamagedVersionResource>();
    ASSERT_TRUE(damage->found()) << "verfix_translation.dll (built with the file tests) and its version resource";
    auto dir = std::make_shared<tavtest::TempDir>(L"fuzzver");
    auto turn = std::make_shared<uint64_t>(0);
    RunDriver({"verinfo", {L""}, nullptr, [=](const Input& input) {
                   Rng rng(input.choices);
                   const std::string bytes = damage->Copy(rng);
                   std::wstring path = (*dir) / (L"copy" + std::to_wstring(++*turn % 4) + L".dll");
                   tavtest::WriteFileBytes(path, bytes);
                   CVerInfo info;
                   int loaded = info.Init(path.c_str());
                   int fields = 0;
                   for (int field = 0; field <= 15; ++field) {
                       CStdStr<wchar_t> value, again;
                       const int found = info.GetField(static_cast<VERFIELD>(field), value);
                       fields += found != 0;
                       // A read that strays outside the block shows as two reads that differ.
                       Expect(info.GetField(static_cast<VERFIELD>(field), again) == found && Same(again, value),
                              std::string("two reads of a field differ: ").append(Num(field)));
                   }
                   CVerNum number;
                   info.GetFileVersionNum(&number);
                   info.GetProductVersionNum(&number);
                   Expect(wcslen(info.GetLanguageCode()) <= 4 && wcslen(info.GetKbdCodePage()) <= 4,
                          "codes of four digits");
                   CVerInfo copy = info;
                   CStdStr<wchar_t> company;
                   copy.GetField(VF_CompanyName, company);
                   return std::string("i") + Num(loaded != 0) + " f" + Num(fields);
               }});
}

// ---- the text-file reader ------------------------------------------------------------------------------

TEST(Fuzz, TextFile) {
    auto dir = std::make_shared<tavtest::TempDir>(L"fuzztext");
    CreateDirectoryW(((*dir) / L"folder").c_str(), nullptr);
    RunDriver(
        {"textfile",
         {L"plain.txt", L"folder", L"missing.txt", L"", L"a\x00E9.txt"},
         nullptr,
         [dir](const Input& input) {
             Rng rng(input.choices);
             std::wstring path = FileNameInside(dir->path(), input.text);
             const DeletedAfterwards cleanup{path};
             bool write = !rng.OneIn(8);
             std::string bytes;
             if (write) {
                 size_t length = std::vector<size_t>{0, 1, 2, 3, 4095, 4096, 65536}[rng.Below(7)];
                 if (rng.OneIn(2))
                     length = rng.Below(3000);
                 if (rng.OneIn(200))
                     length = (1 << 20) + rng.Below(3);
                 bytes.resize(length);
                 for (char& byte : bytes)
                     byte = static_cast<char>(rng.OneIn(4) ? 0 : rng.Below(256));
                 write = tavtest::WriteFileBytes(path, bytes);
             }
             cTextFile file;
             bool read = file.Read(CStdStr<wchar_t>(path));
             if (write) {
                 // An empty file reads as false (settled); any other file as all its bytes and a terminator.
                 Expect(read == !bytes.empty(), "Read says " + Num(read) + " for " + Num(bytes.size()) + " bytes");
                 Expect(file.GetSize() == bytes.size(), "size " + Num(file.GetSize()) + " for " + Num(bytes.size()));
                 if (!bytes.empty())
                     Expect(std::string(file.GetBuffer(), bytes.size()) == bytes && file.GetBuffer()[bytes.size()] == 0,
                            "the buffer differs from the file");
             }
             if (rng.OneIn(4))  // a second read on the same object replaces the first
                 file.Read(CStdStr<wchar_t>((*dir) / L"folder"));
             CStdStr<wchar_t> line = L"x";
             Expect(!file.GetNextLine(line) && line.empty(), "no line reading");
             return std::string("w") + Num(write) + " r" + Num(read) + " s" + Num(bytes.size() > 2 ? 3 : bytes.size());
         },
         true,
         200});
}

// ---- registry values ------------------------------------------------------------------------------------

TEST(Fuzz, Registry) {
    std::wstring keyPath;
    const std::shared_ptr<HKEY__> key = ScratchKey(L"", &keyPath);
    ASSERT_TRUE(key != nullptr);
    RunDriver({"registry",
               {L"", L"value", L"Name With Blanks", L"\x00E9", L"a\\b"},
               nullptr,
               [key, keyPath](const Input& input) {
                   Rng rng(input.choices);
                   const RawValue value = RandomRawValue(rng);
                   DWORD type = value.type;
                   const size_t length = value.data.size();
                   const std::vector<BYTE>& data = value.data;
                   const Text& name = input.text;
                   LONG written =
                       RegSetValueExW(key.get(), name.c_str(), 0, type, data.data(), static_cast<DWORD>(length));

                   CRegistry registry(HKEY_CURRENT_USER, keyPath.c_str(), true);
                   CStdStr<wchar_t> text = L"stale";
                   long status = registry.ReadStringValue(name.c_str(), text);
                   if (written == ERROR_SUCCESS) {
                       bool isString = type == REG_SZ || type == REG_EXPAND_SZ;
                       Text expected;
                       if (isString && length > 0) {
                           const wchar_t* units = reinterpret_cast<const wchar_t*>(data.data());
                           size_t count = length / sizeof(wchar_t);
                           expected.assign(units, count);
                           expected = expected.substr(0, expected.find(L'\0'));
                       }
                       Expect(status == (isString ? 0 : 1), "ReadStringValue says " + Num(status));
                       Expect(Same(text, expected), "ReadStringValue read \"" + Narrow(text) + "\", the data says \"" +
                                                        Narrow(expected) + "\"");
                   }

                   CRegistryClass settings;
                   settings.SetRootKey(HKEY_CURRENT_USER);
                   settings.SetKey(CString(keyPath.c_str()), 0);
                   CString valueName(name.c_str());
                   settings.ReadString(valueName, CString(L"default"));
                   settings.ReadDword(valueName, 7);
                   settings.ReadInt(valueName, 7);
                   settings.ReadBool(valueName, 1);
                   settings.ReadColor(valueName, 0x123456);
                   settings.ReadFloat(valueName, 1.5);
                   settings.ReadDateTime(valueName, COleDateTime());
                   unsigned char buffer[64];
                   int binary = settings.ReadBinary(valueName, buffer, static_cast<unsigned long>(rng.Below(65)));
                   CRect rect;
                   CPoint point;
                   CSize size;
                   int shapes = settings.ReadRect(valueName, &rect) + settings.ReadPoint(valueName, &point) +
                                settings.ReadSize(valueName, &size);
                   CFont font;
                   int fonts = settings.ReadFont(valueName, &font);
                   int dataSize = settings.GetDataSize(valueName);
                   // The platform counts a terminator it adds to a string stored without one: strings are left out.
                   bool stringType = type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
                   Expect(written != ERROR_SUCCESS || stringType || dataSize == static_cast<int>(length),
                          "GetDataSize " + Num(dataSize) + " for " + Num(length) + " bytes");
                   RegDeleteValueW(key.get(), name.c_str());
                   return std::string("w") + Num(written == ERROR_SUCCESS) + " t" + Num(type & 0xF) + " s" +
                          Num(status) + " b" + Num(binary) + " r" + Num(shapes) + " f" + Num(fonts);
               },
               true,
               20000});
}

}  // namespace
}  // namespace fuzz
