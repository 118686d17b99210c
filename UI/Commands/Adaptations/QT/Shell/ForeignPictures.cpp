#include "UI/Commands/Adaptations/QT/Shell/ForeignPictures.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Session/RecentPaths.h"
#include "UI/Base/Session/Thumbnail.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePictures.h"
#include "UI/Commands/Adaptations/QT/Shell/UnjoinedWork.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

#include <chrono>

namespace Vu::Commands {
namespace {

constexpr uint32_t kSide = 256;
// A user who has just opened a file looks at it first.
constexpr std::chrono::milliseconds kAfter(1500);

bool isAsRead(const Vs::Document& document)
{
    return document.path().empty() && !document.importedFrom().empty() && !document.isDirty(false);
}

} // namespace

void ForeignPictures::begin()
{
    static QPointer<ForeignPictures> pictures;
    if (!pictures)
        pictures = new ForeignPictures;
}

ForeignPictures::ForeignPictures() : QObject(QCoreApplication::instance())
{
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
}

void ForeignPictures::documentOpened(Vs::DocumentEvent* event)
{
    const std::wstring file = event->document()->importedFrom();
    if (!file.empty())
        QTimer::singleShot(kAfter, this, [file] { draw(file); });
}

void ForeignPictures::draw(const std::wstring& file)
{
    Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < documents->documents(); ++i) {
        const Vs::Document& document = *documents->document(i);
        if (document.importedFrom() != file || !isAsRead(document) || !document.activeAsset())
            continue;
        if (FilePictures::of(file, FilePictures::folder()).empty())
            drawn(*document.activeAsset(), thumbnailOf(document.activeAsset(), kSide));
        return;
    }
}

void ForeignPictures::drawn(const Vs::Asset& asset, const std::string& picture)
{
    const Vs::Document& document = *asset.document();
    if (picture.empty() || !isAsRead(document))
        return;
    std::vector<std::wstring> listed;
    for (const RecentPaths::Entry& entry : RecentPaths::files().entries())
        listed.push_back(entry.path);
    UnjoinedWork::start([file = document.importedFrom(), picture, listed,
                         folder = FilePictures::folder()]() -> UnjoinedWork::Then {
        FilePictures::keep(file, picture, folder);
        FilePictures::keepOnly(listed, folder);
        return {};
    });
}

} // namespace Vu::Commands
