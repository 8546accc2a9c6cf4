#include <gtest/gtest.h>

#include <string>

#include <VelmarCoreUI/Core/VLXLogger.h>

TEST(VLXLogger, CapturesFormattedRecordsWithTheirSource) {
    VLXLogCapture capture;
    VLXLogger::logLevel(4, "Source/Graphing/VLXGraphView", "-[VLXGraphView renderGraph]", 120,
                        "Cannot add %s object at index %i (%.0f)", "NSString", 3, 2.5);
    VLXLogger::logLevel(VLXLogLevel::Warning, nullptr, nullptr, 0, nullptr);
    ASSERT_EQ(capture.records().size(), 2u);
    const VLXLogRecord& record = capture.records()[0];
    EXPECT_EQ(record.level, 4);
    EXPECT_EQ(record.file, "Source/Graphing/VLXGraphView");
    EXPECT_EQ(record.function, "-[VLXGraphView renderGraph]");
    EXPECT_EQ(record.line, 120);
    EXPECT_EQ(record.message, "Cannot add NSString object at index 3 (2)");  // %.0f: half to even
    EXPECT_EQ(capture.records()[1].level, 3);
    EXPECT_EQ(capture.records()[1].message, "");

    const std::string longText(1000, 'x');
    VLXLogger::logLevel(0, "f", "g", 1, "%s|", longText.c_str());
    EXPECT_EQ(capture.records().back().message, longText + "|");
    EXPECT_EQ(VLXLogger::nameOfLevel(4), "Error");
    EXPECT_EQ(VLXLogger::nameOfLevel(9), "Level 9");
}

TEST(VLXLogger, MinimumLevelFiltersAndCapturesRestoreThePreviousSetup) {
    std::vector<std::string> outer;
    const auto original = VLXLogger::setSink(
        [&outer](const VLXLogRecord& record) { outer.push_back(record.message); });
    const int originalLevel = VLXLogger::minimumLevel();
    VLXLogger::setMinimumLevel(0);
    {
        VLXLogCapture capture(VLXLogLevel::Warning);
        VLXLogger::logLevel(VLXLogLevel::Info, "f", "g", 1, "dropped");
        VLXLogger::logLevel(VLXLogLevel::Warning, "f", "g", 1, "kept");
        ASSERT_EQ(capture.records().size(), 1u);
        EXPECT_EQ(capture.records()[0].message, "kept");
        EXPECT_TRUE(outer.empty());
    }
    EXPECT_EQ(VLXLogger::minimumLevel(), 0);
    VLXLogger::logLevel(VLXLogLevel::Verbose, "f", "g", 1, "after");
    EXPECT_EQ(outer, std::vector<std::string>{"after"});
    VLXLogger::setSink(original);
    VLXLogger::setMinimumLevel(originalLevel);
}

TEST(VLXLogger, ExecutionTimeRunsTheBlockOnceAndRemembersTheKey) {
    VLXLogCapture capture;
    EXPECT_FALSE(VLXLogger::lastExecutionTime("LoggerTestPhase").has_value());
    int runs = 0;
    VLXLogger::logExecutionTimeOfBlock([&runs] { ++runs; }, "LoggerTestPhase");
    EXPECT_EQ(runs, 1);
    const auto elapsed = VLXLogger::lastExecutionTime("LoggerTestPhase");
    ASSERT_TRUE(elapsed.has_value());
    EXPECT_GE(*elapsed, 0.0);
    ASSERT_EQ(capture.records().size(), 1u);
    EXPECT_EQ(capture.records()[0].level, static_cast<int>(VLXLogLevel::Debug));
    EXPECT_EQ(capture.records()[0].message.rfind("LoggerTestPhase: ", 0), 0u);

    VLXLogger::logExecutionTimeOfBlock(nullptr, "LoggerTestEmpty");  // no block: no crash
    EXPECT_TRUE(VLXLogger::lastExecutionTime("LoggerTestEmpty").has_value());
}
