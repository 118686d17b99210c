#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchBar.h"

#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Itemhub/ItemhubSearchHandler.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchResultPanel.h"
#include "UI/Commands/Itemhub/ItemhubCommands.h"
#include "UI/Commands/Itemhub/ItemhubItems.h"
#include "UI/Commands/Localized.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>

namespace Vu::Commands {
namespace {

constexpr int kWidth = 220, kLeastWidth = 124, kHomeWidth = 280;

/// The bar beside the buttons of the home screen.
QWidget* makeForHome(QWidget* parent)
{
    auto* bar =
        new QTSearchBar(QString::fromStdWString(localizedFormat("ItemhubSearchHint", "Search %1%",
                                                                Vs::ItemhubUtilities::getItemhub_TM())),
                        parent);
    bar->setFixedWidth(kHomeWidth);
    return bar;
}

/// The bar in the line of the toolbars.
QWidget* makeForToolbar(QWidget* parent)
{
    auto* holder = new QFrame(parent);
    holder->setObjectName(QStringLiteral("strip"));
    // Its place in the toolbars' line (see AreaStage).
    holder->setProperty("standsInToolbarLine", true);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(kMargin, kMargin / 2, kMargin, kMargin / 2 + 1);
    auto* bar =
        new QTSearchBar(QString::fromStdWString(localized("ItemhubSearchItems", "Search items")), holder);
    bar->setMinimumWidth(kLeastWidth);
    bar->setMaximumWidth(kWidth);
    layout->addWidget(bar);
    return holder;
}

const AreaContents kHome("HomeSearch", makeForHome);
const AreaContents kToolbar("ItemhubSearch", makeForToolbar);

} // namespace

QTSearchBar::QTSearchBar(const QString& hint, QWidget* parent) : QFrame(parent), m_edit(new QLineEdit(this))
{
    setObjectName(QStringLiteral("searchBar"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit);
    m_edit->setObjectName(QStringLiteral("itemSearch"));
    m_edit->setPlaceholderText(hint);
    m_edit->setAccessibleName(hint);
    Accessible::clearButton(m_edit);
    constexpr int kLongest = 200;
    m_edit->setMaxLength(kLongest);
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, [this] { search(); });
    setVisible(itemhubIsEnabled());
    m_subscriptions.add(Vs::ItemhubEventSource::get(), this);
    m_subscriptions.add(Vs::ItemhubOptionGroup::get(), this);
}

QTSearchBar::~QTSearchBar()
{
    m_subscriptions.clear();
    delete m_handler;
    delete m_panel;
}

void QTSearchBar::makePanel()
{
    if (m_panel && m_panel->parentWidget() == window())
        return;
    delete m_handler;
    delete m_panel;
    m_panel = new QTSearchResultPanel(this);
    m_panel->opener([](int item) { ItemhubItems::openLater(item); });
    m_handler = new ItemhubSearchHandler(m_panel, nullptr);
}

void QTSearchBar::search()
{
    makePanel();
    const QString wanted = m_edit->text().simplified();
    m_handler->search(wanted.toStdWString());
    if (wanted.isEmpty())
        m_panel->close();
    else
        m_panel->open();
}

/// Results belong to the account that was signed in.
void QTSearchBar::sessionChanged(Vs::ItemhubEvent*)
{
    if (m_handler && m_panel && m_panel->isVisible())
        m_handler->searchAgain();
}

void QTSearchBar::itemChanged(Vs::ItemhubItemEvent*)
{
    if (m_handler && m_panel && m_panel->isVisible())
        m_handler->searchAgain();
}

void QTSearchBar::optionChanged(Vs::OptionEvent*)
{
    setVisible(itemhubIsEnabled());
}

void QTSearchBar::leave()
{
    if (m_panel)
        m_panel->close();
}

bool QTSearchBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (m_panel && m_panel->press(key))
            return true;
        if (key == Qt::Key_Escape && !m_edit->text().isEmpty()) {
            m_edit->clear();
            return true;
        }
    } else if (event->type() == QEvent::FocusOut) {
        // Clicking a result doesn't take the keyboard focus.
        leave();
    } else if (event->type() == QEvent::FocusIn && m_panel && !m_edit->text().simplified().isEmpty()) {
        m_panel->open();
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace Vu::Commands
