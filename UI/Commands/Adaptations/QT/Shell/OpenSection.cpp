#include "UI/Commands/Adaptations/QT/Shell/OpenSection.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/Thumbnail.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Commands/Adaptations/QT/Shell/ForeignPictures.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ShellCmds.h"

#include <QEvent>
#include <QTimer>

#include <algorithm>

namespace Vu::Commands {
namespace {

constexpr uint32_t kPictureSide = 256;

/// After the click, which came from a tile that the command may remove.
void run(const std::wstring& command, const Vs::UniqueString* argument, Vs::SerializableObject* object)
{
    CommandContext context = CommandContext::activeContext();
    context.addArgument(argument, object);
    CommandMgr::get()->executeLater(command, context);
}

QString nameOf(const Vs::Asset& asset)
{
    const Vs::Document* document = asset.document();
    std::wstring name = document->displayName();
    if (document->assets() > 1)
        name += L" \u2013 " + asset.name();
    return QString::fromStdWString(name);
}

} // namespace

OpenSection::OpenSection(QWidget* parent) : TileSection(told("HomeOpenDocuments", "Open documents"), parent)
{
    setObjectName(QStringLiteral("openDocuments"));
    parent->installEventFilter(this);
    fill();
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(DocumentRemarkSource::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
}

void OpenSection::paintEvent(QPaintEvent* event)
{
    TileSection::paintEvent(event);
    if (m_painted)
        return;
    // The first picture rendered without a window starts the graphics, and nobody should have to look at an
    // empty page during that.
    m_painted = true;
    QTimer::singleShot(0, this, [this] { drawNext(); });
}

/// Tracks whether the page is shown, since the section gets no event for that while it is hidden for lack of
/// tiles.
bool OpenSection::eventFilter(QObject* page, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        m_undrawn.merge(m_drawnEmpty);
        m_drawnEmpty.clear();
        if (m_stale || !m_undrawn.empty())
            fillSoon();
    }
    return TileSection::eventFilter(page, event);
}

void OpenSection::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    if (AssetSession* session = SessionMgr::get()->getOpenAssetSession(event->asset()))
        m_undrawn.insert(session);
    fillSoon();
}

void OpenSection::sessionPostActivateForAsset(SessionEvent* event)
{
    // By the next time the user may be looking from another viewpoint.
    if (event->assetSession())
        m_undrawn.insert(event->assetSession());
    fillSoon();
}

void OpenSection::sessionClosed(SessionEvent* event)
{
    m_undrawn.erase(event->assetSession());
    m_drawnEmpty.erase(event->assetSession());
    if (const auto found = m_tiles.find(event->assetSession()); found != m_tiles.end()) {
        std::vector<Tile*> left = tiles();
        std::erase(left, found->second);
        arrange(left);
        found->second->deleteLater();
        m_tiles.erase(found);
    }
    fillSoon();
}

void OpenSection::fillSoon()
{
    // While the page is hidden, a step of work must not pay for a look at all open documents.
    m_stale = !parentWidget()->isVisible();
    if (m_filling || m_stale)
        return;
    m_filling = true;
    QTimer::singleShot(0, this, [this] {
        m_filling = false;
        fill();
        if (m_painted)
            drawNext();
    });
}

void OpenSection::fill()
{
    const Workspace* workspace = WorkspaceMgr::activeWorkspace();
    const AssetShell* shell = workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
    std::map<AssetSession*, Tile*> kept;
    std::vector<Tile*> shown;
    for (AssetSession* session : shell ? shell->assetSessions() : std::vector<AssetSession*>()) {
        const auto known = m_tiles.find(session);
        Tile* tile = known == m_tiles.end() ? makeTile(*session) : known->second;
        describe(*tile, *session);
        kept.emplace(session, tile);
        shown.push_back(tile);
    }
    for (const auto& [session, tile] : m_tiles)
        if (!kept.contains(session))
            tile->deleteLater();
    m_tiles = std::move(kept);
    arrange(shown);
    setVisible(!shown.empty());
}

Tile* OpenSection::makeTile(AssetSession& session)
{
    m_undrawn.insert(&session);
    const Vs::Document* document = session.documentSession()->document();
    auto* tile =
        new Tile(nameOf(*session.asset()), iconOfDocumentType(document->documentType()->identifier()), this);
    // A session closed between the press and the command must not be accessed.
    const Vs::Asset* asset = session.asset();
    connect(tile, &Tile::clicked, this, [asset] {
        if (AssetSession* open = SessionMgr::get()->getOpenAssetSession(asset))
            run(AssetShellCmdDef::info()->key(), AssetShellCmdDef::assetSessionArgumentName(), open);
    });
    tile->onRemove(
        [asset] {
            if (const AssetSession* open = SessionMgr::get()->getOpenAssetSession(asset))
                run(CloseDocumentCmdDef::info()->key(), CloseDocumentCmdDef::documentSessionArgumentName(),
                    open->documentSession());
        },
        iconOf(Resources::Close()), told("HomeCloseDocument", "Close this document"));
    return tile;
}

void OpenSection::describe(Tile& tile, const AssetSession& session)
{
    const Vs::Document* document = session.documentSession()->document();
    tile.setText(nameOf(*session.asset()));
    tile.setAccessibleName(tile.text());
    const std::wstring path = document->path().empty() ? document->importedFrom() : document->path();
    tile.place(path.empty() ? told("HomeNotSaved", "Not saved yet")
                            : QString::fromStdWString(FilePlace::shown(path)));
    tile.file(path);
    const auto place = FilePlace::of(path);
    tile.mark(place && place->mark ? iconOf(place->mark) : QIcon());
    const QString remark = QString::fromStdWString(DocumentRemark::of(*document));
    const QString changed = document->isDirty(false) ? told("HomeChanged", "Changed") : QString();
    tile.note(changed.isEmpty() || remark.isEmpty() ? changed + remark
                                                    : changed + QStringLiteral(", ") + remark);
}

void OpenSection::drawNext()
{
    if (m_drawing)
        return;
    const auto next =
        std::ranges::find_if(m_tiles, [this](const auto& each) { return m_undrawn.contains(each.first); });
    if (next == m_tiles.end() || !parentWidget()->isVisible())
        return;
    const auto& [session, tile] = *next;
    m_undrawn.erase(session);
    const std::string png = thumbnailOf(session->asset(), kPictureSide);
    if (png.empty())
        m_drawnEmpty.insert(session);
    tile->picture(pngFromBytes(png));
    ForeignPictures::drawn(*session->asset(), png);
    m_drawing = true;
    QTimer::singleShot(0, this, [this] {
        m_drawing = false;
        drawNext();
    });
}

} // namespace Vu::Commands
