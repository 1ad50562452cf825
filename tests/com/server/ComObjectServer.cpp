// com_object_server.exe: a second process that offers a TestDispatch to the com tests. It registers the
// object (optionally after a delay) as the active object of a class identifier and/or in the Running
// Object Table, signals a named event (before a delay, else after registering), and revokes everything when a second
// named event is set.
//   com_object_server --clsid {...} --name NAME [--active] [--item] [--file PATH] [--delay MS]
//                     --ready EVENT --quit EVENT
#include "TestDispatch.h"
#include "platform/Guards.h"
#include "platform/Handles.h"

#include <windows.h>
#include <objbase.h>
#include <oleauto.h>

#include <cwchar>
#include <string>

namespace {

struct Options {
    std::wstring clsid, name = L"server", file, ready, quit;
    bool active = false, item = false;
    DWORD delayMs = 0;
};

bool Parse(int argc, wchar_t** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        std::wstring arg = argv[i];
        auto next = [&](std::wstring& value) {
            if (i + 1 >= argc)
                return false;
            value = argv[++i];
            return true;
        };
        std::wstring number;
        if (arg == L"--clsid"    ? !next(options.clsid)
            : arg == L"--name"   ? !next(options.name)
            : arg == L"--file"   ? !next(options.file)
            : arg == L"--ready"  ? !next(options.ready)
            : arg == L"--quit"   ? !next(options.quit)
            : arg == L"--delay"  ? !next(number)
            : arg == L"--active" ? !(options.active = true)
            : arg == L"--item"   ? !(options.item = true)
                                 : true)
            return false;
        if (!number.empty())
            options.delayMs = static_cast<DWORD>(_wtoi(number.c_str()));
    }
    return !options.clsid.empty() && !options.ready.empty() && !options.quit.empty();
}

DWORD Register(IRunningObjectTable* table, IUnknown* object, IMoniker* moniker) {
    DWORD cookie = 0;
    if (table == nullptr || moniker == nullptr || FAILED(table->Register(0, object, moniker, &cookie)))
        return 0;
    return cookie;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    Options options;
    if (!Parse(argc, argv, options))
        return 2;
    tav::ComInitialization com(COINIT_MULTITHREADED);
    if (!com.succeeded())
        return 3;
    tav::UniqueHandle ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, options.ready.c_str()));
    tav::UniqueHandle quit(OpenEventW(SYNCHRONIZE, FALSE, options.quit.c_str()));
    CLSID clsid;
    if (!ready || !quit || FAILED(CLSIDFromString(options.clsid.c_str(), &clsid)))
        return 4;

    auto* object = new comtest::TestDispatch(options.name);
    IRunningObjectTable* table = nullptr;
    GetRunningObjectTable(0, &table);
    IMoniker *itemMoniker = nullptr, *fileMoniker = nullptr;
    if (options.item)
        CreateItemMoniker(L"!", options.clsid.c_str(), &itemMoniker);
    if (!options.file.empty())
        CreateFileMoniker(options.file.c_str(), &fileMoniker);

    // Without a delay the server is ready once its registrations are in place; with one, as soon as it
    // runs, so that the test's first lookup comes before the registration.
    if (options.delayMs != 0) {
        SetEvent(ready.get());
        Sleep(options.delayMs);
    }
    DWORD activeCookie = 0;
    if (options.active && FAILED(RegisterActiveObject(object, clsid, ACTIVEOBJECT_STRONG, &activeCookie)))
        return 5;
    DWORD itemCookie = options.item ? Register(table, object, itemMoniker) : 0;
    DWORD fileCookie = fileMoniker ? Register(table, object, fileMoniker) : 0;
    SetEvent(ready.get());

    WaitForSingleObject(quit.get(), 120000);
    if (activeCookie)
        RevokeActiveObject(activeCookie, nullptr);
    if (itemCookie)
        table->Revoke(itemCookie);
    if (fileCookie)
        table->Revoke(fileCookie);
    if (itemMoniker)
        itemMoniker->Release();
    if (fileMoniker)
        fileMoniker->Release();
    if (table)
        table->Release();
    object->Release();
    return 0;
}
