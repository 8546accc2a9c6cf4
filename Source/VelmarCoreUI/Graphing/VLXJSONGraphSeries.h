#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXGraphSeries.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/VLXExport.h>

class VLXJSONGraphSeries;

/// What a JSON-loading series tells its delegate, on the main thread, before the completion.
class VLX_EXPORT VLXJSONGraphSeriesDelegate : public VLXGraphSeriesDelegate {
public:
    virtual void graphSeriesDidLoad(VLXJSONGraphSeries& /*series*/) {}
    /// The items are left as they were; the completion is still called.
    virtual void graphSeriesDidFailToLoad(VLXJSONGraphSeries& /*series*/,
                                          const std::string& /*reason*/) {}
};

/// A loading series: reads a JSON file of records on a worker thread, builds its items there
/// (points are derived off the main thread) and hands them over on the main thread, where it
/// replaces the items, tells the delegate and calls the completion.
///
/// The file is either an array of records (one item titled after the file, reading
/// `xAxisPropertyName` and `yAxisPropertyName`), or an object whose "series" array describes
/// items: {"title", "identifier", "x", "y", "interval", "modifier", "rendererType",
/// "ignoreTime", "ignoreZeroValues", "constrainToPositiveValues", "data"}; "x" and "y" default to
/// the series' names. A file that cannot be read or has another shape fails the load.
///
/// A new load cancels the one in progress; `cancelLoading` drops the pending result without
/// calling its completion.
class VLX_EXPORT VLXJSONGraphSeries : public VLXGraphSeries {
public:
    /// Runs a block on the main thread, later. By default `VLXRunLoop::main().post`.
    using Executor = std::function<void(std::function<void()>)>;

    static std::shared_ptr<VLXJSONGraphSeries> create();
    static std::shared_ptr<VLXJSONGraphSeries> seriesWithContentsOfFile(std::filesystem::path path);
    ~VLXJSONGraphSeries() override;

    const std::filesystem::path& filePath() const { return m_filePath; }
    void setFilePath(std::filesystem::path path) { m_filePath = std::move(path); }
    /// Names read from the records of a plain array file ("x" and "y").
    const std::string& xAxisPropertyName() const { return m_xAxisPropertyName; }
    void setXAxisPropertyName(std::string name) { m_xAxisPropertyName = std::move(name); }
    const std::string& yAxisPropertyName() const { return m_yAxisPropertyName; }
    void setYAxisPropertyName(std::string name) { m_yAxisPropertyName = std::move(name); }
    /// How results reach the main thread; an empty executor restores the main run loop.
    void setMainThreadExecutor(Executor executor);

    /// True between `loadSeriesDataWithCompletion` and its delivery or cancellation.
    bool isLoading() const { return m_loading; }
    /// The reason the last load failed, nil after a successful one.
    const std::optional<std::string>& lastError() const { return m_lastError; }

    void loadSeriesDataWithCompletion(std::function<void()> completion) override;
    void cancelLoading() override;

    /// The items a parsed file describes (what the worker builds); nil with the reason when the
    /// shape is wrong. Usable on any thread.
    static std::optional<Items> itemsFromJSON(const VLXValue& json, const std::string& defaultTitle,
                                              const std::string& xName, const std::string& yName,
                                              std::string* reason = nullptr);

protected:
    VLXJSONGraphSeries();
    void init() override;

private:
    void deliver(std::uint64_t load, std::optional<Items> items, std::string reason,
                 const std::function<void()>& completion);

    std::filesystem::path m_filePath;
    std::string m_xAxisPropertyName = "x";
    std::string m_yAxisPropertyName = "y";
    Executor m_executor;
    bool m_loading = false;
    std::optional<std::string> m_lastError;
    std::uint64_t m_currentLoad = 0;
    struct Worker {
        std::thread thread;
        std::shared_ptr<std::atomic<bool>> finished;
    };
    std::vector<Worker> m_workers;
};
