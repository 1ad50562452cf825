// The keystroke verbs of tavutil.exe.
#include "KeyTestWindows.h"
#include "TextRecorder.h"

#include <PhysicalKeyboard.h>
#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

namespace {

tavtest::ChildResult Tavutil(const std::wstring& arguments) {
    return tavtest::RunProgram(L"\"" + tavtest::BinDir() + L"\\tavutil.exe\" " + arguments);
}

// The line the verb prints for a keystroke result: the code and the library's own sentence for it
// (tav_result_text), without its final full stop.
std::string ResultLine(int32_t code) {
    wchar_t sentence[256] = L"";
    EXPECT_EQ(TAV_OK, tav_result_text(TAV_RESULT_SKERR, code, sentence, 256, nullptr));
    std::wstring text = sentence;
    EXPECT_FALSE(text.empty());
    if (!text.empty() && text.back() == L'.')
        text.pop_back();
    return "result: " + std::to_string(code) + " (" + tavtest::Narrow(text) + ")";
}

TEST(KeysCli, DryRunShowsTheQueueAndResult) {
    tavtest::ChildResult run = Tavutil(L"keys --dry-run \"+(ab) {ENTER 2}\"");
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("queue (7 entries): Shift down, A, B, Shift up, SPACE, ENTER, ENTER"))
        << run.output;
    EXPECT_NE(std::string::npos, run.output.find(ResultLine(SKERR_NONE))) << run.output;

    run = Tavutil(L"keys --dry-run \"{ENTER 0}\"");
    EXPECT_EQ(1u, run.exitCode);
    EXPECT_NE(std::string::npos, run.output.find(ResultLine(SKERR_INVALIDCOUNT))) << run.output;
}

// keys --check: the sentence, and for an error the script with a caret under the item; 1 for an invalid
// script, 0 for a valid one.
TEST(KeysCli, CheckSaysWhatIsWrongAndWhere) {
    tavtest::ChildResult run = Tavutil(L"keys --check \"abc{ENTR}\"");
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_EQ("unknown key name 'ENTR'\nabc{ENTR}\n   ^\n", run.output);

    run = Tavutil(L"keys --check \"x(a{INS}\"");
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_EQ("unknown key name 'INS' (the Insert key is {INSERT})\nx(a{INS}\n   ^\n", run.output);

    run = Tavutil(L"keys --check \"Hello, World!{ENTER}\"");
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_EQ("types 14 keys\n", run.output);

    run = Tavutil(L"keys --check \"x{TAB -1}\"");
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_EQ("the count -1 in {TAB -1} is not a number above 0: it repeats the key until the script would need "
              "more than 6144 key entries\nx{TAB -1}\n ^\n",
              run.output);
}

// The answer goes to standard output and nothing to standard error (cmd's redirections split them).
TEST(KeysCli, CheckAnswersOnStandardOutput) {
    tavtest::ChildResult run =
        tavtest::RunProgram(L"cmd /c tavutil.exe keys --check abc{ENTR} 2>NUL", 60000, tavtest::BinDir());
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_EQ("unknown key name 'ENTR'\nabc{ENTR}\n   ^\n", run.output);
    run = tavtest::RunProgram(L"cmd /c tavutil.exe keys --check abc{ENTR} 1>NUL", 60000, tavtest::BinDir());
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_EQ("", run.output);
}

// A dry run of a script that types nothing shows no queue: it says why, or which commands it carries out.
TEST(KeysCli, DryRunOfABrokenScriptSaysNothingWillBeTyped) {
    tavtest::ChildResult run = Tavutil(L"keys --dry-run \"abc{ENTR}\"");
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_EQ("nothing will be typed: unknown key name 'ENTR'\nabc{ENTR}\n   ^\n" + ResultLine(SKERR_INVALIDKEY) + "\n",
              run.output);
    EXPECT_EQ(std::string::npos, run.output.find("queue")) << run.output;
}

TEST(KeysCli, EscapeAndReleaseAll) {
    tavtest::ChildResult run = Tavutil(L"escape \"50% (a+b)\"");
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ("50{%} {(}a{+}b{)}\n", run.output);
    run = Tavutil(L"release-all");
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ(0u, run.output.rfind("released the keys held by this process: none", 0)) << run.output;
    run = Tavutil(L"keys");
    EXPECT_EQ(2u, run.exitCode) << run.output;
}

// A tavutil process cannot hand its hold list to a later one: the keys verb releases what it held.
class KeysCliTyping : public keytest::KeysTest {};

TEST_F(KeysCliTyping, KeysVerbReleasesWhatItHeld) {
    using namespace keytest;
    RecorderWindow recorder;
    tavtest::ChildResult run = Tavutil(L"keys \"[{F13}\"");
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("released 1 held key at exit")) << run.output;
    EXPECT_EQ(Describe({Down(VK_F13), Up(VK_F13)}), Describe(recorder.WaitForKeys(2)));
    EXPECT_FALSE(IsKeyDown(VK_F13));
}

// The verb reports what the run did: command words carried out (status 0), a failed {Menu (status 1),
// or the parse result.
TEST_F(KeysCliTyping, KeysVerbReportsCommandWordsAndMenuFailures) {
    using namespace keytest;
    RecorderWindow recorder;  // no menu bar
    tavtest::ChildResult run = Tavutil(L"keys \"{PostCommand 1f4}\"");
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find("result: command words carried out")) << run.output;
    EXPECT_TRUE(tavtest::WaitUntil([&] {
        for (const WindowMessage& m : recorder.messages)
            if (m.message == WM_COMMAND && m.wParam == 0x1F4)
                return true;
        return false;
    }));

    run = Tavutil(L"keys \"{Menu 0 0}\"");
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find(ResultLine(SKERR_MENUFAILED))) << run.output;

    run = Tavutil(L"keys \"{ENTR}\"");
    EXPECT_EQ(1u, run.exitCode) << run.output;
    EXPECT_NE(std::string::npos, run.output.find(ResultLine(SKERR_INVALIDKEY))) << run.output;
    EXPECT_TRUE(recorder.KeysSoFar().empty()) << Describe(recorder.keys);
}

// Neither a check nor a dry run carries out a window command: both describe it.
TEST_F(KeysCliTyping, CheckAndDryRunDescribeWindowCommands) {
    using namespace keytest;
    RecorderWindow recorder;
    for (const wchar_t* command : {L"keys --check \"{PostCommand 1f4}\"", L"keys --dry-run \"{PostCommand 1f4}\""}) {
        tavtest::ChildResult run = Tavutil(command);
        EXPECT_EQ(0u, run.exitCode) << run.output;
        EXPECT_EQ("carries out 1 window command and types nothing else\n", run.output);
    }
    EXPECT_TRUE(recorder.Settle());
    EXPECT_TRUE(recorder.messages.empty()) << recorder.messages.size() << " window messages";
    EXPECT_TRUE(recorder.keys.empty()) << Describe(recorder.keys);
}

TEST_F(KeysCliTyping, TypeVerbTypesTextLiterally) {
    keytest::TextRecorder recorder;
    tavtest::ChildResult run = Tavutil(L"type \"a\u00E9{+}\U0001F600\"");
    EXPECT_EQ(0u, run.exitCode) << run.output;
    EXPECT_EQ(ResultLine(SKERR_NONE) + "\n", run.output);
    recorder.WaitForKeyMessages(14);
    EXPECT_EQ(14u, recorder.KeyMessages().size()) << recorder.DescribeKeys();
    EXPECT_TRUE(recorder.Characters() == L"a\u00E9{+}\U0001F600");
}

// --per-key spaces the events (checked from below only); --delay waits before the first, as for keys.
TEST_F(KeysCliTyping, PerKeyPacesTypeAndKeys) {
    keytest::TextRecorder recorder;
    for (const wchar_t* command : {L"type --per-key 30 --delay 10 abc", L"keys --delay 10 --per-key 30 abc"}) {
        recorder.Clear();
        tavtest::ChildResult run = Tavutil(command);
        EXPECT_EQ(0u, run.exitCode) << run.output;
        recorder.WaitForKeyMessages(6);
        std::vector<keytest::TextRecorder::Message> keys = recorder.KeyMessages();
        ASSERT_EQ(6u, keys.size()) << tavtest::Narrow(command) << ": " << recorder.DescribeKeys();
        EXPECT_GE(keys.back().time - keys.front().time, 5 * 29) << tavtest::Narrow(command);
        EXPECT_TRUE(recorder.Characters() == L"abc");
    }
}

// The typing options: with a person's Ctrl held, --release-modifiers types the plain keys and leaves Ctrl as
// the user holds it; without it the keys of a script arrive as Ctrl shortcuts (nothing typed).
TEST_F(KeysCliTyping, TypingOptionsWithAHeldModifier) {
    keytest::EditWindow edit;
    tavtest::PhysicalKeyboard keyboard(edit.window());
    ASSERT_TRUE(keyboard.Ready()) << "the keys of xdotool do not reach Wine";
    ASSERT_TRUE(keyboard.Down(tavtest::kCtrl));
    for (const wchar_t* command : {L"type --release-modifiers kq", L"keys --release-modifiers kq",
                                   L"keys --wait-release 100 --hold 20 --release-modifiers kq"}) {
        edit.Clear();
        tavtest::ChildResult run = Tavutil(command);
        EXPECT_EQ(0u, run.exitCode) << run.output;
        EXPECT_TRUE(edit.WaitForText(L"kq") == L"kq")
            << tavtest::Narrow(command) << ": " << tavtest::Narrow(edit.Text());
        EXPECT_TRUE(keytest::IsKeyDown(VK_LCONTROL)) << tavtest::Narrow(command);
    }
    // (Literal text goes out as Unicode units, which a held Ctrl does not turn into shortcuts.)
    for (const wchar_t* command : {L"keys kq", L"keys --wait-release 100 kq"}) {
        edit.Clear();
        tavtest::ChildResult run = Tavutil(command);
        EXPECT_EQ(0u, run.exitCode) << run.output;
        EXPECT_TRUE(tavtest::Settle(edit.window()));
        EXPECT_TRUE(edit.Text().empty()) << tavtest::Narrow(command) << ": " << tavtest::Narrow(edit.Text());
    }
    EXPECT_TRUE(keyboard.Up(tavtest::kCtrl));
}

TEST(KeysCli, TypeUsageErrors) {
    for (const wchar_t* command :
         {L"type", L"type a b", L"type --per-key x a", L"type --per-key -5 a", L"type --delay 5",
          L"keys --per-key -1 a", L"type --hold x a", L"keys --wait-release -1 a"}) {
        tavtest::ChildResult run = Tavutil(command);
        EXPECT_EQ(2u, run.exitCode) << tavtest::Narrow(command) << "\n" << run.output;
    }
    tavtest::ChildResult help = Tavutil(L"--help");
    EXPECT_NE(std::string::npos,
              help.output.find("type [--delay MS] [--per-key MS] [--hold MS] [--wait-release MS] [--release-modifiers] "
                               "TEXT"))
        << help.output;
    EXPECT_NE(std::string::npos, help.output.find("keys [--delay MS] [--per-key MS]")) << help.output;
}

}  // namespace
