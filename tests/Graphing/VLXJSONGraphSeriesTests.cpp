#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

#include <VelmarCoreUI/Graphing/VLXJSONGraphSeries.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>

namespace {

// Stands in for the main run loop: the worker queues its delivery, the test thread runs it.
class DeliveryQueue {
public:
    VLXJSONGraphSeries::Executor executor() {
        return [this](std::function<void()> block) {
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_blocks.push_back(std::move(block));
            }
            m_condition.notify_all();
        };
    }
    // Waits for the next delivery (a worker finishing, not a timed behaviour) and runs it.
    bool runNext() {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (!m_condition.wait_for(lock, std::chrono::seconds(30),
                                  [&] { return !m_blocks.empty(); })) {
            return false;
        }
        auto block = std::move(m_blocks.front());
        m_blocks.pop_front();
        lock.unlock();
        block();
        return true;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    std::deque<std::function<void()>> m_blocks;
};

struct RecordingDelegate : VLXJSONGraphSeriesDelegate {
    int loads = 0;
    std::string failure;
    void graphSeriesDidLoad(VLXJSONGraphSeries&) override { ++loads; }
    void graphSeriesDidFailToLoad(VLXJSONGraphSeries&, const std::string& reason) override {
        failure = reason;
    }
};

std::filesystem::path writeFile(const std::string& name, const std::string& text) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("vlx-json-series-" + std::to_string(::getpid()) + "-" + name);
    std::ofstream(path) << text;
    return path;
}

const char* kTwoSeries = R"({"series": [
    {"title": "Rain", "x": "day", "y": "mm", "interval": 5, "modifier": 1, "rendererType": 1,
     "data": [{"day": 1, "mm": 2}, {"day": 2, "mm": 3}, {"day": 3, "mm": null}]},
    {"title": "Sun", "data": [[1, 8.5], [2, 9]]}]})";

}  // namespace

TEST(JSONGraphSeries, LoadsOnAWorkerAndDeliversThroughTheExecutor) {
    DeliveryQueue queue;
    RecordingDelegate delegate;
    auto series = VLXJSONGraphSeries::seriesWithContentsOfFile(writeFile("two.json", kTwoSeries));
    series->setMainThreadExecutor(queue.executor());
    series->setDelegate(&delegate);
    int completions = 0;
    series->loadSeriesDataWithCompletion([&] { ++completions; });
    EXPECT_TRUE(series->isLoading());
    ASSERT_TRUE(queue.runNext());
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(delegate.loads, 1);
    EXPECT_FALSE(series->isLoading());

    const auto items = series->items();
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0]->title(), "Rain");
    EXPECT_EQ(items[0]->rendererType(), 1);
    EXPECT_EQ(items[0]->interval(), 5);
    // Options were set before the data: cumulative, the null skipped.
    ASSERT_EQ(items[0]->points().size(), 2u);
    EXPECT_EQ(items[0]->points()[1].y, 5);
    EXPECT_EQ(items[1]->points()[0].y, 8.5);
    EXPECT_EQ(series->valueIntervalForAxis(0), 5);

    // A plain array of records is one item named after the file, read with the series' names.
    auto plain = VLXJSONGraphSeries::seriesWithContentsOfFile(
        writeFile("plain.json", R"([{"t": 1, "v": 4}, {"t": 2, "v": 6}])"));
    plain->setXAxisPropertyName("t");
    plain->setYAxisPropertyName("v");
    plain->setMainThreadExecutor(queue.executor());
    plain->loadSeriesDataWithCompletion({});
    ASSERT_TRUE(queue.runNext());
    ASSERT_EQ(plain->items().size(), 1u);
    EXPECT_NE(plain->items()[0]->title().find("plain"), std::string::npos);
    EXPECT_EQ(plain->rangeForAxis(VLXGraphAxisTypeX).max, 2);
}

TEST(JSONGraphSeries, CancelledAndSupersededLoadsCallNothing) {
    DeliveryQueue queue;
    auto series =
        VLXJSONGraphSeries::seriesWithContentsOfFile(writeFile("cancel.json", kTwoSeries));
    series->setMainThreadExecutor(queue.executor());
    int first = 0;
    series->loadSeriesDataWithCompletion([&] { ++first; });
    series->cancelLoading();
    EXPECT_FALSE(series->isLoading());
    ASSERT_TRUE(queue.runNext());
    EXPECT_EQ(first, 0);
    EXPECT_TRUE(series->items().empty());

    int second = 0;
    int third = 0;
    series->loadSeriesDataWithCompletion([&] { ++second; });
    series->loadSeriesDataWithCompletion([&] { ++third; });
    ASSERT_TRUE(queue.runNext());
    ASSERT_TRUE(queue.runNext());
    EXPECT_EQ(second, 0);
    EXPECT_EQ(third, 1);
    EXPECT_EQ(series->items().size(), 2u);

    // The series may go away with a load in flight: the delivery finds nothing to do.
    series->loadSeriesDataWithCompletion([&] { ++third; });
    series.reset();
    ASSERT_TRUE(queue.runNext());
    EXPECT_EQ(third, 1);
}

TEST(JSONGraphSeries, FailuresKeepTheItemsAndStillComplete) {
    DeliveryQueue queue;
    RecordingDelegate delegate;
    auto series = VLXJSONGraphSeries::seriesWithContentsOfFile(writeFile("ok.json", kTwoSeries));
    series->setMainThreadExecutor(queue.executor());
    series->setDelegate(&delegate);
    series->loadSeriesDataWithCompletion({});
    ASSERT_TRUE(queue.runNext());
    int completions = 0;
    for (const char* text : {"{\"series\": [1, 2]}", "[{\"x\": 1", "{\"rows\": []}"}) {
        series->setFilePath(writeFile("bad.json", text));
        series->loadSeriesDataWithCompletion([&] { ++completions; });
        ASSERT_TRUE(queue.runNext());
        EXPECT_FALSE(delegate.failure.empty()) << text;
        EXPECT_TRUE(series->lastError().has_value());
        EXPECT_EQ(series->items().size(), 2u);
        delegate.failure.clear();
    }
    series->setFilePath("/nonexistent/vlx/series.json");
    series->loadSeriesDataWithCompletion([&] { ++completions; });
    ASSERT_TRUE(queue.runNext());
    EXPECT_NE(delegate.failure.find("cannot read"), std::string::npos);
    EXPECT_EQ(completions, 4);
}

TEST(JSONGraphSeries, DefaultDeliveryIsTheMainRunLoop) {
    auto series = VLXJSONGraphSeries::seriesWithContentsOfFile(writeFile("main.json", kTwoSeries));
    bool done = false;
    series->loadSeriesDataWithCompletion([&] { done = true; });
    // The worker posts to the main run loop; its turns run the delivery on this thread.
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done && std::chrono::steady_clock::now() < giveUp) {
        VLXRunLoop::main().runOnce();
        std::this_thread::yield();
    }
    EXPECT_TRUE(done);
    EXPECT_EQ(series->items().size(), 2u);
}
