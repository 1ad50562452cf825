#include <TavUtil.h>

#include "ScopedLogStream.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

// Sends the log to a temporary file for the length of a test, and restores the previous destination.
class LogCapture : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(log_.ok()); }
    void TearDown() override { OutputToFILE::OutputDebugStrings() = false; }

    // The bytes written so far.
    std::string Captured() {
        log_.Flush();
        std::ifstream in(path_.c_str(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        for (size_t at = bytes.find("\r\n"); at != std::string::npos; at = bytes.find("\r\n", at))
            bytes.erase(at, 1);
        return bytes;
    }

    // The record with the time stamp's digits replaced by N and the thread id by T.
    static std::string Normalised(std::string record) {
        size_t start = record.find("time=\"");
        if (start != std::string::npos)
            for (size_t i = start + 6; i < record.size() && record[i] != '"'; ++i)
                if (isdigit(static_cast<unsigned char>(record[i])))
                    record[i] = 'N';
        std::string tid = "threadid=\"" + std::to_string(GetCurrentThreadId()) + "\"";
        size_t at = record.find(tid);
        if (at != std::string::npos)
            record.replace(at, tid.size(), "threadid=\"T\"");
        return record;
    }

    tavtest::TempDir dir_{L"tavlog"};
    std::wstring path_ = dir_ / L"log.txt";
    // Text mode, as the standard error stream is: wide text arrives in the file as ANSI bytes, each line
    // feed as a carriage return and line feed.
    tavtest::ScopedLogStream log_{path_, L"w"};
};

TEST_F(LogCapture, RecordIsOneXmlLikeLine) {
    VelmLog().Get(INFO_LEVEL, L"keys.cpp", 42, L"SendKeys") << L"typed " << 3 << L" keys";
    EXPECT_EQ(Normalised(Captured()),
              "\t<log time=\"NN:NN:NN.NNN\" level=\"INFO   \" threadid=\"T\" filename=\"keys.cpp\" "
              "linenumber=\"42\" function=\"SendKeys\" message=\"typed 3 keys\"/>\n");
}

TEST_F(LogCapture, DebugLevelsIndentTheirMessageByTabs) {
    const struct {
        VelmLogLevel level;
        const char* name;
        const char* indent;
    } rows[] = {{ERROR_LEVEL, "ERROR  ", ""},        {WARNING_LEVEL, "WARNING", ""},
                {INFO_LEVEL, "INFO   ", ""},         {DEBUG_LEVEL, "DEBUG  ", ""},
                {DEBUG1_LEVEL, "DEBUG1 ", "\t"},     {DEBUG2_LEVEL, "DEBUG2 ", "\t\t"},
                {DEBUG3_LEVEL, "DEBUG3 ", "\t\t\t"}, {DEBUG4_LEVEL, "DEBUG4 ", "\t\t\t\t"}};
    std::string expected;
    for (const auto& row : rows) {
        VelmLog().Get(row.level, L"f", 1, L"g") << L"m";
        expected += std::string("\t<log time=\"NN:NN:NN.NNN\" level=\"") + row.name +
                    "\" threadid=\"T\" filename=\"f\" linenumber=\"1\" function=\"g\" message=\"" + row.indent +
                    "m\"/>\n";
    }
    std::string actual = Captured();
    // Normalise record by record.
    std::string normalised;
    for (size_t begin = 0, end; begin < actual.size(); begin = end + 1) {
        end = actual.find('\n', begin);
        if (end == std::string::npos)
            end = actual.size() - 1;
        normalised += Normalised(actual.substr(begin, end - begin + 1));
    }
    EXPECT_EQ(normalised, expected);
}

TEST_F(LogCapture, ValuesAreNotEscaped) {
    VelmLog().Get(ERROR_LEVEL, L"a\"b.cpp", -1, L"<f>") << L"say \"<hi>\" & go";
    EXPECT_EQ(Normalised(Captured()),
              "\t<log time=\"NN:NN:NN.NNN\" level=\"ERROR  \" threadid=\"T\" filename=\"a\"b.cpp\" "
              "linenumber=\"-1\" function=\"<f>\" message=\"say \"<hi>\" & go\"/>\n");
}

TEST_F(LogCapture, FromStringIsExactAndCaseSensitive) {
    VelmLog log;
    const struct {
        const wchar_t* text;
        VelmLogLevel level;
    } rows[] = {{L"DEBUG4", DEBUG4_LEVEL},   {L"DEBUG3", DEBUG3_LEVEL}, {L"DEBUG2", DEBUG2_LEVEL},
                {L"DEBUG1", DEBUG1_LEVEL},   {L"DEBUG", DEBUG_LEVEL},   {L"INFO", INFO_LEVEL},
                {L"WARNING", WARNING_LEVEL}, {L"ERROR", ERROR_LEVEL}};
    for (const auto& row : rows)
        EXPECT_EQ(log.FromString(row.text), row.level);
    EXPECT_EQ(Captured(), "");  // known names log nothing
}

TEST_F(LogCapture, UnknownLevelLogsAWarningAndGivesInfo) {
    VelmLog log;
    EXPECT_EQ(log.FromString(L"debug"), INFO_LEVEL);
    EXPECT_EQ(Normalised(Captured()),
              "\t<log time=\"NN:NN:NN.NNN\" level=\"WARNING\" threadid=\"T\" filename=\".\\Log\" "
              "linenumber=\"59\" function=\"VelmLog::FromString\" message=\"Unknown logging level 'debug'. "
              "Using INFO level as default.\"/>\n");
}

TEST_F(LogCapture, NullStreamDisablesFileOutput) {
    {
        tavtest::ScopedLogStream nowhere(nullptr);
        VelmLog().Get(INFO_LEVEL, L"f", 1, L"g") << L"dropped";
    }
    EXPECT_EQ(Captured(), "");
}

TEST_F(LogCapture, OutputEmitsTextBuiltElsewhere) {
    OutputToFILE::Output(L"\t<log custom=\"1");
    EXPECT_EQ(Captured(), "\t<log custom=\"1\"/>\n");
}

TEST_F(LogCapture, TimeStampMillisecondsCountFromTheFirstStamp) {
    VelmLog().Get(INFO_LEVEL, L"f", 1, L"g") << L"x";
    std::string record = Captured();
    size_t start = record.find("time=\"");
    ASSERT_NE(start, std::string::npos);
    std::string stamp = record.substr(start + 6, 12);
    ASSERT_EQ(stamp.size(), 12u);
    EXPECT_EQ(stamp[2], ':');
    EXPECT_EQ(stamp[5], ':');
    EXPECT_EQ(stamp[8], '.');
    for (int i : {0, 1, 3, 4, 6, 7, 9, 10, 11})
        EXPECT_TRUE(isdigit(static_cast<unsigned char>(stamp[i]))) << stamp;
}

// The debugger copy is the record as collected, without the closing quote, "/>" and newline. A debugger
// is attached to this process's debug output by a second thread reading the shared buffer.
TEST_F(LogCapture, DebuggerCopyLacksTheClosingCharacters) {
    HANDLE bufferReady = CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_BUFFER_READY");
    HANDLE dataReady = CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY");
    HANDLE mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 4096, L"DBWIN_BUFFER");
    HANDLE mutex = CreateMutexW(nullptr, FALSE, L"DBWinMutex");  // a debugger's presence is told by it
    ASSERT_TRUE(bufferReady && dataReady && mapping && mutex);
    tav::UniqueHandle ownBufferReady(bufferReady), ownDataReady(dataReady), ownMapping(mapping), ownMutex(mutex);
    char* view = static_cast<char*>(MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 4096));
    ASSERT_NE(view, nullptr);
    SetEvent(bufferReady);

    OutputToFILE::OutputDebugStrings() = true;
    VelmLog().Get(INFO_LEVEL, L"dbg.cpp", 7, L"Debugged") << L"to the debugger";
    OutputToFILE::OutputDebugStrings() = false;

    ASSERT_EQ(WaitForSingleObject(dataReady, 5000), WAIT_OBJECT_0) << "no debug output arrived";
    std::string debuggerText(view + sizeof(DWORD));  // the buffer starts with the sender's process id
    UnmapViewOfFile(view);
    std::string fileText = Captured();
    EXPECT_EQ(Normalised(debuggerText) + "\"/>\n", Normalised(fileText));
    EXPECT_EQ(debuggerText.find("\"/>"), std::string::npos);
    EXPECT_NE(debuggerText.back(), '\n');
}

TEST(VelmLogLevels, ToStringPadsToSevenCharacters) {
    for (int level = ERROR_LEVEL; level <= DEBUG4_LEVEL; ++level)
        EXPECT_EQ(VelmLog::ToString(static_cast<VelmLogLevel>(level)).size(), 7u) << level;
    EXPECT_EQ(VelmLog::ToString(DEBUG_LEVEL), L"DEBUG  ");
}

TEST(VelmLogLevels, ReportingLevelStartsAtDebug4AndFiltersTheMacro) {
    EXPECT_EQ(VelmLog::ReportingLevel(), DEBUG4_LEVEL);
    tavtest::TempDir dir(L"tavlogmacro");
    std::wstring path = dir / L"m.txt";
    tavtest::ScopedLogStream log(path, L"w");
    ASSERT_TRUE(log.ok());
    VelmLog::SetReportingLevel(WARNING_LEVEL);
    VELM_LOG(INFO_LEVEL) << L"filtered";
    VELM_LOG(ERROR_LEVEL) << L"kept";
    bool never = false;
    if (never)
        VELM_LOG(ERROR_LEVEL) << L"never";  // the macro nests under an if like one statement
    VelmLog::SetReportingLevel(DEBUG4_LEVEL);
    log.Restore();
    std::ifstream in(path.c_str(), std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text.find("filtered"), std::string::npos);
    EXPECT_EQ(text.find("never"), std::string::npos);
    EXPECT_NE(text.find("message=\"kept\"/>"), std::string::npos);
    EXPECT_NE(text.find("VelmLogTest.cpp"), std::string::npos);
}

// A binary stream receives the wide text unconverted: UTF-16 units.
TEST(VelmLogStreams, BinaryStreamReceivesUtf16) {
    tavtest::TempDir dir(L"tavlogbin");
    std::wstring path = dir / L"b.txt";
    tavtest::ScopedLogStream log(path, L"wb");
    ASSERT_TRUE(log.ok());
    OutputToFILE::Output(L"x");
    log.Restore();
    std::ifstream in(path.c_str(), std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(bytes, std::string("x\0\"\0/\0>\0\n\0", 10));
}

TEST(VelmLogLevels, DefaultStreamIsStandardError) { EXPECT_EQ(OutputToFILE::Stream(), stderr); }

}  // namespace
