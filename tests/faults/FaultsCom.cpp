// Automation operations, on the in-process objects the system has (VBScript.RegExp, Scripting.Dictionary).
// Every failure of an Automation call ends the operation quietly with its neutral answer (a null object, 0,
// false, an empty text); a name that cannot be copied into a BSTR is the memory exception, TAV_E_OUT_OF_MEMORY
// through the C interface.
#include "Faults.h"

#include "TestWindow.h"

#include "capi/TavUtilC.h"

#include <objbase.h>

#include <memory>

namespace faults {

namespace {

Operation Op(const char* name, std::function<Answer()> run, std::vector<Answer> neutral, unsigned allow = 0) {
    return Operation{"com", name, std::move(run), std::move(neutral), allow, nullptr, {}, {}, false};
}

// The C result, with a found object as 1 (released at once) and a failed HRESULT as one answer.
Answer Found(int32_t status, void* object) {
    if (object != nullptr)
        tav_com_release(object);
    if (status < -100)
        return {-100, L"failed HRESULT"};
    return {status, object != nullptr ? L"object" : L"null"};
}

// A RegExp object of the test's own making, for the property calls.
Answer WithRegExp(const std::function<Answer(void*)>& body) {
    CLSID clsid;
    IDispatch* object = nullptr;
    if (FAILED(CLSIDFromProgID(L"VBScript.RegExp", &clsid)) ||
        FAILED(
            CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object))))
        return {-2000, L"no RegExp object in this system"};
    Answer answer = body(object);
    object->Release();
    return answer;
}

// The foreground lock time-out as the session holds it.
DWORD ForegroundLockTimeout() {
    DWORD timeout = 0;
    SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &timeout, 0);
    return timeout;
}

void SetForegroundLockTimeout(DWORD timeout, UINT flags) {
    SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, reinterpret_cast<void*>(static_cast<ULONG_PTR>(timeout)),
                          flags);
}

}  // namespace

void AddComOperations(std::vector<Operation>& out) {
    out.push_back(Op("create_object",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_create_object(L"Scripting.Dictionary", &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    out.push_back(Op("get_app_dispatch",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_get_app_dispatch(L"Scripting.Dictionary", 1, &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    out.push_back(Op("get_active_app",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_get_active_app(L"Scripting.Dictionary", &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    out.push_back(Op("find_in_rot",
                     [] {
                         void* object = nullptr;
                         const int32_t status = tav_com_find_in_rot(L"Scripting.Dictionary", &object);
                         return Found(status, object);
                     },
                     {{0, L"null"}}));
    // The HRESULT of the last GetActiveObject is passed on: any failed HRESULT with no object.
    out.push_back(Op("try_get_active_object",
                     [] {
                         const tav_guid clsid = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 8}};
                         void* object = nullptr;
                         const int32_t status = tav_com_try_get_active_object(&clsid, &object);
                         return Found(status, object);
                     },
                     {{-100, L"failed HRESULT"}}));
    out.push_back(Op("get_prop_string",
                     [] {
                         return WithRegExp([](void* object) {
                             return TextResult([object](wchar_t* b, size_t c, size_t* n) {
                                 return tav_com_get_prop_string(object, L"Pattern", b, c, n);
                             });
                         });
                     },
                     {{0, L""}}));
    out.push_back(Op("get_prop_bool",
                     [] {
                         return WithRegExp([](void* object) {
                             int32_t value = 7;
                             const int32_t status = tav_com_get_prop_bool(object, L"IgnoreCase", &value);
                             return Answer{status, std::to_wstring(value)};
                         });
                     },
                     {{0, L"0"}}));
    out.push_back(
        Op("set_prop_bool",
           [] {
               return WithRegExp([](void* object) { return Answer{tav_com_set_prop_bool(object, L"Global", 1), L""}; });
           },
           {{0, L""}}));
    out.push_back(Op("get_disp",
                     [] {
                         return WithRegExp([](void* object) {
                             void* value = nullptr;
                             const int32_t status = tav_com_get_disp(object, L"Pattern", &value);
                             return Found(status, value);
                         });
                     },
                     {{0, L"null"}}));
    out.push_back(Op("object_name",
                     [] {
                         return WithRegExp([](void* object) {
                             return TextResult([object](wchar_t* b, size_t c, size_t* n) {
                                 return tav_com_object_name(object, b, c, n);
                             });
                         });
                     },
                     {{0, L""}}));
}

// The retried look-up with a window of the hidden class to hand the foreground to: the foreground lock time-out is
// set to 0 for the retries and set again after them, as written: with the address of the saved value, so that the
// time-out left behind is the low bits of that address, not the saved value. Every run starts from a time-out of
// the test's own (kTimeoutBefore); after it the time-out must not be left at 0 (zeroed and never set again), unless
// the failing call was the restoring one, the third SystemParametersInfoW call of a run (read, zero, restore; all
// three are made on every path past the window look-up). With nothing failing it must also have moved from the
// test's value: the restoring call was made. Each run waits out the five retries (about a second).
void AddComDesktopOperations(std::vector<Operation>& out) {
    constexpr DWORD kTimeoutBefore = 4321;
    constexpr uint64_t kRestoringCall = 3;
    auto hidden = std::make_shared<std::unique_ptr<tavtest::TestWindow>>();
    // The class stays registered for the whole run; each run makes and ends only its window.
    auto hiddenClass = std::make_shared<tavtest::WindowClass>(L"HarrowHiddenWndClass");
    auto session = std::make_shared<DWORD>(0);  // the session's own time-out, put back after every run
    Operation op = Op("try_get_active_object_hidden_window",
                      [] {
                          const tav_guid clsid = {0x12345678, 0x1234, 0x1234, {1, 2, 3, 4, 5, 6, 7, 9}};
                          void* object = nullptr;
                          const int32_t status = tav_com_try_get_active_object(&clsid, &object);
                          return Found(status, object);
                      },
                      {{-100, L"failed HRESULT"}});
    op.setup = [hidden, hiddenClass, session] {
        // The window the foreground goes back to is the run's own: Wine's WaitForInputIdle keeps a handle to the
        // idle event of another process it waits on (one per call), which the handle count would show.
        TypeIntoTarget();
        *session = ForegroundLockTimeout();
        tavtest::TestWindow::Options options;
        options.className = L"HarrowHiddenWndClass";
        options.title = L"";
        *hidden = std::make_unique<tavtest::TestWindow>(options);
        SetForegroundLockTimeout(kTimeoutBefore, 0);
    };
    op.check = [](const FailedCall* failing) -> std::string {
        const DWORD timeout = ForegroundLockTimeout();
        const bool restoreFailed =
            failing != nullptr && failing->function == "SystemParametersInfoW" && failing->call == kRestoringCall;
        if (timeout == 0 && !restoreFailed)
            return "the foreground lock time-out was left at 0";
        if (failing == nullptr && timeout == kTimeoutBefore)
            return "the foreground lock time-out was not set again after the hand-over";
        return {};
    };
    op.teardown = [hidden, session] {
        hidden->reset();
        SetForegroundLockTimeout(*session, SPIF_UPDATEINIFILE);
    };
    op.fullRunOnly = "every run waits out the five retries of the look-up, and each injection point is run again in "
                     "batches (about 17 s a point)";
    out.push_back(op);
}

}  // namespace faults
