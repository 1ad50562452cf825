#include "LaunchProbe.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace launchtest {

std::wstring ProbePath() { return tavtest::BinDir() + L"\\tavlaunchprobe.exe"; }

bool CopyProbeTo(const std::wstring& path) { return CopyFileW(ProbePath().c_str(), path.c_str(), FALSE) != 0; }

ProbeReport::ProbeReport() : reportPath_(dir_ / L"report.txt") {
    SetEnvironmentVariableW(L"TAVPROBE_REPORT", reportPath_.c_str());
}

ProbeReport::~ProbeReport() {
    SetEnvironmentVariableW(L"TAVPROBE_REPORT", nullptr);
    started_.clear();  // ends the probes before their folder goes
}

bool ProbeReport::Wait(DWORD timeoutMs) {
    return tavtest::WaitUntil([this] { return Read(); }, timeoutMs);
}

bool ProbeReport::Read() {
    std::ifstream file(tavtest::Narrow(reportPath_), std::ios::binary);
    if (!file)
        return false;
    fields_.clear();
    std::string line;
    while (std::getline(file, line)) {
        size_t equals = line.find('=');
        if (equals != std::string::npos)
            fields_[line.substr(0, equals)] = tavtest::Widen(line.substr(equals + 1));
    }
    DWORD pid = Pid();
    HANDLE process = OpenProcess(PROCESS_ALL_ACCESS, FALSE, pid);
    if (process)
        started_.push_back(std::make_unique<tavtest::RunningProgram>(process, pid));
    return true;
}

std::wstring ProbeReport::Field(const std::string& name) const {
    auto it = fields_.find(name);
    return it == fields_.end() ? std::wstring() : it->second;
}

DWORD ProbeReport::Pid() const { return static_cast<DWORD>(std::wcstoul(Field("pid").c_str(), nullptr, 10)); }

void ProbeReport::Clear() {
    DeleteFileW(reportPath_.c_str());
    fields_.clear();
}

namespace {

// No system menu: the Alt tap of a foreground grab cannot open a modal menu loop in the test's thread.
tavtest::TestWindow::Options FrontWindowOptions() {
    auto options = tavtest::TestWindow::Options().Titled(L"TavLaunchTest").Styled(WS_POPUP | WS_BORDER);
    options.Placed(60, 60, 300, 200).front = true;
    return options;
}

}  // namespace

FrontWindow::FrontWindow()
    : window_(FrontWindowOptions(), [this](UINT message, WPARAM wParam, LPARAM) {
          if (message == WM_ACTIVATE && LOWORD(wParam) == WA_INACTIVE)
              ++deactivations_;
          if ((message == WM_SYSKEYDOWN || message == WM_KEYDOWN) && (wParam == VK_MENU || wParam == VK_LMENU)) {
              ++altPresses_;
              return true;
          }
          return false;
      }) {
    deactivations_ = 0;
}

bool CatchUp(HWND window) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(window, launchprobe::kCatchUpMessage, 0, 0, SMTO_NORMAL, tavtest::kWaitMs, &answer) !=
               0 &&
           answer == static_cast<DWORD_PTR>(launchprobe::kCaughtUp);
}

bool ForegroundBelongsTo(DWORD processId) {
    // A foreground change to another process's window completes in that process: allow it a long moment
    // on a busy machine (the answer comes as soon as the change is seen).
    auto ownerOfForeground = [] {
        DWORD owner = 0;
        GetWindowThreadProcessId(GetForegroundWindow(), &owner);
        return owner;
    };
    if (tavtest::WaitUntil([&] { return ownerOfForeground() == processId; }))
        return true;
    wchar_t name[260] = {};
    GetClassNameW(GetForegroundWindow(), name, 260);
    ADD_FAILURE() << "foreground window " << GetForegroundWindow() << " of class " << tavtest::Narrow(name);
    return false;
}

}  // namespace launchtest
