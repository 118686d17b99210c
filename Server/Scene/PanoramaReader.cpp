#include "Server/Scene/PanoramaReader.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem.hpp>
#include <boost/filesystem/fstream.hpp>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stb_image.h>

namespace {

namespace fs = boost::filesystem;

/// Larger panoramas would take gigabytes while they are read.
constexpr int kWidest = 8192;

/// What the reader takes from; it can't say by itself that a file ends too early.
struct Source
{
    fs::ifstream stream;
    bool endedEarly = false;

    static int read(void* user, char* data, int size)
    {
        auto& source = *static_cast<Source*>(user);
        source.stream.read(data, size);
        const auto count = int(source.stream.gcount());
        source.endedEarly = source.endedEarly || count == 0;
        return count;
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

[[noreturn]] void fail(const std::wstring& path, const std::wstring& cause)
{
    throw Vs::Exception(L"\"" + path + L"\" can't be an environment: " + cause + L".");
}

} // namespace

extern "C" void quilletReadPanorama(const std::wstring& path, Vs::Scene::Panorama::Picture& picture)
{
    Source source;
    boost::system::error_code error;
    if (!fs::is_regular_file(path, error))
        fail(path, L"there is no such file");
    source.stream.open(fs::path(path), std::ios::binary);
    if (!source.stream)
        fail(path, L"the file can't be read");
    const stbi_io_callbacks callbacks{&Source::read, &Source::skip, &Source::atEnd};
    if (!stbi_is_hdr_from_callbacks(&callbacks, &source))
        fail(path, L"it isn't a Radiance picture (.hdr)");
    source.rewind();
    int width = 0, height = 0, channels = 0;
    if (!stbi_info_from_callbacks(&callbacks, &source, &width, &height, &channels) || width <= 0 ||
        height <= 0)
        fail(path, L"its header is damaged");
    const std::wstring size = std::to_wstring(width) + L" x " + std::to_wstring(height);
    if (width > kWidest || height > kWidest)
        fail(path, L"with " + size + L" pixels it is too large; up to " + std::to_wstring(kWidest) +
                       L" are possible in each direction");
    if (width < 2 || std::abs(width - 2 * height) > 1)
        fail(path, L"a panorama is twice as wide as high, and this picture has " + size + L" pixels");
    source.rewind();
    const std::unique_ptr<float, decltype(&stbi_image_free)> pixels(
        stbi_loadf_from_callbacks(&callbacks, &source, &width, &height, &channels, 3), &stbi_image_free);
    if (!pixels)
        fail(path, source.endedEarly ? std::wstring(L"the file ends too early")
                                     : L"it is damaged (" + Vs::Strings::widen(stbi_failure_reason()) + L")");
    if (source.endedEarly)
        fail(path, L"the file ends too early");
    picture.width = width;
    picture.height = height;
    picture.channels.assign(pixels.get(), pixels.get() + 3 * size_t(width) * size_t(height));
    // Exponents of damaged files give numbers that nothing can be computed with.
    for (float& channel : picture.channels)
        channel = std::isfinite(channel) ? std::clamp(channel, 0.0f, 1e9f) : 0.0f;
}
