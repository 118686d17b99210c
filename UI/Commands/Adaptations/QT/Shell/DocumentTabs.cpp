#include "UI/Commands/Adaptations/QT/Shell/DocumentTabs.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/HeldFiles.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/DocumentWatch.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/Glyph.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Adaptations/QT/Shell/TabBar.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Documents/OpenDocumentsCmds.h"
#include "UI/Commands/Documents/TabCmds.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMenu>
#include <QSignalBlocker>
#include <QToolButton>

#include <algorithm>

namespace Vu::Commands {
namespace {

const AreaContents kTabs("DocumentTabs", [](QWidget* parent) { return new DocumentTabs(parent); });

constexpr int kButtonIcon = 16;

std::wstring fileOf(const Vs::Document& document)
{
    return document.path().empty() ? document.importedFrom() : document.path();
}

/// The remark on its state to show after the name; empty for none.
QString stateOf(const Vs::Document& document)
{
    QStringList all;
    if (Vs::HeldFiles::holder(&document))
        all << told("TabReadOnly", "read only");
    if (const std::wstring remark = DocumentRemark::of(document); !remark.empty())
        all << QString::fromStdWString(remark);
    return all.join(QStringLiteral(", "));
}

QString tooltipOf(const Vs::Document& document, const QString& state)
{
    const std::wstring file = fileOf(document);
    QStringList lines{file.empty() ? told("HomeNotSaved", "Not saved yet")
                                   : QString::fromStdWString(FilePlace::shown(file))};
    if (document.isDirty(false))
        lines << told("HomeChanged", "Changed");
    if (const Vs::FileUser* user = Vs::HeldFiles::holder(&document))
        lines << QString::fromStdWString(DocumentWatch::whoHasIt(*user));
    else if (!state.isEmpty())
        lines << state;
    return lines.join(QLatin1Char('\n'));
}

} // namespace

DocumentTabs::DocumentTabs(QWidget* parent)
    : QFrame(parent),
      m_bar(new TabBar(this)),
      m_new(button("newTab", told("TabNew", "New document in a tab of its own"))),
      m_list(button("tabList", told("TabList", "All open documents")))
{
    Accessible::menus(this);
    setObjectName(QStringLiteral("tabStrip"));
    m_bar->setAccessibleName(told("TabsOpen", "Open documents"));
    m_new->setIcon(glyphIcon(Glyph::Plus));
    m_list->setIcon(glyphIcon(Glyph::Down));
    m_list->setPopupMode(QToolButton::InstantPopup);
    m_list->setMenu(new QMenu(m_list));
    m_list->hide();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, kMargin, 0);
    row->setSpacing(2);
    row->addWidget(m_bar);
    row->addWidget(m_new);
    row->addWidget(m_list);
    row->addStretch(1);
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &DocumentTabs::refresh);
    connect(m_bar, &QTabBar::currentChanged, this, [this](int index) {
        if (index >= 0)
            switchTo(m_documents[static_cast<size_t>(index)]);
    });
    connect(m_bar, &QTabBar::tabMoved, this, &DocumentTabs::moved);
    connect(m_bar, &TabBar::closeWanted, this,
            [this](int index) { closeTab(m_documents[static_cast<size_t>(index)]); });
    connect(m_bar, &QWidget::customContextMenuRequested, this, &DocumentTabs::showMenu);
    connect(m_new, &QToolButton::clicked, this, [] {
        if (CommandDefinition* definition =
                CommandDefinitionMgr::get()->findCommandDefinitionById(NewTabCmdDef::info()->key()))
            definition->runByHand(ECommandAccessPoint::Toolbar);
    });
    connect(m_list->menu(), &QMenu::aboutToShow, this, &DocumentTabs::fillList);
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
    m_subscriptions.add(DocumentRemarkSource::get(), this);
    m_subscriptions.add(DocumentOrder::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
    refresh();
}

QToolButton* DocumentTabs::button(const char* name, const QString& what)
{
    auto* made = new QToolButton(this);
    made->setObjectName(QLatin1String(name));
    made->setProperty("flat", true);
    made->setAutoRaise(true);
    made->setIconSize(QSize(kButtonIcon, kButtonIcon));
    made->setFocusPolicy(Qt::TabFocus);
    made->setAccessibleName(what);
    PlainText::setTooltip(made, what);
    return made;
}

void DocumentTabs::assetDirtyChanged(Vs::AssetEvent* event)
{
    relabelSoon(event->asset()->document());
}

void DocumentTabs::documentClosed(Vs::DocumentEvent* event)
{
    // The tab is removed before the document.
    if (event->timing() == Vs::Timing::After && std::ranges::count(m_documents, event->document()) > 0)
        refresh();
}

void DocumentTabs::documentRemarksChanged(Vs::Event*)
{
    for (const Vs::Document* document : m_documents)
        relabelSoon(document);
}

void DocumentTabs::relabelSoon(const Vs::Document* document)
{
    m_changed.insert(document);
    refreshSoon();
}

void DocumentTabs::refreshSoon()
{
    if (!m_soon.isActive())
        m_soon.start(0);
}

void DocumentTabs::refresh()
{
    m_soon.stop();
    const std::vector<Vs::Document*> documents = documentsWithTabs();
    // When changes of the tabs themselves make another one current, the user hasn't chosen it.
    const QSignalBlocker quiet(m_bar);
    if (documents != m_documents)
        bringTabs(documents);
    for (size_t i = 0; i < m_documents.size(); ++i)
        if (m_changed.contains(m_documents[i]))
            label(static_cast<int>(i));
    m_changed.clear();
    if (const DocumentSession* session = SessionMgr::get()->currentDocumentSession()) {
        const auto shown = std::ranges::find(m_documents, session->document());
        if (shown != m_documents.end())
            m_bar->setCurrentIndex(static_cast<int>(shown - m_documents.begin()));
    }
    showWhichFits();
}

/// Removes, adds and moves tabs until they match the documents.
void DocumentTabs::bringTabs(const std::vector<Vs::Document*>& documents)
{
    const std::set<const Vs::Document*> wanted(documents.begin(), documents.end());
    for (size_t i = m_documents.size(); i-- > 0;)
        if (!wanted.contains(m_documents[i])) {
            m_bar->removeTab(static_cast<int>(i));
            m_documents.erase(m_documents.begin() + static_cast<std::ptrdiff_t>(i));
        }
    for (size_t i = 0; i < documents.size(); ++i) {
        const auto place = m_documents.begin() + static_cast<std::ptrdiff_t>(i);
        if (i < m_documents.size() && *place == documents[i])
            continue;
        if (const auto elsewhere = std::find(place, m_documents.end(), documents[i]);
            elsewhere != m_documents.end()) {
            m_bar->moveTab(static_cast<int>(elsewhere - m_documents.begin()), static_cast<int>(i));
            std::rotate(place, elsewhere, std::next(elsewhere));
            continue;
        }
        m_bar->insert(static_cast<int>(i), told("HomeCloseDocument", "Close this document"));
        m_documents.insert(place, documents[i]);
        m_changed.insert(documents[i]);
    }
}

void DocumentTabs::label(int index)
{
    const Vs::Document& document = *m_documents[static_cast<size_t>(index)];
    const QString name = QString::fromStdWString(document.displayName());
    const QString state = stateOf(document);
    const bool changed = document.isDirty(false);
    const QString behind = state.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(state);
    QStringList spoken{name};
    if (changed)
        spoken << told("HomeChanged", "Changed");
    if (!state.isEmpty())
        spoken << state;
    m_bar->label(index, name + (changed ? QStringLiteral("*") : QString()) + behind,
                 spoken.join(QStringLiteral(", ")), tooltipOf(document, state));
    const auto place = FilePlace::of(fileOf(document));
    m_bar->setTabIcon(index, place && place->mark ? iconOf(place->mark) : QIcon());
}

void DocumentTabs::showWhichFits()
{
    const int room = width() - m_new->sizeHint().width() - kMargin;
    m_list->setVisible(!m_bar->hasRoom(room));
}

void DocumentTabs::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    showWhichFits();
}

/// A drag, or an order set elsewhere, has moved the tab.
void DocumentTabs::moved(int from, int to)
{
    const auto first = m_documents.begin();
    if (from < to)
        std::rotate(first + from, first + from + 1, first + to + 1);
    else
        std::rotate(first + to, first + from, first + from + 1);
    const auto behind = static_cast<size_t>(to) + 1;
    DocumentOrder::get()->move(m_documents[static_cast<size_t>(to)],
                               behind < m_documents.size() ? m_documents[behind] : nullptr);
}

void DocumentTabs::showMenu(const QPoint& place)
{
    const int index = place.isNull() ? m_bar->currentIndex() : m_bar->tabAt(place);
    if (index < 0)
        return;
    Vs::Document* document = m_documents[static_cast<size_t>(index)];
    const QString file = QString::fromStdWString(fileOf(*document));
    QMenu menu(this);
    const QAction* close = menu.addAction(told("HomeCloseDocument", "Close this document"));
    QAction* copy = menu.addAction(told("TabCopyPath", "Copy Path"));
    copy->setEnabled(!file.isEmpty());
    const QAction* chosen = menu.exec(m_bar->mapToGlobal(place));
    // It may have been closed while the menu was open.
    if (std::ranges::count(m_documents, document) == 0)
        return;
    if (chosen == close)
        closeTab(document);
    else if (chosen == copy)
        QGuiApplication::clipboard()->setText(file);
}

void DocumentTabs::fillList()
{
    QMenu* menu = m_list->menu();
    menu->clear();
    for (size_t i = 0; i < m_documents.size(); ++i) {
        QAction* entry = menu->addAction(m_bar->tabText(static_cast<int>(i)));
        entry->setCheckable(true);
        entry->setChecked(static_cast<int>(i) == m_bar->currentIndex());
        connect(entry, &QAction::triggered, m_bar,
                [this, i] { m_bar->setCurrentIndex(static_cast<int>(i)); });
    }
}

} // namespace Vu::Commands
