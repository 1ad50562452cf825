#include "ImportHook.h"

#include <TavUtil.h>

#include "RegistryFixture.h"
#include "ScopedLogStream.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <mmsystem.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

static_assert(std::has_virtual_destructor<cWave>::value, "cWave is polymorphic");

// What TavUtil.dll asked PlaySoundW to do; the real PlaySoundW still runs.
struct SoundCall {
    bool hasSound = false;
    std::wstring sound;
    HMODULE module = nullptr;
    DWORD flags = 0;
    DWORD lastErrorOnEntry = 0;
    BOOL result = FALSE;
};
std::vector<SoundCall> g_calls;
tavtest::ImportHook* g_hook = nullptr;

BOOL WINAPI RecordPlaySound(LPCWSTR sound, HMODULE module, DWORD flags) {
    SoundCall call;
    call.lastErrorOnEntry = GetLastError();
    call.hasSound = sound != nullptr;
    call.sound = sound ? sound : L"";
    call.module = module;
    call.flags = flags;
    call.result = g_hook->original<decltype(&PlaySoundW)>()(sound, module, flags);
    g_calls.push_back(call);
    return call.result;
}

// Registers sounds for this executable's events under HKCU and removes the whole application key after.
class WaveTest : public ::testing::Test {
protected:
    void SetUp() override {
        appKey_ = L"AppEvents\\Schemes\\Apps\\" + std::wstring(cWave::applicationName());
        // Probed with an open: a scheme found here is someone else's, left alone, and the test stops.
        ASSERT_FALSE(tavtest::KeyExists(HKEY_CURRENT_USER, appKey_))
            << "a sound scheme for the test executable exists before the test";
        ownsAppKey_ = true;
        wavePath_ = temp_ / L"chime.wav";
        ASSERT_TRUE(tavtest::WriteFileBytes(wavePath_, tavtest::SilentWave(800)));
        hook_ =
            std::make_unique<tavtest::ImportHook>("winmm.dll", "PlaySoundW", reinterpret_cast<void*>(&RecordPlaySound));
        ASSERT_TRUE(hook_->installed());
        g_hook = hook_.get();
        g_calls.clear();
    }
    void TearDown() override {
        hook_.reset();
        g_hook = nullptr;
        if (ownsAppKey_)
            tavtest::DeleteKeyTree(HKEY_CURRENT_USER, appKey_);
        PlaySoundW(nullptr, nullptr, 0);
    }

    // Creates the event's ".Current" key; with a value pointer, sets its default value.
    void Register(const std::wstring& event, const std::wstring* value) {
        tav::UniqueKey key;
        std::wstring path = appKey_ + L"\\" + event + L"\\.Current";
        ASSERT_EQ(
            RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr),
            ERROR_SUCCESS);
        if (value)
            RegSetValueExW(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value->c_str()),
                           static_cast<DWORD>((value->size() + 1) * sizeof(wchar_t)));
    }
    void RegisterWave(const std::wstring& event) { Register(event, &wavePath_); }

    tavtest::TempDir temp_{L"tavwave"};
    std::wstring appKey_;
    std::wstring wavePath_;
    std::unique_ptr<tavtest::ImportHook> hook_;
    bool ownsAppKey_ = false;
    // Failed plays log a warning each; only the test that checks the log keeps it.
    tavtest::ScopedLogStream quiet_{nullptr};
};

TEST_F(WaveTest, ApplicationNameIsTheExecutableName) {
    std::wstring self = tavtest::SelfPath();
    std::wstring name = self.substr(self.find_last_of(L'\\') + 1);
    name.erase(name.rfind(L'.'));
    EXPECT_EQ(cWave::applicationName(), name);
}

TEST_F(WaveTest, EachModeChoosesItsFlags) {
    RegisterWave(L"Chime");
    struct Row {
        int mode;
        DWORD flags;
    } rows[] = {{cWave::PLAY_SYNC, 0x2082},
                {cWave::PLAY_LOOP, 0x208B},
                {cWave::PLAY_ASYNC, 0x2083},
                {3, 0x2083},
                {-1, 0x2083},
                {100, 0x2083}};
    for (const Row& row : rows) {
        g_calls.clear();
        cWave wave;
        wave.play(L"Chime", static_cast<cWave::PlayModeEnum>(row.mode));
        ASSERT_EQ(g_calls.size(), 1u) << "mode " << row.mode;
        EXPECT_EQ(g_calls[0].flags, row.flags) << "mode " << row.mode;
        EXPECT_TRUE(g_calls[0].flags & SND_NODEFAULT);
        EXPECT_EQ(g_calls[0].sound, wavePath_);
        EXPECT_EQ(g_calls[0].module, nullptr);
        EXPECT_EQ(g_calls[0].lastErrorOnEntry, 0u);
    }
}

TEST_F(WaveTest, ResultIsWhetherPlaySoundSucceeded) {
    RegisterWave(L"Chime");
    cWave wave;
    // Without a sound device a synchronous play fails and an asynchronous one is accepted.
    EXPECT_EQ(wave.play(L"Chime", cWave::PLAY_SYNC), false);
    EXPECT_EQ(wave.play(L"Chime", cWave::PLAY_ASYNC), true);
    ASSERT_EQ(g_calls.size(), 2u);
    EXPECT_EQ(g_calls[0].result, FALSE);
    EXPECT_EQ(g_calls[1].result, TRUE);
}

TEST_F(WaveTest, LoopingPlayLeavesRepeatFlagClearAndNothingIsStopped) {
    RegisterWave(L"Chime");
    {
        cWave wave;
        EXPECT_TRUE(wave.play(L"Chime", cWave::PLAY_LOOP));
        EXPECT_FALSE(wave.isRepeating());
        wave.stopPlay();
        cWave copy(wave);
        EXPECT_FALSE(copy.isRepeating());
    }                               // destructors: nothing to stop either
    ASSERT_EQ(g_calls.size(), 1u);  // only the play itself: no PlaySoundW(NULL) from stopPlay or ~cWave
    EXPECT_TRUE(g_calls[0].flags & SND_LOOP);
}

TEST_F(WaveTest, MissingKeyGivesFalseWithoutPlaying) {
    cWave wave;
    EXPECT_FALSE(wave.play(L"NoSuchEvent", cWave::PLAY_ASYNC));
    EXPECT_TRUE(g_calls.empty());
}

TEST_F(WaveTest, MissingValueGivesFalseWithoutPlaying) {
    Register(L"NoValue", nullptr);
    cWave wave;
    EXPECT_FALSE(wave.play(L"NoValue", cWave::PLAY_ASYNC));
    EXPECT_TRUE(g_calls.empty());
}

TEST_F(WaveTest, ValueLongerThanTheBufferGivesFalseWithoutPlaying) {
    const std::wstring longPath = L"C:\\" + std::wstring(300, L'a') + L".wav";
    Register(L"TooLong", &longPath);
    cWave wave;
    EXPECT_FALSE(wave.play(L"TooLong", cWave::PLAY_ASYNC));
    EXPECT_TRUE(g_calls.empty());
}

TEST_F(WaveTest, EventWithoutRegisteredSoundGivesFalseAndNoDefaultSound) {
    const std::wstring none;
    Register(L"Silent", &none);
    for (cWave::PlayModeEnum mode : {cWave::PLAY_SYNC, cWave::PLAY_ASYNC, cWave::PLAY_LOOP}) {
        cWave wave;
        EXPECT_FALSE(wave.play(L"Silent", mode)) << "mode " << mode;
    }
    EXPECT_TRUE(g_calls.empty());  // no sound at all was asked for, the default one neither
}

TEST_F(WaveTest, MissingFileGivesFalse) {
    const std::wstring missing = temp_ / L"missing.wav";
    Register(L"Gone", &missing);
    cWave wave;
    EXPECT_FALSE(wave.play(L"Gone", cWave::PLAY_SYNC));
}

TEST_F(WaveTest, FailedPlayIsLoggedAtWarning) {
    RegisterWave(L"Chime");
    const std::wstring logPath = temp_ / L"log.txt";
    tavtest::ScopedLogStream log(logPath, L"wb");
    ASSERT_TRUE(log.ok());
    cWave wave;
    const bool played = wave.play(L"Chime", cWave::PLAY_SYNC);
    log.Restore();
    ASSERT_FALSE(played);

    std::ifstream in(tavtest::Narrow(logPath), std::ios::binary);
    std::stringstream raw;
    raw << in.rdbuf();
    // The log stream writes UTF-16 units to a binary file; the record here is plain ASCII.
    std::string bytes = raw.str();
    std::stringstream text;
    for (char c : bytes)
        if (c != '\0')
            text << c;
    const std::string expected = "cWave-Error opening WAVE file from Registry: " + tavtest::Narrow(appKey_) +
                                 "\\Chime\\.Current\nFile: " + tavtest::Narrow(wavePath_);
    EXPECT_NE(text.str().find("level=\"WARNING\""), std::string::npos) << text.str();
    EXPECT_NE(text.str().find(expected), std::string::npos) << text.str();
}

}  // namespace
