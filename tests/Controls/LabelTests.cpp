#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Graphics/VLXStringDrawing.h>
#include <VelmarCoreUI/Platform/Views/VLXLabel.h>

#include "ControlsTestSupport.h"

using controls_test::inkBox;
using controls_test::makeWindow;

TEST(Label, NilResetsAndBadValues) {
    auto label = VLXLabel::create();
    EXPECT_FALSE(label->isUserInteractionEnabled());
    label->setText(std::string());
    ASSERT_TRUE(label->text().has_value());
    EXPECT_EQ(*label->text(), "");
    label->setText(std::nullopt);
    EXPECT_FALSE(label->text().has_value());

    label->setFont(VLXFont::boldSystemFontOfSize(30));
    label->setFont(std::nullopt);
    EXPECT_EQ(label->font(), VLXFont::systemFontOfSize(17));
    label->setTextColor(VLXColor::redColor());
    label->setTextColor(std::nullopt);
    EXPECT_EQ(label->textColor(), VLXColor::blackColor());

    label->setNumberOfLines(-3);
    EXPECT_EQ(label->numberOfLines(), 0);
    label->setShadowOffset({NAN, INFINITY});
    EXPECT_EQ(label->shadowOffset(), (VLXSize{0, 0}));
}

TEST(Label, SizesOfNilEmptyOneLineAndWrappedText) {
    auto label = VLXLabel::create();
    EXPECT_EQ(label->sizeThatFits({100, 100}), (VLXSize{0, 0}));
    label->setText(std::string());
    EXPECT_EQ(label->sizeThatFits({100, 100}), (VLXSize{0, 0}));

    const std::string text = "The quick brown fox jumps over the lazy dog";
    label->setText(text);
    VLXTextAttributes attributes;
    attributes.font = label->font();
    const VLXSize natural = VLXStringSizeWithAttributes(text, attributes);
    // One line: the text's own size, whatever width is proposed.
    for (VLXSize proposed : {VLXSize{50, 10}, VLXSize{1000, 1000}, VLXSize{NAN, -1}}) {
        const VLXSize fit = label->sizeThatFits(proposed);
        EXPECT_NEAR(fit.width, natural.width, 0.01);
        EXPECT_NEAR(fit.height, natural.height, 0.01);
    }
    label->sizeToFit();
    EXPECT_NEAR(label->bounds().size.width, natural.width, 0.01);

    // Unlimited lines wrap at the proposed width.
    label->setNumberOfLines(0);
    const VLXSize wrapped = label->sizeThatFits({120, 1000});
    EXPECT_LE(wrapped.width, 120);
    EXPECT_GE(wrapped.height, 3 * natural.height - 0.5);
    // Two lines at most.
    label->setNumberOfLines(2);
    const VLXSize twoLines = label->sizeThatFits({120, 1000});
    EXPECT_NEAR(twoLines.height, 2 * natural.height, 1);
    // A width that is no limit keeps the text on one line.
    label->setNumberOfLines(0);
    EXPECT_NEAR(label->sizeThatFits({NAN, NAN}).height, natural.height, 0.01);
}

TEST(Label, DrawsAlignedAndVerticallyCentredInTheWindow) {
    auto window = makeWindow({300, 60});
    auto label = VLXLabel::createWithFrame({{0, 0}, {300, 60}});
    label->setText("Hello");
    window->addSubview(label);

    label->setTextAlignment(VLXTextAlignment::Left);
    const VLXRect left = inkBox(*window->snapshot());
    label->setTextAlignment(VLXTextAlignment::Center);
    const VLXRect centre = inkBox(*window->snapshot());
    label->setTextAlignment(VLXTextAlignment::Right);
    const VLXRect right = inkBox(*window->snapshot());

    ASSERT_GT(left.size.width, 10);
    EXPECT_LT(left.origin.x, 4);
    EXPECT_NEAR(centre.origin.x + centre.size.width / 2, 150, 3);
    EXPECT_GT(right.origin.x + right.size.width, 296);
    EXPECT_NEAR(left.size.width, right.size.width, 2);
    // Vertically centred: the line box sits in the middle, so the ink (mostly above the
    // baseline) lies around the centre line.
    EXPECT_NEAR(left.origin.y + left.size.height / 2, 30, 4);

    // A red shadow one point below appears beneath the black glyphs.
    label->setTextAlignment(VLXTextAlignment::Left);
    label->setShadowColor(VLXColor::redColor());
    label->setShadowOffset({0, 3});
    const auto shadowed = window->snapshot();
    const VLXRect red = inkBox(*shadowed, [](std::uint32_t p) {
        return ((p >> 16) & 0xFF) > 150 && ((p >> 8) & 0xFF) < 80;
    });
    ASSERT_GT(red.size.height, 0);
    EXPECT_GT(red.origin.y + red.size.height, left.origin.y + left.size.height);
}

TEST(Label, ShrinksToFitAndTruncatesOtherwise) {
    auto window = makeWindow({120, 40});
    auto label = VLXLabel::createWithFrame({{0, 0}, {120, 40}});
    label->setText("A rather long caption that cannot fit");
    window->addSubview(label);
    const VLXRect truncated = inkBox(*window->snapshot());
    EXPECT_LE(truncated.origin.x + truncated.size.width, 120);

    label->setAdjustsFontSizeToFitWidth(true);
    label->setMinimumScaleFactor(0.3);
    const VLXRect shrunk = inkBox(*window->snapshot());
    EXPECT_LT(shrunk.size.height, truncated.size.height * 0.75);
    EXPECT_LE(shrunk.origin.x + shrunk.size.width, 120);

    // The factor is a floor: at 0.9 the text keeps nearly its size (and is truncated).
    label->setMinimumScaleFactor(0.9);
    const VLXRect floored = inkBox(*window->snapshot());
    EXPECT_GT(floored.size.height, truncated.size.height * 0.8);
}

TEST(Label, LayoutIsCachedUntilSomethingChanges) {
    auto window = makeWindow({200, 40});
    auto label = VLXLabel::createWithFrame({{0, 0}, {200, 40}});
    label->setText("Cached");
    window->addSubview(label);
    window->snapshot();
    const auto layouts = label->textLayoutCount();
    EXPECT_EQ(layouts, 1u);
    label->setNeedsDisplay();
    window->snapshot();
    EXPECT_EQ(label->textLayoutCount(), layouts);
    label->setText("Cached");  // the same text changes nothing
    window->snapshot();
    EXPECT_EQ(label->textLayoutCount(), layouts);
    label->setText("Changed");
    window->snapshot();
    EXPECT_EQ(label->textLayoutCount(), layouts + 1);
    label->setFrame({{0, 0}, {150, 40}});
    window->snapshot();
    EXPECT_EQ(label->textLayoutCount(), layouts + 2);
}

TEST(Label, HugeTextsAndUnusableGeometryStayDefined) {
    auto window = makeWindow({200, 100});
    auto label = VLXLabel::createWithFrame({{0, 0}, {200, 100}});
    std::string huge(1000000, 'x');
    for (std::size_t i = 50; i < huge.size(); i += 7) {
        huge[i] = ' ';
    }
    label->setText(huge);
    window->addSubview(label);
    const VLXRect oneLine = inkBox(*window->snapshot());
    EXPECT_GT(oneLine.size.width, 150);
    for (auto mode : {VLXLineBreakMode::ByWordWrapping, VLXLineBreakMode::ByTruncatingHead,
                      VLXLineBreakMode::ByTruncatingMiddle}) {
        label->setNumberOfLines(0);
        label->setLineBreakMode(mode);
        EXPECT_GT(inkBox(*window->snapshot()).size.width, 150);
    }
    const VLXSize fit = label->sizeThatFits({200, 1e9});
    EXPECT_TRUE(std::isfinite(fit.width) && std::isfinite(fit.height));

    label->setFrame({{NAN, 0}, {INFINITY, NAN}});
    label->setFont(VLXFont::systemFontOfSize(NAN));
    label->setMinimumScaleFactor(NAN);
    label->setAdjustsFontSizeToFitWidth(true);
    window->snapshot();
    label->setFrame({{0, 0}, {200, 100}});
    label->setText("ok");
    EXPECT_GT(inkBox(*window->snapshot()).size.width, 0);
}
