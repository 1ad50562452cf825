// Finding running objects: the active-object table (by class identifier and by ProgID), the foreground
// nudge of TryToGetActiveObject, and the Running Object Table, within this process and from a second one.
#include "ComFixtures.h"

#include "ImportHook.h"

namespace comtest {
namespace {

using namespace ComUtils;

// The low 32 bits of an address lie within this thread's stack: from the stack's reservation up to the
// end of the committed part that holds a local of ours (the stack does not cross a 4 GB boundary here).
bool IsOnThisThreadsStack(DWORD lowBits) {
    int local = 0;
    MEMORY_BASIC_INFORMATION region = {};
    if (VirtualQuery(&local, &region, sizeof region) == 0)
        return false;
    UINT_PTR low = reinterpret_cast<UINT_PTR>(region.AllocationBase);
    UINT_PTR high = reinterpret_cast<UINT_PTR>(region.BaseAddress) + region.RegionSize;
    if ((low >> 32) != ((high - 1) >> 32))
        return false;
    return lowBits >= static_cast<DWORD>(low) && lowBits <= static_cast<DWORD>(high - 1);
}

// ---- TryToGetActiveObject ---------------------------------------------------------------------------

TEST_F(ComTest, TryToGetActiveObjectReturnsARegisteredObjectAtOnce) {
    ForegroundLockTimeout timeout;
    tavtest::TestWindow hidden = SuiteHiddenWindow();  // present, but not needed
    ASSERT_NE(hidden.hwnd(), nullptr);
    CComPtr<TestDispatch> object = MakeObject(L"registered");
    ActiveRegistration registration(object.p, kClsid);
    ASSERT_TRUE(registration.ok());

    CComPtr<IUnknown> found;
    int reserved = 0;
    EXPECT_EQ(TryToGetActiveObject(ToClsid(kClsid), &reserved, &found), S_OK);
    EXPECT_EQ(NameOf(found), L"registered");
    EXPECT_EQ(ForegroundLockTimeout::Current(), ForegroundLockTimeout::kSentinel);  // never touched
}

TEST_F(ComTest, TryToGetActiveObjectWithoutHiddenWindowReturnsTheFirstFailure) {
    ForegroundLockTimeout timeout;
    tavtest::TestWindow foreground = ForegroundWindow();
    HWND before = GetForegroundWindow();
    ASSERT_EQ(FindWindowW(L"HarrowHiddenWndClass", nullptr), nullptr);

    CComPtr<IUnknown> found;
    EXPECT_EQ(TryToGetActiveObject(ToClsid(kClsid), nullptr, &found), MK_E_UNAVAILABLE);
    EXPECT_FALSE(found);
    EXPECT_EQ(ForegroundLockTimeout::Current(), ForegroundLockTimeout::kSentinel);
    EXPECT_EQ(GetForegroundWindow(), before);
}

TEST_F(ComTest, TryToGetActiveObjectNudgesAndFindsAnObjectRegisteredMeanwhile) {
    ForegroundLockTimeout timeout;
    tavtest::TestWindow foreground = ForegroundWindow();
    ASSERT_EQ(GetForegroundWindow(), foreground.hwnd());
    tavtest::TestWindow hidden = SuiteHiddenWindow();
    ASSERT_NE(hidden.hwnd(), nullptr);
    // The second process registers its object 300 ms after it started: after the first lookup failed.
    ServerProcess server(L"--clsid " + std::wstring(kDelayedClsid) + L" --name late --active --delay 300");
    ASSERT_TRUE(server.ready());

    CComPtr<IUnknown> found;
    EXPECT_EQ(TryToGetActiveObject(ToClsid(kDelayedClsid), nullptr, &found), S_OK);
    EXPECT_EQ(NameOf(found), L"late");
    EXPECT_EQ(GetForegroundWindow(), foreground.hwnd());  // given back
    // The time-out is "restored" with the address of the saved value, a local of the call on this stack.
    DWORD after = ForegroundLockTimeout::Current();
    EXPECT_NE(after, ForegroundLockTimeout::kSentinel);
    EXPECT_TRUE(IsOnThisThreadsStack(after)) << std::hex << after;
}

TEST_F(ComTest, TryToGetActiveObjectGivesUpAfterFiveNudgedAttempts) {
    ForegroundLockTimeout timeout;
    tavtest::TestWindow foreground = ForegroundWindow();
    tavtest::TestWindow hidden = SuiteHiddenWindow();
    CComPtr<IUnknown> found;
    EXPECT_EQ(TryToGetActiveObject(ToClsid(kClsid), nullptr, &found), MK_E_UNAVAILABLE);
    EXPECT_FALSE(found);
    EXPECT_EQ(GetForegroundWindow(), foreground.hwnd());
    EXPECT_TRUE(IsOnThisThreadsStack(ForegroundLockTimeout::Current())) << std::hex << ForegroundLockTimeout::Current();
}

DWORD openProcessAccess = 0;

HANDLE WINAPI RecordingOpenProcess(DWORD access, BOOL inherit, DWORD processId) {
    openProcessAccess = access;
    return OpenProcess(access, inherit, processId);
}

// The wait for the foreground window's owner opens its process with the all-access mask of the older
// systems, 0x1F0FFF, not the wider one of this build's headers.
TEST_F(ComTest, TryToGetActiveObjectOpensTheOwnerWithTheOlderAllAccessMask) {
    tavtest::ImportHook hook(tavtest::TavUtilModule(), "kernel32.dll", "OpenProcess",
                             reinterpret_cast<void*>(&RecordingOpenProcess));
    ASSERT_TRUE(hook.installed());
    ForegroundLockTimeout timeout;
    tavtest::TestWindow foreground = ForegroundWindow();
    tavtest::TestWindow hidden = SuiteHiddenWindow();
    openProcessAccess = 0;
    CComPtr<IUnknown> found;
    EXPECT_EQ(TryToGetActiveObject(ToClsid(kClsid), nullptr, &found), MK_E_UNAVAILABLE);
    EXPECT_EQ(openProcessAccess, 0x1F0FFFu);
}

// ---- Active objects by ProgID -----------------------------------------------------------------------

TEST_F(ComTest, ActiveObjectFoundByProgId) {
    ProgIdRegistration progId(kProgId, kClsid);
    CComPtr<TestDispatch> object = MakeObject(L"active");
    {
        ActiveRegistration registration(object.p, kClsid);
        ASSERT_TRUE(registration.ok());
        CComQIPtr<IUnknown> running = GetActiveAppDispatch(kProgId);
        ASSERT_TRUE(running);
        EXPECT_EQ(NameOf(running), L"active");
        // The flag is not read: both calls answer alike.
        EXPECT_EQ(NameOf(GetAppDispatch(kProgId, true)), L"active");
        EXPECT_EQ(NameOf(GetAppDispatch(kProgId, false)), L"active");
    }
    // Not running any more: empty, and no object is created whatever the flag says.
    EXPECT_FALSE(GetActiveAppDispatch(kProgId));
    EXPECT_FALSE(GetAppDispatch(kProgId, true));
    EXPECT_FALSE(GetAppDispatch(kProgId, false));
}

TEST_F(ComTest, GetAppDispatchNeverCreatesAnObject) {
    ASSERT_TRUE(CreateObject(L"Scripting.Dictionary"));  // creatable, but nobody runs one
    EXPECT_FALSE(GetAppDispatch(L"Scripting.Dictionary", true));
    EXPECT_FALSE(GetAppDispatch(L"Scripting.Dictionary", false));
}

TEST_F(ComTest, ActiveObjectQueriesWithNullOrUnknownProgId) {
    EXPECT_FALSE(GetActiveAppDispatch(nullptr));
    EXPECT_FALSE(GetAppDispatch(nullptr, true));
    EXPECT_FALSE(GetActiveAppDispatch(kUnregisteredProgId));
    EXPECT_FALSE(GetAppDispatch(kUnregisteredProgId, false));
}

TEST_F(ComTest, RunningObjectWithoutDispatchGivesNoDispatch) {
    ProgIdRegistration progId(kProgId, kClsid);
    CComPtr<TestDispatch> object = MakeObject(L"plain", false);
    ActiveRegistration registration(object.p, kClsid);
    ASSERT_TRUE(registration.ok());
    EXPECT_TRUE(GetActiveAppDispatch(kProgId));
    EXPECT_FALSE(GetAppDispatch(kProgId, true));
}

// ---- Running Object Table ---------------------------------------------------------------------------

TEST_F(ComTest, FindInRotMatchesAnItemMonikerOfTheBracedClassIdentifier) {
    ProgIdRegistration progId(kProgId, kClsid);
    EXPECT_FALSE(FindInROT(kProgId));
    CComPtr<TestDispatch> object = MakeObject(L"item");
    RotRegistration entry = RotRegistration::Item(object.p, kClsid);  // display name "!{...}"
    ASSERT_TRUE(entry.ok());
    EXPECT_EQ(NameOf(FindInROT(kProgId)), L"item");
}

TEST_F(ComTest, FindInRotMatchesAFilePathHoldingTheClassIdentifier) {
    ProgIdRegistration progId(kProgId, kClsid);
    tavtest::TempDir folder(L"rot");
    CComPtr<TestDispatch> object = MakeObject(L"file");
    RotRegistration entry =
        RotRegistration::File(object.p, (folder / (std::wstring(kClsid) + L"\\report.txt")).c_str());
    ASSERT_TRUE(entry.ok());
    EXPECT_EQ(NameOf(FindInROT(kProgId)), L"file");
}

TEST_F(ComTest, FindInRotIgnoresTheClassIdentifierInLowerCase) {
    ProgIdRegistration progId(kProgId, kClsid);
    tavtest::TempDir folder(L"rot");
    CComPtr<TestDispatch> object = MakeObject(L"lower");
    RotRegistration file = RotRegistration::File(object.p, (folder / (Lower(kClsid) + L".txt")).c_str());
    RotRegistration item = RotRegistration::Item(object.p, Lower(kClsid).c_str());
    ASSERT_TRUE(file.ok());
    ASSERT_TRUE(item.ok());
    EXPECT_FALSE(FindInROT(kProgId));
}

TEST_F(ComTest, FindInRotSkipsMatchesWithoutDispatch) {
    ProgIdRegistration progId(kProgId, kClsid);
    CComPtr<TestDispatch> plain = MakeObject(L"plain", false);
    RotRegistration plainEntry = RotRegistration::Item(plain.p, kClsid);
    ASSERT_TRUE(plainEntry.ok());
    EXPECT_FALSE(FindInROT(kProgId));
    CComPtr<TestDispatch> dispatching = MakeObject(L"dispatching");
    tavtest::TempDir folder(L"rot");
    RotRegistration fileEntry = RotRegistration::File(dispatching.p, (folder / kClsid).c_str());
    ASSERT_TRUE(fileEntry.ok());
    EXPECT_EQ(NameOf(FindInROT(kProgId)), L"dispatching");
}

TEST_F(ComTest, FindInRotLeavesTheQueryReferenceOnTheFoundObject) {
    ProgIdRegistration progId(kProgId, kClsid);
    CComPtr<TestDispatch> object = MakeObject(L"kept");
    RotRegistration entry = RotRegistration::Item(object.p, kClsid);
    ASSERT_TRUE(entry.ok());
    ULONG before = object->References();
    {
        CComPtr<IDispatch> found = FindInROT(kProgId);
        ASSERT_EQ(found.p, static_cast<IDispatch*>(object.p));  // this apartment gets the object itself
        EXPECT_EQ(object->References(), before + 2);
    }
    EXPECT_EQ(object->References(), before + 1);  // the reference of the query stays, as intended
}

TEST_F(ComTest, FindInRotWithUnregisteredOrNullProgIdIsEmpty) {
    CComPtr<TestDispatch> object = MakeObject(L"any");
    RotRegistration entry = RotRegistration::Item(object.p, kClsid);
    ASSERT_TRUE(entry.ok());
    EXPECT_FALSE(FindInROT(kUnregisteredProgId));
    EXPECT_FALSE(FindInROT(nullptr));
}

// An unknown ProgID ends the search before the table is walked: an entry named after the null class
// identifier (what a failed conversion leaves behind) is not found through it.
TEST_F(ComTest, FindInRotStopsAtAnUnknownProgIdBeforeWalkingTheTable) {
    CComPtr<TestDispatch> object = MakeObject(L"null class");
    RotRegistration entry = RotRegistration::Item(object.p, L"{00000000-0000-0000-0000-000000000000}");
    ASSERT_TRUE(entry.ok());
    EXPECT_FALSE(FindInROT(kUnregisteredProgId));
    EXPECT_FALSE(FindInROT(nullptr));
}

// ---- Objects of a second process ---------------------------------------------------------------------

TEST_F(ComTest, ObjectsOfAnotherProcessAreFound) {
    ProgIdRegistration progId(kServerProgId, kServerClsid);
    ServerProcess server(L"--clsid " + std::wstring(kServerClsid) + L" --name remote --active --item");
    ASSERT_TRUE(server.ready());

    EXPECT_EQ(NameOf(FindInROT(kServerProgId)), L"remote");
    EXPECT_EQ(NameOf(GetActiveAppDispatch(kServerProgId)), L"remote");
    EXPECT_EQ(NameOf(GetAppDispatch(kServerProgId, false)), L"remote");
    ForegroundLockTimeout timeout;
    CComPtr<IUnknown> found;
    EXPECT_EQ(TryToGetActiveObject(ToClsid(kServerClsid), nullptr, &found), S_OK);
    EXPECT_EQ(NameOf(found), L"remote");
    EXPECT_EQ(ForegroundLockTimeout::Current(), ForegroundLockTimeout::kSentinel);
}

TEST_F(ComTest, FileMonikerOfAnotherProcessIsFound) {
    ProgIdRegistration progId(kServerProgId, kServerClsid);
    tavtest::TempDir folder(L"rot");
    ServerProcess server(L"--clsid " + std::wstring(kServerClsid) + L" --name remote-file --file \"" +
                         (folder / (std::wstring(L"doc ") + kServerClsid + L".txt")) + L"\"");
    ASSERT_TRUE(server.ready());
    EXPECT_EQ(NameOf(FindInROT(kServerProgId)), L"remote-file");
}

}  // namespace
}  // namespace comtest
