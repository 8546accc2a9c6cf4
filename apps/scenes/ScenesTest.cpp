// The scenes played end to end by the touch synthesiser on the manual clock, checked by what
// the window shows and what the recognisers logged.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string>

#include <VelmarCoreUI/Platform/Foundation/VLXClock.h>
#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>
#include <VelmarCoreUI/Platform/Input/VLXTouchSynthesizer.h>
#include <VelmarCoreUI/Platform/Views/VLXScrollView.h>
#include <VelmarCoreUI/Platform/Views/VLXWindow.h>
#include "Scenes.h"

namespace {

using Lines = std::vector<std::string>;
using Synth = VLXTouchSynthesizer;

struct RGB {
    double r = 0, g = 0, b = 0;
};

RGB pixel(const VLXImage& image, int x, int y) {
    RGB c;
    double a = 0;
    image.colorAtPixel(x, y).getRed(&c.r, &c.g, &c.b, &a);
    return c;
}

RGB colourAt(VLXWindow& window, double x, double y) {
    auto image = window.snapshot();
    return image ? pixel(*image, int(x), int(y)) : RGB{};
}

// The bounding box of the pixels below the title for which `match` holds (empty when none):
// the title's antialiased text has coloured fringes.
template <class Match>
VLXRect boxOf(VLXWindow& window, Match match) {
    auto image = window.snapshot();
    int x0 = std::numeric_limits<int>::max(), y0 = x0, x1 = -1, y1 = -1;
    for (int y = 40; image && y < image->pixelHeight(); ++y) {
        for (int x = 0; x < image->pixelWidth(); ++x) {
            if (match(pixel(*image, x, y))) {
                x0 = std::min(x0, x), y0 = std::min(y0, y);
                x1 = std::max(x1, x), y1 = std::max(y1, y);
            }
        }
    }
    return x1 < 0 ? VLXRect{}
                  : VLXRect{{double(x0), double(y0)}, {double(x1 - x0 + 1), double(y1 - y0 + 1)}};
}

// The dark drawer, rather than the light panel, at a point the drawer covers once open.
bool drawerShown(VLXWindow& window) {
    const RGB c = colourAt(window, 100, 260);
    return c.r < 0.4 && c.g < 0.4;
}

std::ptrdiff_t indexOf(const Lines& lines, const std::string& line) {
    auto found = std::find(lines.begin(), lines.end(), line);
    return found == lines.end() ? -1 : found - lines.begin();
}

// Moves finger 0 from `from` by `step` each frame, `steps` times, still down at the end.
void stepDrag(Synth& synth, VLXPoint from, VLXPoint step, int steps) {
    synth.touchDown(0, from);
    for (int i = 1; i <= steps; ++i) {
        synth.wait(Synth::kStepInterval);
        synth.moveTo(0, {from.x + step.x * i, from.y + step.y * i});
    }
}

class ScenesTest : public ::testing::Test {
protected:
    void SetUp() override { VLXClock::setManual(1000); }
    void TearDown() override { VLXClock::setReal(); }
};

TEST(SceneLogTest, FoldsRunsOfTheSameLine) {
    SceneLog log;
    for (const char* line : {"pan: began", "pan: changed", "pan: changed", "pan: changed",
                             "pan: ended", "pan: changed"}) {
        log.append(line);
    }
    EXPECT_EQ(log.lines(), (Lines{"pan: began", "pan: changed ×3", "pan: ended", "pan: changed"}));
    log.clear();
    log.append("pan: changed");
    EXPECT_EQ(log.lines(), Lines{"pan: changed"});
}

TEST_F(ScenesTest, EveryNameBuildsAndBadArgumentsStillGiveAUsableWindow) {
    const auto& names = interactionSceneNames();
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
    for (const auto& name : names) {
        auto scene = makeInteractionScene(name);
        ASSERT_TRUE(scene.window) << name;
        EXPECT_EQ(scene.name, name);
        EXPECT_FALSE(scene.scripts.empty()) << name;
        EXPECT_TRUE(scene.window->renderFrame()) << name;
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto odd = makeInteractionScene("no such scene", {nan, 1e12}, -3);
    ASSERT_TRUE(odd.window);
    EXPECT_TRUE(odd.scripts.empty());
    EXPECT_EQ(odd.window->bounds().size, (VLXSize{160, 4096}));
    auto tiny = makeInteractionScene("taps", {0, 0}, nan);
    EXPECT_EQ(tiny.window->bounds().size.width, 160);
    EXPECT_TRUE(tiny.window->snapshot());
}

TEST_F(ScenesTest, LongPressColoursTheBoxOnlyWhileHeld) {
    auto scene = makeInteractionScene("long-press");
    const VLXPoint c{180, 260};  // the box's centre
    auto at = [&] { return colourAt(*scene.window, c.x, c.y); };
    const RGB idle = at();
    EXPECT_GT(idle.b, idle.r);
    Synth synth(scene.window);
    synth.touchDown(0, c);
    synth.wait(0.3);
    EXPECT_GT(at().b, at().r);
    synth.wait(0.4);
    EXPECT_GT(at().r, at().b);
    synth.lift(0);
    EXPECT_NEAR(at().b, idle.b, 0.02);

    // The scripted short tap fails the press; the long one begins and ends it.
    scene.log->clear();
    scene.scripts.at(0).play(synth);
    EXPECT_EQ(scene.log->lines(),
              (Lines{"long press: failed", "long press: began", "long press: ended"}));
}

TEST_F(ScenesTest, SingleTapWaitsForTheDoubleTapAndTheDoubleTapGrowsTheCircle) {
    auto scene = makeInteractionScene("taps");
    auto purple = [](const RGB& c) { return c.b > 0.6 && c.r > 0.35 && c.g < 0.6; };
    const VLXRect before = boxOf(*scene.window, purple);
    ASSERT_GT(before.size.width, 40);
    Synth synth(scene.window);
    scene.scripts.at(0).play(synth);
    const auto& log = scene.log->lines();
    const auto single = indexOf(log, "single tap: ended");
    ASSERT_GE(single, 0);
    EXPECT_LT(single, indexOf(log, "double tap: ended"));
    // The double tap's second tap is no single tap: exactly one single tap was recognised.
    EXPECT_EQ(std::count(log.begin(), log.end(), "single tap: ended"), 1);
    EXPECT_GE(indexOf(log, "double tap: failed"), 0);  // the first, lone tap
    synth.wait(0.5);
    const VLXRect after = boxOf(*scene.window, [](const RGB& c) {
        return std::max({c.r, c.g, c.b}) - std::min({c.r, c.g, c.b}) > 0.3;
    });
    EXPECT_NEAR(after.size.width, before.size.width * 1.4, 3);
}

TEST_F(ScenesTest, PinchScalesTheSquareByTheFingersRatio) {
    auto scene = makeInteractionScene("pinch");
    auto green = [](const RGB& c) { return c.g > 0.6 && c.r < 0.7 && c.b < 0.7; };
    const VLXRect before = boxOf(*scene.window, green);
    EXPECT_NEAR(before.size.width, 80, 2);
    Synth synth(scene.window);
    scene.scripts.at(0).play(synth);
    const VLXRect after = boxOf(*scene.window, green);
    EXPECT_NEAR(after.size.width, 80 * 140.0 / 60, 4);  // 60 → 140 points apart
    EXPECT_NEAR(after.origin.x + after.size.width / 2, before.origin.x + before.size.width / 2, 2);
    EXPECT_GE(indexOf(scene.log->lines(), "pinch: ended"), 0);
}

TEST_F(ScenesTest, ScrollFollowsTheDragAndKeepsGoingAfterTheLift) {
    auto scene = makeInteractionScene("scroll");
    std::shared_ptr<VLXScrollView> scroll;
    for (const auto& view : scene.window->subviews()) {
        if (auto s = std::dynamic_pointer_cast<VLXScrollView>(view)) {
            scroll = s;
        }
    }
    ASSERT_TRUE(scroll);
    Synth synth(scene.window);
    stepDrag(synth, {180, 420}, {0, -160.0 / 12}, 12);
    synth.lift(0);
    const double atLift = scroll->contentOffset().y;
    EXPECT_GT(atLift, 100);
    synth.wait(1.0);
    scene.window->renderFrame();
    EXPECT_GT(scroll->contentOffset().y, atLift + 20);
    EXPECT_GE(indexOf(scene.log->lines(), "scroll pan: ended"), 0);
}

TEST_F(ScenesTest, EdgeSwipeDrawerFollowsTheFingerAndOpensPastHalfWay) {
    auto scene = makeInteractionScene("edge-swipe");
    ASSERT_EQ(scene.scripts.size(), 2u);
    EXPECT_FALSE(drawerShown(*scene.window));
    Synth synth(scene.window);
    // Mid-swipe the drawer's edge is under the finger, 150 points from where it went down.
    stepDrag(synth, {6, 260}, {10, 0}, 15);
    synth.wait(Synth::kStepInterval);
    EXPECT_LT(colourAt(*scene.window, 140, 300).r, 0.4);
    EXPECT_GT(colourAt(*scene.window, 160, 300).r, 0.8);
    synth.lift(0);
    synth.wait(0.5);
    EXPECT_TRUE(drawerShown(*scene.window));  // past half way: it opens
    // A short swipe (the drawer is pulled back to 54 points of travel) closes it again.
    synth.drag({6, 260}, {60, 270});
    synth.wait(0.5);
    EXPECT_FALSE(drawerShown(*scene.window));

    // The scripts: one opens the drawer, the other is refused by its angle.
    const Lines opened{"edge swipe: began", "edge swipe: changed", "edge swipe: ended"};
    for (int i : {0, 1}) {
        auto fresh = makeInteractionScene("edge-swipe");
        Synth player(fresh.window);
        fresh.scripts.at(i).play(player);
        EXPECT_EQ(drawerShown(*fresh.window), i == 0);
        EXPECT_EQ(fresh.log->lines(), i == 0 ? opened : Lines{"edge swipe: failed"});
    }
}

}  // namespace
