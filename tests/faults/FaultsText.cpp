// Operations of pure text work (strings, paths, version numbers, command lines), the support query and the
// log. Most of them make no system call but allocations; a refused allocation gives TAV_E_OUT_OF_MEMORY.
#include "Faults.h"

#include "capi/TavUtilC.h"

#include <windows.h>

namespace faults {

namespace {

Operation Text(const char* area, const char* name, std::function<int32_t(wchar_t*, size_t, size_t*)> fill) {
    Operation op{area, name, {}, {}, 0, nullptr, {}, {}, false};
    op.run = [fill] { return TextResult(fill); };
    return op;
}

Operation Plain(const char* area, const char* name, std::function<int64_t()> call) {
    Operation op{area, name, {}, {}, 0, nullptr, {}, {}, false};
    op.run = [call] { return Answer{call(), L""}; };
    return op;
}

const wchar_t* const kLongText = L"The quick brown fox jumps over the lazy dog, again and again, until the line is "
                                 L"long enough to be cut into several display lines of twenty units.";

}  // namespace

void AddTextOperations(std::vector<Operation>& out) {
    // strings: StringCut raises only the list's length error, which no failed call reaches; a refused
    // allocation is the out-of-memory code.
    out.push_back(
        Text("strings", "cut", [](wchar_t* b, size_t c, size_t* n) { return tav_string_cut(kLongText, 20, b, c, n); }));
    out.push_back(Text("strings", "set_length",
                       [](wchar_t* b, size_t c, size_t* n) { return tav_string_set_length(L"abcdef", 12, b, c, n); }));
    out.push_back(Text("strings", "ensure_trailing_backslash", [](wchar_t* b, size_t c, size_t* n) {
        return tav_string_ensure_trailing_backslash(L"C:\\folder", b, c, n);
    }));
    out.push_back(Text("strings", "strip_trailing_backslash", [](wchar_t* b, size_t c, size_t* n) {
        return tav_string_strip_trailing_backslash(L"C:\\folder\\", b, c, n);
    }));

    // paths: pure string work, and the few that ask the file system.
    const wchar_t* const path = L"C:\\Program Files\\Suite\\tool.exe";
    out.push_back(
        Text("paths", "drive", [path](wchar_t* b, size_t c, size_t* n) { return tav_path_drive(path, b, c, n); }));
    out.push_back(Text("paths", "dir_no_drive",
                       [path](wchar_t* b, size_t c, size_t* n) { return tav_path_dir_no_drive(path, b, c, n); }));
    out.push_back(
        Text("paths", "file", [path](wchar_t* b, size_t c, size_t* n) { return tav_path_file(path, b, c, n); }));
    out.push_back(Text("paths", "extension",
                       [path](wchar_t* b, size_t c, size_t* n) { return tav_path_extension(path, b, c, n); }));
    out.push_back(
        Text("paths", "dir", [path](wchar_t* b, size_t c, size_t* n) { return tav_path_dir(path, b, c, n); }));
    {
        Operation op{"paths", "split", {}, {}, 0, nullptr, {}, {}, false};
        op.run = [path] {
            wchar_t dir[MAX_PATH], file[MAX_PATH];
            const int32_t status = tav_path_split(path, dir, MAX_PATH, nullptr, file, MAX_PATH, nullptr);
            return Answer{status, status == TAV_OK ? std::wstring(dir) + L"|" + file : L""};
        };
        out.push_back(op);
    }
    out.push_back(Text("paths", "compose", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_compose(L"C:\\folder", L"name", L"txt", b, c, n);
    }));
    // The folder of the running program: a failed module-name read gives an empty folder (the neutral answer;
    // the paths' failure rules speak only of results, and an empty text is this area's empty result).
    {
        Operation op = Text("paths", "beside_exe", [](wchar_t* b, size_t c, size_t* n) {
            return tav_path_beside_exe(L"settings", L"ini", b, c, n);
        });
        op.allow = kAnyText;
        op.silent = "a failed module-name read: the composed name has no folder";
        out.push_back(op);
    }
    {
        Operation op =
            Text("paths", "exe_dir", [](wchar_t* b, size_t c, size_t* n) { return tav_path_exe_dir(b, c, n); });
        op.allow = kAnyText;
        op.silent = "a failed module-name read: an empty folder";
        out.push_back(op);
    }
    out.push_back(Text("paths", "from_path_and_file", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_from_path_and_file(L"C:\\folder\\old.txt", L"new", L"log", b, c, n);
    }));
    out.push_back(Text("paths", "set_filename", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_set_filename(L"C:\\folder\\old.txt", L"new", L"log", b, c, n);
    }));
    out.push_back(Text("paths", "append_directory", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_append_directory(L"C:\\folder", L"sub", b, c, n);
    }));
    out.push_back(Text("paths", "strip_extension", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_strip_extension(L"C:\\folder\\name.txt", b, c, n);
    }));
    out.push_back(Text("paths", "strip_trailing_separator", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_strip_trailing_separator(L"C:\\folder\\", b, c, n);
    }));
    out.push_back(Text("paths", "strip_path", [](wchar_t* b, size_t c, size_t* n) {
        return tav_path_strip_path(L"C:\\folder\\name.txt", b, c, n);
    }));

    // version numbers
    {
        Operation op{"versions", "parse", {}, {}, 0, nullptr, {}, {}, false};
        op.run = [] {
            tav_version_number version{};
            const int32_t status = tav_version_parse(L"10.2.33.4", &version);
            return Answer{status, std::to_wstring(version.major) + L"." + std::to_wstring(version.minor) + L"." +
                                      std::to_wstring(version.fix) + L"." + std::to_wstring(version.build)};
        };
        out.push_back(op);
    }
    out.push_back(Plain("versions", "compare", [] {
        const tav_version_number a{1, 2, 3, 4, 1}, b{1, 2, 4, 0, 1};
        return tav_version_compare(&a, &b);
    }));
    out.push_back(Text("versions", "field_name",
                       [](wchar_t* b, size_t c, size_t* n) { return tav_verinfo_field_name(0, b, c, n); }));

    // launch: the parts that only read text.
    {
        Operation op{"launch", "extract_program", {}, {}, 0, nullptr, {}, {}, false};
        op.run = [] {
            wchar_t program[MAX_PATH], args[MAX_PATH];
            const int32_t status = tav_launch_extract_program(L"\"C:\\Program Files\\x.exe\" -a -b", program, MAX_PATH,
                                                              nullptr, args, MAX_PATH, nullptr);
            return Answer{status, status >= 0 ? std::wstring(program) + L"|" + args : L""};
        };
        out.push_back(op);
    }
    out.push_back(Text("launch", "strip_trailing_argument", [](wchar_t* b, size_t c, size_t* n) {
        return tav_launch_strip_trailing_argument(L"C:\\tools\\x.exe -a -b", b, c, n);
    }));

    // keys, the parts that only read a script: a refused allocation is the out-of-memory code.
    out.push_back(Text("keys", "escape",
                       [](wchar_t* b, size_t c, size_t* n) { return tav_keys_escape(L"50% (off) {now}", b, c, n); }));
    {
        Operation op{"keys", "parse", {}, {}, 0, nullptr, {}, {}, false};
        op.run = [] {
            uint16_t entries[64] = {};
            size_t needed = 0;
            const int32_t status = tav_keys_parse(L"ab+c{ENTER}^{F5}", entries, 64, &needed);
            std::wstring text;
            for (size_t i = 0; i < needed && i < 64; ++i)
                text += std::to_wstring(entries[i]) + L" ";
            return Answer{status, text};
        };
        // A failed VkKeyScanW answers 0xFFFF, which the parser takes as it takes a character without a key (the
        // shift-state byte's three bits and code 255), as settled: the result is the same, the entries differ.
        op.allow = kAnyText;
        out.push_back(op);
    }
    out.push_back(Plain("keys", "lookup_name", [] { return tav_keys_lookup_name(L"enter"); }));

    // support: every failure leaves a parameter out or takes its fallback value; the query's facts come from
    // the registry, the system and the version resource, so the text may differ, never the result.
    for (const wchar_t* address : {L"http://www.velmorax.com/support?x=1", L"http://www.example.com/"}) {
        Operation op = Text("support", address[11] == 'v' ? "query" : "query_foreign",
                            [address](wchar_t* b, size_t c, size_t* n) { return tav_support_query(address, b, c, n); });
        op.allow = kAnyText;
        out.push_back(op);
    }

    // log: nothing is reported back; a record written or filtered answers as it does with nothing failing.
    {
        Operation op = Plain("log", "write_to_file", [] {
            return tav_log_write(TAV_LOG_INFO, L"faults.cpp", 1, L"AddTextOperations", L"a record");
        });
        op.setup = [] { tav_log_set_output(TAV_LOG_TO_FILE, (Scratch() + L"faults.log").c_str()); };
        op.teardown = [] { tav_log_set_output(TAV_LOG_TO_NONE, nullptr); };
        out.push_back(op);
    }
    {
        Operation op = Plain("log", "set_output_file", [] {
            const int32_t result = tav_log_set_output(TAV_LOG_TO_FILE, (Scratch() + L"faults2.log").c_str());
            tav_log_set_output(TAV_LOG_TO_NONE, nullptr);
            return result;
        });
        // A file that cannot be opened is a false answer (the output stays where it was).
        op.neutral = {{0, L""}};
        out.push_back(op);
    }
    out.push_back(Text("log", "level_name",
                       [](wchar_t* b, size_t c, size_t* n) { return tav_log_level_name(TAV_LOG_WARNING, b, c, n); }));
    out.push_back(Plain("log", "level_from_name", [] { return tav_log_level_from_name(L"DEBUG2"); }));
}

}  // namespace faults
