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
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Documents/CloseDocumentCmd.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ShellCmds.h"

#include <QEvent>
#include <QTimer>

namespace Vu::Commands {
namespace {

constexpr uint32_t kPictureSide = 256;

QString text(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

/// Behind the click, which came from a tile that the command may take away.
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

OpenSection::OpenSection(QWidget* parent) : TileSection(text("HomeOpenDocuments", "Open documents"), parent)
{
    setObjectName(QStringLiteral("openDocuments"));
    parent->installEventFilter(this);
    fill();
    Vs::DocumentEventSource::get()->subscribe(this);
    DocumentRemarkSource::get()->subscribe(this);
    SessionEventSource::get()->subscribe(this);
}

OpenSection::~OpenSection()
{
    Vs::DocumentEventSource::get()->unsubscribe(this);
    DocumentRemarkSource::get()->unsubscribe(this);
    SessionEventSource::get()->unsubscribe(this);
}

void OpenSection::paintEvent(QPaintEvent* event)
{
    TileSection::paintEvent(event);
    if (m_painted)
        return;
    // The first picture that is drawn without a window brings the graphics up, for which nobody should have
    // to look at an empty page.
    m_painted = true;
    QTimer::singleShot(0, this, [this] { drawNext(0); });
}

/// Tells of the page being shown, which the section, hidden without tiles, isn't told.
bool OpenSection::eventFilter(QObject* page, QEvent* event)
{
    if (m_stale && event->type() == QEvent::Show)
        fillSoon();
    return TileSection::eventFilter(page, event);
}

void OpenSection::fillSoon()
{
    // What goes must not be asked for its picture any more.
    m_sessions.clear();
    // A step of work behind the page must not cost what all the open documents do.
    m_stale = !parentWidget()->isVisible();
    if (m_filling || m_stale)
        return;
    m_filling = true;
    QTimer::singleShot(0, this, [this] {
        m_filling = false;
        fill();
        if (m_painted)
            drawNext(0);
    });
}

void OpenSection::fill()
{
    const int before = focused();
    clear();
    m_sessions.clear();
    const Workspace* workspace = WorkspaceMgr::activeWorkspace();
    const AssetShell* shell = workspace ? findShell<AssetShell>(workspace->shellManager()) : nullptr;
    if (shell)
        m_sessions = shell->assetSessions();
    setVisible(!m_sessions.empty());
    for (AssetSession* session : m_sessions) {
        const Vs::Document* document = session->documentSession()->document();
        auto* tile = new Tile(nameOf(*session->asset()),
                              iconOfDocumentType(document->documentType()->identifier()), this);
        const std::wstring path = document->path().empty() ? document->importedFrom() : document->path();
        tile->place(path.empty() ? text("HomeNotSaved", "Not saved yet")
                                 : QString::fromStdWString(FilePlace::shown(path)));
        if (const auto place = FilePlace::of(path); place && place->mark)
            tile->mark(iconOf(place->mark));
        const QString remark = QString::fromStdWString(DocumentRemark::of(*document));
        const QString changed = document->isDirty(false) ? text("HomeChanged", "Changed") : QString();
        tile->note(changed.isEmpty() || remark.isEmpty() ? changed + remark
                                                         : changed + QStringLiteral(", ") + remark);
        // A session that went between the press and the command is not asked for anything.
        const Vs::Asset* asset = session->asset();
        connect(tile, &Tile::clicked, this, [asset] {
            if (AssetSession* open = SessionMgr::get()->getOpenAssetSession(asset))
                run(AssetShellCmdDef::info()->key(), AssetShellCmdDef::assetSessionArgumentName(), open);
        });
        tile->onRemove(
            [asset] {
                if (const AssetSession* open = SessionMgr::get()->getOpenAssetSession(asset))
                    run(CloseDocumentCmdDef::info()->key(),
                        CloseDocumentCmdDef::documentSessionArgumentName(), open->documentSession());
            },
            iconOf(Resources::Close()), text("HomeCloseDocument", "Close this document"));
        add(tile);
    }
    focus(before);
}

void OpenSection::drawNext(size_t index)
{
    if (index == 0 && m_drawing)
        return;
    m_drawing = index < m_sessions.size();
    if (!m_drawing)
        return;
    const std::string png = thumbnailOf(m_sessions[index]->asset(), kPictureSide);
    tiles()[index]->picture(pngFromBytes(png));
    QTimer::singleShot(0, this, [this, index] { drawNext(index + 1); });
}

} // namespace Vu::Commands
