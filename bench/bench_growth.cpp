// How the cost of the entry points that take text of any length grows with it: each row times the call on
// ten times the input against the call on the input, in turns (Bench.h). Cost in proportion to the input
// gives a ratio of about 10; the goal allows 11. (StringCut's row is in bench_strings.)
#include "Bench.h"
#include "BenchWindow.h"

#include <TavUtil.h>

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::wstring Repeated(const std::wstring& piece, size_t times) {
    std::wstring text;
    text.reserve(piece.size() * times);
    for (size_t i = 0; i < times; ++i)
        text += piece;
    return text;
}

bench::Options Growth(int callsPerBatch) {
    bench::Options options;
    options.pairs = 11;
    options.callsPerBatch = callsPerBatch;
    options.batches = 3;
    options.goal = 11;
    return options;
}

}  // namespace

int main() {
    volatile size_t sink = 0;

    // The parser: a script of plain characters, names with counts and groups, 5,000 and 50,000 units (the
    // queue's limit of entries stops neither: the parse of an overlong script fails where it is reached, so
    // the piece is kept short of it by using counts).
    const std::wstring piece = L"ab{TAB 3}+(cd)";
    const std::wstring script = Repeated(piece, 40), script10 = Repeated(piece, 400);
    bench::Compare(
        "parse time, 10x the script", [&] { sink = sink + tav::keys::ParseKeyScript(script10.c_str()); },
        [&] { sink = sink + tav::keys::ParseKeyScript(script.c_str()); }, Growth(5));

    // The script check on the same scripts: the parse on a state of its own, the look for command words
    // and the description of what the keys do.
    bench::Compare(
        "script check time, 10x the script",
        [&] { sink = sink + tav::keys::CheckKeyScript(script10.c_str()).message.size(); },
        [&] { sink = sink + tav::keys::CheckKeyScript(script.c_str()).message.size(); }, Growth(5));

    // The command-word scan: scripts of 1,000 and 10,000 command words, each carried out (a command posted
    // to the benchmark's own window in front), nothing typed. Before each turn the commands posted so far
    // are taken from the queue, so that no turn meets a full queue.
    {
        const bench::Window target(L"bench growth");
        const std::wstring words = Repeated(L"{PostCommand 0}", 1000), words10 = Repeated(L"{PostCommand 0}", 10000);
        bench::Compare(
            "command-word scan time, 10x the words", [&] { sink = sink + SendKeys(words10.c_str()); },
            [&] { sink = sink + SendKeys(words.c_str()); }, Growth(1), bench::Pump);
    }

    // Escaping text with every special character, 2,040 and 20,400 units, the row held to the goal; and
    // 20,400 and 204,000 units beside a reference that only copies the text and writes a result of the
    // escape's length. At the larger pair the 10x buffers (400 KB in, 1 MB out) are above the size of block
    // the heap keeps: each call maps them afresh and faults their pages in, and both rows grow by 12 to 20
    // on this machine while the smaller pair, whose buffers stay in the heap, grows by 10. The work per unit
    // is the same: the difference is the memory's, and the reference row shows it.
    const auto escape = [&sink](const std::wstring& input) {
        CString text(input.c_str());
        SendKeysRemoveSpecialChars(text);
        sink = sink + text.GetLength();
    };
    const auto referenceEscape = [&sink](const std::wstring& input) {
        CString text(input.c_str());
        std::wstring result(static_cast<size_t>(text.GetLength()) * 32 / 12, L'\0');
        for (size_t i = 0; i < result.size(); ++i)
            result[i] = text.GetAt(static_cast<int>(i % static_cast<size_t>(text.GetLength())));
        sink = sink + result.size();
    };
    const std::wstring special = Repeated(L"a+^%~(){}[]b", 170), special10 = Repeated(L"a+^%~(){}[]b", 1700),
                       special100 = Repeated(L"a+^%~(){}[]b", 17000);
    bench::Compare(
        "escape time, 10x the text", [&] { escape(special10); }, [&] { escape(special); }, Growth(30));
    bench::Options large = Growth(3);
    large.goal = 0;
    bench::Compare(
        "escape time, 10x the text, 1 MB result", [&] { escape(special100); }, [&] { escape(special10); }, large);
    bench::Compare(
        "reference copy and fill, 10x the text, 1 MB result", [&] { referenceEscape(special100); },
        [&] { referenceEscape(special10); }, large);

    // ExtractProgram: a line whose program is not found, with 10 and 100 blanks (each blank is a place
    // where the program could end: one search each).
    const std::wstring line = L"C:\\no such folder" + Repeated(L" x", 10);
    const std::wstring line10 = L"C:\\no such folder" + Repeated(L" x", 100);
    bench::Compare(
        "ExtractProgram time, 10x the blanks",
        [&] {
            CStdStr<wchar_t> program, args;
            sink = sink + ExtractProgram(line10, program, args);
        },
        [&] {
            CStdStr<wchar_t> program, args;
            sink = sink + ExtractProgram(line, program, args);
        },
        Growth(1));
    // The recorder's script: the key events of 2,000 and 20,000 presses (text with Shift, a modifier over
    // several keys, runs of a named key), written as a script.
    const auto presses = [](size_t rounds) {
        std::vector<tav::keys::RecordedKey> keys;
        const auto tap = [&keys](WORD vk) {
            keys.push_back({vk, 0, false, false, 0});
            keys.push_back({vk, 0, true, false, 0});
        };
        for (size_t i = 0; i < rounds; ++i) {
            keys.push_back({VK_LSHIFT, 0, false, false, 0});
            tap('H');
            tap('9');
            keys.push_back({VK_LSHIFT, 0, true, false, 0});
            tap('I');
            keys.push_back({VK_LCONTROL, 0, false, false, 0});
            tap('A');
            tap('C');
            keys.push_back({VK_LCONTROL, 0, true, false, 0});
            tap(VK_TAB);
            tap(VK_TAB);
            tap(VK_RETURN);
        }
        return keys;
    };
    const std::vector<tav::keys::RecordedKey> keys = presses(250), keys10 = presses(2500);
    bench::Compare(
        "recorder script time, 10x the key events",
        [&] { sink = sink + tav::keys::ScriptFromKeys(keys10).script.size(); },
        [&] { sink = sink + tav::keys::ScriptFromKeys(keys).script.size(); }, Growth(3));
    return bench::Finish();
}
