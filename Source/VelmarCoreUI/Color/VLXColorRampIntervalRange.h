#pragma once

#include <VelmarCoreUI/VLXExport.h>

#include <memory>
#include <string_view>
#include <vector>

#include <VelmarCoreUI/Core/VLXAutoCodingObject.h>

/// A value range of a colour ramp and the interval that applies inside it: the spacing to
/// which values snap (colour ranges) or at which labels appear (label ranges). A value x is in
/// the range when x == maxValue or minValue <= x < maxValue.
class VLX_EXPORT VLXColorRampIntervalRange : public VLXAutoCodingObject {
public:
    /// All zero, `isEvery` false.
    static std::shared_ptr<VLXColorRampIntervalRange> create();

    static std::shared_ptr<VLXColorRampIntervalRange> rangeFromValue(double minValue,
                                                                     double maxValue,
                                                                     double interval);

    /// Parses "max:interval" ('100:10') or "interval" ('25'); both numbers read in single
    /// precision (leading blanks skipped, trailing text ignored, 0 when unreadable). A missing
    /// maximum is the largest double; `isEvery` is set when the interval text begins with "~"
    /// (which then reads as 0: the tilde is not skipped). Any other number of ":"-parts gives
    /// interval 1 and the largest double as maximum. The minimum is always the smallest
    /// positive normal double, so a parsed range covers no zero or negative value other than
    /// its maximum ("-5:1" contains -5 and nothing else).
    static std::shared_ptr<VLXColorRampIntervalRange> rangeFromString(std::string_view text);

    /// Splits at "," and parses each part with `rangeFromString`, in order. Minimums are left
    /// as parsed: ranges are not chained.
    static std::vector<std::shared_ptr<VLXColorRampIntervalRange>> arrayOfRangesFromString(
        std::string_view text);

    double minValue() const { return m_minValue; }
    void setMinValue(double minValue) { m_minValue = minValue; }
    double maxValue() const { return m_maxValue; }
    void setMaxValue(double maxValue) { m_maxValue = maxValue; }
    double interval() const { return m_interval; }
    void setInterval(double interval) { m_interval = interval; }
    /// Labels count intervals ("every n-th") instead of testing values.
    bool isEvery() const { return m_isEvery; }
    void setIsEvery(bool isEvery) { m_isEvery = isEvery; }

    /// True when x == maxValue, or minValue <= x < maxValue.
    bool containsValue(double x) const;

protected:
    VLXColorRampIntervalRange() = default;
    void declareProperties(PropertyList& list) const override;
    std::shared_ptr<VLXAutoCodingObject> newInstance() const override;

private:
    double m_minValue = 0.0;
    double m_maxValue = 0.0;
    double m_interval = 0.0;
    bool m_isEvery = false;
};
