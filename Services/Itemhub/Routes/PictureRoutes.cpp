#include "Services/Itemhub/Routes/PictureRoutes.h"

#include "Services/Itemhub/Blobs/Thumbnail.h"
#include "Services/Itemhub/Store/Attachments.h"

namespace Itemhub::Routes {

namespace {

/// Per item; further attachments only show their own pictures.
constexpr qint64 kMostAttachments = 4;

std::string pictureOf(Call& call, const Store::Version& version)
{
    const std::string sha256 = version.sha256.toStdString();
    Blobs::Descriptor content = call.service.blobs.open(sha256);
    return content.isValid() ? Blobs::thumbnailOf(std::move(content), version.size) : std::string();
}

/// A content never changes, and neither does its picture; the picture of an item may.
Http::Response answerWith(const Call& call, const Store::Version& version, const char* keep,
                          const std::string& picture)
{
    Http::Response response;
    response.type = "image/png";
    response.headers = {{"ETag", '"' + version.sha256.toStdString() + '"'}, {"Cache-Control", keep}};
    if (call.request.header("If-None-Match") == response.headers.front().second)
        response.status = 304;
    else
        response.body = picture;
    return response;
}

Http::Problem noPicture()
{
    return Http::Problem(404, "no_picture", "The item has no picture.");
}

} // namespace

Http::Response showVersion(Call& call)
{
    const auto version = Store::findVersion(call.store, call.subject.attachment, call.id("version"));
    const std::string picture = version ? pictureOf(call, *version) : std::string();
    if (picture.empty())
        throw noPicture();
    return answerWith(call, *version, "private, max-age=604800, immutable", picture);
}

Http::Response showItem(Call& call)
{
    for (const Store::Attachment& attachment :
         Store::attachmentsOf(call.store, call.subject.item, {.after = 0, .limit = kMostAttachments})) {
        const auto version = Store::findVersion(call.store, attachment.id, attachment.latest);
        if (const std::string picture = version ? pictureOf(call, *version) : std::string(); !picture.empty())
            return answerWith(call, *version, "private, no-cache", picture);
    }
    throw noPicture();
}

} // namespace Itemhub::Routes
