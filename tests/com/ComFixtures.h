// Fixtures of the com tests: COM for the test's thread, a ProgID of the tests' own in the class registry,
// registrations in the active-object table and the Running Object Table, the suite's hidden window, a
// foreground window, the foreground lock time-out, and a second process offering an object. Each undoes
// what it did when it ends, whether the test passed or not.
#pragma once

#include <TavUtil.h>
#include <gtest/gtest.h>

#include "TestDispatch.h"
#include "TestSupport.h"
#include "TestWindow.h"

#include <string>

namespace comtest {

// A ProgID and class identifier of the tests' own, one served by the second process, one class identifier
// without ProgID, and a ProgID that is never registered.
inline constexpr const wchar_t* kProgId = L"TavUtilTest.RunningApp";
inline constexpr const wchar_t* kClsid = L"{96E3E0DE-E98C-40C9-8434-9392BF82530A}";
inline constexpr const wchar_t* kServerProgId = L"TavUtilTest.ServerApp";
inline constexpr const wchar_t* kServerClsid = L"{4A474620-1EFD-411A-AB8A-EE1BF61838EB}";
inline constexpr const wchar_t* kDelayedClsid = L"{656066F6-74B3-423F-9332-859F7034FFDB}";
inline constexpr const wchar_t* kUnregisteredProgId = L"TavUtilTest.NotRegistered";

CLSID ToClsid(const wchar_t* text);
std::wstring Lower(std::wstring text);

// A new TestDispatch held by its pointer (the pointer owns the one reference it was born with).
CComPtr<TestDispatch> MakeObject(const wchar_t* name, bool offersDispatch = true);

// The "Name" property of an object, read through the library; "" when it has none.
std::wstring NameOf(IUnknown* object);

class ComTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_HRESULT_SUCCEEDED(com_.result()); }

private:
    tav::ComInitialization com_;  // the test's thread, in a single-threaded apartment
};

// HKLM\Software\Classes\<progId>\CLSID = clsid.
class ProgIdRegistration {
public:
    ProgIdRegistration(const wchar_t* progId, const wchar_t* clsid);
    ~ProgIdRegistration();

private:
    std::wstring key_;
};

class ActiveRegistration {
public:
    ActiveRegistration(IUnknown* object, const wchar_t* clsid);
    ~ActiveRegistration();
    bool ok() const { return cookie_ != 0; }

private:
    DWORD cookie_ = 0;
};

// An entry of the Running Object Table under an item moniker ("!" and `item`) or a file moniker (`path`).
class RotRegistration {
public:
    static RotRegistration Item(IUnknown* object, const wchar_t* item);
    static RotRegistration File(IUnknown* object, const wchar_t* path);
    RotRegistration(RotRegistration&& other) noexcept : cookie_(other.cookie_) { other.cookie_ = 0; }
    ~RotRegistration();
    bool ok() const { return cookie_ != 0; }

private:
    RotRegistration(IUnknown* object, IMoniker* moniker);
    DWORD cookie_ = 0;
};

// A window of class "HarrowHiddenWndClass", as the suite's other module creates it: top-level, hidden.
tavtest::TestWindow SuiteHiddenWindow();

// A visible top-level window of the test, brought to the foreground.
tavtest::TestWindow ForegroundWindow();

// Keeps the system's foreground lock time-out: sets a recognisable value for the test and writes the
// original one back (to the user profile too) at the end.
class ForegroundLockTimeout {
public:
    static constexpr DWORD kSentinel = 123457;
    ForegroundLockTimeout();
    ~ForegroundLockTimeout();
    static DWORD Current();

private:
    DWORD original_ = 0;
};

// com_object_server.exe with the given options, running until the guard ends.
class ServerProcess {
public:
    explicit ServerProcess(const std::wstring& options);
    ~ServerProcess();
    bool ready() const { return ready_; }

private:
    tav::UniqueHandle readyEvent_, quitEvent_, process_;
    bool ready_ = false;
};

}  // namespace comtest
