#include "Server/Scene/PanoramaReader.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"
#include "Server/Scene/Private/Texts.h"

#include <boost/filesystem.hpp>
#include <boost/filesystem/fstream.hpp>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <stb_image.h>

namespace {

namespace fs = boost::filesystem;

/// Larger panoramas would take gigabytes while they are read.
constexpr int kWidest = 8192;

/// What the reader takes from; it can't say by itself that a file ends too early. Among pixels it would go on
/// with zeros, which it takes for runs of none, without end; so it gets what is a run of pixels wherever it
/// stands.
struct Source
{
    fs::ifstream stream;
    bool amongPixels = false;
    bool endedEarly = false;

    static int read(void* user, char* data, int size)
    {
        auto& source = *static_cast<Source*>(user);
        source.stream.read(data, size);
        const auto count = int(source.stream.gcount());
        source.endedEarly = source.endedEarly || count == 0;
        if (count > 0 || !source.amongPixels)
            return count;
        std::memset(data, 0xff, size_t(size));
        return size;
    }
    static void skip(void* user, int count) { static_cast<Source*>(user)->stream.ignore(count); }
    static int atEnd(void* user) { return static_cast<Source*>(user)->stream.peek() == EOF; }
    void rewind()
    {
        stream.clear();
        stream.seekg(0);
        endedEarly = false;
    }
};

using Vs::Scene::localizedFormat;

[[noreturn]] void fail(const std::wstring& text)
{
    throw Vs::Exception(text);
}

} // namespace

extern "C" void quilletReadPanorama(const std::wstring& path, Vs::Scene::Panorama::Picture& picture)
{
    Source source;
    boost::system::error_code error;
    if (!fs::is_regular_file(path, error))
        fail(localizedFormat("PanoramaNoFile", "No file was found at \"%1%\".", path));
    source.stream.open(fs::path(path), std::ios::binary);
    if (!source.stream)
        fail(localizedFormat("PanoramaUnreadable", "\"%1%\" can't be read.", path));
    const stbi_io_callbacks callbacks{&Source::read, &Source::skip, &Source::atEnd};
    if (!stbi_is_hdr_from_callbacks(&callbacks, &source))
        fail(localizedFormat("PanoramaNotRadiance",
                             "\"%1%\" can't be an environment: it isn't a Radiance picture (.hdr).", path));
    source.rewind();
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_callbacks(&callbacks, &source, &width, &height, &channels) || width <= 0 ||
        height <= 0)
        fail(localizedFormat("PanoramaHeader", "\"%1%\" can't be an environment: its header is damaged.",
                             path));
    if (width > kWidest || height > kWidest)
        fail(localizedFormat(
            "PanoramaTooLarge",
            "\"%1%\" can't be an environment: with %2% x %3% pixels it is too large; up to %4% are possible "
            "in each direction.",
            path, width, height, kWidest));
    if (width < 2 || std::abs(width - 2 * height) > 1)
        fail(localizedFormat(
            "PanoramaShape",
            "\"%1%\" can't be an environment: a panorama is twice as wide as high, and this picture has %2% "
            "x %3% pixels.",
            path, width, height));
    source.rewind();
    source.amongPixels = true;
    const std::unique_ptr<float, decltype(&stbi_image_free)> pixels(
        stbi_loadf_from_callbacks(&callbacks, &source, &width, &height, &channels, 3), &stbi_image_free);
    if (!pixels && !source.endedEarly)
        fail(localizedFormat("PanoramaDamaged", "\"%1%\" can't be an environment: it is damaged (%2%).", path,
                             Vs::Strings::widen(stbi_failure_reason())));
    if (!pixels || source.endedEarly)
        fail(localizedFormat("PanoramaCut", "\"%1%\" can't be an environment: the file ends too early.",
                             path));
    picture.width = width;
    picture.height = height;
    picture.channels.assign(pixels.get(), pixels.get() + 3 * size_t(width) * size_t(height));
    // Exponents of damaged files give numbers that nothing can be computed with.
    for (float& channel : picture.channels)
        channel = std::isfinite(channel) ? std::clamp(channel, 0.0f, 1e9f) : 0.0f;
}
