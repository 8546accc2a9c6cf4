#include <VelmarCoreUI/Graphing/VLXTextStyleSpec.h>

#include <limits>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>

namespace {

// Archives that name the class restore as it.
[[maybe_unused]] const bool kRegistered =
    (VLXAutoCodingObject::registerClass<VLXTextStyleSpec>(), true);

constexpr const char* kFontName = "fontName";
constexpr const char* kPointSize = "pointSize";
constexpr const char* kSystemWeight = "systemWeight";

}  // namespace

std::shared_ptr<VLXTextStyleSpec> VLXTextStyleSpec::create() {
    return makeInitialized<VLXTextStyleSpec>();
}

std::shared_ptr<VLXAutoCodingObject> VLXTextStyleSpec::newInstance() const {
    return create();
}

void VLXTextStyleSpec::applyToLabel(VLXLabel& label) const {
    if (m_backgroundColor) {
        label.setBackgroundColor(m_backgroundColor);
    }
    if (m_font) {
        label.setFont(m_font);
    }
    if (m_textColor) {
        label.setTextColor(m_textColor);
    }
    // Left is 0 and is never written, so a label keeps whatever alignment it had.
    if (m_textAlignment != VLXTextAlignment::Left) {
        label.setTextAlignment(m_textAlignment);
    }
    if (m_shadowColor) {
        label.setShadowColor(m_shadowColor);
    }
    // NaN differs from 0, so a NaN offset is written (the label treats it as 0).
    if (m_shadowOffset.width != 0 || m_shadowOffset.height != 0) {
        label.setShadowOffset(m_shadowOffset);
    }
    if (m_adjustsFontSizeToFitWidth) {
        label.setAdjustsFontSizeToFitWidth(true);
        label.setMinimumScaleFactor(m_minimumScaleFactor);
    } else {
        label.setAdjustsFontSizeToFitWidth(false);
    }
}

void VLXTextStyleSpec::applyToLabel(VLXLabel& label, double fontSize) const {
    applyToLabel(label);
    label.setFont(label.font().fontWithSize(fontSize));
}

// --- archiving ---------------------------------------------------------------------------------

void VLXTextStyleSpec::declareProperties(PropertyList& list) const {
    VLXAutoCodingObject::declareProperties(list);
    list.add("backgroundColor", &VLXTextStyleSpec::backgroundColor,
             &VLXTextStyleSpec::setBackgroundColor);
    list.add("font", &VLXTextStyleSpec::fontArchive, &VLXTextStyleSpec::setFontArchive);
    list.add("textColor", &VLXTextStyleSpec::textColor, &VLXTextStyleSpec::setTextColor);
    list.add("textAlignment", &VLXTextStyleSpec::textAlignmentNumber,
             &VLXTextStyleSpec::setTextAlignmentNumber);
    list.add("shadowColor", &VLXTextStyleSpec::shadowColor, &VLXTextStyleSpec::setShadowColor);
    list.add("shadowOffset", &VLXTextStyleSpec::shadowOffsetArchive,
             &VLXTextStyleSpec::setShadowOffsetArchive);
    list.add("adjustsFontSizeToFitWidth", &VLXTextStyleSpec::adjustsFontSizeToFitWidth,
             &VLXTextStyleSpec::setAdjustsFontSizeToFitWidth);
    list.add("minimumScaleFactor", &VLXTextStyleSpec::minimumScaleFactor,
             &VLXTextStyleSpec::setMinimumScaleFactor);
}

VLXValue VLXTextStyleSpec::fontArchive() const {
    if (!m_font) {
        return VLXValue::null();
    }
    const VLXFont& font = *m_font;
    VLXValue::Dictionary archive;
    archive[kFontName] = VLXValue(font.fontName());
    archive[kPointSize] = VLXValue(font.pointSize());
    // The system fonts are a family list, not one named face: say so, or they would come back
    // as a named font that no longer compares equal.
    if (font == VLXFont::systemFontOfSize(font.pointSize())) {
        archive[kSystemWeight] = VLXValue("regular");
    } else if (font == VLXFont::boldSystemFontOfSize(font.pointSize())) {
        archive[kSystemWeight] = VLXValue("bold");
    }
    return VLXValue(std::move(archive));
}

void VLXTextStyleSpec::setFontArchive(VLXValue archive) {
    if (archive.isNil() || archive.isNull()) {
        m_font.reset();
        return;
    }
    if (!archive.isDictionary()) {
        return;
    }
    const VLXValue size = archive.valueForKey(kPointSize);
    if (!size.isNumber()) {
        return;
    }
    const VLXValue weight = archive.valueForKey(kSystemWeight);
    if (weight.isString() && weight.stringValue() == "regular") {
        m_font = VLXFont::systemFontOfSize(size.doubleValue());
    } else if (weight.isString() && weight.stringValue() == "bold") {
        m_font = VLXFont::boldSystemFontOfSize(size.doubleValue());
    } else if (const VLXValue name = archive.valueForKey(kFontName); name.isString()) {
        if (auto font = VLXFont::fontWithName(name.stringValue(), size.doubleValue())) {
            m_font = std::move(font);
        }
    }
}

VLXInteger VLXTextStyleSpec::textAlignmentNumber() const {
    return static_cast<VLXInteger>(m_textAlignment);
}

void VLXTextStyleSpec::setTextAlignmentNumber(VLXInteger alignment) {
    // Only the platform's five alignments; other numbers leave the alignment as it was.
    if (alignment >= static_cast<VLXInteger>(VLXTextAlignment::Left) &&
        alignment <= static_cast<VLXInteger>(VLXTextAlignment::Natural)) {
        m_textAlignment = static_cast<VLXTextAlignment>(alignment);
    }
}

VLXValue VLXTextStyleSpec::shadowOffsetArchive() const {
    return VLXValue(
        VLXValue::Array{VLXValue(m_shadowOffset.width), VLXValue(m_shadowOffset.height)});
}

void VLXTextStyleSpec::setShadowOffsetArchive(VLXValue archive) {
    if (archive.isBoxed()) {
        m_shadowOffset = archive.sizeValue();
        return;
    }
    if (archive.count() != 2) {
        return;
    }
    const VLXValue width = archive.objectAtIndex(0);
    const VLXValue height = archive.objectAtIndex(1);
    // JSON writes non-finite numbers as null; they come back as NaN.
    auto component = [](const VLXValue& v, double& out) {
        if (v.isNumber()) {
            out = v.doubleValue();
            return true;
        }
        if (v.isNull()) {
            out = std::numeric_limits<double>::quiet_NaN();
            return true;
        }
        return false;
    };
    VLXSize offset;
    if (component(width, offset.width) && component(height, offset.height)) {
        m_shadowOffset = offset;
    }
}
