#include <VelmarCoreUI/Platform/Foundation/VLXBundle.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include <VelmarCoreUI/Utilities/VLXImageUtilities.h>
#include "ImageTestSupport.h"

namespace {

namespace fs = std::filesystem;
using imagetest::pixelAt;

// root/Resources holds the bundle's files; root/x sits just outside it.
class VLXBundleTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_root = fs::temp_directory_path() / ("vlx-bundle-" + std::to_string(getpid()));
        m_resources = m_root / "Resources";
        fs::create_directories(m_resources / "sub");
        std::ofstream(m_root / "x") << "outside";
        std::ofstream(m_resources / "README") << "text";
        std::ofstream(m_resources / "broken.png") << "not a png";
        auto image = imagetest::drawnImage({4, 2}, 1, [](VLXGraphicsContext& context) {
            context.setFillColor(VLXColor::redColor());
            context.fillRect(VLXRectMake(0, 0, 4, 2));
        });
        ASSERT_TRUE(image && image->writePNG(m_resources / "dot.png"));
    }
    void TearDown() override { fs::remove_all(m_root); }

    fs::path m_root;
    fs::path m_resources;
};

}  // namespace

TEST_F(VLXBundleTest, MainBundleFollowsTheEnvironment) {
    {
        imagetest::ScopedEnvironment environment("VLX_RESOURCE_PATH", m_resources.string());
        auto bundle = VLXBundle::mainBundle();
        ASSERT_TRUE(bundle);
        EXPECT_EQ(bundle->resourcePath(), m_resources);
        EXPECT_EQ(VLXBundle::mainBundle(), bundle);
        EXPECT_EQ(bundle->pathForResource("dot", "png"), (m_resources / "dot.png").string());
        EXPECT_EQ(bundle->pathForResource("README", ""), (m_resources / "README").string());
        EXPECT_FALSE(bundle->pathForResource("missing", "png"));
        EXPECT_FALSE(bundle->pathForResource("dot", ""));
        EXPECT_FALSE(bundle->pathForResource("sub", ""));  // a folder, not a file
        EXPECT_FALSE(bundle->pathForResource("", ""));
        // Nothing outside the folder can be reached, though root/x exists.
        EXPECT_FALSE(bundle->pathForResource("../x", ""));
        EXPECT_FALSE(bundle->pathForResource("..", "x"));
        EXPECT_FALSE(bundle->pathForResource("x", "/../../x"));
        EXPECT_FALSE(bundle->pathForResource(std::string("dot\0.png", 8), ""));
    }
    // Without the variable (or with it empty): "Resources" beside the executable.
    const fs::path besideExecutable =
        fs::read_symlink("/proc/self/exe").parent_path() / "Resources";
    {
        imagetest::ScopedEnvironment environment("VLX_RESOURCE_PATH", std::string());
        EXPECT_EQ(VLXBundle::mainBundle()->resourcePath(), besideExecutable);
    }
    imagetest::ScopedEnvironment environment("VLX_RESOURCE_PATH", std::nullopt);
    EXPECT_EQ(VLXBundle::mainBundle()->resourcePath(), besideExecutable);

    EXPECT_TRUE(VLXBundle::bundleWithPath(m_resources));
    EXPECT_FALSE(VLXBundle::bundleWithPath(m_resources / "README"));
    EXPECT_FALSE(VLXBundle::bundleWithPath(m_root / "nowhere"));
    EXPECT_FALSE(VLXBundle::bundleWithPath(""));
}

TEST_F(VLXBundleTest, UncachedImageNamed) {
    imagetest::ScopedEnvironment environment("VLX_RESOURCE_PATH", m_resources.string());
    vlx_removeAllImages();
    auto image = vlx_uncachedImageNamed("dot.png");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), VLXSizeMake(4, 2));
    const auto pixel = pixelAt(*image, 3, 1);
    EXPECT_EQ(pixel.r, 255);
    EXPECT_EQ(pixel.a, 255);
    // Each call reads the file again, and nothing lands in the drawing cache.
    EXPECT_NE(vlx_uncachedImageNamed("dot.png"), image);
    EXPECT_EQ(drawingCache()->count(), 0u);

    for (const char* name :
         {"missing.png", "dot", "dot.", "README.txt", "broken.png", ".png", "../x", "", "sub"}) {
        EXPECT_FALSE(vlx_uncachedImageNamed(name)) << name;
    }
}
