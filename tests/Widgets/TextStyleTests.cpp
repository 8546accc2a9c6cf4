#include <cmath>
#include <limits>

#include <VelmarCoreUI/Graphing/VLXTextStyleSpec.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>
#include "Widgets/WidgetTestSupport.h"

namespace {

using TextStyleSpecTest = WidgetTest;

TEST_F(TextStyleSpecTest, OnlySetAttributesReachTheLabel) {
    auto label = VLXLabel::create();
    label->setTextColor(VLXColor::redColor());
    label->setTextAlignment(VLXTextAlignment::Center);
    label->setBackgroundColor(VLXColor::blackColor());
    label->setAdjustsFontSizeToFitWidth(true);
    label->setMinimumScaleFactor(0.3);
    const VLXFont labelFont = VLXFont::boldSystemFontOfSize(20);
    label->setFont(labelFont);

    auto style = VLXTextStyleSpec::create();
    style->applyToLabel(*label);
    EXPECT_EQ(label->textColor(), VLXColor::redColor());
    EXPECT_EQ(label->textAlignment(), VLXTextAlignment::Center);
    EXPECT_EQ(label->backgroundColor(), VLXColor::blackColor());
    EXPECT_EQ(label->font(), labelFont);
    EXPECT_FALSE(label->adjustsFontSizeToFitWidth());
    EXPECT_EQ(label->minimumScaleFactor(), 0.3);
    EXPECT_EQ(label->shadowOffset(), (VLXSize{0, -1}));

    // Left is 0 and never written; a shadow colour goes without a {0, 0} offset.
    style->setTextAlignment(VLXTextAlignment::Left);
    style->setShadowColor(VLXColor::grayColor());
    style->applyToLabel(*label);
    EXPECT_EQ(label->textAlignment(), VLXTextAlignment::Center);
    EXPECT_EQ(label->shadowColor(), VLXColor::grayColor());
    EXPECT_EQ(label->shadowOffset(), (VLXSize{0, -1}));

    // Everything set: everything written, the scale factor with shrinking.
    style->setBackgroundColor(VLXColor::whiteColor());
    style->setFont(VLXFont::systemFontOfSize(10));
    style->setTextColor(VLXColor::darkGrayColor());
    style->setTextAlignment(VLXTextAlignment::Right);
    style->setShadowOffset({0, 2});
    style->setAdjustsFontSizeToFitWidth(true);
    style->applyToLabel(*label);
    EXPECT_EQ(label->font(), VLXFont::systemFontOfSize(10));
    EXPECT_EQ(label->textAlignment(), VLXTextAlignment::Right);
    EXPECT_EQ(label->shadowOffset(), (VLXSize{0, 2}));
    EXPECT_TRUE(label->adjustsFontSizeToFitWidth());
    EXPECT_EQ(label->minimumScaleFactor(), 0.8);
}

TEST_F(TextStyleSpecTest, FontSizeResizesTheSpecsFontOrElseTheLabels) {
    auto label = VLXLabel::create();
    label->setFont(VLXFont::boldSystemFontOfSize(20));
    auto style = VLXTextStyleSpec::create();
    style->applyToLabel(*label, 9);
    EXPECT_EQ(label->font(), VLXFont::boldSystemFontOfSize(9));

    style->setFont(VLXFont::systemFontOfSize(30));
    style->applyToLabel(*label, 14);
    EXPECT_EQ(label->font(), VLXFont::systemFontOfSize(14));
    // An unusable size gives the default size, as any font made with one.
    style->applyToLabel(*label, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(label->font().pointSize(), VLXFont::defaultPointSize);
}

TEST_F(TextStyleSpecTest, ArchivesRestoreEveryAttribute) {
    auto style = VLXTextStyleSpec::create();
    style->setBackgroundColor(VLXColor::colorWithRed(0.1, 0.2, 0.3, 0.4));
    style->setFont(VLXFont::boldSystemFontOfSize(11));
    style->setTextColor(VLXColor::darkGrayColor());
    style->setTextAlignment(VLXTextAlignment::Natural);
    style->setShadowOffset({std::numeric_limits<double>::infinity(), -3});
    style->setAdjustsFontSizeToFitWidth(true);
    style->setMinimumScaleFactor(0.5);
    const std::string json = style->archivedJSON();

    auto restored = VLXTextStyleSpec::create();
    ASSERT_TRUE(restored->restoreFromJSON(json));
    EXPECT_EQ(restored->archivedJSON(), json);
    EXPECT_EQ(restored->backgroundColor(), style->backgroundColor());
    EXPECT_EQ(restored->font(), VLXFont::boldSystemFontOfSize(11));
    EXPECT_TRUE(std::isnan(restored->shadowOffset().width));  // infinity does not survive

    // A named face comes back by name; values of the wrong shape leave the properties alone.
    auto named = VLXTextStyleSpec::create();
    const auto dejaVu = VLXFont::fontWithName("DejaVu Sans", 13);
    ASSERT_TRUE(dejaVu);
    named->setFont(dejaVu);
    ASSERT_TRUE(restored->restoreFromJSON(named->archivedJSON()));
    ASSERT_TRUE(restored->font());
    EXPECT_EQ(restored->font()->fontName(), dejaVu->fontName());
    EXPECT_EQ(restored->font()->pointSize(), 13);
    restored->setTextAlignment(VLXTextAlignment::Center);
    restored->setShadowOffset({2, 2});
    restored->setMinimumScaleFactor(0.6);
    restored->restoreFromJSON(
        R"({"font": {"fontName": "No Such Font", "pointSize": 9}, "textAlignment": 9,)"
        R"( "shadowOffset": [1], "minimumScaleFactor": "x"})");
    EXPECT_EQ(restored->font()->fontName(), dejaVu->fontName());
    EXPECT_EQ(restored->textAlignment(), VLXTextAlignment::Center);
    EXPECT_EQ(restored->shadowOffset(), (VLXSize{2, 2}));
    EXPECT_EQ(restored->minimumScaleFactor(), 0.6);
    restored->restoreFromJSON(R"({"font": null})");
    EXPECT_FALSE(restored->font());
}

}  // namespace
