// Makes the small pictures of models that file managers show.
//
//     quillet-thumbnailer FILE PICTURE SIDE
//
// FILE is a document or a model of a foreign format; PICTURE becomes a PNG file with at most SIDE pixels on
// its longer side. File managers run this in a cell without a display, a home and a network, once for each
// file of a folder. So the picture that a document has of itself is taken out of it by little more than two
// libraries; what was drawn of a foreign file before lies in the cache; and only for the rest the program
// itself is started. Ends with 0 and a picture, or with 1 and the cause.

#include "Server/DataModel/Native/ZipReader.h"
#include "Server/DataModel/PictureName.h"
#include "Server/Thumbnailer/Drawing.h"
#include "Server/Thumbnailer/Png.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int kFailed = 1, kUsage = 2;
constexpr uint64_t kMostPicture = uint64_t(4) << 20;
/// A larger foreign file isn't drawn only because somebody looks at its folder.
constexpr off_t kMostForeign = off_t(128) << 20;
constexpr uint32_t kKeptSide = 256, kLargestSide = 1024;
/// As every document begins.
constexpr char kPackage[] = "PK\003\004";
constexpr char kType[] = "mimetypeapplication/vnd.quillet.document";
constexpr size_t kTypeOffset = 30;

class OpenFile
{
public:
    explicit OpenFile(const std::string& path)
        : m_descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {
        if (m_descriptor < 0 || fstat(m_descriptor, &m_info) != 0)
            throw std::runtime_error(std::strerror(errno));
        if (!S_ISREG(m_info.st_mode))
            throw std::runtime_error("not an ordinary file");
    }
    ~OpenFile() { close(m_descriptor); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return m_descriptor; }
    const struct stat& info() const { return m_info; }
    bool isDocument() const
    {
        char head[kTypeOffset + sizeof kType];
        const ssize_t got = pread(m_descriptor, head, sizeof head - 1, 0);
        return got == static_cast<ssize_t>(sizeof head - 1) &&
               std::memcmp(head, kPackage, sizeof kPackage - 1) == 0 &&
               std::memcmp(head + kTypeOffset, kType, sizeof kType - 1) == 0;
    }

private:
    int m_descriptor;
    struct stat m_info = {};
};

std::string contentOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The picture that a document has of itself.
std::string pictureIn(const OpenFile& document)
{
    const std::unique_ptr<Vs::Native::ZipReader> zip(
        quilletReadZipFile(document.descriptor(), static_cast<size_t>(document.info().st_size)));
    constexpr const char* kName = "thumbnail.png";
    if (!zip->has(kName) || zip->size(kName) > kMostPicture)
        throw std::runtime_error("the document has no picture");
    std::string bytes;
    zip->read(kName, [&](const char* data, size_t size) { bytes.append(data, size); });
    return bytes;
}

/// Empty without a cache.
fs::path cachedPlace(const std::string& path, const OpenFile& file)
{
    const char* const cache = std::getenv("XDG_CACHE_HOME");
    const char* const home = std::getenv("HOME");
    fs::path folder =
        cache && *cache == '/' ? fs::path(cache) : fs::path(home && *home == '/' ? home : "") / ".cache";
    folder = folder / "quillet" / Vs::kPictureFolder;
    std::error_code error;
    if (!folder.is_absolute() || !fs::is_directory(folder, error))
        return {};
    return folder / Vs::pictureName(fs::absolute(path, error).lexically_normal().string(),
                                    file.info().st_mtime, static_cast<uint64_t>(file.info().st_size));
}

/// A file beside the picture, which goes again.
class Scratch
{
public:
    explicit Scratch(const std::string& picture) : m_path(picture + ".XXXXXX")
    {
        const int descriptor = mkstemp(m_path.data());
        if (descriptor < 0)
            throw std::runtime_error(std::string("nothing can be written beside the picture: ") +
                                     std::strerror(errno));
        close(descriptor);
    }
    ~Scratch() { unlink(m_path.c_str()); }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

/// For this program and for the one that draws, the next time. Where it can't be kept, it is drawn again.
void keep(const std::string& bytes, const fs::path& place)
{
    if (place.empty())
        return;
    try {
        const Scratch scratch(place.string());
        std::ofstream stream(scratch.path(), std::ios::binary);
        if (stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
            fs::rename(scratch.path(), place);
    } catch (const std::exception&) {
    }
}

std::string pictureOf(const std::string& path, const OpenFile& file, const std::string& picture,
                      uint32_t side)
{
    if (file.isDocument())
        return pictureIn(file);
    const fs::path place = side <= kKeptSide ? cachedPlace(path, file) : fs::path();
    std::error_code error;
    if (const auto size = fs::file_size(place, error); !error && size <= kMostPicture)
        return contentOf(place);
    if (file.info().st_size > kMostForeign)
        throw std::runtime_error("too large to be drawn for a list of files");
    const Scratch scratch(picture);
    Thumbnailer::draw(path, std::max(side, kKeptSide), scratch.path());
    std::string bytes = contentOf(scratch.path());
    keep(bytes, place);
    return bytes;
}

uint32_t sideOf(const char* text)
{
    uint32_t side = 0;
    const char* const end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, side);
    return error == std::errc() && rest == end && side <= kLargestSide ? side : 0;
}

} // namespace

int main(int count, char** arguments)
{
    const uint32_t side = count == 4 ? sideOf(arguments[3]) : 0;
    if (side == 0) {
        std::fprintf(stderr, "usage: quillet-thumbnailer FILE PICTURE SIDE\n");
        return kUsage;
    }
    const std::string path = arguments[1], picture = arguments[2];
    try {
        const OpenFile file(path);
        const std::string bytes = pictureOf(path, file, picture, side);
        Thumbnailer::writePng(Thumbnailer::scaledDown(Thumbnailer::readPng(bytes), side), picture);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "quillet-thumbnailer: %s: %s\n", path.c_str(), fault.what());
        return kFailed;
    }
    return 0;
}
