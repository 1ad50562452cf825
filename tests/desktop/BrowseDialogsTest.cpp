#include "DialogDriver.h"
#include "ImportHook.h"
#include "Desktop.h"
#include "TestWindow.h"

#include <TavUtil.h>

#include "../support/TestSupport.h"

#include <gtest/gtest.h>

#include <commdlg.h>
#include <dlgs.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using desktoptest::DialogDriver;
using tavtest::TestWindow;

// Where the folder dialog tests make their folders: a folder of their own at the root of the system drive,
// on a path that no other test program writes in or reads. The folder tree tells folders apart by their
// whole shell items, which carry each folder's times: a folder on the way that another program changes or
// reads while a dialog is open no longer equals the item the tree holds, and the dialog can neither
// preselect nor select a folder below it by path (see also ReadTheTestFolders).
std::wstring FolderDialogTestParent() {
    wchar_t windows[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
    if (length < 3 || length >= MAX_PATH)
        return {};  // the shared temporary folder
    const std::wstring parent = std::wstring(windows, 3) + L"tavutil-folder-tests";
    CreateDirectoryW(parent.c_str(), nullptr);  // made once, kept: removing it would change the drive root
    return parent + L"\\";
}

// What the library handed to the common dialogs (the real dialogs still run).
struct OpenFileCall {
    int count = 0;
    DWORD structSize = 0;
    HWND owner = nullptr;
    std::vector<std::wstring> filter;  // the NUL-separated list, item by item
    bool initialDirNull = true;
    std::wstring initialDir;
    bool titleNull = true;
    std::wstring title;
    DWORD flags = 0;
    DWORD maxFile = 0;
    std::wstring fileOnEntry;
};
struct FolderCall {
    int count = 0;
    HWND owner = nullptr;
    UINT flags = 0;
    std::wstring title;
    bool rootNull = false;
    bool displayNameNull = false;
    LPITEMIDLIST chosenItem = nullptr;  // what the dialog handed back
};
OpenFileCall g_openFile;
FolderCall g_folder;
tavtest::ImportHook* g_openFileHook = nullptr;
tavtest::ImportHook* g_folderHook = nullptr;

BOOL WINAPI RecordGetOpenFileName(OPENFILENAMEW* ofn) {
    OpenFileCall& call = g_openFile;
    ++call.count;
    call.structSize = ofn->lStructSize;
    call.owner = ofn->hwndOwner;
    call.filter.clear();
    for (const wchar_t* item = ofn->lpstrFilter; item && *item; item += wcslen(item) + 1)
        call.filter.emplace_back(item);
    call.initialDirNull = ofn->lpstrInitialDir == nullptr;
    call.initialDir = ofn->lpstrInitialDir ? ofn->lpstrInitialDir : L"";
    call.titleNull = ofn->lpstrTitle == nullptr;
    call.title = ofn->lpstrTitle ? ofn->lpstrTitle : L"";
    call.flags = ofn->Flags;
    call.maxFile = ofn->nMaxFile;
    call.fileOnEntry = ofn->lpstrFile ? ofn->lpstrFile : L"<null>";
    return g_openFileHook->original<decltype(&GetOpenFileNameW)>()(ofn);
}

// Lists `folder` and the folders below it, `depth` levels deep.
void ReadFolders(const std::wstring& folder, int depth) {
    WIN32_FIND_DATAW data;
    HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE)
        return;
    do {
        const std::wstring name = data.cFileName;
        if (depth > 0 && (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && name != L"." && name != L"..")
            ReadFolders(folder + L"\\" + name, depth - 1);
    } while (FindNextFileW(find, &data));
    FindClose(find);
}

// Wine's folder tree tells folders apart by their whole shell items, which carry each folder's last access
// time, and the file system here records a read of a folder changed since its last read (relatime). The
// dialog takes the start folder's items first and reads the folders on the way afterwards, while it fills
// the tree: a folder that the test (or the library, making the start folder) changed just before then gets
// a new access time between the two looks, and once that time crosses into another two-second step the
// items differ and nothing is selected, more often the busier the machine. Each folder the tests use is
// read here first, after the last change the library makes and before the dialog opens.
void ReadTheTestFolders() {
    const std::wstring parent = FolderDialogTestParent();
    ReadFolders(parent.substr(0, parent.size() - 1), 3);
}

// Sets the last access time of `folder` an hour back, as if it had last been read long before it changed.
bool LastReadAnHourAgo(const std::wstring& folder) {
    HANDLE handle = CreateFileW(folder.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    ULARGE_INTEGER time{{now.dwLowDateTime, now.dwHighDateTime}};
    time.QuadPart -= 36000000000ull;  // an hour, in 100 ns steps
    FILETIME hourAgo{time.LowPart, time.HighPart};
    const bool set = SetFileTime(handle, nullptr, &hourAgo, nullptr) != FALSE;
    CloseHandle(handle);
    return set;
}

PIDLIST_ABSOLUTE WINAPI RecordBrowseForFolder(BROWSEINFOW* info) {
    ReadTheTestFolders();
    FolderCall& call = g_folder;
    ++call.count;
    call.owner = info->hwndOwner;
    call.flags = info->ulFlags;
    call.title = info->lpszTitle ? info->lpszTitle : L"<null>";
    call.rootNull = info->pidlRoot == nullptr;
    call.displayNameNull = info->pszDisplayName == nullptr;
    call.chosenItem = g_folderHook->original<decltype(&SHBrowseForFolderW)>()(info);
    return call.chosenItem;
}

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

class BrowseTest : public ::testing::Test {
protected:
    void SetUp() override {
        openFileHook_ = std::make_unique<tavtest::ImportHook>("comdlg32.dll", "GetOpenFileNameW",
                                                              reinterpret_cast<void*>(&RecordGetOpenFileName));
        folderHook_ = std::make_unique<tavtest::ImportHook>("shell32.dll", "SHBrowseForFolderW",
                                                            reinterpret_cast<void*>(&RecordBrowseForFolder));
        ASSERT_TRUE(openFileHook_->installed());
        ASSERT_TRUE(folderHook_->installed());
        g_openFileHook = openFileHook_.get();
        g_folderHook = folderHook_.get();
        g_openFile = {};
        g_folder = {};
    }
    void TearDown() override {
        tav::SetMainWnd(nullptr);
        openFileHook_.reset();
        folderHook_.reset();
        tavtest::PumpMessages();
    }

    tavtest::TempDir temp_{L"tavbrowse", FolderDialogTestParent()};
    std::unique_ptr<tavtest::ImportHook> openFileHook_, folderHook_;
};

const CStdStr<wchar_t> kFilter = L"Text files (*.txt)|*.txt|All files|*.*||";

// ---- the open-file picker ----

TEST_F(BrowseTest, BrowseFilesReturnsTheChosenFile) {
    const std::wstring path = temp_ / L"pick me.txt";
    ASSERT_TRUE(tavtest::WriteFileBytes(path, "x"));
    std::vector<std::wstring> typesShown;
    DialogDriver driver([&](HWND dialog) {
        HWND types = GetDlgItem(dialog, cmb1);
        const int count = static_cast<int>(SendMessageW(types, CB_GETCOUNT, 0, 0));
        for (int i = 0; i < count; ++i) {
            wchar_t item[128] = {};
            SendMessageW(types, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(item));
            typesShown.emplace_back(item);
        }
        desktoptest::ConfirmFile(dialog, path);
    });
    CStdStr<wchar_t> file = L"before";
    const bool chosen = BrowseFiles(kFilter, file, temp_.path(), L"Pick a script");
    ASSERT_TRUE(driver.Finish());
    EXPECT_TRUE(chosen);
    EXPECT_EQ(file, path);
    // The "|" form became the dialog's list of descriptions and patterns.
    EXPECT_EQ(typesShown, (std::vector<std::wstring>{L"Text files (*.txt)", L"All files"}));
    EXPECT_EQ(g_openFile.filter, (std::vector<std::wstring>{L"Text files (*.txt)", L"*.txt", L"All files", L"*.*"}));
}

// Opens the file picker, cancels it, and answers the caption it showed.
std::wstring CaptionOfCancelledFilePicker(const CStdStr<wchar_t>& initialDir, const CStdStr<wchar_t>& title) {
    std::wstring caption;
    DialogDriver driver([&](HWND dialog) {
        caption = desktoptest::WindowText(dialog);
        desktoptest::Cancel(dialog);
    });
    CStdStr<wchar_t> file;
    BrowseFiles(kFilter, file, initialDir, title);
    EXPECT_TRUE(driver.Finish());
    return caption;
}

TEST_F(BrowseTest, BrowseFilesPassesItsSettings) {
    const std::wstring caption = CaptionOfCancelledFilePicker(temp_.path(), L"Pick a script");
    ASSERT_EQ(g_openFile.count, 1);
    EXPECT_EQ(g_openFile.flags, 0x181804u);
    EXPECT_EQ(g_openFile.flags,
              DWORD(OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_EXPLORER | OFN_NODEREFERENCELINKS));
    EXPECT_EQ(g_openFile.structSize, sizeof(OPENFILENAMEW));  // Windows 7 here: the full structure
    EXPECT_EQ(g_openFile.structSize, 152u);
    EXPECT_EQ(g_openFile.maxFile, 260u);
    EXPECT_EQ(g_openFile.fileOnEntry, L"");
    EXPECT_FALSE(g_openFile.initialDirNull);
    EXPECT_EQ(g_openFile.initialDir, temp_.path());
    EXPECT_FALSE(g_openFile.titleNull);
    EXPECT_EQ(g_openFile.title, L"Pick a script");
    EXPECT_EQ(caption, L"Pick a script");
}

TEST_F(BrowseTest, BrowseFilesCancelLeavesFileUnchanged) {
    DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
    CStdStr<wchar_t> file = L"C:\\unchanged.txt";
    EXPECT_FALSE(BrowseFiles(kFilter, file, L"", L""));
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(file, L"C:\\unchanged.txt");
}

TEST_F(BrowseTest, BrowseFilesEmptyTitleAndFolderPassNull) {
    const std::wstring caption = CaptionOfCancelledFilePicker(L"", L"");
    EXPECT_TRUE(g_openFile.initialDirNull);
    EXPECT_TRUE(g_openFile.titleNull);
    EXPECT_EQ(caption, L"Open");  // the dialog's own title
}

TEST_F(BrowseTest, BrowseFilesIsOwnedByTheActiveWindow) {
    TestWindow window(nullptr, true);
    ASSERT_TRUE(tavtest::BringToFront(window.hwnd()));
    SetActiveWindow(window.hwnd());
    ASSERT_EQ(GetActiveWindow(), window.hwnd());
    HWND dialogOwner = nullptr;
    DialogDriver driver([&](HWND dialog) {
        dialogOwner = GetWindow(dialog, GW_OWNER);
        desktoptest::Cancel(dialog);
    });
    CStdStr<wchar_t> file;
    BrowseFiles(kFilter, file, L"", L"");
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(g_openFile.owner, window.hwnd());
    EXPECT_EQ(dialogOwner, window.hwnd());
}

TEST_F(BrowseTest, BrowseFilesWithSingleFilterPair) {
    DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
    CStdStr<wchar_t> file;
    BrowseFiles(L"Scripts|*.tks||", file, L"", L"");
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(g_openFile.filter, (std::vector<std::wstring>{L"Scripts", L"*.tks"}));
}

// ---- the folder picker ----

std::wstring Upper(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

TEST_F(BrowseTest, MissingStartFolderIsCreatedSelectedAndRemovedOnCancel) {
    const std::wstring start = temp_ / L"New Folder";
    bool existedDuringDialog = false;
    DialogDriver driver([&](HWND dialog) {
        existedDuringDialog = Exists(start);
        desktoptest::Cancel(dialog);
    });
    CStdStr<wchar_t> folder = start;
    EXPECT_FALSE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    EXPECT_TRUE(existedDuringDialog);
    EXPECT_FALSE(Exists(start));
    EXPECT_EQ(folder, start);
}

TEST_F(BrowseTest, MissingStartFolderConfirmedIsKept) {
    const std::wstring start = temp_ / L"Chosen";
    DialogDriver driver([&](HWND dialog) { desktoptest::Confirm(dialog); });
    CStdStr<wchar_t> folder = start;
    EXPECT_TRUE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    // It was preselected: confirming without moving chooses it.
    EXPECT_EQ(_wcsicmp(folder.c_str(), start.c_str()), 0) << tavtest::Narrow(folder);
    EXPECT_TRUE(Exists(start));
}

TEST_F(BrowseTest, MissingStartFolderChosenUnderAnotherLetterCaseIsKept) {
    // The caller writes the path in capitals; the shell answers with the names as they are on disk.
    const std::wstring start = Upper(temp_.path()) + L"\\KEPT";
    DialogDriver driver([&](HWND dialog) { desktoptest::Confirm(dialog); });
    CStdStr<wchar_t> folder = start;
    EXPECT_TRUE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    EXPECT_NE(folder, start) << "the shell gave the path back in the caller's letter case";
    EXPECT_EQ(_wcsicmp(folder.c_str(), start.c_str()), 0) << tavtest::Narrow(folder);
    EXPECT_TRUE(Exists(start));
}

TEST_F(BrowseTest, MissingStartFolderIsRemovedWhenAnotherIsChosen) {
    const std::wstring start = temp_ / L"Not This";
    const std::wstring chosenPath = temp_ / L"This One";
    ASSERT_TRUE(CreateDirectoryW(chosenPath.c_str(), nullptr));
    DialogDriver driver([&](HWND dialog) { desktoptest::ConfirmFolder(dialog, chosenPath); });
    CStdStr<wchar_t> folder = start;
    EXPECT_TRUE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(_wcsicmp(folder.c_str(), chosenPath.c_str()), 0) << tavtest::Narrow(folder);
    EXPECT_FALSE(Exists(start));
    EXPECT_TRUE(Exists(chosenPath));
}

TEST_F(BrowseTest, ExistingStartFolderIsKeptOnCancel) {
    const std::wstring start = temp_ / L"Already";
    ASSERT_TRUE(CreateDirectoryW(start.c_str(), nullptr));
    DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
    CStdStr<wchar_t> folder = start;
    EXPECT_FALSE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    EXPECT_TRUE(Exists(start));
}

TEST_F(BrowseTest, FolderDialogSettings) {
    DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
    CStdStr<wchar_t> folder = temp_.path();
    BrowseForFolder(L"Choose the target", folder, nullptr);
    ASSERT_TRUE(driver.Finish());
    ASSERT_EQ(g_folder.count, 1);
    EXPECT_EQ(g_folder.flags, 0x241u);  // Windows 7 here: the resizable dialog
    EXPECT_EQ(g_folder.title, L"Choose the target");
    EXPECT_TRUE(g_folder.rootNull);
    EXPECT_TRUE(g_folder.displayNameNull);
    EXPECT_EQ(g_folder.owner, nullptr);  // no parent, no main window
}

TEST_F(BrowseTest, FolderDialogIsOwnedByTheParent) {
    TestWindow parentWindow(nullptr, true), mainWindow(nullptr, true);
    CWnd parent(parentWindow.hwnd()), main(mainWindow.hwnd());
    tav::SetMainWnd(&main);
    ASSERT_EQ(AfxGetMainWnd(), &main);
    DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
    CStdStr<wchar_t> folder = temp_.path();
    BrowseForFolder(L"t", folder, &parent);
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(g_folder.owner, parentWindow.hwnd());
}

TEST_F(BrowseTest, FolderDialogWithoutParentIsOwnedByTheMainWindow) {
    TestWindow mainWindow(nullptr, true);
    CWnd main(mainWindow.hwnd());
    tav::SetMainWnd(&main);
    HWND dialogOwner = nullptr;
    DialogDriver driver([&](HWND dialog) {
        dialogOwner = GetWindow(dialog, GW_OWNER);
        desktoptest::Cancel(dialog);
    });
    CStdStr<wchar_t> folder = temp_.path();
    BrowseForFolder(L"t", folder, nullptr);
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(g_folder.owner, mainWindow.hwnd());
    EXPECT_EQ(dialogOwner, mainWindow.hwnd());
}

TEST_F(BrowseTest, ItemWithoutFileSystemPathGivesFalse) {
    const std::wstring start = temp_ / L"Virtual";
    DialogDriver driver([&](HWND dialog) {
        LPITEMIDLIST computer = nullptr;
        SHGetSpecialFolderLocation(nullptr, CSIDL_DRIVES, &computer);
        SendMessageW(dialog, BFFM_SETSELECTIONW, FALSE, reinterpret_cast<LPARAM>(computer));
        CoTaskMemFree(computer);
        desktoptest::WaitUntilSettled(dialog);
        desktoptest::Confirm(dialog);
    });
    CStdStr<wchar_t> folder = start;
    EXPECT_FALSE(BrowseForFolder(L"t", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(folder, start);
    EXPECT_FALSE(Exists(start));  // made for the dialog, not chosen: removed
}

// The shell's allocator refused: the chosen item list is freed all the same (through the COM task
// allocator, which the shell's allocator is).
std::vector<void*> g_taskMemoryFreed;
tavtest::ImportHook* g_taskFreeHook = nullptr;

HRESULT WINAPI RefuseShellAllocator(IMalloc** allocator) {
    *allocator = nullptr;
    return E_FAIL;
}

void WINAPI RecordTaskMemoryFree(void* memory) {
    g_taskMemoryFreed.push_back(memory);
    g_taskFreeHook->original<decltype(&CoTaskMemFree)>()(memory);
}

TEST_F(BrowseTest, ChosenItemIsFreedWhenTheShellAllocatorIsRefused) {
    tavtest::ImportHook refuse("shell32.dll", "SHGetMalloc", reinterpret_cast<void*>(&RefuseShellAllocator));
    tavtest::ImportHook record("ole32.dll", "CoTaskMemFree", reinterpret_cast<void*>(&RecordTaskMemoryFree));
    ASSERT_TRUE(refuse.installed());
    ASSERT_TRUE(record.installed());
    g_taskFreeHook = &record;
    g_taskMemoryFreed.clear();

    const std::wstring start = temp_.path();
    DialogDriver driver([&](HWND dialog) { desktoptest::Confirm(dialog); });
    CStdStr<wchar_t> folder = start;
    EXPECT_TRUE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    ASSERT_NE(g_folder.chosenItem, nullptr);
    EXPECT_EQ(std::count(g_taskMemoryFreed.begin(), g_taskMemoryFreed.end(), g_folder.chosenItem), 1);
    g_taskFreeHook = nullptr;
}

// ---- the helper class ----

// Gives the tests the dialog window a real dialog would give the helper.
class AttachedHelper : public CBrowseForFolderHelper {
public:
    AttachedHelper() : CBrowseForFolderHelper(L"", L"", nullptr) {}
    void Attach(HWND window) { m_hWnd = window; }
};

TEST_F(BrowseTest, HelperBrowseStoresTitleAndFolderAndTracksSelection) {
    const std::wstring start = temp_.path();
    HWND seenWhileOpen = nullptr;
    CBrowseForFolderHelper helper(L"first", L"C:\\", nullptr);
    DialogDriver driver([&](HWND dialog) {
        seenWhileOpen = helper.GetSafeHwnd();
        desktoptest::Cancel(dialog);
    });
    EXPECT_FALSE(helper.Browse(L"second", start));
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(helper.GetTitle(), L"second");
    EXPECT_EQ(g_folder.title, L"second");
    EXPECT_EQ(helper.GetFolder(), start);  // not chosen: still the starting folder
    EXPECT_EQ(seenWhileOpen, driver.dialog());
    EXPECT_EQ(helper.GetSafeHwnd(), nullptr);  // cleared when the dialog ends
    // The starting folder was selected when the dialog became ready.
    EXPECT_EQ(_wcsicmp(helper.GetSelectedPath().c_str(), start.c_str()), 0)
        << tavtest::Narrow(helper.GetSelectedPath());
}

TEST_F(BrowseTest, StartFolderIsSelectedWhenTheFoldersOnTheWayWereLastReadLongAgo) {
    // The case that made the folder tests fail now and then on a busy machine, made certain: the folders on
    // the way to the start folder were last read long before the dialog opens (see ReadTheTestFolders).
    const std::wstring start = temp_ / L"Read Long Ago";
    ASSERT_TRUE(CreateDirectoryW(start.c_str(), nullptr));
    const std::wstring parent = FolderDialogTestParent();
    for (const std::wstring& folder : {parent.substr(0, parent.size() - 1), temp_.path(), start})
        ASSERT_TRUE(LastReadAnHourAgo(folder)) << tavtest::Narrow(folder);
    DialogDriver driver([&](HWND dialog) { desktoptest::Confirm(dialog); });
    CStdStr<wchar_t> folder = start;
    EXPECT_TRUE(BrowseForFolder(L"Where to?", folder, nullptr));
    ASSERT_TRUE(driver.Finish());
    EXPECT_EQ(_wcsicmp(folder.c_str(), start.c_str()), 0) << tavtest::Narrow(folder);
}

struct StatusRow {
    bool withEdit;
    size_t length;
    size_t shown;  // length of the text shown
};

std::wstring PathOfLength(size_t length) {
    std::wstring path = L"C:\\";
    for (size_t i = 0; path.size() < length; ++i)
        path += static_cast<wchar_t>(L'a' + i % 26);
    return path;
}

TEST_F(BrowseTest, SetStatusTextShortensLongPaths) {
    const StatusRow rows[] = {{true, 60, 40},  {true, 41, 40},  {true, 40, 40},  {true, 10, 10},
                              {false, 60, 50}, {false, 51, 50}, {false, 50, 50}, {false, 3, 3}};
    for (const StatusRow& row : rows) {
        std::wstring statusText;
        bool statusSent = false;
        TestWindow dialog([&](UINT message, WPARAM, LPARAM lParam) {
            if (message != BFFM_SETSTATUSTEXTW)
                return false;
            statusSent = true;
            statusText = reinterpret_cast<const wchar_t*>(lParam);
            return true;
        });
        HWND edit = row.withEdit ? dialog.AddChild(L"Edit") : nullptr;
        AttachedHelper helper;
        helper.Attach(dialog.hwnd());
        const std::wstring path = PathOfLength(row.length);
        helper.SetStatusText(path.c_str());

        const std::wstring shown = row.withEdit ? desktoptest::WindowText(edit) : statusText;
        EXPECT_EQ(statusSent, !row.withEdit) << "row " << (&row - rows);
        ASSERT_EQ(shown.size(), row.shown) << "row " << (&row - rows);
        if (row.length > row.shown)
            EXPECT_EQ(shown, path.substr(0, 5) + L"..." + path.substr(path.size() - (row.shown - 8)));
        else
            EXPECT_EQ(shown, path);
    }
}

TEST_F(BrowseTest, SetStatusTextSixtyCharactersWithEditChild) {
    TestWindow dialog;
    HWND edit = dialog.AddChild(L"Edit");
    AttachedHelper helper;
    helper.Attach(dialog.hwnd());
    const std::wstring path = L"C:\\Users\\Somebody\\Documents\\Trimdial\\Profiles\\Work\\my macros";
    ASSERT_EQ(path.size(), 60u);
    helper.SetStatusText(path.c_str());
    EXPECT_EQ(desktoptest::WindowText(edit), L"C:\\Us...Trimdial\\Profiles\\Work\\my macros");
    EXPECT_EQ(desktoptest::WindowText(edit), path.substr(0, 5) + L"..." + path.substr(28));
}

// With no dialog open the helper has no window to search: a top-level "Edit" of another program (here,
// of the test) keeps its text, and nothing else is shown anywhere.
TEST_F(BrowseTest, SetStatusTextWithoutDialogDoesNothing) {
    auto options = TestWindow::Options().Titled(L"not yours").Styled(WS_OVERLAPPED).Placed(0, 0, 200, 40);
    options.className = L"Edit";
    options.systemClass = true;
    TestWindow notYours(options);
    HWND edit = notYours.hwnd();
    ASSERT_NE(edit, nullptr);
    // Make it the first top-level "Edit" in the z-order, the one a search from the desktop finds.
    SetWindowPos(edit, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    ASSERT_EQ(FindWindowExW(nullptr, nullptr, L"Edit", nullptr), edit);

    CBrowseForFolderHelper helper(L"", L"", nullptr);
    ASSERT_EQ(helper.GetSafeHwnd(), nullptr);
    helper.SetStatusText(L"C:\\Users\\Somebody\\Documents");
    EXPECT_EQ(desktoptest::WindowText(edit), L"not yours");
}

// ---- the choices that depend on the running Windows (child runs under emulated versions) ----

TEST_F(BrowseTest, DISABLED_ChildRecordsVersionDependentSettings) {
    // TAVTEST_ARG: "<OPENFILENAME size> <folder flags>"
    const std::wstring arg = tavtest::ChildArgument();
    const unsigned expectedSize = std::stoul(arg.substr(0, arg.find(L' ')));
    const unsigned expectedFlags = std::stoul(arg.substr(arg.find(L' ') + 1), nullptr, 16);
    {
        DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
        CStdStr<wchar_t> file;
        BrowseFiles(kFilter, file, L"", L"");
        ASSERT_TRUE(driver.Finish());
    }
    {
        DialogDriver driver([&](HWND dialog) { desktoptest::Cancel(dialog); });
        CStdStr<wchar_t> folder = temp_.path();
        BrowseForFolder(L"t", folder, nullptr);
        ASSERT_TRUE(driver.Finish());
    }
    EXPECT_EQ(g_openFile.structSize, expectedSize);
    EXPECT_EQ(g_folder.flags, expectedFlags);
}

TEST_F(BrowseTest, SettingsFollowTheRunningWindows) {
    struct Row {
        const wchar_t* version;
        const wchar_t* expected;  // OPENFILENAME size, folder dialog flags
    } rows[] = {{L"win95", L"136 201"}, {L"win98", L"136 201"}, {L"winme", L"136 241"},
                {L"nt40", L"136 201"},  {L"win2k", L"152 241"}, {L"winxp", L"152 241"}};
    for (const Row& row : rows) {
        tavtest::ChildResult result = tavtest::RunSelfAs({row.version, {}, row.expected},
                                                         "BrowseTest.DISABLED_ChildRecordsVersionDependentSettings");
        EXPECT_TRUE(tavtest::ChildPassed(result)) << tavtest::Narrow(row.version);
    }
}

}  // namespace
