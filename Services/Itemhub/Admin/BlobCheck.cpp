#include "Services/Itemhub/Admin/BlobCheck.h"

#include "Services/Itemhub/Blobs/Digest.h"
#include "Services/Itemhub/Store/Attachments.h"

#include <cstdio>
#include <stdexcept>

namespace Itemhub::Admin {

namespace {

/// What is wrong with a content; empty if it is intact.
std::string faultOf(const Blobs::BlobStore& blobs, const Store::Content& content)
{
    const std::string sha256 = content.sha256.toStdString();
    const Blobs::Descriptor file = blobs.open(sha256);
    if (!file.isValid())
        return "is missing";
    Blobs::Digest digest;
    if (blobs.size(sha256) != content.size ||
        !Blobs::addFile(digest, file.get(), 0, static_cast<uint64_t>(content.size)) ||
        digest.hexResult() != sha256)
        return "is damaged";
    return {};
}

} // namespace

void checkBlobs(Routes::Service& service, const QStringList&)
{
    int good = 0, bad = 0;
    Store::eachContent(service.database.connection(), [&](const Store::Content& content) {
        const std::string fault = faultOf(service.blobs, content);
        fault.empty() ? ++good : ++bad;
        if (!fault.empty())
            std::printf("%s %s: version %lld of \"%s\"\n", content.sha256.toUtf8().constData(), fault.c_str(),
                        static_cast<long long>(content.version), content.attachment.toUtf8().constData());
    });
    std::printf("%d contents are as they should be\n", good);
    if (bad > 0)
        throw std::runtime_error(std::to_string(bad) + " contents are missing or damaged.");
}

void cleanBlobs(Routes::Service& service, const QStringList&)
{
    constexpr int64_t kDay = 24L * 3600;
    int removed = 0;
    Store::Connection& store = service.database.connection();
    service.blobs.each([&](const std::string& sha256, int64_t age) {
        const QString hash = QString::fromStdString(sha256);
        if (age < kDay)
            return;
        // A version that claims it meanwhile waits for this transaction, and then finds it gone.
        Store::Transaction change(store);
        if (Store::isReferredTo(store, hash))
            return;
        Store::removeBlob(store, hash);
        service.blobs.remove(sha256);
        change.commit();
        ++removed;
    });
    std::printf("%d contents were removed\n", removed);
}

} // namespace Itemhub::Admin
