#include "Server/Scene/PngWriter.h"

#include "Server/Scene/OffscreenRenderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <future>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>
#include <zlib.h>

namespace Vs::Scene {

namespace {

using Bytes = std::vector<uint8_t>;

/// How many bytes of a picture are compressed apart from the others. Each part begins without a history,
/// which makes the file larger by less than a hundredth.
constexpr size_t kStripBytes = size_t(1) << 19;
/// Plain faces and smooth shades need no more; the next level takes twice the time for a twentieth less.
constexpr int kLevel = 3;
/// A row is told as the differences to its left neighbours, as in the format's table of filters.
constexpr uint8_t kSubFilter = 1;

void addNumber(Bytes& to, uint32_t number)
{
    for (const int shift : {24, 16, 8, 0})
        to.push_back(uint8_t(number >> shift));
}

/// A picture in the bytes of a PNG file's rows.
class Rows
{
public:
    Rows(const Image& image, bool keepsTransparency) : m_image(image), m_channels(keepsTransparency ? 4 : 3)
    {
    }

    size_t length() const { return 1 + size_t(m_image.width) * m_channels; }
    uint32_t stripRows() const
    {
        return uint32_t(std::clamp<size_t>(kStripBytes / length(), 1, std::max(m_image.height, 1U)));
    }

    Bytes filtered(uint32_t first, uint32_t end) const
    {
        Bytes rows(size_t(end - first) * length());
        for (uint32_t y = first; y < end; ++y)
            m_channels == 4 ? filter<4>(y, &rows[size_t(y - first) * length()])
                            : filter<3>(y, &rows[size_t(y - first) * length()]);
        return rows;
    }

private:
    template <size_t channels>
    void filter(uint32_t y, uint8_t* row) const
    {
        const uint8_t* pixel = m_image.pixel(0, y);
        *row++ = kSubFilter;
        std::copy_n(pixel, channels, row);
        for (uint32_t x = 1; x < m_image.width; ++x) {
            row += channels;
            pixel += 4;
            for (size_t channel = 0; channel < channels; ++channel)
                row[channel] = uint8_t(pixel[channel] - pixel[ptrdiff_t(channel) - 4]);
        }
    }

    const Image& m_image;
    size_t m_channels;
};

struct Strip
{
    Bytes compressed;
    uLong sum = 0; ///< Of the bytes that were compressed.
    size_t length = 0;
};

/// Parts end at a byte, so that they can be put one after the other.
Strip compress(const Rows& rows, uint32_t first, uint32_t end, bool last)
{
    Bytes plain = rows.filtered(first, end);
    Strip strip{{}, adler32(adler32(0, nullptr, 0), plain.data(), uInt(plain.size())), plain.size()};
    z_stream stream{};
    constexpr int kMostMemory = 9;
    // Negative: without the head and the sum of the whole.
    if (deflateInit2(&stream, kLevel, Z_DEFLATED, -MAX_WBITS, kMostMemory, Z_FILTERED) != Z_OK)
        throw std::bad_alloc();
    constexpr size_t kOfFlush = 16;
    strip.compressed.resize(deflateBound(&stream, uLong(plain.size())) + kOfFlush);
    stream.next_in = plain.data();
    stream.avail_in = uInt(plain.size());
    stream.next_out = strip.compressed.data();
    stream.avail_out = uInt(strip.compressed.size());
    deflate(&stream, last ? Z_FINISH : Z_SYNC_FLUSH);
    strip.compressed.resize(stream.total_out);
    deflateEnd(&stream);
    return strip;
}

/// At once, in as many threads; those that the system refuses are done here.
std::vector<Strip> compressAll(const Rows& rows, const std::vector<std::pair<uint32_t, uint32_t>>& parts,
                               uint32_t height)
{
    std::vector<std::future<Strip>> begun;
    for (const auto& [first, end] : parts) {
        const auto work = [&rows, first = first, end = end, height] {
            return compress(rows, first, end, end == height);
        };
        const bool own = begun.size() + 1 == parts.size();
        try {
            begun.push_back(std::async(own ? std::launch::deferred : std::launch::async, work));
        } catch (const std::system_error&) {
            begun.push_back(std::async(std::launch::deferred, work));
        }
    }
    std::vector<Strip> strips;
    if (!begun.empty())
        begun.back().wait();
    for (std::future<Strip>& each : begun)
        strips.push_back(each.get());
    return strips;
}

class Chunks
{
public:
    explicit Chunks(const PngReceiver& receiver) : m_receiver(receiver) {}

    bool begin() const
    {
        constexpr std::array<char, 8> kSignature{'\x89', 'P', 'N', 'G', '\r', '\n', '\x1a', '\n'};
        return m_receiver(kSignature.data(), kSignature.size());
    }

    bool add(const char (&type)[5], const Bytes& content) const
    {
        Bytes head, end;
        addNumber(head, uint32_t(content.size()));
        head.insert(head.end(), type, type + 4);
        const uLong sum = crc32(0, head.data() + 4, 4);
        addNumber(end, uint32_t(content.empty() ? sum : crc32(sum, content.data(), uInt(content.size()))));
        return send(head) && send(content) && send(end);
    }

private:
    bool send(const Bytes& bytes) const
    {
        return bytes.empty() || m_receiver(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }

    const PngReceiver& m_receiver;
};

bool addHead(const Chunks& chunks, const Image& image, const PngOptions& options)
{
    Bytes head;
    addNumber(head, image.width);
    addNumber(head, image.height);
    constexpr uint8_t kBits = 8, kColours = 2, kColoursAndOpacity = 6;
    for (const uint8_t each : {kBits, options.keepsTransparency ? kColoursAndOpacity : kColours, uint8_t(0),
                               uint8_t(0), uint8_t(0)})
        head.push_back(each);
    if (!chunks.begin() || !chunks.add("IHDR", head))
        return false;
    if (options.dotsPerInch <= 0)
        return true;
    constexpr double kInchesPerMetre = 1000 / 25.4;
    const auto dotsPerMetre = uint32_t(std::lround(options.dotsPerInch * kInchesPerMetre));
    Bytes size;
    addNumber(size, dotsPerMetre);
    addNumber(size, dotsPerMetre);
    size.push_back(1); // metres
    return chunks.add("pHYs", size);
}

} // namespace

bool writePng(const Image& image, const PngOptions& options, const PngReceiver& receiver)
{
    const Chunks chunks(receiver);
    if (!addHead(chunks, image, options))
        return false;
    const Rows rows(image, options.keepsTransparency);
    const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
    // Equal shares for all of them, of a small picture as well.
    const uint32_t share = (image.height + processors - 1) / processors;
    const uint32_t length = std::clamp(share, 1U, rows.stripRows());
    uLong sum = adler32(0, nullptr, 0);
    bool first = true;
    for (uint32_t y = 0; y < image.height;) {
        std::vector<std::pair<uint32_t, uint32_t>> parts;
        for (; y < image.height && parts.size() < processors; y += parts.back().second - parts.back().first)
            parts.emplace_back(y, std::min(image.height, y + length));
        for (Strip& strip : compressAll(rows, parts, image.height)) {
            if (std::exchange(first, false))
                strip.compressed.insert(strip.compressed.begin(), {0x78, 0x5e}); // the head of a stream
            sum = adler32_combine(sum, strip.sum, z_off_t(strip.length));
            if (!chunks.add("IDAT", strip.compressed))
                return false;
        }
    }
    Bytes end;
    addNumber(end, uint32_t(sum));
    return chunks.add("IDAT", end) && chunks.add("IEND", {});
}

std::string pngOf(const Image& image)
{
    std::string bytes;
    const bool whole = writePng(image, {}, [&](const char* part, size_t count) {
        bytes.append(part, count);
        return true;
    });
    return whole ? bytes : std::string();
}

} // namespace Vs::Scene
