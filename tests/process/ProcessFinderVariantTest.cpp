// Each implementation of CProcessFinder, made directly (whatever the running system would pick), against
// the real processes of the Wine session: the test's own window and Wine's notepad in front.
#include "ProcessTestSupport.h"
#include "TestWindow.h"

#include <TestSupport.h>

#include <TavUtil.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <type_traits>

namespace {

using Names = std::list<CStdStr<wchar_t>>;

// What each implementation reports as a full name. Toolhelp on 95/98/Me reports the process entry's
// executable field, which Wine fills with the bare file name; the others report the full path.
template <typename Finder> struct Expect {
    static std::wstring FullName(const std::wstring& truth) { return truth; }
};
template <> struct Expect<CProcessFinder95> {
    static std::wstring FullName(const std::wstring& truth) { return proctest::FileNameOf(truth); }
};

std::wstring WithoutExtension(const std::wstring& path) { return path.substr(0, path.find_last_of(L'.')); }

template <typename Finder> class ProcessFinderVariant : public testing::Test {};

using Variants = testing::Types<CProcessFinder95, CProcessFinderNT, CProcessFinder2kPlus>;
TYPED_TEST_SUITE(ProcessFinderVariant, Variants);

// Wine's notepad, started for one test and in front of the desktop.
class NotepadInFront {
public:
    NotepadInFront() : program_(L"", L"notepad.exe") {
        window_ = program_.WaitForWindow(L"Notepad");
        inFront_ = window_ != nullptr && tavtest::BringToFront(window_);
    }
    bool ready() const { return inFront_; }
    DWORD pid() const { return program_.pid(); }
    HWND window() const { return window_; }

private:
    proctest::StartedProgram program_;
    HWND window_ = nullptr;
    bool inFront_ = false;
};

TYPED_TEST(ProcessFinderVariant, NamesTheTestsOwnWindowInFront) {
    tavtest::TestWindow window(nullptr, true);
    ASSERT_TRUE(tavtest::BringToFront(window.hwnd()));
    const std::wstring truth = proctest::ImagePath(GetCurrentProcessId());
    ASSERT_FALSE(truth.empty());

    TypeParam finder;
    EXPECT_EQ(proctest::FileNameOf(truth), finder.GetForegroundProcessName(0));
    EXPECT_EQ(Expect<TypeParam>::FullName(truth), finder.GetForegroundProcessFullName(0));
    // A window given by handle is looked up without the foreground.
    EXPECT_EQ(proctest::FileNameOf(truth), finder.GetForegroundProcessName(reinterpret_cast<INT_PTR>(window.hwnd())));
}

TYPED_TEST(ProcessFinderVariant, NamesNotepadInFront) {
    NotepadInFront notepad;
    ASSERT_TRUE(notepad.ready());
    const std::wstring truth = proctest::ImagePath(notepad.pid());
    ASSERT_EQ(L"notepad.exe", proctest::FileNameOf(truth));

    TypeParam finder;
    EXPECT_EQ(L"notepad.exe", finder.GetForegroundProcessName(0));
    EXPECT_EQ(Expect<TypeParam>::FullName(truth), finder.GetForegroundProcessFullName(0));

    CStdStr<wchar_t> name, path;
    EXPECT_TRUE(finder.GetProcessName(notepad.pid(), name));
    EXPECT_EQ(L"notepad.exe", name);
    EXPECT_TRUE(finder.GetProcessFullName(notepad.pid(), path));
    EXPECT_EQ(Expect<TypeParam>::FullName(truth), path);
}

// Both foreground queries lose the extension under the flag, the full name included.
TYPED_TEST(ProcessFinderVariant, StripExtensionFlagAppliesToBothQueries) {
    NotepadInFront notepad;
    ASSERT_TRUE(notepad.ready());
    const std::wstring truth = proctest::ImagePath(notepad.pid());

    TypeParam stripping(true);
    EXPECT_TRUE(stripping.StripsExtension());
    EXPECT_EQ(L"notepad", stripping.GetForegroundProcessName(0));
    EXPECT_EQ(WithoutExtension(Expect<TypeParam>::FullName(truth)), stripping.GetForegroundProcessFullName(0));

    TypeParam keeping(false);
    EXPECT_FALSE(keeping.StripsExtension());
    EXPECT_EQ(L"notepad.exe", keeping.GetForegroundProcessName(0));
}

TYPED_TEST(ProcessFinderVariant, UnknownProcessHasNoName) {
    TypeParam finder;
    CStdStr<wchar_t> name = L"untouched", path;
    // Process IDs are multiples of four: 3 is never one.
    EXPECT_FALSE(finder.GetProcessName(3, name));
    EXPECT_FALSE(finder.GetProcessFullName(3, path));
    EXPECT_TRUE(path.empty());
    // A handle that is no window has no process behind it.
    EXPECT_EQ(L"", finder.GetForegroundProcessName(0x7ff0));
    EXPECT_EQ(L"", finder.GetForegroundProcessFullName(0x7ff0));
}

TYPED_TEST(ProcessFinderVariant, ListsOwnModulesInSnapshotOrder) {
    TypeParam finder;
    Names modules{L"left from before"};
    const bool listed = finder.GetProcessModules(GetCurrentProcessId(), modules);
    if (std::is_same<TypeParam, CProcessFinderNT>::value) {
        // Not supported by the PSAPI implementation: false, and the list is left as it was.
        EXPECT_FALSE(listed);
        EXPECT_EQ(Names{L"left from before"}, modules);
        return;
    }
    ASSERT_TRUE(listed);
    const std::vector<std::wstring> truth = proctest::ModuleNamesOf(GetCurrentProcessId());
    ASSERT_GE(truth.size(), 3u);
    EXPECT_EQ(std::vector<std::wstring>(modules.begin(), modules.end()), truth);
    EXPECT_EQ(proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId())), modules.front());
    EXPECT_NE(modules.end(), std::find_if(modules.begin(), modules.end(),
                                          [](const CStdStr<wchar_t>& m) { return m.EqualsNoCase(L"TavUtil.dll"); }));
}

TYPED_TEST(ProcessFinderVariant, ModulesOfUnknownProcess) {
    TypeParam finder;
    Names modules{L"left from before"};
    EXPECT_FALSE(finder.GetProcessModules(3, modules));
    if (std::is_same<TypeParam, CProcessFinderNT>::value)
        EXPECT_EQ(1u, modules.size());
    else
        EXPECT_TRUE(modules.empty());  // cleared first
}

TYPED_TEST(ProcessFinderVariant, IsProcessRunningByName) {
    NotepadInFront notepad;
    ASSERT_NE(nullptr, notepad.window());
    // The PSAPI search never looks at the first ID the system returns: notepad must not be that one here.
    const std::vector<DWORD> ids = proctest::ProcessIds();
    ASSERT_FALSE(ids.empty());
    ASSERT_NE(notepad.pid(), ids.front());

    TypeParam finder;
    for (bool console : {false, true}) {
        SCOPED_TRACE(console ? "console session only" : "any session");
        EXPECT_TRUE(finder.IsProcessRunning(L"notepad", console));
        EXPECT_TRUE(finder.IsProcessRunning(L"NOTEPAD.EXE", console));
        EXPECT_TRUE(finder.IsProcessRunning(L"Notepad.Exe", console));
        // Only a final ".exe" is recognised: this name is looked for as it stands.
        EXPECT_FALSE(finder.IsProcessRunning(L"notepad.EXE.exe", console));
        EXPECT_FALSE(finder.IsProcessRunning(L"no-such-program-here", console));
        EXPECT_FALSE(finder.IsProcessRunning(L"otepad", console));
        // Names shorter than four characters throw the standard out-of-range error.
        EXPECT_THROW(finder.IsProcessRunning(L"ab", console), std::out_of_range);
        EXPECT_THROW(finder.IsProcessRunning(L"", console), std::out_of_range);
        EXPECT_THROW(finder.IsProcessRunning(L"exe", console), std::out_of_range);
        EXPECT_FALSE(finder.IsProcessRunning(L".exe", console));
    }
}

TYPED_TEST(ProcessFinderVariant, IsProcessRunningFindsTheTestItself) {
    TypeParam finder;
    const std::wstring self = proctest::FileNameOf(proctest::ImagePath(GetCurrentProcessId()));
    if (std::is_same<TypeParam, CProcessFinderNT>::value && proctest::ProcessIds().front() == GetCurrentProcessId())
        GTEST_SKIP() << "the test is the first process listed, which the PSAPI search never reads";
    EXPECT_TRUE(finder.IsProcessRunning(self.c_str(), true));
    EXPECT_TRUE(finder.IsProcessRunning(WithoutExtension(self).c_str(), false));
}

// The PSAPI search walks from one past the last ID down to the second: the first process the system
// lists is never found by it, while the Toolhelp search finds it.
TEST(ProcessFinderPsapi, FirstListedProcessIsNeverFound) {
    const std::vector<DWORD> ids = proctest::ProcessIds();
    ASSERT_GE(ids.size(), 2u);
    CProcessFinder2kPlus toolhelp;
    CStdStr<wchar_t> first;
    ASSERT_TRUE(toolhelp.GetProcessName(ids.front(), first));
    // The quirk shows only when no later process has the same name.
    for (size_t i = 1; i < ids.size(); ++i) {
        CStdStr<wchar_t> other;
        if (toolhelp.GetProcessName(ids[i], other)) {
            ASSERT_FALSE(other.EqualsNoCase(first)) << "another " << tavtest::Narrow(first) << " runs";
        }
    }
    EXPECT_TRUE(toolhelp.IsProcessRunning(first, false));
    CProcessFinderNT psapi;
    EXPECT_FALSE(psapi.IsProcessRunning(first)) << tavtest::Narrow(first);
    // Its name is still readable through PSAPI: only the search skips it.
    CStdStr<wchar_t> name;
    EXPECT_TRUE(psapi.GetProcessName(ids.front(), name));
    EXPECT_EQ(first, name);
}

}  // namespace
