// No key left down: scripts typed for real leave pressed exactly what the rules say, and nothing once
// SendKeys_ReleaseAll (or a Control release after BREAK) has run. The rows are scripts worth keeping: the
// corners of the rules, and every script keys_soak.exe saves as failing (build/keys_soak_failures.txt;
// none so far). Then a short generated run; `make soak` types 13,000 with keys_soak.exe.
#include "KeyTestWindows.h"
#include "ScriptGenerator.h"
#include "ScriptRun.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

namespace {

using namespace keytest;

class KeysNoKeyLeftDown : public KeysTest {
protected:
    void TearDown() override {
        locks_.Restore();
        KeysTest::TearDown();
    }
    LockStates locks_;
};

// A fixed script with the queue the library's parser builds for it (the parser has its own tests; here the
// queue only tells the model what the player will press).
GeneratedScript Parsed(const std::wstring& script);

struct Row {
    const wchar_t* script;
    bool leftKeys;       // the rules leave keys down after the run
    bool beyondRelease;  // ...some of which no release of the library reaches
};

TEST_F(KeysNoKeyLeftDown, TableOfScripts) {
    const Row rows[] = {
        {L"+(a^(b%c)*d)e", false, false},
        {L"{a 3}{A 2}+{} 2}{{ 2}", false, false},
        {L"%{F4}%{TAB}^{ESC}%~", false, false},
        {L"+^%*", false, false},
        {L"(+)", false, false},  // the modifier wraps ')' as text: the group never closes, nothing typed
        {L"\u00e9+(\u20ac)", false, false},
        {L"[+a]", true, false},
        {L"[+a", true, false},
        {L"+([a)b", true, true},  // Shift pressed before '[', its release dropped in hold mode
        {L"[+a]+b", true, false},
        {L"{BREAK}", true, false},
        {L"{BREAK 2}x{BREAK 3}", true, false},
        {L"[{BREAK}]", true, false},
        {L"^c", false, false},
    };
    RecorderWindow window;
    for (const Row& row : rows) {
        const ScriptOutcome outcome = TypeAndCheck(Parsed(row.script), window);
        EXPECT_TRUE(outcome.ok) << ScriptText(row.script) << ": " << outcome.problem;
        EXPECT_EQ(row.leftKeys, outcome.leftKeys) << ScriptText(row.script);
        EXPECT_EQ(row.beyondRelease, outcome.beyondRelease) << ScriptText(row.script);
    }
}

// The check itself: a key the rules do not leave down is reported (and released, so the test stays clean).
TEST_F(KeysNoKeyLeftDown, AKeyLeftDownAgainstTheRulesIsSeen) {
    RecorderWindow window;
    GeneratedScript wrong = Parsed(L"{BREAK}");
    wrong.queue.push_back(VK_CONTROL);  // a model that believes Control was released again
    const ScriptOutcome outcome = TypeAndCheck(wrong, window);
    EXPECT_FALSE(outcome.ok);
    EXPECT_NE(std::string::npos, outcome.problem.find("0x11")) << outcome.problem;
}

TEST_F(KeysNoKeyLeftDown, GeneratedScripts) {
    const struct {
        ScriptKinds kinds;
        int count;
    } runs[] = {{{false, false}, 300}, {{true, false}, 100}, {{false, true}, 100}, {{true, true}, 100}};
    RecorderWindow window;
    ScriptGenerator generator(20240611);
    for (const auto& run : runs)
        for (int i = 0; i < run.count; ++i) {
            const GeneratedScript script = generator.Next(run.kinds);
            const ScriptOutcome outcome = TypeAndCheck(script, window);
            ASSERT_TRUE(outcome.ok) << ScriptText(script.script) << ": " << outcome.problem;
            if (!run.kinds.hold && !run.kinds.breakKey) {
                ASSERT_FALSE(outcome.leftKeys) << ScriptText(script.script);
            }
        }
}

GeneratedScript Parsed(const std::wstring& script) {
    GeneratedScript parsed;
    parsed.script = script;
    std::wstring lower = script;
    for (wchar_t& c : lower)
        c = static_cast<wchar_t>(towlower(c));
    if (lower == L"^c" || lower == L"^v" || lower == L"^x") {
        parsed.shortcut = true;
        return parsed;
    }
    tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    if (tav::keys::ParseKeyScript(script.c_str()) == SKERR_NONE)
        for (int i = 0; i < queue.Count(); ++i)
            parsed.queue.push_back(queue.At(i));
    return parsed;
}

}  // namespace
