#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchResultPanel.h"

#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Itemhub/SearchResult.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"

#include <QEvent>
#include <QLabel>
#include <QStyle>

#include <algorithm>

namespace Vu::Commands {
namespace {

constexpr int kSide = 2, kGap = 3;
constexpr int kLeastWidth = 320;
/// As many as a user will look through; more are requested, to know whether there are any.
constexpr int kMostRows = 8;

void mark(QWidget* widget, bool selected)
{
    widget->setProperty("selected", selected);
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

QLabel* section(QWidget* parent, const char* name)
{
    QLabel* label = PlainText::label(parent);
    label->setObjectName(QLatin1String(name));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    label->hide();
    return label;
}

} // namespace

QTSearchResultPanel::QTSearchResultPanel(QWidget* bar)
    : QFrame(bar->window()),
      m_window(bar->window()),
      m_bar(bar),
      m_message(section(this, "searchMessage")),
      m_searching(section(this, "searching")),
      m_more(section(this, "searchMore"))
{
    setObjectName(QStringLiteral("searchResults"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setFocusPolicy(Qt::NoFocus);
    m_message->setWordWrap(true);
    m_message->installEventFilter(this);
    m_searching->setText(told("ItemhubSearching", "Searching..."));
    m_more->setText(told("ItemhubMoreFound", "There are more; type more of the name."));
    connect(m_window, &QObject::destroyed, this, &QTSearchResultPanel::onWndDestroyed);
    m_window->installEventFilter(this);
    m_bar->installEventFilter(this);
    hide();
}

void QTSearchResultPanel::onWndDestroyed(QObject*)
{
    m_window = nullptr;
}

void QTSearchResultPanel::anchor(const QPoint& point, bool growDown)
{
    m_anchor = point;
    m_growDown = growDown;
    arrange();
}

QWidget* QTSearchResultPanel::sectionOf(int kind) const
{
    switch (kind) {
    case kSection1:
        return m_message;
    case kSection0:
        return m_searching;
    case kSection2:
        return m_more;
    default:
        return nullptr;
    }
}

void QTSearchResultPanel::arrange()
{
    // Attached to the bar's edge, where it begins.
    int y = kGap;
    const int inner = width() - 2 * kSide;
    const auto put = [&](QWidget* widget, int height) {
        widget->setGeometry(kSide, y, inner, height);
        widget->show();
        y += height + kGap;
    };
    for (SearchResult* result : m_results)
        put(result, result->sizeHint().height());
    for (const auto& [bit, widget] :
         {std::pair<Section, QWidget*>{kMore, m_more}, {kSearching, m_searching}, {kMessage, m_message}})
        if (m_shown.testBit(bit))
            put(widget,
                widget->hasHeightForWidth() ? widget->heightForWidth(inner) : widget->sizeHint().height());
        else
            widget->hide();
    resize(width(), y);
    move(m_anchor.x(), m_growDown ? m_anchor.y() : m_anchor.y() - y);
    setVisible(m_open && !isEmpty());
    raise();
}

bool QTSearchResultPanel::isEmpty() const
{
    return m_results.isEmpty() && m_shown.count(true) == 0;
}

void QTSearchResultPanel::showSection(Section section, bool shown)
{
    if (m_shown.testBit(section) == shown)
        return;
    m_shown.setBit(section, shown);
    arrange();
}

void QTSearchResultPanel::message(const QString& shown, bool offersSignIn)
{
    const QString offer =
        offersSignIn ? u' ' + told("ItemhubClickToSignIn", "Click here to sign in.") : QString();
    m_message->setText(shown + offer);
    m_message->setCursor(offersSignIn ? Qt::PointingHandCursor : Qt::ArrowCursor);
    m_offersSignIn = offersSignIn;
}

void QTSearchResultPanel::results(const Vs::ItemhubSearchResultsEvent& event, bool keep)
{
    const int before =
        keep && m_selection.first == kResult ? m_results.value(m_selection.second)->itemId() : 0;
    clearSelection();
    clearResults();
    const auto& items = event.items();
    for (size_t i = 0; i < std::min<size_t>(items.size(), kMostRows); ++i) {
        auto* result = new SearchResult(items[i], this);
        const int index = static_cast<int>(i);
        connect(result, &QAbstractButton::clicked, this, [this, index] { choose(index); });
        m_results.push_back(result);
        if (result->itemId() == before)
            select(kResult, index);
    }
    const bool nobody = !Vs::ItemhubUtilities::get()->isAuthenticated();
    if (!event.failure().empty())
        message(QString::fromStdWString(event.failure()), nobody);
    else if (items.empty())
        message(told("ItemhubNothingFound", "Nothing was found."), false);
    m_shown.setBit(kMessage, !event.failure().empty() || items.empty());
    m_shown.setBit(kMore, items.size() > kMostRows);
    arrange();
}

void QTSearchResultPanel::clearResults()
{
    for (SearchResult* result : m_results) {
        result->hide();
        // A click on it may have led here.
        result->deleteLater();
    }
    m_results.clear();
    if (m_selection.first == kResult)
        m_selection = {kNothing, kNothing};
    arrange();
}

void QTSearchResultPanel::select(int kind, int index)
{
    clearSelection();
    m_selection = {kind, index};
    if (kind == kBar)
        mark(m_bar, true);
    else if (QWidget* widget = sectionOf(kind))
        mark(widget, true);
    else if (SearchResult* result = m_results.value(index))
        result->selected(true);
}

void QTSearchResultPanel::clearSelection()
{
    const auto [kind, index] = m_selection;
    if (kind == kBar)
        mark(m_bar, false);
    else if (QWidget* widget = sectionOf(kind))
        mark(widget, false);
    else if (SearchResult* result = kind == kResult ? m_results.value(index) : nullptr)
        result->selected(false);
    m_selection = {kNothing, kNothing};
}

/// From the bar through all results and round again.
void QTSearchResultPanel::step(int by)
{
    const int count = static_cast<int>(m_results.size()) + 1;
    const int now = m_selection.first == kResult ? m_selection.second + 1 : 0;
    const int next = (now + by + count) % count;
    if (next == 0)
        clearSelection();
    else
        select(kResult, next - 1);
}

bool QTSearchResultPanel::press(int key)
{
    if (!isVisible())
        return false;
    switch (key) {
    case Qt::Key_Down:
        step(1);
        return true;
    case Qt::Key_Up:
        step(-1);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_results.isEmpty() && m_offersSignIn && isShown(kMessage))
            signIn();
        else if (!m_results.isEmpty())
            choose(m_selection.first == kResult ? m_selection.second : 0);
        return true;
    default:
        return false;
    }
}

void QTSearchResultPanel::signIn()
{
    if (CommandDefinition* command =
            CommandDefinitionMgr::get()->findCommandDefinitionById(ItemhubSignInCmdDef::info()->key()))
        command->onClicked();
}

void QTSearchResultPanel::choose(int index)
{
    const SearchResult* result = m_results.value(index);
    if (!result)
        return;
    const int item = result->itemId();
    close();
    if (m_opener)
        m_opener(item);
}

void QTSearchResultPanel::open()
{
    m_open = true;
    follow();
}

void QTSearchResultPanel::close()
{
    m_open = false;
    clearSelection();
    hide();
}

/// To the bar's present position.
void QTSearchResultPanel::follow()
{
    if (!m_window)
        return;
    const int width = std::max(m_bar->width(), kLeastWidth);
    resize(width, height());
    const QPoint corner = m_bar->mapTo(m_window, QPoint(0, m_bar->height()));
    anchor({std::clamp(corner.x(), 0, std::max(0, m_window->width() - width)), corner.y()}, true);
}

bool QTSearchResultPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_message) {
        if (event->type() == QEvent::MouseButtonRelease && m_offersSignIn)
            signIn();
        return QFrame::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
        if (m_open)
            follow();
        break;
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
        close();
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace Vu::Commands
