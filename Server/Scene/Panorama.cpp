#include "Server/Scene/Panorama.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Require.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Scene/PanoramaReader.h"
#include "Server/Scene/Private/Texts.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Vs::Scene {

namespace {

constexpr double kPi = 3.14159265358979323846;
/// Widths of what is drawn, mirrored, and scattered.
constexpr int kDrawnWidth = 2048, kMirroredWidth = 256, kScatteredWidth = 64;
/// What is this many times as bright as the mean counts as sun or lamp.
constexpr double kLampFrom = 6;
/// The light that a white face which looks up reflects, as from the other environments.
constexpr double kFromAbove = 0.9;
/// Screens and textures can't tell more from it.
constexpr float kBrightest = 50000;

double brightnessOf(const float* colour)
{
    return 0.2126 * double(colour[0]) + 0.7152 * double(colour[1]) + 0.0722 * double(colour[2]);
}

/// Of the middle of a pixel.
GkVector3d directionOf(const Panorama::Picture& picture, int x, int y)
{
    const double turn = 2 * kPi * ((x + 0.5) / picture.width - 0.5), down = kPi * (y + 0.5) / picture.height;
    return {std::sin(down) * std::sin(turn), std::sin(down) * std::cos(turn), std::cos(down)};
}

/// The part of the sphere that a pixel of a row covers.
double sizeOf(const Panorama::Picture& picture, int y)
{
    const double top = std::cos(kPi * y / picture.height), bottom = std::cos(kPi * (y + 1) / picture.height);
    return 2 * kPi / picture.width * (top - bottom);
}

Colour pixelIn(const Panorama::Picture& picture, const GkVector3d& direction)
{
    const double turn = std::atan2(direction.x, direction.y) / (2 * kPi) + 0.5;
    const double down = std::acos(std::clamp(direction.z, -1.0, 1.0)) / kPi;
    const int x = std::clamp(int(turn * picture.width), 0, picture.width - 1);
    const int y = std::clamp(int(down * picture.height), 0, picture.height - 1);
    const float* colour = &picture.channels[3 * (size_t(y) * size_t(picture.width) + size_t(x))];
    return {colour[0], colour[1], colour[2], 1};
}

/// Each pixel is the mean of those that it covers.
Panorama::Picture smaller(const Panorama::Picture& from, int width)
{
    if (from.width <= width)
        return from;
    Panorama::Picture to{width, width / 2, {}};
    to.channels.resize(3 * size_t(to.width) * size_t(to.height));
    for (int y = 0; y < to.height; ++y)
        for (int x = 0; x < to.width; ++x) {
            const int left = x * from.width / to.width, right = (x + 1) * from.width / to.width;
            const int top = y * from.height / to.height, bottom = (y + 1) * from.height / to.height;
            double sum[3] = {};
            for (int row = top; row < bottom; ++row)
                for (int column = left; column < right; ++column)
                    for (size_t i = 0; i < 3; ++i)
                        sum[i] += double(
                            from.channels[3 * (size_t(row) * size_t(from.width) + size_t(column)) + i]);
            for (size_t i = 0; i < 3; ++i)
                to.channels[3 * (size_t(y) * size_t(width) + size_t(x)) + i] =
                    float(sum[i] / ((right - left) * (bottom - top)));
        }
    return to;
}

/// What fills the sphere evenly with as much light.
double meanBrightness(const Panorama::Picture& picture)
{
    double sum = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            sum += sizeOf(picture, y) *
                   brightnessOf(&picture.channels[3 * (size_t(y) * size_t(picture.width) + size_t(x))]);
    return sum / (4 * kPi);
}

/// Takes what is too bright to be scattered out of the picture.
Environment::Lamp takeLamp(Panorama::Picture& picture)
{
    const double limit = kLampFrom * meanBrightness(picture);
    double light[3] = {}, all = 0;
    GkVector3d sum;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            float* colour = &picture.channels[3 * (size_t(y) * size_t(picture.width) + size_t(x))];
            const double brightness = brightnessOf(colour);
            if (brightness <= limit)
                continue;
            const double size = sizeOf(picture, y), rest = limit / brightness;
            for (size_t i = 0; i < 3; ++i) {
                light[i] += double(colour[i]) * (1 - rest) * size / kPi;
                colour[i] = float(double(colour[i]) * rest);
            }
            sum = sum + directionOf(picture, x, y) * ((brightness - limit) * size);
            all += (brightness - limit) * size;
        }
    if (!(all > 0) || sum.length() < 0.05 * all)
        return {GkVector3d(-0.3, -0.4, 0.85).normal(), {0, 0, 0, 1}, 0.5f};
    // Lamps on all sides light less from their middle than they would together.
    const double together = sum.length() / all;
    return {sum.normal(),
            {float(light[0] * together), float(light[1] * together), float(light[2] * together), 1},
            float(std::clamp(std::sqrt(1 - together * together), 0.02, 0.6))};
}

void scale(Panorama::Picture& picture, double factor)
{
    for (float& channel : picture.channels)
        channel = std::min(float(double(channel) * factor), kBrightest);
}

Colour meanOfRows(const Panorama& panorama, double height)
{
    constexpr int kSteps = 32;
    double sum[3] = {};
    for (int i = 0; i < kSteps; ++i) {
        const double turn = 2 * kPi * i / kSteps, width = std::sqrt(1 - height * height);
        const Colour seen = panorama.scattered({width * std::cos(turn), width * std::sin(turn), height});
        sum[0] += double(seen.r) / kSteps;
        sum[1] += double(seen.g) / kSteps;
        sum[2] += double(seen.b) / kSteps;
    }
    return {float(std::min(sum[0], 1.0)), float(std::min(sum[1], 1.0)), float(std::min(sum[2], 1.0)), 1};
}

} // namespace

std::shared_ptr<const Panorama> Panorama::read(const std::wstring& path)
{
    using Read = void (*)(const std::wstring& path, Picture& picture);
    static const Read read = SiblingLibrary("libVsPanorama10.so").function<Read>("quilletReadPanorama");
    Picture picture;
    read(path, picture);
    picture = smaller(picture, kDrawnWidth);
    if (!(meanBrightness(picture) > 1e-9))
        throw Exception(
            localizedFormat("PanoramaBlack", "\"%1%\" can't light a model: the picture is black.", path));
    return std::make_shared<const Panorama>(std::move(picture));
}

Panorama::Panorama(Picture picture) : m_picture(std::move(picture))
{
    require(m_picture.width > 0 && m_picture.height > 0 &&
                m_picture.channels.size() == 3 * size_t(m_picture.width) * size_t(m_picture.height),
            "a picture has three channels for each pixel");
    m_mirrored = smaller(m_picture, kMirroredWidth);
    Picture rest = m_mirrored;
    m_lamp = takeLamp(rest);
    m_scattered = smaller(rest, kScatteredWidth);
    double above = brightnessOf(&m_lamp.colour.r) * std::max(0.0, m_lamp.direction.z);
    for (int y = 0; y < m_scattered.height / 2; ++y)
        for (int x = 0; x < m_scattered.width; ++x)
            above +=
                brightnessOf(&m_scattered.channels[3 * (size_t(y) * size_t(m_scattered.width) + size_t(x))]) *
                sizeOf(m_scattered, y) * directionOf(m_scattered, x, y).z / kPi;
    // One that is lit from below alone is as bright there.
    const double factor = kFromAbove / std::max(above, meanBrightness(m_mirrored));
    for (Picture* each : {&m_picture, &m_mirrored, &m_scattered})
        scale(*each, factor);
    const auto scaled = [&](float channel) { return float(std::min(double(channel) * factor, 3.0)); };
    m_lamp.colour = {scaled(m_lamp.colour.r), scaled(m_lamp.colour.g), scaled(m_lamp.colour.b), 1};
}

Colour Panorama::mirrored(const GkVector3d& direction) const
{
    return pixelIn(m_mirrored, direction);
}

Colour Panorama::scattered(const GkVector3d& direction) const
{
    return pixelIn(m_scattered, direction);
}

Environment environmentOf(const std::wstring& path, std::shared_ptr<const Panorama> panorama)
{
    Environment made;
    made.id = path;
    made.zenith = meanOfRows(*panorama, 0.95);
    made.horizon = meanOfRows(*panorama, 0.1);
    made.ground = meanOfRows(*panorama, -0.1);
    made.nadir = meanOfRows(*panorama, -0.95);
    made.skyFall = made.groundFall = 0.6f;
    made.haze = 0.1f;
    made.glow = made.stars = 0;
    const Environment::Lamp none{GkVector3d::kZAxis, {0, 0, 0, 1}, 0.5f};
    made.lamps = {panorama->lamp(), none, none};
    made.plain = meanOfRows(*panorama, 0);
    const double brightness = std::pow(brightnessOf(&made.plain.r), 1 / 2.2);
    const bool dark = brightness < 0.4;
    made.line = dark ? Colour{0.6f, 0.66f, 0.76f, 1} : Colour{0.01f, 0.012f, 0.018f, 1};
    made.grid = dark ? Colour{0.25f, 0.29f, 0.36f, 1} : Colour{0.08f, 0.09f, 0.11f, 1};
    made.panorama = std::move(panorama);
    return made;
}

} // namespace Vs::Scene
