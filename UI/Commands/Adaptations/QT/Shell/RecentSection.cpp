#include "UI/Commands/Adaptations/QT/Shell/RecentSection.h"

#include "Server/Base/PathInfo.h"
#include "Server/Skyvault/CloudCacheManager.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/RecentDocumentMgr.h"
#include "UI/Base/Session/ReplacingDocument.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Shell/FilePreview.h"
#include "UI/Commands/Adaptations/QT/Shell/ForeignPictures.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Adaptations/QT/Shell/Tile.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Documents/OpenDocumentCmd.h"
#include "UI/Commands/Resources.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>

#include <algorithm>

namespace Vu::Commands {
namespace {

const std::wstring kOpenFromCloud = L"CloudOpenDocumentCommand";

void open(const std::wstring& path)
{
    CommandContext context = CommandContext::activeContext();
    context.addArgument(CommandContext::pathArgumentName(), path);
    // Files stored on the drive are opened from there, since there may be a newer version.
    const bool isCloud =
        !Vs::MeshportAuth::globalInstance()->cloudDisabled() && Vs::PathInfo::isNamedInCloudCache(path);
    const std::wstring& command = isCloud ? kOpenFromCloud : OpenDocumentCmdDef::info()->key();
    // After the click: the tile is removed when the document opens.
    if (CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(command))
        ReplacingDocument::executeLater(definition, context);
}

/// Each list only learns of the other's removals when told here.
void forget(const std::wstring& path)
{
    RecentDocumentMgr::get()->remove(path);
    RecentPaths::files().remove(path);
}

/// A file known only to the documents' list is added together with its pin.
void pin(const std::wstring& path, bool value)
{
    RecentPaths& files = RecentPaths::files();
    if (std::ranges::find(files.entries(), path, &RecentPaths::Entry::path) == files.entries().end())
        files.add(path);
    files.pin(path, value);
}

/// Native documents used before files of all kinds were recorded come after them.
std::vector<RecentPaths::Entry> listed()
{
    std::vector<RecentPaths::Entry> entries = RecentPaths::files().entries();
    for (const RecentDocument* document : RecentDocumentMgr::get()->newestFirst(RecentDocumentMgr::kMaximum))
        if (std::ranges::find(entries, document->path(), &RecentPaths::Entry::path) == entries.end())
            entries.push_back({document->path()});
    return entries;
}

/// The folder as the user would write it.
QString folderOf(const QFileInfo& file)
{
    const QString folder = QDir::toNativeSeparators(file.path());
    const QString home = QDir::homePath();
    return folder == home || folder.startsWith(home + QLatin1Char('/'))
               ? QLatin1Char('~') + folder.mid(home.size())
               : folder;
}

/// For foreign files the suffix gives the kind.
QString nameOf(const std::wstring& path)
{
    const QFileInfo file(QString::fromStdWString(path));
    return isNative(path) ? file.completeBaseName() : file.fileName();
}

QLabel* hint(const QString& content, QWidget* parent)
{
    auto* label = PlainText::label(parent, content);
    label->setObjectName(QStringLiteral("homeHint"));
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    constexpr int kHintHeight = 120;
    label->setMinimumHeight(kHintHeight);
    return label;
}

} // namespace

RecentSection::RecentSection(QWidget* parent)
    : TileSection(told("HomeRecentDocuments", "Recent documents"), parent), m_filter(new QLineEdit(this))
{
    Accessible::menus(this);
    setObjectName(QStringLiteral("recentDocuments"));
    m_filter->setObjectName(QStringLiteral("recentFilter"));
    m_filter->setPlaceholderText(told("HomeFilter", "Filter by name or folder"));
    m_filter->setAccessibleName(m_filter->placeholderText());
    Accessible::clearButton(m_filter);
    constexpr int kFilterWidth = 240, kLongest = 200;
    m_filter->setFixedWidth(kFilterWidth);
    m_filter->setMaxLength(kLongest);
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::textChanged, this, [this] { fill(); });
    addToHeading(m_filter);
    fill();
    RecentPaths::files().subscribe(this);
    m_subscriptions.add(WorkspaceEventSource::get(), this);
    m_subscriptions.add(Vs::CloudEventSource::get(), this);
    ForeignPictures::begin();
}

RecentSection::~RecentSection()
{
    RecentPaths::files().unsubscribe(this);
    m_subscriptions.clear();
}

bool RecentSection::passes(const std::wstring& path) const
{
    const QString place = QString::fromStdWString(FilePlace::shown(path));
    for (const QString& word : m_filter->text().split(u' ', Qt::SkipEmptyParts))
        if (!place.contains(word, Qt::CaseInsensitive))
            return false;
    return true;
}

void RecentSection::fill()
{
    const std::vector<RecentPaths::Entry> entries = listed();
    std::map<std::wstring, Tile*> kept;
    std::vector<Tile*> shown;
    for (const RecentPaths::Entry& entry : entries) {
        Tile* tile = tileOf(entry);
        tile->pinned(entry.isPinned);
        kept.emplace(entry.path, tile);
        if (passes(entry.path))
            shown.push_back(tile);
    }
    // A tile filtered out is kept, with its picture, for when it is needed again.
    for (const auto& [path, tile] : m_tiles)
        if (!kept.contains(path))
            tile->deleteLater();
    m_tiles = std::move(kept);
    m_filter->setVisible(!entries.empty());
    arrange(shown);
    placeholder(
        entries.empty()
            ? hint(told("HomeEmpty",
                        "Nothing has been worked on here yet. Make a new document, open a model, or drop "
                        "files anywhere on this window: STEP, IGES, BREP, STL, OBJ, glTF and VRML are read "
                        "as well."),
                   this)
        : shown.empty() ? hint(told("HomeNoneFound", "None of these has that in its name or folder."), this)
                        : nullptr);
}

Tile* RecentSection::tileOf(const RecentPaths::Entry& entry)
{
    const std::wstring& path = entry.path;
    if (const auto known = m_tiles.find(path); known != m_tiles.end())
        return known->second;
    const QFileInfo file(QString::fromStdWString(path));
    auto* tile = new Tile(nameOf(path), iconOfFile(path), this);
    const auto place = FilePlace::of(path);
    tile->place(place ? QString::fromStdWString(place->folder) : folderOf(file));
    if (place && place->mark)
        tile->mark(iconOf(place->mark));
    PlainText::setTooltip(tile, place ? QString::fromStdWString(place->place)
                                      : QDir::toNativeSeparators(file.filePath()));
    tile->file(path);
    connect(tile, &Tile::clicked, this, [path] { open(path); });
    tile->onRemove([path] { forget(path); }, iconOf(Resources::DeleteMRU()),
                   told("HomeRemove", "Remove from this list"));
    tile->onPin([tile, path] { pin(path, !tile->pinned()); });
    tile->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tile, &Tile::customContextMenuRequested, this, [this, tile, path] { showMenu(*tile, path); });
    look(path);
    return tile;
}

void RecentSection::showMenu(Tile& tile, const std::wstring& path)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(told("HomeOpen", "Open"), this, [path] { open(path); });
    menu->addAction(tile.pinned() ? told("HomeUnpin", "No longer keep at the front")
                                  : told("HomePin", "Keep at the front of this list"),
                    this, [path, value = !tile.pinned()] { pin(path, value); });
    menu->addAction(told("HomeCopyPath", "Copy Path"), this,
                    [path] { QGuiApplication::clipboard()->setText(QString::fromStdWString(path)); });
    menu->addSeparator();
    menu->addAction(iconOf(Resources::DeleteMRU()), told("HomeRemove", "Remove from this list"), this,
                    [path] { forget(path); });
    menu->popup(QCursor::pos());
}

/// The Down key goes from the field to the tiles, and Escape clears it.
bool RecentSection::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_filter || event->type() != QEvent::KeyPress)
        return TileSection::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Down && !tiles().empty())
        tiles().front()->setFocus(Qt::TabFocusReason);
    else if (key == Qt::Key_Escape && !m_filter->text().isEmpty())
        m_filter->clear();
    else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && tiles().size() == 1)
        tiles().front()->click();
    else
        return TileSection::eventFilter(watched, event);
    return true;
}

void RecentSection::lookAgain()
{
    for (const auto& [path, tile] : m_tiles)
        look(path);
    askDrive();
}

/// Whether its files still exist.
void RecentSection::askDrive()
{
    std::vector<boost::filesystem::path> files;
    for (const auto& [path, tile] : m_tiles)
        if (Vs::PathInfo::isNamedInCloudCache(path))
            files.emplace_back(path);
    if (!files.empty())
        Vs::CloudCacheManager::getInstance()->refresh(files);
}

void RecentSection::cloudFileStateChanged(Vs::CloudEvent* event)
{
    if (m_tiles.contains(event->file().wstring()))
        look(event->file().wstring());
}

void RecentSection::look(const std::wstring& path)
{
    // A disk that doesn't respond is asked only once.
    if (!m_asked.insert(path).second)
        return;
    const bool isCloud = Vs::PathInfo::isNamedInCloudCache(path);
    lookAtLater(path, this, [this, path, isCloud](const FilePreview& file) {
        m_asked.erase(path);
        const auto found = m_tiles.find(path);
        if (found == m_tiles.end())
            return;
        Tile* tile = found->second;
        // For a file on the drive, the local copy may have been cleared.
        const auto place = FilePlace::of(path);
        const bool isGone = place && place->isGone;
        tile->missing(isGone || (!file.exists && !isCloud));
        tile->note(isGone        ? told("HomeRemoved", "It was removed there")
                   : file.exists ? dayText(file.modified, QDateTime::currentDateTime())
                   : isCloud     ? told("HomeOnDrive", "On the drive")
                                 : told("HomeMissing", "The file was moved or deleted"));
        tile->picture(file.picture);
    });
}

} // namespace Vu::Commands
