#pragma once

#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Graphing/VLXSeriesItem.h>
#include <VelmarCoreUI/Platform/Foundation/VLXKeyValueObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

// A host model object that answers key-value lookup through its own properties.
class TestSample : public VLXObject, public VLXKeyValueObject {
public:
    static std::shared_ptr<TestSample> create(VLXValue time, VLXValue amount) {
        auto sample = VLXMakeShared<TestSample>();
        sample->m_time = std::move(time);
        sample->m_amount = std::move(amount);
        return sample;
    }
    bool respondsToKey(std::string_view key) const override {
        return key == "time" || key == "amount";
    }
    VLXValue valueForKey(std::string_view key) const override {
        return key == "time" ? m_time : key == "amount" ? m_amount : VLXValue();
    }

private:
    VLXValue m_time;
    VLXValue m_amount;
};

inline VLXValue record(VLXValue x, VLXValue y) {
    return VLXValue(VLXRecord::create({{"x", std::move(x)}, {"y", std::move(y)}}));
}

inline VLXValue pair(VLXValue x, VLXValue y) {
    return VLXValue(VLXValue::Array{std::move(x), std::move(y)});
}

inline std::shared_ptr<VLXSeriesItem> itemReading(const char* x, const char* y) {
    auto item = VLXSeriesItem::create();
    item->setXAxisPropertyName(std::string(x));
    item->setYAxisPropertyName(std::string(y));
    return item;
}

inline std::vector<VLXSeriesPoint> pointsOf(const VLXSeriesItem& item) {
    auto points = item.points();
    return {points.begin(), points.end()};
}

// Bit-for-bit equality, so NaN points and signed zeros compare as stored.
inline bool sameBits(std::span<const VLXSeriesPoint> a, std::span<const VLXSeriesPoint> b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(VLXSeriesPoint)) == 0);
}

inline bool sameBits(VLXGraphSeriesRange a, VLXGraphSeriesRange b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
