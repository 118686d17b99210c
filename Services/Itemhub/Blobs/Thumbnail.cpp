#include "Services/Itemhub/Blobs/Thumbnail.h"

#include <algorithm>
#include <memory>
#include <sys/types.h>
#include <unistd.h>
#include <zip.h>

namespace Itemhub::Blobs {

namespace {

constexpr const char* kName = "thumbnail.png";
constexpr zip_uint64_t kMostPicture = 4U << 20;
/// Applies to everything that is read, including the package's list of entries, which its author can make as
/// long as he likes.
constexpr zip_uint64_t kMostRead = 16U << 20;

/// What the library reads from.
struct Source
{
    Descriptor content;
    int64_t size = 0, offset = 0;
    zip_uint64_t read = 0;
    zip_error_t error{};

    zip_int64_t fail(int code)
    {
        zip_error_set(&error, code, 0);
        return -1;
    }

    zip_int64_t readInto(void* data, zip_uint64_t length)
    {
        read += length;
        if (read > kMostRead)
            return fail(ZIP_ER_MEMORY);
        const ssize_t got = ::pread(content.get(), data, length, offset);
        if (got < 0)
            return fail(ZIP_ER_READ);
        offset += got;
        return got;
    }

    zip_int64_t tell(zip_stat_t* stat) const
    {
        zip_stat_init(stat);
        stat->valid = ZIP_STAT_SIZE;
        stat->size = static_cast<zip_uint64_t>(size);
        return sizeof *stat;
    }
};

zip_int64_t handle(void* given, void* data, zip_uint64_t length, zip_source_cmd_t command)
{
    auto& source = *static_cast<Source*>(given);
    switch (command) {
    case ZIP_SOURCE_OPEN:
        source.offset = 0;
        return 0;
    case ZIP_SOURCE_READ:
        return source.readInto(data, length);
    case ZIP_SOURCE_SEEK: {
        const zip_int64_t place = zip_source_seek_compute_offset(static_cast<zip_uint64_t>(source.offset),
                                                                 static_cast<zip_uint64_t>(source.size), data,
                                                                 length, &source.error);
        if (place < 0)
            return -1;
        source.offset = place;
        return 0;
    }
    case ZIP_SOURCE_TELL:
        return source.offset;
    case ZIP_SOURCE_STAT:
        return source.tell(static_cast<zip_stat_t*>(data));
    case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&source.error, data, length);
    case ZIP_SOURCE_CLOSE:
    case ZIP_SOURCE_FREE:
        return 0;
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE,
                                              ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE,
                                              ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL, ZIP_SOURCE_SUPPORTS, -1);
    default:
        return source.fail(ZIP_ER_OPNOTSUPP);
    }
}

struct Discard
{
    void operator()(zip_t* archive) const { zip_discard(archive); }
};

std::string entryOf(zip_t* archive)
{
    zip_stat_t stat;
    if (zip_stat(archive, kName, 0, &stat) != 0 || !(stat.valid & ZIP_STAT_SIZE) || stat.size > kMostPicture)
        return {};
    zip_file_t* const file = zip_fopen(archive, kName, 0);
    if (!file)
        return {};
    std::string bytes(stat.size, '\0');
    char beyond = 0;
    // The library verifies the checksum only at the end of the entry.
    const bool whole = zip_fread(file, bytes.data(), stat.size) == static_cast<zip_int64_t>(stat.size) &&
                       zip_fread(file, &beyond, 1) == 0;
    zip_fclose(file);
    return whole ? bytes : std::string();
}

} // namespace

std::string thumbnailOf(Descriptor content, int64_t size)
{
    Source source;
    source.content = std::move(content);
    source.size = size;
    zip_source_t* const library = zip_source_function_create(handle, &source, nullptr);
    if (!library)
        return {};
    const std::unique_ptr<zip_t, Discard> archive(zip_open_from_source(library, ZIP_RDONLY, nullptr));
    if (!archive) {
        zip_source_free(library);
        return {};
    }
    std::string picture = entryOf(archive.get());
    // Anything else of that name isn't served to browsers as a picture.
    return picture.starts_with("\x89PNG\r\n\x1a\n") ? picture : std::string();
}

} // namespace Itemhub::Blobs
