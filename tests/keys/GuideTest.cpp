// The guide for script writers (docs/keystroke-scripts.md) against the parser: every row of its example
// tables ("| Script | Types | Keys pressed |") is parsed, and the key queue must be the one the row lists.
#include "KeyTestWindows.h"

#include <TavUtil.h>
#include <TestSupport.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace keytest;

struct Example {
    int line;
    std::wstring script;
    std::wstring keys;  // the "Keys pressed" cell
};

std::wstring ReadGuide() {
    std::string bytes;
    if (FILE* file = _wfopen(TAVTEST_SCRIPT_GUIDE, L"rb")) {
        char buffer[4096];
        for (size_t n; (n = fread(buffer, 1, sizeof buffer, file)) > 0;)
            bytes.append(buffer, n);
        fclose(file);
    }
    return tavtest::Widen(bytes);
}

std::wstring Trim(const std::wstring& text) {
    size_t first = text.find_first_not_of(L' ');
    size_t last = text.find_last_not_of(L' ');
    return first == std::wstring::npos ? L"" : text.substr(first, last - first + 1);
}

// The cells of a table row "| a | b | c |".
std::vector<std::wstring> Cells(const std::wstring& row) {
    std::vector<std::wstring> cells;
    size_t start = 1;
    for (size_t bar; (bar = row.find(L'|', start)) != std::wstring::npos; start = bar + 1)
        cells.push_back(Trim(row.substr(start, bar - start)));
    return cells;
}

std::vector<Example> ExamplesOf(const std::wstring& guide) {
    std::vector<Example> examples;
    bool inTable = false;
    int lineNumber = 0;
    for (size_t start = 0; start < guide.size();) {
        size_t end = guide.find(L'\n', start);
        if (end == std::wstring::npos)
            end = guide.size();
        std::wstring line = guide.substr(start, end - start);
        start = end + 1;
        ++lineNumber;
        if (line == L"| Script | Types | Keys pressed |") {
            inTable = true;
            continue;
        }
        if (line.empty() || line[0] != L'|') {
            inTable = false;
            continue;
        }
        std::vector<std::wstring> cells = Cells(line);
        if (!inTable || cells.size() != 3 || cells[0].rfind(L"---", 0) == 0)
            continue;
        const std::wstring& script = cells[0];
        EXPECT_TRUE(script.size() >= 2 && script.front() == L'`' && script.back() == L'`')
            << "line " << lineNumber << ": the script is not in backticks";
        examples.push_back({lineNumber, script.substr(1, script.size() - 2), cells[2]});
    }
    return examples;
}

// A queued key as the guide names it: the script's own key name, the character the key types, or its code.
std::wstring KeyName(WORD code) {
    static const wchar_t* const names[] = {L"ENTER", L"TAB",   L"ESC",      L"BACKSPACE", L"DELETE",    L"INSERT",
                                           L"LEFT",  L"RIGHT", L"UP",       L"DOWN",      L"PGUP",      L"PGDN",
                                           L"HOME",  L"END",   L"CAPSLOCK", L"NUMLOCK",   L"SCROLLOCK", L"HELP",
                                           L"PRTSC", L"CLEAR", L"SLEEP"};
    for (const wchar_t* name : names)
        if (tav::keys::LookupKeyName(name) == code)
            return name;
    if (code >= VK_F1 && code <= VK_F16)
        return L"F" + std::to_wstring(code - VK_F1 + 1);
    if (code == VK_SPACE)
        return L"SPACE";
    UINT ch = MapVirtualKeyW(code, MAPVK_VK_TO_CHAR) & 0xFFFF;
    if (ch > L' ')
        return std::wstring(1, static_cast<wchar_t>(ch));
    wchar_t hex[16];
    swprintf(hex, 16, L"key %02X", code);
    return hex;
}

// Queue entries in the guide's words: a modifier's first occurrence is "down", its second "up".
std::wstring Describe(const std::vector<WORD>& entries) {
    const WORD modifiers[4] = {VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN};
    const wchar_t* modifierNames[4] = {L"Shift", L"Control", L"Alt", L"Windows"};
    bool down[4] = {false, false, false, false};
    std::wstring text;
    for (WORD code : entries) {
        std::wstring item = code == tav::keys::kBeginHold ? L"hold begin"
                            : code == tav::keys::kEndHold ? L"hold end"
                                                          : L"";
        for (int m = 0; m < 4 && item.empty(); ++m)
            if (code == modifiers[m]) {
                down[m] = !down[m];
                item = std::wstring(modifierNames[m]) + (down[m] ? L" down" : L" up");
            }
        text += (text.empty() ? L"" : L", ") + (item.empty() ? KeyName(code) : item);
    }
    return text.empty() ? L"none" : text;
}

std::vector<WORD> QueueEntries() {
    const tav::keys::KeyQueue& queue = tav::keys::TheKeyQueue();
    std::vector<WORD> entries;
    for (int i = 0; i < queue.Count(); ++i)
        entries.push_back(queue.At(i));
    return entries;
}

// "the keys for ( on your layout": a braced character as the current layout types it (Shift, Control and
// Alt as its shift state asks, around its key), or nothing when no key produces it.
bool LayoutKeys(const std::wstring& cell, std::wstring& expected) {
    const std::wstring prefix = L"the keys for ", suffix = L" on your layout";
    if (cell.size() != prefix.size() + 1 + suffix.size() || cell.rfind(prefix, 0) != 0 ||
        cell.compare(prefix.size() + 1, suffix.size(), suffix) != 0)
        return false;
    WORD code = static_cast<WORD>(VkKeyScanW(cell[prefix.size()]));
    std::vector<WORD> entries;
    if (code != tav::keys::kNoKey) {
        const WORD shiftKeys[3] = {VK_SHIFT, VK_CONTROL, VK_MENU};
        for (int bit = 0; bit < 3; ++bit)
            if (HIBYTE(code) & (1 << bit))
                entries.push_back(shiftKeys[bit]);
        entries.push_back(LOBYTE(code));
        for (int bit = 0; bit < 3; ++bit)
            if (HIBYTE(code) & (1 << bit))
                entries.push_back(shiftKeys[bit]);
    }
    expected = Describe(entries);
    return true;
}

SKERR ErrorNamed(const std::wstring& cell) {
    const struct {
        const wchar_t* cell;
        SKERR result;
    } errors[] = {{L"none (error: brace not closed)", SKERR_MISSINGCLOSEBRACE},
                  {L"none (error: unknown key name)", SKERR_INVALIDKEY},
                  {L"none (error: group not closed)", SKERR_MISSINGCLOSEPAREN},
                  {L"none (error: bad count)", SKERR_INVALIDCOUNT}};
    for (const auto& error : errors)
        if (cell == error.cell)
            return error.result;
    return SKERR_NONE;
}

const wchar_t kWindowCommand[] = L"none (window command)";

// The rows of the table below the header line `header`, as cells, with their line numbers.
std::vector<std::pair<int, std::vector<std::wstring>>> TableRows(const std::wstring& guide,
                                                                 const std::wstring& header) {
    std::vector<std::pair<int, std::vector<std::wstring>>> rows;
    bool inTable = false;
    int lineNumber = 0;
    for (size_t start = 0; start < guide.size();) {
        size_t end = guide.find(L'\n', start);
        if (end == std::wstring::npos)
            end = guide.size();
        const std::wstring line = guide.substr(start, end - start);
        start = end + 1;
        ++lineNumber;
        if (line == header) {
            inTable = true;
            continue;
        }
        if (line.empty() || line[0] != L'|') {
            inTable = false;
            continue;
        }
        std::vector<std::wstring> cells = Cells(line);
        if (inTable && !cells.empty() && cells[0].rfind(L"---", 0) != 0)
            rows.push_back({lineNumber, cells});
    }
    return rows;
}

// A cell that holds a script in backticks: true and the script.
bool ScriptCell(const std::wstring& cell, std::wstring& script) {
    if (cell.size() < 2 || cell.front() != L'`' || cell.back() != L'`')
        return false;
    script = cell.substr(1, cell.size() - 2);
    return true;
}

class KeysGuide : public KeysTest {
protected:
    void SetUp() override {
        guide_ = ReadGuide();
        ASSERT_FALSE(guide_.empty()) << "cannot read " << tavtest::Narrow(TAVTEST_SCRIPT_GUIDE);
        examples_ = ExamplesOf(guide_);
        ASSERT_GE(examples_.size(), 60u) << "the guide's example tables were not found";
    }
    std::wstring guide_;
    std::vector<Example> examples_;
};

TEST_F(KeysGuide, EveryExampleQueuesTheKeysTheGuideLists) {
    int checked = 0;
    for (const Example& example : examples_) {
        if (example.keys == kWindowCommand)
            continue;
        const std::string where = "guide line " + std::to_string(example.line) + ": " + tavtest::Narrow(example.script);
        SKERR result = tav::keys::ParseKeyScript(example.script.c_str());
        std::wstring expected = example.keys;
        if (SKERR error = ErrorNamed(example.keys)) {
            EXPECT_EQ(error, result) << where;
            ++checked;
            continue;
        }
        LayoutKeys(example.keys, expected);
        EXPECT_EQ(SKERR_NONE, result) << where;
        EXPECT_EQ(tavtest::Narrow(expected), tavtest::Narrow(Describe(QueueEntries()))) << where;
        ++checked;
    }
    EXPECT_GE(checked, 50);
}

// "Check your script": every row's sentence is the one the check gives.
TEST_F(KeysGuide, CheckYourScriptShowsWhatTheCheckSays) {
    int checked = 0;
    for (const auto& row : TableRows(guide_, L"| Script | The check says |")) {
        const std::string where = "guide line " + std::to_string(row.first);
        ASSERT_EQ(2u, row.second.size()) << where;
        std::wstring script;
        ASSERT_TRUE(ScriptCell(row.second[0], script)) << where << ": the script is not in backticks";
        EXPECT_EQ(tavtest::Narrow(row.second[1]), tavtest::Narrow(tav::keys::CheckKeyScript(script.c_str()).message))
            << where;
        ++checked;
    }
    EXPECT_GE(checked, 10);
}

// "Coming from other tools": the check's sentence for the other spelling, and the spelling of this
// language (where the row gives one) is valid.
TEST_F(KeysGuide, ComingFromOtherToolsShowsWhatTheCheckSays) {
    int checked = 0;
    for (const auto& row : TableRows(guide_, L"| Other tools | Here | The check says about the other spelling |")) {
        const std::string where = "guide line " + std::to_string(row.first);
        ASSERT_EQ(3u, row.second.size()) << where;
        std::wstring other, here;
        ASSERT_TRUE(ScriptCell(row.second[0], other)) << where << ": the script is not in backticks";
        EXPECT_EQ(tavtest::Narrow(row.second[2]), tavtest::Narrow(tav::keys::CheckKeyScript(other.c_str()).message))
            << where;
        if (ScriptCell(row.second[1], here)) {
            const tav::keys::ScriptCheck check = tav::keys::CheckKeyScript(here.c_str());
            EXPECT_EQ(SKERR_NONE, check.result) << where;
            EXPECT_EQ(std::wstring::npos, check.message.find(L';')) << where << ": " << tavtest::Narrow(check.message);
        }
        ++checked;
    }
    EXPECT_GE(checked, 8);
}

// Window commands are carried out before anything is parsed: each example reaches a window with a menu
// (so that Menu finds its item) and types nothing.
TEST_F(KeysGuide, WindowCommandExamplesSendACommandAndTypeNothing) {
    RecorderWindow recorder(true);
    int checked = 0;
    for (const Example& example : examples_) {
        if (example.keys != kWindowCommand)
            continue;
        const std::string where = "guide line " + std::to_string(example.line) + ": " + tavtest::Narrow(example.script);
        recorder.Clear();
        EXPECT_EQ(SKERR_NONE, tav::keys::RunKeyScript(example.script.c_str())) << where;
        EXPECT_TRUE(tavtest::WaitUntil([&] { return !recorder.messages.empty(); })) << where;
        EXPECT_TRUE(recorder.Settle()) << where;
        EXPECT_TRUE(recorder.keys.empty()) << where << ": " << Describe(recorder.keys);
        ++checked;
    }
    EXPECT_GE(checked, 5);
}

}  // namespace
