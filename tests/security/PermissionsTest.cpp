// VxWindowsPermissionsUtils against the real token of the Wine user, who is in Administrators and not in
// Power Users. The diagnostic lines are written by the library's own standard streams, so they are
// captured from a child run of this executable (tests named DISABLED_ run only there).
#include <TavUtil.h>
#include <gtest/gtest.h>

#include "TestSupport.h"

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Utils = VxWindowsPermissionsUtils;

constexpr int kUntouched = 7;  // a result value IsMemberOf never writes

struct Answer {
    long hr;
    int isMember;
};

Answer Ask(Utils& utils, int group, int verbose = 0) {
    int isMember = kUntouched;
    long hr = utils.IsMemberOf(static_cast<Utils::enumQueryGroup>(group), &isMember, verbose);
    return {hr, isMember};
}

// The number of groups in the process token, read here independently of the library.
DWORD ProcessTokenGroupCount() {
    tav::UniqueHandle token;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()))
        return 0;
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenGroups, nullptr, 0, &size);
    std::vector<BYTE> buffer(size);
    if (!GetTokenInformation(token.get(), TokenGroups, buffer.data(), size, &size))
        return 0;
    return reinterpret_cast<const TOKEN_GROUPS*>(buffer.data())->GroupCount;
}

// The calling thread impersonates a copy of the process token at `level` until the guard ends.
class Impersonation {
public:
    explicit Impersonation(SECURITY_IMPERSONATION_LEVEL level) : active_(ImpersonateSelf(level) != FALSE) {}
    ~Impersonation() {
        if (active_)
            RevertToSelf();
    }
    bool active() const { return active_; }

private:
    bool active_;
};

// A page holding one int that can be read but not written, released at the end.
class ReadOnlyInt {
public:
    ReadOnlyInt() : page_(VirtualAlloc(nullptr, 4096, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)) {
        if (page_ != nullptr) {
            *value() = kUntouched;
            DWORD old = 0;
            VirtualProtect(page_, 4096, PAGE_READONLY, &old);
        }
    }
    ~ReadOnlyInt() {
        if (page_ != nullptr)
            VirtualFree(page_, 0, MEM_RELEASE);
    }
    int* value() const { return static_cast<int*>(page_); }

private:
    void* page_;
};

// Child output is marked section by section: "<<<name", the library's lines, ">>>name".
void BeginSection(const char* name) {
    std::printf("<<<%s\n", name);
    std::fflush(stdout);
}
void EndSection(const char* name) {
    std::fflush(stderr);
    std::printf(">>>%s\n", name);
    std::fflush(stdout);
}

std::vector<std::string> Section(const std::string& output, const std::string& name) {
    std::vector<std::string> lines;
    std::istringstream in(output);
    std::string line;
    bool inside = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line == "<<<" + name) {
            inside = true;
        } else if (line == ">>>" + name) {
            return lines;
        } else if (inside) {
            lines.push_back(line);
        }
    }
    lines.push_back("(section " + name + " not closed)");
    return lines;
}

using Lines = std::vector<std::string>;

// ---- In this process -------------------------------------------------------------------------------

TEST(Permissions, BindsTheSixFunctionsOnWindowsNT) {
    Utils utils;
    EXPECT_EQ(utils.ModuleHandle(), GetModuleHandleW(L"advapi32.dll"));
    EXPECT_EQ(utils.LoadError(), 0u);
    EXPECT_TRUE(utils.AllFunctionsUsable());
}

TEST(Permissions, TheWineUserIsAnAdministratorAndNotAPowerUser) {
    struct Row {
        int group;
        int expected;
    } rows[] = {{Utils::GROUP_ADMINISTRATORS, TRUE},
                {Utils::GROUP_POWER_USERS, FALSE},
                {Utils::GROUP_ADMINISTRATORS_OR_POWER_USERS, TRUE},
                {5, TRUE}};  // any other value asks for either group
    Utils utils;
    for (const Row& row : rows) {
        Answer answer = Ask(utils, row.group);
        EXPECT_EQ(answer.hr, S_OK) << "group " << row.group;
        EXPECT_EQ(answer.isMember, row.expected) << "group " << row.group;
    }
}

TEST(Permissions, StaticQueriesAnswerForTheWineUser) {
    EXPECT_EQ(Utils::IsAdministrator(), TRUE);
    EXPECT_EQ(Utils::IsAdministratorOrPowerUser(), TRUE);
}

TEST(Permissions, NullResultPointerFails) {
    Utils utils;
    EXPECT_EQ(utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, nullptr, 0), E_FAIL);
    EXPECT_EQ(utils.IsMemberOf(Utils::GROUP_POWER_USERS, nullptr, 1), E_FAIL);
}

TEST(Permissions, UnwritableResultPointerFailsAndIsLeftAlone) {
    ReadOnlyInt readOnly;
    ASSERT_NE(readOnly.value(), nullptr);
    Utils utils;
    EXPECT_EQ(utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, readOnly.value(), 0), E_FAIL);
    EXPECT_EQ(*readOnly.value(), kUntouched);
}

TEST(Permissions, AnImpersonatingThreadIsJudgedByItsOwnToken) {
    Utils utils;
    {
        Impersonation impersonation(SecurityImpersonation);
        ASSERT_TRUE(impersonation.active());
        Answer answer = Ask(utils, Utils::GROUP_ADMINISTRATORS);
        EXPECT_EQ(answer.hr, S_OK);
        EXPECT_EQ(answer.isMember, TRUE);
    }
    {
        // An anonymous impersonation token cannot be opened: the answer comes from the thread's token
        // (and fails), not from the process token (which would say TRUE).
        Impersonation impersonation(SecurityAnonymous);
        ASSERT_TRUE(impersonation.active());
        Answer answer = Ask(utils, Utils::GROUP_ADMINISTRATORS);
        EXPECT_EQ(answer.hr, E_FAIL);
        EXPECT_EQ(answer.isMember, FALSE);  // set FALSE before the failure
    }
    EXPECT_EQ(Ask(utils, Utils::GROUP_ADMINISTRATORS).isMember, TRUE);  // back on the process token
}

TEST(Permissions, CopiesShareTheModuleAndAnswerAlike) {
    // Copies are shallow and each frees the module: one extra reference keeps the count balanced.
    LoadLibraryW(L"advapi32.dll");
    Utils original;
    Utils assigned;
    assigned = original;
    Utils constructed(original);
    EXPECT_EQ(assigned.ModuleHandle(), original.ModuleHandle());
    EXPECT_EQ(constructed.ModuleHandle(), original.ModuleHandle());
    EXPECT_TRUE(assigned.AllFunctionsUsable());
    EXPECT_EQ(Ask(assigned, Utils::GROUP_ADMINISTRATORS).isMember, TRUE);
    EXPECT_EQ(Ask(constructed, Utils::GROUP_POWER_USERS).isMember, FALSE);
}

// ---- Diagnostic lines, captured from a child --------------------------------------------------------

TEST(PermissionsChild, DISABLED_WriteSections) {
    Utils utils;
    int isMember = 0;
    BeginSection("verbose");
    utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, &isMember, 1);
    EndSection("verbose");
    BeginSection("quiet");
    utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, &isMember, 0);
    EndSection("quiet");
    BeginSection("null");
    utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, nullptr, 1);
    EndSection("null");
    BeginSection("IsAdministrator");
    Utils::IsAdministrator();
    EndSection("IsAdministrator");
    BeginSection("IsAdministratorOrPowerUser");
    Utils::IsAdministratorOrPowerUser();
    EndSection("IsAdministratorOrPowerUser");
    {
        Impersonation impersonation(SecurityAnonymous);
        BeginSection("anonymous");
        utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, &isMember, 1);
        EndSection("anonymous");
    }
}

TEST(PermissionsChild, DISABLED_Windows9x) {
    Utils utils;
    EXPECT_EQ(utils.ModuleHandle(), nullptr);
    EXPECT_FALSE(utils.AllFunctionsUsable());
    for (int group : {0, 1, 2}) {
        Answer answer = Ask(utils, group);
        EXPECT_EQ(answer.hr, S_OK) << "group " << group;
        EXPECT_EQ(answer.isMember, TRUE) << "group " << group;
    }
    EXPECT_EQ(utils.IsMemberOf(Utils::GROUP_ADMINISTRATORS, nullptr, 0), E_FAIL);
    EXPECT_EQ(Utils::IsAdministrator(), TRUE);
    BeginSection("9x");
    int isMember = 0;
    utils.IsMemberOf(Utils::GROUP_POWER_USERS, &isMember, 1);
    EndSection("9x");
}

TEST(Permissions, VerboseLinesAreWrittenAsTheLibraryDefinesThem) {
    tavtest::ChildResult child = tavtest::RunSelfAs({}, "PermissionsChild.DISABLED_WriteSections");
    ASSERT_TRUE(tavtest::ChildPassed(child));

    const std::string count = std::to_string(ProcessTokenGroupCount());
    ASSERT_NE(count, "0");
    const Lines progress = {"member of " + count + " groups.", "is a member of Administrators group:\t1",
                            "is a member of Power Users group:\t\t0"};
    EXPECT_EQ(Section(child.output, "verbose"), progress);
    EXPECT_EQ(Section(child.output, "quiet"), Lines{});
    EXPECT_EQ(Section(child.output, "null"), Lines{});
    // The static queries always write their progress lines.
    EXPECT_EQ(Section(child.output, "IsAdministrator"), progress);
    EXPECT_EQ(Section(child.output, "IsAdministratorOrPowerUser"), progress);
    EXPECT_EQ(Section(child.output, "anonymous"),
              Lines{"Error from ::OpenThreadToken(). Got token but had other error.  Errno: 1347"});
}

TEST(Permissions, OnWindows98EveryUserIsInEveryGroup) {
    tavtest::ChildResult child = tavtest::RunSelfAs({L"win98", {}, L""}, "PermissionsChild.DISABLED_Windows9x");
    EXPECT_TRUE(tavtest::ChildPassed(child));
    EXPECT_EQ(Section(child.output, "9x"), Lines{"Is 9x, so returning TRUE for IsMemberOf()."});
}

}  // namespace
