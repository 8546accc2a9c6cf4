#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>
#include <random>

#include <VelmarCoreUI/Core/VLXDateHelpers.h>
#include <VelmarCoreUI/Core/VLXLogger.h>
#include <VelmarCoreUI/Core/VLXStringHelpers.h>
#include <VelmarCoreUI/Graphing/Private/VLXSeriesNearestPoint.h>
#include <VelmarCoreUI/Platform/Foundation/VLXNumerics.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>

namespace {

constexpr std::string_view kNestedSeparator = ".#.";

int randomSeriesNumber() {
    thread_local std::minstd_rand engine{std::random_device{}()};
    return std::uniform_int_distribution<int>(0, 999)(engine);
}

std::uint64_t nextGeneration() {
    static std::atomic<std::uint64_t> counter{0};
    return ++counter;
}

std::vector<std::string_view> splitNested(std::string_view path) {
    std::vector<std::string_view> components;
    while (true) {
        const std::size_t at = path.find(kNestedSeparator);
        if (at == std::string_view::npos) {
            components.push_back(path);
            return components;
        }
        components.push_back(path.substr(0, at));
        path.remove_prefix(at + kNestedSeparator.size());
    }
}

int loggedIndex(std::size_t index) {
    return index > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(index);
}

}  // namespace

// --- the walk that turns data into points -----------------------------------------------------

class VLXSeriesItem::Deriver {
public:
    Deriver(const VLXSeriesItem& item, std::vector<VLXSeriesPoint>& points, PointStats& stats,
            double previousY)
        : m_item(item),
          m_points(points),
          m_stats(stats),
          m_previousY(previousY),
          m_cumulative(item.m_modifier == VLXSeriesItemModifierCumulative),
          m_namesDefined(VLXIsNonEmptyString(item.m_xAxisPropertyName) &&
                         VLXIsNonEmptyString(item.m_yAxisPropertyName)) {
        if (m_namesDefined) {
            m_xName = *item.m_xAxisPropertyName;
            m_yName = *item.m_yAxisPropertyName;
        }
        m_xPlain = m_xName.find('.') == std::string::npos;
        m_yPlain = m_yName.find('.') == std::string::npos;
    }

    double previousY() const { return m_previousY; }

    void walk(const VLXValue::Array& elements, std::size_t firstIndex) {
        for (std::size_t k = 0; k < elements.size(); ++k) {
            const VLXValue& element = elements[k];
            switch (element.kind()) {
                case VLXValue::Kind::Nil:
                    // Nothing the runtime could inspect.
                    m_previousY = 0;
                    continue;
                case VLXValue::Kind::Array:
                    addPair(element.arrayValue());
                    continue;
                case VLXValue::Kind::Boxed:
                    if (const auto point = VLXSeriesPoint::fromValue(element)) {
                        add(*point);  // taken as is, full precision
                        m_previousY = 0;
                        continue;
                    }
                    break;
                default:
                    break;
            }
            addObject(element, firstIndex + k);
        }
    }

private:
    struct Reading {
        double value = 0;
        bool responded = false;
        bool skipped = false;
    };

    void add(const VLXSeriesPoint& point) {
        m_stats.add(point, m_points.empty() ? nullptr : &m_points.back());
        m_points.push_back(point);
    }

    void addPair(const VLXValue::Array& pair) {
        if (pair.size() != 2) {
            m_previousY = 0;
            return;
        }
        const double x = pair[0].floatValue();
        double y = pair[1].floatValue();
        if (m_cumulative) {
            y += m_previousY;
        }
        add({x, y});
        m_previousY = y;
    }

    void addObject(const VLXValue& element, std::size_t index) {
        if (!m_namesDefined) {
            VLXLogger::logLevel(4, "Source/Graphing/VLXSeriesItem",
                                "-[VLXSeriesItem seriesData]_block_invoke", 242,
                                "Cannot add %s object to graph series at index %i, "
                                "xAxisPropertyName or yAxisPropertyName are not defined.",
                                element.className().c_str(), loggedIndex(index));
            m_previousY = 0;
            return;
        }
        const Reading x = read(element, m_xName, m_xPlain);
        const Reading y = read(element, m_yName, m_yPlain);
        if (!x.responded && !y.responded) {
            if (element.respondsTo("periods") && element.valueForKey("periods").isArray()) {
                addPeriods(element);
            }
            return;
        }
        if (x.skipped || y.skipped) {
            m_previousY = y.value;
            return;
        }
        double total = y.value;
        if (m_cumulative) {
            total += m_previousY;
        }
        add({x.value, total});
        m_previousY = total;
    }

    Reading read(const VLXValue& element, const std::string& name, bool plain) const {
        if (plain) {
            // A key-value object gives a value only for a property it has, so a value found
            // answers the name test too; only a nil result needs the test itself.
            const VLXValue value = element.valueForKey(name);
            if (value.isNumber()) {
                return Reading{value.floatValue(), true, false};  // the common case
            }
            if (value.isNil()) {
                return Reading{0, element.respondsTo(name), false};
            }
            if (value.isDate() && m_item.m_ignoreTime) {
                return interpret(VLXValue(vlx_dateByIgnoringTime(*value.dateValue())));
            }
            return interpret(value);
        }
        if (!element.respondsTo(name)) {
            return Reading{};
        }
        return interpret(m_item.parseKeyPath(name, element));
    }

    // What a value read for x or y means for the element that answered the name.
    Reading interpret(const VLXValue& value) const {
        Reading reading;
        reading.responded = true;
        switch (value.kind()) {
            case VLXValue::Kind::Number:
                reading.value = value.floatValue();
                break;
            case VLXValue::Kind::Date:
                reading.value = m_item.timeIntervalForPointValueWithDate(*value.dateValue());
                break;
            case VLXValue::Kind::Null:
                reading.skipped = true;
                break;
            case VLXValue::Kind::Nil:
                break;
            default:
                // Strings, arrays and the like are not read as numbers here; they only count
                // as zero values.
                reading.skipped = m_item.m_ignoreZeroValues && value.floatValue() == 0;
                break;
        }
        return reading;
    }

    void addPeriods(const VLXValue& element) {
        const VLXValue xs = m_item.parseKeyPath(m_xName, element);
        const VLXValue ys = m_item.parseKeyPath(m_yName, element);
        m_previousY = 0;
        const VLXValue::Array& xValues = xs.arrayValue();
        const VLXValue::Array& yValues = ys.arrayValue();
        if (xValues.size() != yValues.size()) {
            return;
        }
        for (std::size_t i = 0; i < xValues.size(); ++i) {
            const VLXValue& xValue = xValues[i];
            const double x =
                xValue.isDate()
                    ? vlx::f32(m_item.timeIntervalForPointValueWithDate(*xValue.dateValue()))
                    : static_cast<double>(xValue.floatValue());
            double y = yValues[i].floatValue();
            if (m_cumulative) {
                y += m_previousY;
            }
            if (!(y == 0 && m_item.m_ignoreZeroValues)) {
                add({x, y});
            }
            m_previousY = y;
        }
    }

    const VLXSeriesItem& m_item;
    std::vector<VLXSeriesPoint>& m_points;
    PointStats& m_stats;
    double m_previousY;
    bool m_cumulative;
    bool m_namesDefined;
    std::string m_xName;
    std::string m_yName;
    bool m_xPlain = true;
    bool m_yPlain = true;
};

void VLXSeriesItem::PointStats::add(const VLXSeriesPoint& point, const VLXSeriesPoint* previous) {
    // Plain comparisons: a NaN coordinate moves no bound.
    if (point.x < minX) {
        minX = point.x;
    }
    if (point.x > maxX) {
        maxX = point.x;
    }
    if (point.y < minY) {
        minY = point.y;
    }
    if (point.y > maxY) {
        maxY = point.y;
    }
    if (sortedX && !(std::isfinite(point.x) && (previous == nullptr || previous->x <= point.x))) {
        sortedX = false;
    }
    if (sortedY && !(std::isfinite(point.y) && (previous == nullptr || previous->y <= point.y))) {
        sortedY = false;
    }
}

// --- creation and copying ---------------------------------------------------------------------

VLXSeriesItem::VLXSeriesItem() = default;

std::shared_ptr<VLXSeriesItem> VLXSeriesItem::create() {
    return makeInitialized<VLXSeriesItem>();
}

void VLXSeriesItem::init() {
    VLXObject::init();
    m_identifier = VLXStringWithFormat("series-%i", randomSeriesNumber());
    m_title = m_identifier;
    m_rendererType = 0;
    m_fillColor.reset();
    m_strokeColor = VLXColor::blackColor();
    m_strokeWidth = 2.0;
    m_pointRadius = 5.0;
    m_interval = 1.0;
    m_constrainToPositiveValues = false;
    m_ignoreTime = false;
    m_modifier = VLXSeriesItemModifierNone;
    m_generation = nextGeneration();
}

std::shared_ptr<VLXSeriesItem> VLXSeriesItem::newInstance() const {
    return create();
}

std::shared_ptr<VLXSeriesItem> VLXSeriesItem::copy() const {
    auto item = newInstance();
    item->setTitle(m_title);
    // A new array object, so the copy derives its points now, before it has property names.
    const VLXValue current = data();
    item->setData(current.isArray() ? VLXValue(VLXValue::Array(current.arrayValue())) : current);
    item->setXAxisPropertyName(m_xAxisPropertyName);
    item->setYAxisPropertyName(m_yAxisPropertyName);
    item->setInterval(m_interval);
    item->setConstrainToPositiveValues(m_constrainToPositiveValues);
    item->setIgnoreTime(m_ignoreTime);
    item->setValueFormatter(m_formatter);
    item->setRendererType(m_rendererType);
    item->setFillColor(m_fillColor);
    item->setStrokeColor(m_strokeColor);
    item->setStrokeWidth(m_strokeWidth);
    item->setPointRadius(m_pointRadius);
    return item;
}

// --- data -------------------------------------------------------------------------------------

const VLXValue::Array* VLXSeriesItem::dataChunkArray(const VLXValue& chunk) const {
    return chunk.isArray() ? &chunk.arrayValue() : nullptr;
}

VLXValue VLXSeriesItem::data() const {
    if (m_dataChunks.empty()) {
        return VLXValue();
    }
    if (m_dataChunks.size() > 1) {
        VLXValue::Array joined;
        std::size_t total = 0;
        for (const auto& chunk : m_dataChunks) {
            total += chunk.count();
        }
        joined.reserve(total);
        for (const auto& chunk : m_dataChunks) {
            if (const VLXValue::Array* array = dataChunkArray(chunk)) {
                joined.insert(joined.end(), array->begin(), array->end());
            }
        }
        m_dataChunks.assign(1, VLXValue(std::move(joined)));
    }
    return m_dataChunks.front();
}

void VLXSeriesItem::setData(VLXValue data) {
    if (m_dataChunks.empty() && data.isNil()) {
        return;
    }
    if (m_dataChunks.size() == 1 && data.isArray() && m_dataChunks.front().isArray() &&
        &m_dataChunks.front().arrayValue() == &data.arrayValue()) {
        return;  // the same array object
    }
    m_dataChunks.clear();
    if (!data.isNil()) {
        m_dataChunks.push_back(std::move(data));
    }
    m_xAxisDataRange = VLXGraphSeriesRangeZero;
    m_yAxisDataRange = VLXGraphSeriesRangeZero;
    deriveAll();
}

void VLXSeriesItem::appendData(const VLXValue& records) {
    if (!records.isArray()) {
        return;
    }
    m_dataChunks.push_back(records);
    m_xAxisDataRange = VLXGraphSeriesRangeZero;
    m_yAxisDataRange = VLXGraphSeriesRangeZero;
    if (!m_pointsDerived || !(m_derivedWith == currentSettings())) {
        deriveAll();
        return;
    }
    const VLXValue::Array& elements = records.arrayValue();
    const std::size_t needed = m_points.size() + elements.size();
    if (needed > m_points.capacity()) {
        // Grow by a quarter at least: amortised constant per point, and a million points stay
        // within 20 bytes each.
        m_points.reserve(std::max(needed, m_points.size() + m_points.size() / 4));
    }
    Deriver deriver(*this, m_points, m_stats, m_previousY);
    deriver.walk(elements, m_derivedCount);
    m_previousY = deriver.previousY();
    m_derivedCount += elements.size();
}

VLXSeriesItem::ReadSettings VLXSeriesItem::currentSettings() const {
    return ReadSettings{m_xAxisPropertyName, m_yAxisPropertyName, m_modifier, m_ignoreTime,
                        m_ignoreZeroValues};
}

void VLXSeriesItem::startNewGeneration() {
    m_generation = nextGeneration();
}

void VLXSeriesItem::deriveAll() {
    std::size_t total = 0;
    for (const auto& chunk : m_dataChunks) {
        total += chunk.count();
    }
    std::vector<VLXSeriesPoint> points;
    // An eighth to spare, so the appends of a live feed do not copy the points at once.
    points.reserve(total + total / 8);
    PointStats stats;
    Deriver deriver(*this, points, stats, 0);
    std::size_t index = 0;
    for (const auto& chunk : m_dataChunks) {
        if (const VLXValue::Array* array = dataChunkArray(chunk)) {
            deriver.walk(*array, index);
            index += array->size();
        }
    }
    if (points.capacity() > points.size() + points.size() / 4 + 16) {
        points.shrink_to_fit();  // many elements were left out: give the space back
    }
    m_points = std::move(points);
    m_stats = stats;
    m_previousY = deriver.previousY();
    m_derivedCount = index;
    m_derivedWith = currentSettings();
    m_pointsDerived = true;
    startNewGeneration();
}

std::vector<VLXSeriesPoint> VLXSeriesItem::seriesData() const {
    std::vector<VLXSeriesPoint> points;
    PointStats stats;
    Deriver deriver(*this, points, stats, 0);
    std::size_t index = 0;
    for (const auto& chunk : m_dataChunks) {
        if (const VLXValue::Array* array = dataChunkArray(chunk)) {
            points.reserve(points.size() + array->size());
            deriver.walk(*array, index);
            index += array->size();
        }
    }
    return points;
}

void VLXSeriesItem::setPoints(std::vector<VLXSeriesPoint> points) {
    m_points = std::move(points);
    m_stats = PointStats();
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        m_stats.add(m_points[i], i == 0 ? nullptr : &m_points[i - 1]);
    }
    m_pointsDerived = false;
    startNewGeneration();
}

// --- ranges -----------------------------------------------------------------------------------

VLXGraphSeriesRange VLXSeriesItem::xDataRange() const {
    const double min = m_stats.minX;
    const double max = m_stats.maxX;
    if (min == max) {
        return {min - 0.5, max + 0.5};
    }
    return {min, max};
}

VLXGraphSeriesRange VLXSeriesItem::yDataRange() const {
    const double step = m_interval;
    const double minY = m_stats.minY;
    const double maxY = m_stats.maxY;
    // The quotients are rounded in single precision on purpose.
    double low = std::fmod(minY, step) != 0 ? step * vlx::floorf32(minY / step) : minY - step;
    double high = std::fmod(maxY, step) != 0 ? step * vlx::ceilf32(maxY / step) : maxY + step;
    if (low < 0 && m_constrainToPositiveValues) {
        low = 0;
    }
    if (high == low) {
        if (low == 0 && m_constrainToPositiveValues) {
            return {0, step};
        }
        low -= step;
        high += step;
    }
    return {low, high};
}

VLXGraphSeriesRange VLXSeriesItem::rangeForAxis(VLXGraphAxisType axis) {
    if (axis == VLXGraphAxisTypeX) {
        if (VLXGraphSeriesRangeIsEmpty(m_xAxisDataRange)) {
            m_xAxisDataRange = xDataRange();
        }
        return m_xAxisDataRange;
    }
    if (VLXGraphSeriesRangeIsEmpty(m_yAxisDataRange)) {
        m_yAxisDataRange = yDataRange();
    }
    return m_yAxisDataRange;
}

// --- nearest point ----------------------------------------------------------------------------

bool VLXSeriesItem::isSortedAlongAxis(VLXGraphAxisType axis) const {
    return axis == VLXGraphAxisTypeX ? m_stats.sortedX : m_stats.sortedY;
}

std::optional<VLXSeriesPointHandle> VLXSeriesItem::closestPointToValue(double value,
                                                                       VLXGraphAxisType axis) {
    if (m_points.size() < 2) {
        return std::nullopt;
    }
    const VLXGraphSeriesRange range = rangeForAxis(axis);
    const std::optional<std::size_t> index =
        isSortedAlongAxis(axis) ? vlx::detail::nearestPointInSorted(m_points, value, axis, range)
                                : vlx::detail::nearestPointByWalk(m_points, value, axis, range);
    if (!index) {
        return std::nullopt;
    }
    VLXSeriesPointHandle handle;
    if (auto self = weak_from_this().lock()) {
        handle.item = std::static_pointer_cast<const VLXSeriesItem>(self);
    }
    handle.index = *index;
    handle.generation = m_generation;
    handle.point = m_points[*index];
    return handle;
}

std::optional<VLXSeriesPoint> VLXSeriesItem::pointForHandle(
    const VLXSeriesPointHandle& handle) const {
    if (handle.generation != m_generation || handle.index >= m_points.size()) {
        return std::nullopt;
    }
    return m_points[handle.index];
}

// --- formatting and dates ---------------------------------------------------------------------

std::string VLXSeriesItem::formatValue(double value) const {
    if (m_formatter) {
        return m_formatter(value);
    }
    return VLXStringWithFormat("%.0f", value);
}

double VLXSeriesItem::timeIntervalForPointValueWithDate(VLXDate date) const {
    if (m_ignoreTime) {
        date = vlx_dateByIgnoringTime(date);
    }
    return date.timeIntervalSince1970();
}

void VLXSeriesItem::calculateDateRange() {
    bool found = false;
    double min = 0;
    double max = 0;
    for (const auto& point : m_points) {
        if (std::isnan(point.x)) {
            continue;
        }
        if (!found || point.x < min) {
            min = point.x;
        }
        if (!found || point.x > max) {
            max = point.x;
        }
        found = true;
    }
    if (!found) {
        return;
    }
    m_minDate = VLXDate::dateWithTimeIntervalSince1970(min);
    m_maxDate = VLXDate::dateWithTimeIntervalSince1970(max);
}

// --- key paths --------------------------------------------------------------------------------

namespace {

// Maps `read` over an array and over arrays nested in it, leaving out nil results. A loop with
// its own stack: the nesting depth is the host's data, not bounded by ours.
template <class Read>
VLXValue mapNestedArray(const VLXValue& array, const Read& read) {
    struct Frame {
        const VLXValue::Array* elements;
        std::size_t next;
        VLXValue::Array results;
    };
    std::vector<Frame> stack;
    stack.push_back({&array.arrayValue(), 0, {}});
    while (true) {
        Frame& top = stack.back();
        if (top.next == top.elements->size()) {
            VLXValue finished(std::move(top.results));
            stack.pop_back();
            if (stack.empty()) {
                return finished;
            }
            stack.back().results.push_back(std::move(finished));
            continue;
        }
        const VLXValue& element = (*top.elements)[top.next++];
        if (element.isArray()) {
            Frame frame{&element.arrayValue(), 0, {}};
            frame.results.reserve(frame.elements->size());
            stack.push_back(std::move(frame));
            continue;
        }
        VLXValue result = read(element);
        if (!result.isNil()) {
            top.results.push_back(std::move(result));
        }
    }
}

}  // namespace

VLXValue VLXSeriesItem::parseKeyPath(std::string_view keyPath, const VLXValue& object) const {
    // Reads one element that is not an array.
    auto plainRead = [this](std::string_view path, const VLXValue& element) {
        VLXValue value = element.valueForKeyPath(path);
        if (value.isDate() && m_ignoreTime) {
            value = VLXValue(vlx_dateByIgnoringTime(*value.dateValue()));
        }
        return value;
    };
    auto read = [&](std::string_view path, const VLXValue& element) -> VLXValue {
        if (path.find(kNestedSeparator) == std::string_view::npos) {
            return plainRead(path, element);
        }
        const std::vector<std::string_view> components = splitNested(path);
        if (components.size() < 2) {
            return element;
        }
        if (!element.respondsTo(components[0])) {
            return VLXValue();
        }
        VLXValue value = element.valueForKeyPath(components[0]);
        if (!value.isArray()) {
            return value;
        }
        // The second component holds no separator, so this maps plain reads only.
        const std::string_view member = components[1];
        return mapNestedArray(value, [&](const VLXValue& e) { return plainRead(member, e); });
    };
    if (object.isArray()) {
        return mapNestedArray(object, [&](const VLXValue& e) { return read(keyPath, e); });
    }
    return read(keyPath, object);
}
