#include "Server/Base/Strings.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/MSAASettings.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <epoxy/egl.h>
#include <epoxy/gl.h>
#include <gtest/gtest.h>
#include <utility>

using namespace Vs;
using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;

namespace {

constexpr Colour kRed{0.7f, 0.02f, 0.02f, 1}, kGreen{0.02f, 0.6f, 0.02f, 1}, kBlue{0.02f, 0.02f, 0.7f, 1};

struct Pixel
{
    int r, g, b, a;
    bool isRed() const { return r > g + 60 && r > b + 60; }
    bool isGreen() const { return g > r + 60 && g > b + 60; }
    bool isBlue() const { return b > r + 60 && b > g + 60; }
};

/// What rarely goes wrong in pictures. Without edges and background unless a test wants them.
class PictureDetail : public testing::Test
{
protected:
    void SetUp() override
    {
        Status status;
        if (!OffscreenRenderer::get()->render({}, 1, 1, {}, m_image, status))
            GTEST_SKIP() << "NOTICE: no OpenGL to draw with: " << testing::PrintToString(status.toString());
    }

    PictureDetail() : m_fragment(ViewFragment::make(Segment::makeTransientStandalone("PictureTest")))
    {
        m_fragment->renderParams()->visualStyle(kShaded);
        m_options.transparentBackground = true;
        m_options.fine = false;
    }

    BodyNode* show(const Shapes::MeshPtr& mesh, const GkMatrix3d& placement, const Colour& colour)
    {
        const StrongRef<BodyNode> node = BodyNode::make(mesh, colour);
        NodeChange(node.get()).transform(placement);
        NodeChange(m_fragment->viewFragmentNode()).add(node);
        return node.get();
    }

    void draw(uint32_t width = 120, uint32_t height = 90)
    {
        Status status;
        ASSERT_TRUE(
            OffscreenRenderer::get()->render({m_fragment.get()}, width, height, m_options, m_image, status))
            << testing::PrintToString(status.toString());
        ASSERT_EQ(m_image.pixels.size(), size_t(width) * height * 4);
    }

    Pixel at(uint32_t x, uint32_t y) const
    {
        const uint8_t* p = m_image.pixel(x, y);
        return {p[0], p[1], p[2], p[3]};
    }
    Pixel middle() const { return at(m_image.width / 2, m_image.height / 2); }

    /// Where a place in space is in the picture.
    Pixel where(const GkPoint3d& world) const
    {
        const Projection projection(*m_fragment->camera(), m_image.width, m_image.height);
        const GkPoint3d p = projection.worldToScreen(world);
        return at(uint32_t(p.x), m_image.height - 1 - uint32_t(p.y));
    }

    bool isEmpty() const
    {
        return std::all_of(m_image.pixels.begin(), m_image.pixels.end(),
                           [](uint8_t value) { return value == 0; });
    }

    void lookFromTop()
    {
        m_fragment->camera()->look({0, 0, -1}, {0, 1, 0});
        m_fragment->camera()->fit(m_fragment->bounds());
    }

    StrongRef<ViewFragment> m_fragment;
    ImageOptions m_options;
    Image m_image;
};

TEST_F(PictureDetail, AMirroredBodyIsLitLikeItsModel)
{
    GkMatrix3d mirror;
    mirror.entry[0][0] = -1;
    show(Shapes::ball(10), GkMatrix3d::translation({-12, 0, 0}), kRed);
    show(Shapes::ball(10), GkMatrix3d::translation({12, 0, 0}) * mirror, kRed);
    lookFromTop();
    draw(200, 100);
    EXPECT_NEAR(where({-12, 0, 10}).r, where({12, 0, 10}).r, 2);
    EXPECT_NEAR(where({-12, 5, 8}).r, where({12, 5, 8}).r, 3);
}

TEST_F(PictureDetail, TheNearerBodyHidesTheOtherFarFromTheOriginToo)
{
    const GkVector3d far(3e6, -2e6, 1e6);
    show(Shapes::box(20, 20, 1), GkMatrix3d::translation(far), kRed);
    show(Shapes::box(8, 8, 1), GkMatrix3d::translation(far + GkVector3d(6, 6, 3)), kGreen);
    lookFromTop();
    draw();
    EXPECT_TRUE(where(GkPoint3d() + far + GkVector3d(10, 10, 4)).isGreen());
    EXPECT_TRUE(where(GkPoint3d() + far + GkVector3d(2, 2, 1)).isRed());
}

TEST_F(PictureDetail, HiddenEdgesShowOnlyInTheStylesThatHaveThem)
{
    show(Shapes::box(20, 20, 20), {}, Colour{0.8f, 0.8f, 0.8f, 1});
    show(Shapes::box(4, 4, 4), GkMatrix3d::translation({8, 8, 8}), kRed); // inside
    lookFromTop();
    m_options.antiAliasing = false;
    // Along the middle of the top, from beside the inner box to its middle.
    const auto contrast = [&] {
        int low = 255, high = 0;
        for (double x = 5; x < 10; x += 0.05) {
            const int value = where({x, 10, 20}).r;
            low = std::min(low, value);
            high = std::max(high, value);
        }
        return high - low;
    };
    m_fragment->renderParams()->visualStyle(kShadedWithVisibleEdges);
    draw(300, 300);
    EXPECT_LT(contrast(), 12);
    m_fragment->renderParams()->visualStyle(kShadedWithHiddenEdges);
    draw(300, 300);
    EXPECT_GT(contrast(), 25);
}

TEST_F(PictureDetail, APictureThatWasExpectedIsAsAnyOther)
{
    show(Shapes::ball(30), {}, kRed);
    m_fragment->camera()->fit(m_fragment->bounds());
    draw();
    const Image first = m_image;
    OffscreenRenderer& renderer = *OffscreenRenderer::get();
    renderer.release();
    renderer.expect(false);
    renderer.expect(false);
    draw();
    EXPECT_EQ(m_image.pixels, first.pixels);
    // The only one is drawn in parts, of which one shouldn't see the seams.
    m_options.fine = true;
    draw(640, 700);
    const Image whole = m_image;
    renderer.release();
    renderer.expect(true);
    draw(640, 700);
    size_t others = 0;
    for (size_t i = 0; i < whole.pixels.size(); ++i)
        others += std::abs(whole.pixels[i] - m_image.pixels[i]) > 3;
    EXPECT_LT(others, whole.pixels.size() / 2000);
    // Whoever expected one need not ask for it.
    renderer.release();
    renderer.expect(false);
    renderer.settle();
    EXPECT_FALSE(renderer.description().empty());
    renderer.settle();
    renderer.release();
    renderer.settle();
}

TEST_F(PictureDetail, ATransparentBodyBeforeNothingLeavesItsOpacityInThePicture)
{
    show(Shapes::box(20, 20, 2), {}, Colour{0.8f, 0.02f, 0.02f, 0.5f});
    lookFromTop();
    draw();
    EXPECT_GT(middle().a, 110);
    EXPECT_LT(middle().a, 230);
    EXPECT_TRUE(middle().isRed()) << "the colour is not darkened by the missing background";
}

TEST_F(PictureDetail, TheFootOfABodyIsDarkerInFinePicturesUnlessThatIsTurnedOff)
{
    show(Shapes::box(100, 100, 2), GkMatrix3d::translation({-50, -50, -2}), Colour{0.7f, 0.7f, 0.7f, 1});
    show(Shapes::box(20, 20, 40), GkMatrix3d::translation({-10, -10, 0}), kGreen);
    m_fragment->camera()->projection(kParallelProjection);
    m_fragment->camera()->look({0, 1, -1}, {0, 0, 1});
    m_fragment->camera()->fit(m_fragment->bounds());
    m_options.fine = true;
    const GkPoint3d foot(0, -11.5, 0), open(0, -35, 0);
    m_fragment->renderParams()->ambientOcclusionEnabled(true);
    draw(160, 160);
    EXPECT_LT(where(foot).r, where(open).r - 8);
    m_fragment->renderParams()->ambientOcclusionEnabled(false);
    draw(160, 160);
    EXPECT_NEAR(where(foot).r, where(open).r, 3);
    m_options.fine = false;
    m_fragment->renderParams()->ambientOcclusionEnabled(true);
    draw(160, 160);
    EXPECT_NEAR(where(foot).r, where(open).r, 3) << "a canvas that moves does without";
}

TEST_F(PictureDetail, ALaterFragmentDrawsOverTheFirstInsideItsViewport)
{
    show(Shapes::box(20, 20, 20), {}, kRed);
    lookFromTop();
    const StrongRef<ViewFragment> corner =
        ViewFragment::make(Segment::makeTransientStandalone("PictureTest"), "Corner");
    const StrongRef<BodyNode> body = BodyNode::make(Shapes::box(500, 500, 500), kBlue);
    NodeChange(corner->viewFragmentNode()).add(body);
    corner->renderParams()->visualStyle(kShaded);
    corner->camera()->fit(corner->bounds());
    corner->data()->viewport()->placement(0.5, 0.5, 0.5, 0.5);
    Status status;
    ASSERT_TRUE(OffscreenRenderer::get()->render({m_fragment.get(), corner.get()}, 100, 100, m_options,
                                                 m_image, status));
    EXPECT_TRUE(at(75, 25).isBlue());
    EXPECT_TRUE(at(35, 65).isRed());
    EXPECT_FALSE(at(25, 75).isBlue());
}

TEST_F(PictureDetail, NothingIsDrawnForEmptyBodiesAndFragments)
{
    show(std::make_shared<BodyMesh>(), {}, kRed);
    show(nullptr, {}, kRed);
    Status status;
    ASSERT_TRUE(
        OffscreenRenderer::get()->render({m_fragment.get(), nullptr}, 8, 8, m_options, m_image, status));
    EXPECT_TRUE(isEmpty());
    ASSERT_TRUE(OffscreenRenderer::get()->render({}, 8, 8, m_options, m_image, status));
    EXPECT_TRUE(isEmpty());
}

TEST_F(PictureDetail, SmoothEdgesAreOfferedWhereTheDriverHasSamples)
{
    int level = 1, quality = 7;
    GetMSAASettings(level, quality);
    EXPECT_GT(level, 1);
    EXPECT_LE(level, 8);
    EXPECT_EQ(quality, 0);
}

int lossesToCome = 0;

/// Takes the context away as a reset does: what is drawn from then on reaches nothing.
GLenum loseContext()
{
    if (lossesToCome == 0)
        return GL_NO_ERROR;
    --lossesToCome;
    eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    return GL_INNOCENT_CONTEXT_RESET;
}

TEST_F(PictureDetail, ADriverThatWasResetDrawsThePictureAgain)
{
    show(Shapes::ball(30), {}, kRed);
    m_fragment->camera()->fit(m_fragment->bounds());
    draw();
    const Image first = m_image;
    const auto status = std::exchange(epoxy_glGetGraphicsResetStatus, loseContext);
    // Before a picture, and while it is drawn, too.
    for (const int losses : {1, 2, 0}) {
        lossesToCome = losses;
        draw();
        EXPECT_EQ(lossesToCome, 0) << "nobody asked whether the context is still there";
        EXPECT_EQ(m_image.pixels, first.pixels);
    }

    lossesToCome = 3;
    Status refusal;
    EXPECT_FALSE(OffscreenRenderer::get()->render({m_fragment.get()}, 120, 90, m_options, m_image, refusal));
    EXPECT_NE(refusal.toString().find(L"driver was reset"), std::wstring::npos);
    EXPECT_TRUE(m_image.pixels.empty());
    draw();
    EXPECT_EQ(m_image.pixels, first.pixels);
    epoxy_glGetGraphicsResetStatus = status;
}

/// As some drivers do whose graphics unit lacks what they take for granted.
EGLContext crash(EGLDisplay, EGLConfig, EGLContext, const EGLint*)
{
    std::raise(SIGSEGV);
    return EGL_NO_CONTEXT;
}

// In a separate process: drivers are searched for only once.
TEST(PictureDeathTest, WithoutADriverThatStartsThereIsAMessageInPlaceOfAPicture)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto draw = [](bool found) {
        if (!found)
            setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nonexistent", 1);
        epoxy_eglCreateContext = crash;
        Image image;
        Status status;
        const bool drawn = OffscreenRenderer::get()->render({}, 8, 8, {}, image, status);
        std::fputs(Strings::narrow(status.toString()).c_str(), stderr);
        int level = 1, quality = 0;
        GetMSAASettings(level, quality);
        std::_Exit(level > 1 || drawn || !image.pixels.empty() ? 1 : 0);
    };
    EXPECT_EXIT(draw(false), testing::ExitedWithCode(0), "Pictures cannot be drawn: no graphics driver");
    EXPECT_EXIT(draw(true), testing::ExitedWithCode(0),
                "Pictures cannot be drawn: the graphics driver crashed");
}

} // namespace
