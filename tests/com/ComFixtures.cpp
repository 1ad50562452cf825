#include "ComFixtures.h"

#include "Desktop.h"

#include <atomic>
#include <cstdio>

namespace comtest {

CLSID ToClsid(const wchar_t* text) {
    CLSID clsid = CLSID_NULL;
    CLSIDFromString(text, &clsid);
    return clsid;
}

std::wstring Lower(std::wstring text) {
    for (wchar_t& ch : text)
        ch = static_cast<wchar_t>(towlower(ch));
    return text;
}

CComPtr<TestDispatch> MakeObject(const wchar_t* name, bool offersDispatch) {
    CComPtr<TestDispatch> object;
    object.Attach(new TestDispatch(name, offersDispatch));
    return object;
}

std::wstring NameOf(IUnknown* object) {
    CComQIPtr<IDispatch> dispatch(object);
    return ComUtils::GetPropW(dispatch, L"Name");
}

ProgIdRegistration::ProgIdRegistration(const wchar_t* progId, const wchar_t* clsid)
    : key_(std::wstring(L"Software\\Classes\\") + progId) {
    std::wstring value = clsid;
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, (key_ + L"\\CLSID").c_str(), nullptr, REG_SZ, value.c_str(),
                    static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

ProgIdRegistration::~ProgIdRegistration() {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, key_.c_str());
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, key_.c_str());
}

ActiveRegistration::ActiveRegistration(IUnknown* object, const wchar_t* clsid) {
    if (FAILED(RegisterActiveObject(object, ToClsid(clsid), ACTIVEOBJECT_STRONG, &cookie_)))
        cookie_ = 0;
}

ActiveRegistration::~ActiveRegistration() {
    if (cookie_ != 0)
        RevokeActiveObject(cookie_, nullptr);
}

RotRegistration::RotRegistration(IUnknown* object, IMoniker* moniker) {
    CComPtr<IRunningObjectTable> table;
    if (moniker == nullptr || FAILED(GetRunningObjectTable(0, &table)) ||
        FAILED(table->Register(ROTFLAGS_REGISTRATIONKEEPSALIVE, object, moniker, &cookie_)))
        cookie_ = 0;
}

RotRegistration RotRegistration::Item(IUnknown* object, const wchar_t* item) {
    CComPtr<IMoniker> moniker;
    CreateItemMoniker(L"!", item, &moniker);
    return RotRegistration(object, moniker);
}

RotRegistration RotRegistration::File(IUnknown* object, const wchar_t* path) {
    CComPtr<IMoniker> moniker;
    CreateFileMoniker(path, &moniker);
    return RotRegistration(object, moniker);
}

RotRegistration::~RotRegistration() {
    CComPtr<IRunningObjectTable> table;
    if (cookie_ != 0 && SUCCEEDED(GetRunningObjectTable(0, &table)))
        table->Revoke(cookie_);
}

tavtest::TestWindow SuiteHiddenWindow() {
    auto options = tavtest::TestWindow::Options().Titled(L"TavUtil com test").Styled(WS_POPUP).Placed(40, 40, 300, 200);
    options.className = L"HarrowHiddenWndClass";
    return tavtest::TestWindow(options);
}

tavtest::TestWindow ForegroundWindow() {
    auto options = tavtest::TestWindow::Options().Titled(L"TavUtil com test").Placed(40, 40, 300, 200);
    options.front = true;
    return tavtest::TestWindow(options);
}

DWORD ForegroundLockTimeout::Current() {
    DWORD value = 0;
    SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &value, 0);
    return value;
}

ForegroundLockTimeout::ForegroundLockTimeout() : original_(Current()) {
    SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, reinterpret_cast<void*>(static_cast<UINT_PTR>(kSentinel)),
                          0);
}

ForegroundLockTimeout::~ForegroundLockTimeout() {
    SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, reinterpret_cast<void*>(static_cast<UINT_PTR>(original_)),
                          SPIF_UPDATEINIFILE);
}

// The server is started up to three times when it does not come up, each failure reported with the start's
// error or the server's exit code: on a freshly made Wine prefix under load a child has, rarely, failed to come
// up at all (seen on clean clones; the cause is in the emulator's process start, not in the server).
ServerProcess::ServerProcess(const std::wstring& options) {
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 3 && !ready_; ++attempt) {
        std::wstring suffix = std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++);
        std::wstring readyName = L"TavUtilComServerReady-" + suffix, quitName = L"TavUtilComServerQuit-" + suffix;
        readyEvent_.reset(CreateEventW(nullptr, TRUE, FALSE, readyName.c_str()));
        quitEvent_.reset(CreateEventW(nullptr, TRUE, FALSE, quitName.c_str()));
        std::wstring commandLine = L"\"" + tavtest::BinDir() + L"\\com_object_server.exe\" " + options + L" --ready " +
                                   readyName + L" --quit " + quitName;
        STARTUPINFOW startup = {};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION info = {};
        if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &info)) {
            std::fprintf(stderr, "ServerProcess: CreateProcessW failed with error %lu\n", GetLastError());
            continue;
        }
        process_.reset(info.hProcess);
        CloseHandle(info.hThread);
        HANDLE waits[] = {readyEvent_.get(), process_.get()};
        ready_ = WaitForMultipleObjects(2, waits, FALSE, 20000) == WAIT_OBJECT_0;
        if (!ready_) {
            DWORD exitCode = 0;
            GetExitCodeProcess(process_.get(), &exitCode);
            std::fprintf(stderr, "ServerProcess: the server did not come up (exit code %lu)\n", exitCode);
            TerminateProcess(process_.get(), 1);
            WaitForSingleObject(process_.get(), 5000);
            process_.reset();
        }
    }
    std::fflush(stderr);
}

ServerProcess::~ServerProcess() {
    if (!process_)
        return;
    SetEvent(quitEvent_.get());
    if (WaitForSingleObject(process_.get(), 10000) != WAIT_OBJECT_0)
        TerminateProcess(process_.get(), 1);
}

}  // namespace comtest
