#include <VelmarCoreUI/Platform/Graphics/VLXImage.h>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <thread>

#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Graphics/VLXGraphicsImageContext.h>
#include "DrawingTestSupport.h"

namespace {

constexpr std::uint32_t kRedWord = 0xffff0000U;
constexpr std::uint32_t kBlueWord = 0xff0000ffU;
constexpr std::uint32_t kGreenWord = 0xff00ff00U;
constexpr std::uint32_t kWhiteWord = 0xffffffffU;

// Which of red, green, blue, white a drawn pixel is closest to.
char colorName(const Pixel& p) {
    if (p.a < 200) {
        return '?';
    }
    if (p.r > 200 && p.g > 200 && p.b > 200) {
        return 'W';
    }
    if (p.r > 200 && p.g < 55 && p.b < 55) {
        return 'R';
    }
    if (p.g > 200 && p.r < 55 && p.b < 55) {
        return 'G';
    }
    if (p.b > 200 && p.r < 55 && p.g < 55) {
        return 'B';
    }
    return '?';
}

}  // namespace

TEST(VLXImage, PNGRoundTripAndFiles) {
    // Premultiplied pixels that survive un-premultiplying exactly: opaque, clear and half red.
    const std::vector<std::uint32_t> words = {kRedWord,   0x00000000U, 0x80800000U,
                                              kGreenWord, kBlueWord,   kWhiteWord};
    auto image = VLXImage::imageWithPixels(3, 2, words, 2);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), VLXSizeMake(1.5, 1));
    const std::string png = image->PNGRepresentation();
    ASSERT_EQ(png.rfind("\x89PNG", 0), 0u);
    auto decoded = VLXImage::imageWithData(png, 3);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->pixelWidth(), 3);
    EXPECT_EQ(decoded->pixelHeight(), 2);
    EXPECT_EQ(decoded->scale(), 3);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const Pixel expected = pixelOf(words[i]), actual = pixelOf(decoded->pixels()[i]);
        EXPECT_NEAR(actual.a, expected.a, 1) << i;
        EXPECT_NEAR(actual.r, expected.r, 1) << i;
        EXPECT_NEAR(actual.g, expected.g, 1) << i;
        EXPECT_NEAR(actual.b, expected.b, 1) << i;
    }
    // Colours come back un-premultiplied.
    const VLXColor half = decoded->colorAtPixel(2, 0);
    double r = 0, g = 0, b = 0, a = 0;
    ASSERT_TRUE(half.getRed(&r, &g, &b, &a));
    EXPECT_NEAR(r, 1, 0.01);
    EXPECT_NEAR(a, 128 / 255.0, 0.01);
    EXPECT_EQ(decoded->colorAtPixel(3, 0), VLXColor::clearColor());
    EXPECT_EQ(decoded->colorAtPixel(-1, 0), VLXColor::clearColor());

    const auto folder = std::filesystem::temp_directory_path() / "vlx-drawing-tests";
    std::filesystem::create_directories(folder);
    ASSERT_TRUE(image->writePNG(folder / "icon@2x.png"));
    ASSERT_TRUE(image->writePNG(folder / "icon@3x.png"));
    ASSERT_TRUE(image->writePNG(folder / "icon.png"));
    EXPECT_EQ(VLXImage::imageWithContentsOfFile(folder / "icon@2x.png")->scale(), 2);
    EXPECT_EQ(VLXImage::imageWithContentsOfFile(folder / "icon@3x.png")->size(),
              VLXSizeMake(1, 2.0 / 3.0));
    EXPECT_EQ(VLXImage::imageWithContentsOfFile(folder / "icon.png")->scale(), 1);
    EXPECT_FALSE(VLXImage::imageWithContentsOfFile(folder / "missing.png"));
    EXPECT_FALSE(VLXImage::imageWithContentsOfFile(folder));
    std::filesystem::remove_all(folder);

    // Not PNG, cut short, corrupted, empty, or with a bad scale: nil.
    EXPECT_FALSE(VLXImage::imageWithData(""));
    EXPECT_FALSE(VLXImage::imageWithData("GIF89a and then some bytes"));
    EXPECT_FALSE(VLXImage::imageWithData(png.substr(0, png.size() / 2)));
    std::string corrupt = png;
    corrupt[corrupt.size() / 2] ^= 0x5a;
    corrupt[corrupt.size() / 2 + 1] ^= 0x33;
    EXPECT_FALSE(VLXImage::imageWithData(corrupt));
    EXPECT_FALSE(VLXImage::imageWithData(png, 0));
    EXPECT_FALSE(VLXImage::imageWithPixels(2, 2, {1, 2, 3}));
    EXPECT_FALSE(VLXImage::imageWithPixels(0, 0, {}));
    EXPECT_EQ(VLXImagePNGRepresentation(nullptr), "");
}

TEST(VLXImage, DrawsUprightInEveryOrientation) {
    // Stored corners: red top left, blue top right, green bottom left, white bottom right.
    auto stored = VLXImage::imageWithPixels(2, 2, {kRedWord, kBlueWord, kGreenWord, kWhiteWord});
    ASSERT_TRUE(stored);
    // Expected corners on screen (top left, top right, bottom left, bottom right), worked out
    // by turning and flipping the picture by hand.
    const std::array<std::pair<VLXImageOrientation, const char*>, 8> cases = {{
        {VLXImageOrientation::Up, "RBGW"},
        {VLXImageOrientation::Down, "WGBR"},
        {VLXImageOrientation::Left, "BWRG"},
        {VLXImageOrientation::Right, "GRWB"},
        {VLXImageOrientation::UpMirrored, "BRWG"},
        {VLXImageOrientation::DownMirrored, "GWRB"},
        {VLXImageOrientation::LeftMirrored, "RGBW"},
        {VLXImageOrientation::RightMirrored, "WBGR"},
    }};
    for (const auto& [orientation, corners] : cases) {
        auto oriented = VLXImage::imageWithImage(*stored, 1, orientation);
        auto context = makeBitmap(40, 40);
        context->drawImage(*oriented, VLXRectMake(0, 0, 40, 40));
        const Pixels pixels(*context);
        const std::string seen = {colorName(pixels.at(5, 5)), colorName(pixels.at(34, 5)),
                                  colorName(pixels.at(5, 34)), colorName(pixels.at(34, 34))};
        EXPECT_EQ(seen, corners) << static_cast<int>(orientation);
    }
    // Turned images swap their width and height.
    auto tall = VLXImage::imageWithPixels(4, 2, std::vector<std::uint32_t>(8, kRedWord), 2,
                                          VLXImageOrientation::Right);
    EXPECT_EQ(tall->size(), VLXSizeMake(1, 2));
}

TEST(VLXImage, ImageContextStackIsPerThreadAndBalanced) {
    EXPECT_EQ(VLXGraphicsGetCurrentContext(), nullptr);

    VLXGraphicsBeginImageContextWithOptions(VLXSizeMake(10, 5), false, 0);
    VLXGraphicsContext* outer = VLXGraphicsGetCurrentContext();
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(outer->scale(), VLXScreen::mainScreen()->scale());
    auto square = VLXImage::imageWithPixels(1, 1, {kBlueWord});
    square->drawInRect(VLXRectMake(0, 0, 5, 5));
    square->drawInRect(VLXRectMake(5, 0, 5, 5), VLXBlendMode::Normal, 0.5);

    // A size that cannot be drawn pushes an empty entry that still needs its end.
    VLXGraphicsBeginImageContextWithOptions(VLXSizeMake(-3, 5), false, 2);
    EXPECT_EQ(VLXGraphicsGetCurrentContext(), nullptr);
    EXPECT_EQ(VLXGraphicsGetImageFromCurrentImageContext(), nullptr);
    square->drawAtPoint(VLXPointMake(0, 0));  // no context: nothing
    VLXGraphicsEndImageContext();
    EXPECT_EQ(VLXGraphicsGetCurrentContext(), outer);

    // Zero width: a context without pixels whose image has zero size.
    VLXGraphicsBeginImageContext(VLXSizeMake(0, 7));
    ASSERT_NE(VLXGraphicsGetCurrentContext(), nullptr);
    VLXGraphicsGetCurrentContext()->fillRect(VLXRectMake(0, 0, 10, 10));
    auto empty = VLXGraphicsGetImageFromCurrentImageContext();
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->size(), VLXSizeMake(0, 7));
    EXPECT_TRUE(empty->pixels().empty());
    EXPECT_EQ(empty->PNGRepresentation(), "");
    EXPECT_EQ(empty->cairoSurface(), nullptr);
    VLXGraphicsEndImageContext();

    // Pushed contexts are popped only by pop, image contexts only by end.
    auto pushed = makeBitmap(4, 4);
    VLXGraphicsPushContext(*pushed);
    VLXGraphicsEndImageContext();
    EXPECT_EQ(VLXGraphicsGetCurrentContext(), pushed.get());
    EXPECT_EQ(VLXGraphicsGetImageFromCurrentImageContext(), nullptr);
    std::thread([] { EXPECT_EQ(VLXGraphicsGetCurrentContext(), nullptr); }).join();
    VLXGraphicsPopContext();
    VLXGraphicsPopContext();
    EXPECT_EQ(VLXGraphicsGetCurrentContext(), outer);

    auto image = VLXGraphicsGetImageFromCurrentImageContext();
    VLXGraphicsEndImageContext();
    EXPECT_EQ(VLXGraphicsGetCurrentContext(), nullptr);
    ASSERT_TRUE(image);
    const double scale = VLXScreen::mainScreen()->scale();
    EXPECT_EQ(image->size(), VLXSizeMake(10, 5));
    const Pixels pixels(image);
    EXPECT_EQ(pixels.at(static_cast<int>(2 * scale), 2), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixels.at(static_cast<int>(7 * scale), 2).a, 128);
    ASSERT_NE(image->cairoSurface(), nullptr);
    EXPECT_EQ(image->cairoSurface(), image->cairoSurface());
}
