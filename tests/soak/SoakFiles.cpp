// Version resources of a real file, and text files.
#include "Areas.h"

#include "TestSupport.h"

#include <TavUtil.h>

#include <windows.h>

namespace soak {

void SoakFiles(Runner& runner) {
    wchar_t system[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    const std::wstring kernel = std::wstring(system) + L"\\kernel32.dll";  // carries a version resource
    const std::wstring notepad = std::wstring(system) + L"\\notepad.exe";  // carries none under Wine

    runner.Check("CVerInfo Init + GetField (all) + version numbers", [&] {
        CVerInfo info(kernel.c_str());
        CStdStr<wchar_t> text;
        for (int field = VF_FileVersionNumber; field <= VF_ProductBuildNumber; ++field)
            info.GetField(static_cast<VERFIELD>(field), text);
        CVerNum number;
        info.GetFileVersionNum(&number);
        info.GetProductVersionNum(&number);
    });
    runner.Check("CVerInfo copies sharing the data", [&] {
        CVerInfo info(kernel.c_str());
        CVerInfo copy(info);
        CVerInfo assigned;
        assigned = copy;
        assigned = CVerInfo(kernel.c_str());
    });
    runner.Check("CVerInfo file without a version resource", [&] { CVerInfo info(notepad.c_str()); });

    tavtest::TempDir folder(L"tavsoak");
    const std::wstring text = folder / L"text.txt";
    const std::wstring empty = folder / L"empty.txt";
    tavtest::WriteFileBytes(text, "first line\r\nsecond line\r\n");
    tavtest::WriteFileBytes(empty, "");
    runner.Check("cTextFile Read + GetNextLine", [&] {
        cTextFile file;
        file.Read(text);
        CStdStr<wchar_t> line;
        file.GetNextLine(line);
    });
    runner.Check("cTextFile Read empty file", [&] { cTextFile().Read(empty); });
    runner.Check("cTextFile Read missing file", [&] { cTextFile().Read(folder / L"missing.txt"); });
}

}  // namespace soak
