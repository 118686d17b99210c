// Environments from panoramas in files: what they light, what is mirrored and seen of them, and what is
// refused.

#include "Server/Scene/Panorama.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Tests/Server/Scene/StylePicture.h"
#include "Tests/Support/Process.h"

#include <boost/filesystem/fstream.hpp>

#include <cmath>
#include <functional>

namespace {

using namespace Vs::Scene;

using Colour3 = std::array<double, 3>;

/// A file whose pixels are uncompressed, as simple programs write it.
std::string radiance(int width, int height, const std::function<Colour3(const GkVector3d&)>& seen)
{
    std::string text = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y " + std::to_string(height) + " +X " +
                       std::to_string(width) + "\n";
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double turn = 2 * 3.14159265 * ((x + 0.5) / width - 0.5),
                         down = 3.14159265 * (y + 0.5) / height;
            const Colour3 colour =
                seen({std::sin(down) * std::sin(turn), std::sin(down) * std::cos(turn), std::cos(down)});
            const double most = std::max({colour[0], colour[1], colour[2], 1e-9});
            const int exponent = int(std::floor(std::log2(most))) + 1;
            for (const double channel : colour)
                text += char(int(std::min(255.0, channel / std::exp2(exponent) * 256)));
            text += char(exponent + 128);
        }
    return text;
}

class PanoramaPicture : public SceneTest::StylePicture
{
protected:
    std::wstring file(const std::string& name, const std::string& content) const
    {
        const boost::filesystem::path path = folder.path() / name;
        boost::filesystem::ofstream(path, std::ios::binary) << content;
        return path.wstring();
    }
    /// The reason for which a file is refused.
    std::string refusal(const std::string& name, const std::string& content) const
    {
        try {
            EnvironmentManager::getEnvManager()->read(file(name, content));
        } catch (const Vs::Exception& error) {
            const std::string text = error.what();
            EXPECT_NE(text.find(name), std::string::npos) << text;
            return text;
        }
        return "none";
    }

    TestSupport::ScratchFolder folder;
};

// Green at the right of who looks along y, red at the left, and a sun above the right.
Colour3 coloured(const GkVector3d& d)
{
    if (d.dotProduct(GkVector3d(0.8, 0, 0.6)) > 0.995)
        return {400, 400, 380};
    return d.x > 0.3    ? Colour3{0.05, 0.6, 0.05}
           : d.x < -0.3 ? Colour3{0.6, 0.05, 0.05}
                        : Colour3{0.2, 0.2, 0.2};
}

TEST_F(PanoramaPicture, ItLightsBodiesIsMirroredByThemAndSeenBehindThem)
{
    EnvironmentManager& manager = *EnvironmentManager::getEnvManager();
    const std::wstring id = manager.read(file("coloured.hdr", radiance(512, 256, coloured)));
    manager.activeEnvironmentID(id);
    const Environment& made = manager.activeEnvironment();
    EXPECT_EQ(made.id, id);
    EXPECT_LT(made.lamps[0].direction.angleTo(GkVector3d(0.8, 0, 0.6)), 0.1) << "the sun is the lamp";
    EXPECT_GT(made.lamps[0].colour.g, 0.2f);

    show(Shapes::ball(20, 64), {-30, 0, 0}, {0.9f, 0.9f, 0.9f, 1});
    show(Shapes::ball(20, 64), {30, 0, 0}, {0.4f, 0.4f, 0.4f, 1});
    fragment->camera()->projection(kParallelProjection);
    fragment->camera()->look({0, 1, 0}, {0, 0, 1});
    fragment->camera()->fit(fragment->bounds());
    fragment->camera()->zoom(0.7);
    const auto greener = [&](const GkPoint3d& place) { return int(at(place)[1]) - int(at(place)[0]); };
    draw(kShaded);
    EXPECT_GT(greener({-14, -5, -8}), greener({-46, -5, -8}) + 15)
        << "white is lit in the colours of the sides";
    draw(kRealistic);
    EXPECT_GT(greener({44, -5, -8}), 30) << "and metal mirrors them";
    EXPECT_LT(greener({16, -5, -8}), -30);
    // A parallel camera sees the surroundings as through the lens of a perspective.
    EXPECT_GT(int(image.pixel(kWidth - 3, kHeight / 2)[1]),
              int(image.pixel(kWidth - 3, kHeight / 2)[0]) + 40);
    EXPECT_GT(int(image.pixel(2, kHeight / 2)[0]), int(image.pixel(2, kHeight / 2)[1]) + 40);

    const Image before = draw();
    const std::wstring brighter =
        manager.read(file("brighter.hdr", radiance(512, 256, [](const GkVector3d& d) {
                              const Colour3 colour = coloured(d);
                              return Colour3{colour[0] * 50, colour[1] * 50, colour[2] * 50};
                          })));
    manager.activeEnvironmentID(brighter);
    EXPECT_LT(differences(draw(), before), 100u) << "pictures of any exposure light alike";
}

TEST_F(PanoramaPicture, WhatIsNoneIsRefusedWithTheFileAndTheCause)
{
    const std::string good = radiance(64, 32, coloured);
    const auto has = [](const std::string& text, const char* words) {
        return text.find(words) != std::string::npos;
    };
    EXPECT_PRED2(has, refusal("short.hdr", good.substr(0, good.size() / 2)), "ends too early");
    EXPECT_PRED2(has, refusal("empty.hdr", ""), "isn't a Radiance picture");
    EXPECT_PRED2(has, refusal("text.hdr", "P6 64 32 255 and so on"), "isn't a Radiance picture");
    EXPECT_PRED2(has, refusal("square.hdr", radiance(32, 32, coloured)), "twice as wide as high");
    EXPECT_PRED2(has, refusal("black.hdr", radiance(64, 32, [](const GkVector3d&) { return Colour3{}; })),
                 "black");
    const std::string head = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n";
    EXPECT_PRED2(has, refusal("huge.hdr", head + "-Y 1000000 +X 1000000\n"), "too large");
    EXPECT_PRED2(has, refusal("nothing.hdr", head + "-Y 0 +X 0\n"), "header is damaged");
    EXPECT_PRED2(has, refusal("header.hdr", head + "-Y some +X more\n"), "header is damaged");
    EXPECT_PRED2(has, refusal("row.hdr", head + "-Y 32 +X 64\n" + std::string("\2\2\0\x40", 4)), "too early")
        << "the reader would wait for its runs for ever";
    EXPECT_PRED2(has, refusal("lines.hdr", head + "-Y 32 +X 64\n" + std::string(4096, '\2')), "damaged");
    EXPECT_EQ(refusal("good.hdr", good), "none");
    // One that was chosen earlier and is gone doesn't hinder anybody.
    EnvironmentManager& manager = *EnvironmentManager::getEnvManager();
    manager.activeEnvironmentID((folder.path() / "gone.hdr").wstring());
    EXPECT_EQ(&manager.activeEnvironment(), &manager.environment(L"PhotoBooth"));
}

} // namespace
