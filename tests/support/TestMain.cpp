#include <gtest/gtest.h>

#include <cstdio>

namespace {

// A test program killed for running out of time leaves in the log only what reached its output, and the
// runtime holds output to a file or a pipe back until its buffer fills. Each test's start is flushed at once,
// so the log of a killed run ends with the name of the test that was running.
class FlushAtEachTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { std::fflush(stdout); }
    void OnTestEnd(const testing::TestInfo&) override { std::fflush(stdout); }
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new FlushAtEachTest);
    return RUN_ALL_TESTS();
}
