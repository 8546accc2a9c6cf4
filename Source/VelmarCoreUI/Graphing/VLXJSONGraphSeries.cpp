#include <VelmarCoreUI/Graphing/VLXJSONGraphSeries.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include <VelmarCoreUI/Platform/Foundation/VLXRunLoop.h>

namespace {

void postToMainRunLoop(std::function<void()> block) {
    VLXRunLoop::main().post(std::move(block));
}

std::optional<std::string> readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) {
        return std::nullopt;
    }
    return text.str();
}

std::string stringOr(const VLXValue& value, const std::string& fallback) {
    return value.isString() ? value.stringValue() : fallback;
}

}  // namespace

VLXJSONGraphSeries::VLXJSONGraphSeries() = default;

VLXJSONGraphSeries::~VLXJSONGraphSeries() {
    for (auto& worker : m_workers) {
        if (worker.thread.get_id() == std::this_thread::get_id()) {
            worker.thread.detach();  // an executor ran the delivery on the worker itself
        } else if (worker.thread.joinable()) {
            worker.thread.join();
        }
    }
}

std::shared_ptr<VLXJSONGraphSeries> VLXJSONGraphSeries::create() {
    return makeInitialized<VLXJSONGraphSeries>();
}

std::shared_ptr<VLXJSONGraphSeries> VLXJSONGraphSeries::seriesWithContentsOfFile(
    std::filesystem::path path) {
    auto series = create();
    series->setFilePath(std::move(path));
    return series;
}

void VLXJSONGraphSeries::init() {
    VLXGraphSeries::init();
    m_executor = postToMainRunLoop;
}

void VLXJSONGraphSeries::setMainThreadExecutor(Executor executor) {
    m_executor = executor ? std::move(executor) : Executor(postToMainRunLoop);
}

std::optional<VLXGraphSeries::Items> VLXJSONGraphSeries::itemsFromJSON(
    const VLXValue& json, const std::string& defaultTitle, const std::string& xName,
    const std::string& yName, std::string* reason) {
    auto fail = [&](const char* text) -> std::optional<Items> {
        if (reason != nullptr) {
            *reason = text;
        }
        return std::nullopt;
    };
    if (json.isArray()) {
        auto item = VLXSeriesItem::create();
        item->setTitle(defaultTitle);
        item->setXAxisPropertyName(xName);
        item->setYAxisPropertyName(yName);
        item->setData(json);
        return Items{item};
    }
    const VLXValue descriptions = json.valueForKey("series");
    if (!descriptions.isArray()) {
        return fail(json.isNil() ? "malformed JSON" : "no records and no \"series\" array");
    }
    Items items;
    for (const auto& description : descriptions.arrayValue()) {
        if (!description.isDictionary()) {
            return fail("a series description is not an object");
        }
        auto item = VLXSeriesItem::create();
        item->setTitle(stringOr(description.valueForKey("title"), item->title()));
        item->setIdentifier(stringOr(description.valueForKey("identifier"), item->identifier()));
        // Options before data: points are derived when the data are assigned.
        item->setXAxisPropertyName(stringOr(description.valueForKey("x"), xName));
        item->setYAxisPropertyName(stringOr(description.valueForKey("y"), yName));
        if (const VLXValue v = description.valueForKey("interval"); v.isNumber()) {
            item->setInterval(v.doubleValue());
        }
        if (const VLXValue v = description.valueForKey("modifier"); v.isNumber()) {
            item->setModifier(v.unsignedIntegerValue());
        }
        if (const VLXValue v = description.valueForKey("rendererType"); v.isNumber()) {
            item->setRendererType(v.integerValue());
        }
        item->setIgnoreTime(description.valueForKey("ignoreTime").boolValue());
        item->setIgnoreZeroValues(description.valueForKey("ignoreZeroValues").boolValue());
        item->setConstrainToPositiveValues(
            description.valueForKey("constrainToPositiveValues").boolValue());
        item->setData(description.valueForKey("data"));
        items.push_back(std::move(item));
    }
    return items;
}

void VLXJSONGraphSeries::loadSeriesDataWithCompletion(std::function<void()> completion) {
    const std::uint64_t load = ++m_currentLoad;  // supersedes a load in progress
    m_loading = true;
    std::erase_if(m_workers, [](Worker& worker) {
        if (!worker.finished->load()) {
            return false;
        }
        worker.thread.join();  // returns at once: the worker has done its last step
        return true;
    });
    std::weak_ptr<VLXJSONGraphSeries> weakSelf = sharedFrom<VLXJSONGraphSeries>();
    auto finished = std::make_shared<std::atomic<bool>>(false);
    std::thread thread([weakSelf, load, finished, path = m_filePath, xName = m_xAxisPropertyName,
                        yName = m_yAxisPropertyName, executor = m_executor,
                        completion = std::move(completion)]() mutable {
        // The worker touches nothing of the series: it reads, builds new items and hands them
        // to the main thread.
        std::optional<Items> items;
        std::string reason;
        if (const std::optional<std::string> text = readFile(path)) {
            items = itemsFromJSON(VLXValue::fromJSON(*text), path.stem().string(), xName, yName,
                                  &reason);
        } else {
            reason = "cannot read " + path.string();
        }
        executor([weakSelf, load, items = std::move(items), reason = std::move(reason),
                  completion = std::move(completion)]() mutable {
            if (auto self = weakSelf.lock()) {
                self->deliver(load, std::move(items), std::move(reason), completion);
            }
        });
        finished->store(true);
    });
    m_workers.push_back(Worker{std::move(thread), std::move(finished)});
}

void VLXJSONGraphSeries::deliver(std::uint64_t load, std::optional<Items> items, std::string reason,
                                 const std::function<void()>& completion) {
    if (load != m_currentLoad || !m_loading) {
        return;  // cancelled or superseded: no completion
    }
    m_loading = false;
    auto* delegate = dynamic_cast<VLXJSONGraphSeriesDelegate*>(this->delegate());
    if (items) {
        setMutableItems(std::move(*items));
        m_lastError.reset();
        if (delegate != nullptr) {
            delegate->graphSeriesDidLoad(*this);
        }
    } else {
        m_lastError = reason;
        if (delegate != nullptr) {
            delegate->graphSeriesDidFailToLoad(*this, reason);
        }
    }
    if (completion) {
        completion();
    }
}

void VLXJSONGraphSeries::cancelLoading() {
    ++m_currentLoad;
    m_loading = false;
}
