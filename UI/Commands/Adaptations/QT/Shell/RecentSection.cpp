#include "UI/Commands/Adaptations/QT/Shell/RecentSection.h"

#include "Server/Base/PathInfo.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePreview.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>

namespace Vu::Commands {
namespace {

const std::wstring kOpenFromCloud = L"CloudOpenDocumentCommand";

QString text(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

void open(const std::wstring& path)
{
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CommandContext::pathArgumentName(), path);
    // What is kept on the drive comes from there, where there may be a newer version.
    const bool isCloud =
        !Vs::MeshportAuth::globalInstance()->cloudDisabled() && Vs::PathInfo::isPathInCloudCache(path);
    const std::wstring& command = isCloud ? kOpenFromCloud : OpenDocumentCmdDef::info()->key();
    // Behind the click: the tile goes when the document comes.
    if (CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(command))
        ReplacingDocument::executeLater(definition, context);
}

/// The folder as its owner would write it.
QString folderOf(const QFileInfo& file)
{
    const QString folder = QDir::toNativeSeparators(file.path());
    const QString home = QDir::homePath();
    return folder == home || folder.startsWith(home + QLatin1Char('/'))
               ? QLatin1Char('~') + folder.mid(home.size())
               : folder;
}

QLabel* hint(QWidget* parent)
{
    auto* label = PlainText::label(
        parent,
        text("HomeEmpty",
             "Nothing has been worked on here yet. Make a new document, open a model, or drop "
             "files anywhere on this window: STEP, IGES, BREP, STL, OBJ, glTF and VRML are read as well."));
    label->setObjectName(QStringLiteral("homeHint"));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    constexpr int kHintHeight = 140;
    label->setMinimumHeight(kHintHeight);
    return label;
}

} // namespace

RecentSection::RecentSection(QWidget* parent)
    : TileSection(text("HomeRecentDocuments", "Recent documents"), parent)
{
    setObjectName(QStringLiteral("recentDocuments"));
    fill();
    RecentDocumentMgr::get()->subscribe(this);
    WorkspaceEventSource::get()->subscribe(this);
}

RecentSection::~RecentSection()
{
    RecentDocumentMgr::get()->unsubscribe(this);
    WorkspaceEventSource::get()->unsubscribe(this);
}

void RecentSection::fill()
{
    const int before = focused();
    clear();
    m_paths.clear();
    const std::vector<RecentDocument*> documents =
        RecentDocumentMgr::get()->newestFirst(RecentDocumentMgr::kMaximum);
    placeholder(documents.empty() ? hint(this) : nullptr);
    for (const RecentDocument* document : documents) {
        const std::wstring path = document->path();
        const QFileInfo file(QString::fromStdWString(path));
        auto* tile = new Tile(file.completeBaseName(), iconOfFile(path), this);
        const auto place = FilePlace::of(path);
        tile->place(place ? QString::fromStdWString(place->folder) : folderOf(file));
        if (place && place->mark)
            tile->mark(iconOf(place->mark));
        PlainText::setTooltip(tile, place ? QString::fromStdWString(place->place)
                                          : QDir::toNativeSeparators(file.filePath()));
        connect(tile, &Tile::clicked, this, [path] { open(path); });
        tile->onRemove([path] { RecentDocumentMgr::get()->remove(path); }, iconOf(Resources::DeleteMRU()),
                       text("HomeRemove", "Remove from this list"));
        m_paths.push_back(path);
        add(tile);
    }
    focus(before);
    lookAgain();
}

void RecentSection::lookAgain()
{
    for (size_t i = 0; i < m_paths.size(); ++i) {
        Tile* tile = tiles()[i];
        const bool isCloud = Vs::PathInfo::isPathInCloudCache(m_paths[i]);
        lookAtLater(m_paths[i], tile, [tile, isCloud](const FilePreview& file) {
            // Of what is on the drive, the copy here may have been cleared.
            tile->missing(!file.exists && !isCloud);
            tile->note(file.exists ? dayText(file.modified, QDateTime::currentDateTime())
                       : isCloud   ? text("HomeOnDrive", "On the drive")
                                   : text("HomeMissing", "This file is no longer there"));
            tile->picture(file.picture);
        });
    }
}

} // namespace Vu::Commands
