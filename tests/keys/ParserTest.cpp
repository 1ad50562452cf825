// The parser alone: scripts become key-queue entries, and nothing is sent.
#include <TavUtil.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "KeyNames.h"

#include <cwchar>
#include <string>
#include <vector>

namespace {

using Queue = std::vector<WORD>;
using tav::keys::ParseKeyScript;

constexpr WORD kShift = 0x10, kControl = 0x11, kAlt = 0x12, kWin = 0x5B;

Queue ReadQueue() {
    const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    Queue entries;
    for (int i = 0; i < queue.Count(); ++i)
        entries.push_back(queue.At(i));
    return entries;
}

// The entries a plain character gives on the current layout: its shift-state modifiers (Shift, Control,
// Alt), the key `repeat` times, and the same modifiers again in the same order.
Queue Char(wchar_t ch, int repeat = 1) {
    WORD code = static_cast<WORD>(VkKeyScanW(ch));
    Queue modifiers;
    if (code & 0x100)
        modifiers.push_back(kShift);
    if (code & 0x200)
        modifiers.push_back(kControl);
    if (code & 0x400)
        modifiers.push_back(kAlt);
    Queue entries = modifiers;
    entries.insert(entries.end(), static_cast<size_t>(repeat), LOBYTE(code));
    entries.insert(entries.end(), modifiers.begin(), modifiers.end());
    return entries;
}

// The same character in braces: a character no key produces queues nothing there.
Queue Braced(wchar_t ch, int repeat = 1) { return VkKeyScanW(ch) == -1 ? Queue{} : Char(ch, repeat); }

Queue Cat(std::initializer_list<Queue> parts) {
    Queue all;
    for (const Queue& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

struct ParseCase {
    const wchar_t* script;
    SKERR result;
    Queue queue;  // checked only when result is SKERR_NONE
};

void ExpectParses(const std::vector<ParseCase>& cases) {
    for (size_t i = 0; i < cases.size(); ++i) {
        const ParseCase& c = cases[i];
        SCOPED_TRACE(testing::Message() << "row " << i << ": script \"" << tavtest::Narrow(c.script) << "\"");
        EXPECT_EQ(c.result, ParseKeyScript(c.script)) << "row " << i;
        if (c.result == SKERR_NONE) {
            EXPECT_EQ(c.queue, ReadQueue()) << "row " << i;
        }
    }
}

// The numbers of the results are fixed: hosts compare them as numbers.
TEST(KeysParser, ResultNumbersAreFixed) {
    const struct {
        SKERR result;
        int number;
    } rows[] = {
        {SKERR_NONE, 0},         {SKERR_MISSINGCLOSEBRACE, 1}, {SKERR_INVALIDKEY, 2}, {SKERR_MISSINGCLOSEPAREN, 3},
        {SKERR_INVALIDCOUNT, 4}, {SKERR_STRINGTOOLONG, 5},     {SKERR_BUSY, 7},       {SKERR_MENUFAILED, 8},
        {SKERR_COMMANDDONE, 9},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.number, static_cast<int>(row.result));
}

TEST(KeysParser, EmptyScriptQueuesNothing) {
    tav::keys::TheKeyQueue().Append(0x41);  // a leftover entry: every parse starts a new queue
    EXPECT_EQ(SKERR_NONE, ParseKeyScript(L""));
    EXPECT_EQ(0, tav::keys::TheKeyQueue().Count());
    EXPECT_EQ(SKERR_NONE, ParseKeyScript(nullptr));
    EXPECT_EQ(0, tav::keys::TheKeyQueue().Count());
}

TEST(KeysParser, PlainCharactersCarryTheirShiftState) {
    ASSERT_EQ(0x0141, VkKeyScanW(L'A')) << "these rows assume the US layout Wine has here";
    ASSERT_EQ(0x0241, VkKeyScanW(L'\x0001'));
    ExpectParses({
        {L"a", SKERR_NONE, {0x41}},
        {L"A", SKERR_NONE, {kShift, 0x41, kShift}},
        {L"ab1", SKERR_NONE, Cat({Char(L'a'), Char(L'b'), Char(L'1')})},
        {L"a)", SKERR_NONE, Cat({Char(L'a'), Char(L')')})},  // ')' outside a group is a character
        {L"}", SKERR_NONE, Char(L'}')},                      // '}' outside a brace too
        {L"~", SKERR_NONE, {0x0D}},
        {L"\x0001", SKERR_NONE, {kControl, 0x41, kControl}},  // Control+A: the Control bit of the shift state
        {L"[a]", SKERR_NONE, {0xFFFE, 0x41, 0xFFFD}},
        {L"]a[", SKERR_NONE, {0xFFFD, 0x41, 0xFFFE}},  // neither needs its partner
    });
}

TEST(KeysParser, ModifiersCoverExactlyTheNextItem) {
    ExpectParses({
        {L"+(ab)c", SKERR_NONE, Cat({{kShift}, Char(L'a'), Char(L'b'), {kShift}, Char(L'c')})},
        {L"+ab", SKERR_NONE, Cat({{kShift}, Char(L'a'), {kShift}, Char(L'b')})},
        {L"^a", SKERR_NONE, {kControl, 0x41, kControl}},
        {L"%a", SKERR_NONE, {kAlt, 0x41, kAlt}},
        {L"*a", SKERR_NONE, {kWin, 0x41, kWin}},
        {L"^cx", SKERR_NONE, Cat({{kControl}, Char(L'c'), {kControl}, Char(L'x')})},
        // modifiers at the end of the script wrap nothing
        {L"+", SKERR_NONE, {kShift, kShift}},
        {L"a^", SKERR_NONE, {0x41, kControl, kControl}},
        {L"+^%*", SKERR_NONE, {kShift, kControl, kAlt, kWin, kWin, kAlt, kControl, kShift}},
        {L"+{ENTER 2}", SKERR_NONE, {kShift, 0x0D, 0x0D, kShift}},
    });
}

TEST(KeysParser, GroupsNest) {
    ExpectParses({
        {L"()", SKERR_NONE, {}},
        {L"((a))", SKERR_NONE, {0x41}},
        {L"+(a^(b%c))", SKERR_NONE, {kShift, 0x41, kControl, 0x42, kAlt, 0x43, kAlt, kControl, kShift}},
        {L"(a)(b)", SKERR_NONE, {0x41, 0x42}},
        {L"(ab", SKERR_MISSINGCLOSEPAREN, {}},
        {L"(", SKERR_MISSINGCLOSEPAREN, {}},
        {L"(()", SKERR_MISSINGCLOSEPAREN, {}},
        {L"(+", SKERR_MISSINGCLOSEPAREN, {}},
        {L"({}", SKERR_MISSINGCLOSEPAREN, {}},  // an error at the end of the script inside a group
        {L"({ENTR})", SKERR_INVALIDKEY, {}},    // an error before the end keeps its own code
        {L"(a{ENTER 0})", SKERR_INVALIDCOUNT, {}},
        // A failed item moves the cursor one on: here onto the end, where the outer group finds it open.
        {L"({x", SKERR_MISSINGCLOSEBRACE, {}},
        {L"(({x", SKERR_MISSINGCLOSEPAREN, {}},
        {L"(({xy", SKERR_MISSINGCLOSEBRACE, {}},
    });
}

TEST(KeysParser, BracedKeysAndCounts) {
    ExpectParses({
        {L"{ENTER}", SKERR_NONE, {0x0D}},
        {L"{ENTER 3}", SKERR_NONE, {0x0D, 0x0D, 0x0D}},
        {L"{ENTER   3}", SKERR_NONE, {0x0D, 0x0D, 0x0D}},
        {L"{TAB 2x}", SKERR_NONE, {0x09, 0x09}},  // text after the count is ignored
        {L"{TAB 2 and more}", SKERR_NONE, {0x09, 0x09}},
        {L"{enter}{Enter}{eNtEr}", SKERR_NONE, {0x0D, 0x0D, 0x0D}},
        {L"{f12}{Pgdn}{del}", SKERR_NONE, {0x7B, 0x22, 0x2E}},
        {L"{a}", SKERR_NONE, Char(L'a')},
        {L"{A}", SKERR_NONE, Char(L'A')},
        {L"{A 3}", SKERR_NONE, Char(L'A', 3)},
        {L"{}}", SKERR_NONE, Char(L'}')},
        {L"{{}", SKERR_NONE, Char(L'{')},
        {L"{} 2}", SKERR_NONE, Char(L'}', 2)},
        {L"{+}{^}{%}{~}{(}{)}{[}{]}{*}", SKERR_NONE,
         Cat({Braced(L'+'), Braced(L'^'), Braced(L'%'), Braced(L'~'), Braced(L'('), Braced(L')'), Braced(L'['),
              Braced(L']'), Braced(L'*')})},
        {L"{QUEUESYNC}", SKERR_NONE, {}},
        {L"{QUEUESYNC 5}", SKERR_NONE, {}},
        {L"a{queuesync}b", SKERR_NONE, {0x41, 0x42}},
        {L"{BREAK}", SKERR_NONE, {0x11}},  // the Control key, not Cancel
        {L"{SLEEP}", SKERR_NONE, {0x5F}},  // the Sleep key, not a pause
        {L"{ENTER 0}", SKERR_INVALIDCOUNT, {}},
        {L"{ENTER x}", SKERR_INVALIDCOUNT, {}},
        {L"{ENTER }", SKERR_INVALIDCOUNT, {}},
        {L"{ENTR}", SKERR_INVALIDKEY, {}},
        {L"{ENTR 0}", SKERR_INVALIDKEY, {}},    // the name is checked before the count
        {L"{ENTER 0", SKERR_INVALIDCOUNT, {}},  // the count before the closing brace
        {L"{ENTER x", SKERR_INVALIDCOUNT, {}},
        {L"{QUEUESYNC 0}", SKERR_INVALIDCOUNT, {}},  // QUEUESYNC's count is checked all the same
        {L"{\x4E2D 0}", SKERR_INVALIDCOUNT, {}},
        {L"{ 3}", SKERR_INVALIDKEY, {}},
        {L"{ab}", SKERR_INVALIDKEY, {}},
        {L"{ENTER", SKERR_MISSINGCLOSEBRACE, {}},
        {L"{ENTER 3", SKERR_MISSINGCLOSEBRACE, {}},
        {L"{", SKERR_MISSINGCLOSEBRACE, {}},
        {L"{}", SKERR_MISSINGCLOSEBRACE, {}},
    });
}

TEST(KeysParser, EveryKeyNameOfTheTable) {
    ASSERT_EQ(43u, tavtest::kKeyNameCount);
    for (const tavtest::KeyNameRow& row : tavtest::kKeyNames) {
        EXPECT_EQ(row.code, tav::keys::LookupKeyName(row.name)) << static_cast<int>(row.code);
        std::wstring lower = row.name;
        CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
        EXPECT_EQ(row.code, tav::keys::LookupKeyName(lower.c_str()));
        std::wstring script = L"{" + lower + L"}";
        ASSERT_EQ(SKERR_NONE, ParseKeyScript(script.c_str()));
        EXPECT_EQ(row.code == 0xFFFF ? Queue{} : Queue{row.code}, ReadQueue());
    }
    EXPECT_EQ(0, tav::keys::LookupKeyName(L"PAUSE"));
    EXPECT_EQ(0, tav::keys::LookupKeyName(L""));
    EXPECT_EQ(0, tav::keys::LookupKeyName(nullptr));
}

// A character no key of the layout produces: unbraced it gives Shift, Control and Alt around key 0xFF
// (kept as it always was); braced, it queues nothing at all.
TEST(KeysParser, CharacterNoKeyProduces) {
    ASSERT_EQ(-1, VkKeyScanW(L'\x4E2D'));
    ExpectParses({
        {L"\x4E2D", SKERR_NONE, {kShift, kControl, kAlt, 0xFF, kShift, kControl, kAlt}},
        {L"\x00E9", SKERR_NONE, {kShift, kControl, kAlt, 0xFF, kShift, kControl, kAlt}},
        {L"{\x4E2D}", SKERR_NONE, {}},
        {L"{\x4E2D 3}a", SKERR_NONE, {0x41}},
    });
}

TEST(KeysParser, QueueHoldsExactly6144Entries) {
    std::wstring full(6144, L'a');
    EXPECT_EQ(SKERR_NONE, ParseKeyScript(full.c_str()));
    EXPECT_EQ(6144, tav::keys::TheKeyQueue().Count());
    std::wstring over = full + L"a";
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(over.c_str()));
    EXPECT_EQ(6144, tav::keys::TheKeyQueue().Count());

    ExpectParses({
        {L"{a 6144}", SKERR_NONE, Queue(6144, 0x41)},
        {L"{a 6145}", SKERR_STRINGTOOLONG, {}},
        {L"{a 6144}b", SKERR_STRINGTOOLONG, {}},
        {L"{a 6143}b", SKERR_NONE, Cat({Queue(6143, 0x41), {0x42}})},
        {L"{a 6142}A", SKERR_STRINGTOOLONG, {}},  // Shift, A, Shift: the closing Shift finds it full
        {L"{A 6142}", SKERR_NONE, Cat({{kShift}, Queue(6142, 0x41), {kShift}})},
        {L"{A 6143}", SKERR_STRINGTOOLONG, {}},
        {L"{a -1}", SKERR_STRINGTOOLONG, {}},  // a negative count repeats until the queue is full
        {L"{ENTER -5}", SKERR_STRINGTOOLONG, {}},
        {L"{a 6143}+", SKERR_STRINGTOOLONG, {}},
    });
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(L"{ENTER -5}"));
    EXPECT_EQ(6144, tav::keys::TheKeyQueue().Count());
}

// The most negative count repeats until the queue is full like any negative count, without a signed
// overflow on its first step (a hardened build stops the program on one).
TEST(KeysParser, MostNegativeCountFillsTheQueue) {
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(L"{a -2147483648}"));
    EXPECT_EQ(6144, tav::keys::TheKeyQueue().Count());
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(L"{ENTER -2147483648}"));
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(L"{a 2147483647}"));  // the largest count fills it too
}

// Reading the queue outside its count gives 0, not what an earlier script left there.
TEST(KeysParser, QueueReadOutsideItsCountIsZero) {
    ASSERT_EQ(SKERR_NONE, ParseKeyScript(L"abc"));
    ASSERT_EQ(SKERR_NONE, ParseKeyScript(L"a"));
    const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    ASSERT_EQ(1, queue.Count());
    EXPECT_EQ(0x41, queue.At(0));
    for (int index : {1, 2, -1, tav::keys::KeyQueue::kCapacity, 1 << 30, -(1 << 30)})
        EXPECT_EQ(0, queue.At(index)) << index;
}

// Any script is parsed inside the library's own memory: long brace names, deep nesting, long modifiers.
TEST(KeysParser, HostileScripts) {
    std::wstring longName = L"{" + std::wstring(100000, L'x') + L"}";
    EXPECT_EQ(SKERR_INVALIDKEY, ParseKeyScript(longName.c_str()));
    std::wstring unclosed = L"{" + std::wstring(100000, L'x');
    EXPECT_EQ(SKERR_MISSINGCLOSEBRACE, ParseKeyScript(unclosed.c_str()));
    std::wstring nameThenCount = L"{" + std::wstring(5000, L'E') + L" 3}";
    EXPECT_EQ(SKERR_INVALIDKEY, ParseKeyScript(nameThenCount.c_str()));

    std::wstring deep = std::wstring(300000, L'(') + L"a" + std::wstring(300000, L')');
    EXPECT_EQ(SKERR_NONE, ParseKeyScript(deep.c_str()));
    EXPECT_EQ(Queue{0x41}, ReadQueue());
    std::wstring deepOpen = std::wstring(300000, L'(') + L"a";
    EXPECT_EQ(SKERR_MISSINGCLOSEPAREN, ParseKeyScript(deepOpen.c_str()));
    std::wstring manyShifts = std::wstring(300000, L'+') + L"a";
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(manyShifts.c_str()));
    std::wstring mixed;
    for (int i = 0; i < 50000; ++i)
        mixed += L"+(";
    EXPECT_EQ(SKERR_STRINGTOOLONG, ParseKeyScript(mixed.c_str()));
}

TEST(KeysEscape, SpecialCharactersAreBraced) {
    CString text(L"50% (a+b)");
    SendKeysRemoveSpecialChars(text);
    EXPECT_EQ(CString(L"50{%} {(}a{+}b{)}"), text);

    CString all(L"%()*+[]^{}~");
    SendKeysRemoveSpecialChars(all);
    EXPECT_EQ(CString(L"{%}{(}{)}{*}{+}{[}{]}{^}{{}{}}{~}"), all);

    CString plain(L"plain text, 1-2 \x00E9!");
    SendKeysRemoveSpecialChars(plain);
    EXPECT_EQ(CString(L"plain text, 1-2 \x00E9!"), plain);

    CString empty;
    SendKeysRemoveSpecialChars(empty);
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(KeysEscape, EscapedTextParsesAsItsCharacters) {
    const std::wstring text = L"50% (a+b) {x} [y] ~z ^*";
    CString escaped(text.c_str());
    SendKeysRemoveSpecialChars(escaped);
    ASSERT_EQ(SKERR_NONE, ParseKeyScript(escaped));
    Queue expected;
    for (wchar_t ch : text)
        expected = Cat({expected, wcschr(L"%()*+[]^{}~", ch) != nullptr ? Braced(ch) : Char(ch)});
    EXPECT_EQ(expected, ReadQueue());
}

}  // namespace
