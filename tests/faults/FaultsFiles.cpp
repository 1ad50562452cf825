// Operations on files: the text file reader, the version resource reader, the paths that ask the file system
// and the installed-software look-ups. Each works on files of the run's own or on the system's own DLLs.
#include "Faults.h"

#include "capi/TavUtilC.h"

#include <windows.h>

namespace faults {

const std::wstring& Scratch() {
    static const std::wstring folder = [] {
        wchar_t temp[MAX_PATH];
        GetTempPathW(MAX_PATH, temp);
        std::wstring path = std::wstring(temp) + L"tavutil-faults-" + std::to_wstring(GetCurrentProcessId()) + L"\\";
        CreateDirectoryW(path.c_str(), nullptr);
        return path;
    }();
    return folder;
}

std::wstring ScratchFile(const wchar_t* name, const std::string& content) {
    const std::wstring path = Scratch() + name;
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr);
        CloseHandle(file);
    }
    return path;
}

namespace {

Operation Op(const char* area, const char* name, std::function<Answer()> run, std::vector<Answer> neutral,
             unsigned allow = 0) {
    return Operation{area, name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
}

std::wstring SystemDll(const wchar_t* name) {
    wchar_t folder[MAX_PATH];
    GetSystemDirectoryW(folder, MAX_PATH);
    return std::wstring(folder) + L"\\" + name;
}

}  // namespace

void AddFileOperations(std::vector<Operation>& out) {
    // textfile: a file that cannot be opened or read answers 0 with no bytes.
    const std::wstring text = ScratchFile(L"text.txt", "first line\r\nsecond line\r\n");
    out.push_back(Op("textfile", "read",
                     [text] {
                         tav_textfile file = tav_textfile_create();
                         if (file == nullptr)
                             return Answer{TAV_E_OUT_OF_MEMORY, L""};
                         const int32_t read = tav_textfile_read(file, text.c_str());
                         char bytes[256] = {};
                         size_t needed = 0;
                         const int32_t copied = tav_textfile_bytes(file, bytes, sizeof bytes - 1, &needed);
                         tav_textfile_destroy(file);
                         if (read < 0 || copied < 0)
                             return Answer{read < 0 ? read : copied, L""};
                         return Answer{read, std::wstring(bytes, bytes + needed)};
                         // Deliberate: when no byte is read the result is inverted, so a failed ReadFile answers true
                         // with no bytes.
                     },
                     {{0, L""}, {1, L""}}));

    // versions: a file without a readable version resource leaves the object empty (0, and empty fields).
    const std::wstring kernel = SystemDll(L"kernel32.dll");
    out.push_back(Op("versions", "init_and_field",
                     [kernel] {
                         tav_verinfo info = tav_verinfo_create();
                         if (info == nullptr)
                             return Answer{TAV_E_OUT_OF_MEMORY, L""};
                         const int32_t loaded = tav_verinfo_init(info, kernel.c_str());
                         wchar_t company[256] = {};
                         const int32_t found =
                             tav_verinfo_field(info, TAV_VERFIELD_COMPANY_NAME, company, 256, nullptr);
                         tav_version_number version{};
                         tav_verinfo_file_version(info, &version);
                         tav_verinfo_destroy(info);
                         if (loaded < 0 || found < 0)
                             return Answer{loaded < 0 ? loaded : found, L""};
                         return Answer{loaded != 0, std::wstring(company) + L"|" + std::to_wstring(version.major)};
                     },
                     {{0, L"|0"}, {1, L"|10"}, {1, L"Microsoft Corporation|0"}, {1, L"|0"}}));
    out.back().silent = "a resource that cannot be read is a file without one (0, empty fields and version 0); a "
                        "query that fails is a field or a number the resource lacks";

    // paths that ask the file system: false answers.
    const std::wstring existing = ScratchFile(L"exists.txt", "x");
    out.push_back(Op("paths", "file_exists",
                     [existing] {
                         return Answer{tav_path_file_exists(existing.c_str()), L""};
                     },
                     {{0, L""}}));
    out.push_back(Op("paths", "exists",
                     [existing] {
                         return Answer{tav_path_exists(existing.c_str()), L""};
                     },
                     {{0, L""}}));
    {
        const std::wstring deep = Scratch() + L"made\\deeper\\deepest";
        Operation op = Op("paths", "create_directory",
                          [deep] {
                              return Answer{tav_path_create_directory(deep.c_str(), 1), L""};
                          },
                          {{0, L""}});
        op.teardown = [] {
            RemoveDirectoryW((Scratch() + L"made\\deeper\\deepest").c_str());
            RemoveDirectoryW((Scratch() + L"made\\deeper").c_str());
            RemoveDirectoryW((Scratch() + L"made").c_str());
        };
        out.push_back(op);
    }

    // software: every failure gives the empty text and false; keys opened along the way are closed.
    out.push_back(Op(
        "software", "install_date",
        [] { return TextResult([](wchar_t* b, size_t c, size_t* n) { return tav_software_install_date(b, c, n); }); },
        {{0, L""}}));
    out.push_back(Op("software", "application_path",
                     [] {
                         return TextResult([](wchar_t* b, size_t c, size_t* n) {
                             return tav_software_application_path(L"notepad", L"exe", b, c, n);
                         });
                     },
                     {{0, L""}}));
    out.push_back(Op("software", "progid_server",
                     [] {
                         return TextResult([](wchar_t* b, size_t c, size_t* n) {
                             return tav_software_progid_server(L"Scripting.Dictionary", b, c, n);
                         });
                     },
                     {{0, L""}}));
    out.back().platformKeepsHandles =
        "Wine keeps one handle with every open below HKEY_CLASSES_ROOT in the 32-bit view";
}

}  // namespace faults
