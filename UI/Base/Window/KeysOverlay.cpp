#include "UI/Base/Window/KeysOverlay.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"
#include "UI/Base/Workspace/MenuBar.h"

#include <QApplication>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kColumns = 3;
/// The margin around it.
constexpr int kBorder = 24;

struct KeyRow
{
    QString title;
    QString keys;
};

QString withoutMark(const std::wstring& title)
{
    return QString::fromStdWString(title).remove(QLatin1Char('&'));
}

void collect(const std::vector<ToolbarItem>& items, QList<KeyRow>& rows)
{
    for (const ToolbarItem& item : items) {
        collect(item.menu, rows);
        const CommandDefinition* definition =
            CommandDefinitionMgr::get()->findCommandDefinitionById(item.command);
        const KeyTable::Keys keys =
            definition && !item.isMenu() ? KeyTable::get()->keysOf(*definition) : KeyTable::Keys();
        if (!keys.isEmpty())
            rows << KeyRow{item.title.empty() ? QString::fromStdWString(definition->info()->name())
                                              : withoutMark(item.title),
                           KeyTable::toText(keys, QKeySequence::NativeText)};
    }
}

QString keyText(const char* keys)
{
    return QKeySequence(QLatin1String(keys)).toString(QKeySequence::NativeText);
}

/// The window's own keys, which belong to no command.
QList<KeyRow> keysOfWindow()
{
    return {{told("KeysMenus", "Menus"), QStringLiteral("F10; Alt")},
            {told("KeysStops", "Next part of the window"),
             keyText("Tab") + QStringLiteral("; ") + keyText("Shift+Tab")},
            {told("KeysEnd", "End the tool; then to the view"), keyText("Esc")},
            {told("KeysLine", "Command line"), keyText("Ctrl+L")},
            {told("KeysFilter", "Filter of the browser"), keyText("Ctrl+F")},
            {told("KeysNotifications", "Notifications"), keyText("Ctrl+Shift+N")},
            {told("KeysTurn", "Turn the view"), QStringLiteral("\u2190 \u2192 \u2191 \u2193")},
            {told("KeysMove", "Move the view"), keyText("Shift+Left") + QStringLiteral(" \u2026")},
            {told("KeysZoom", "Zoom the view"), QStringLiteral("+ \u2212")},
            {told("KeysPoint", "Point at the next thing in the view"),
             keyText("Ctrl+Left") + QStringLiteral(" \u2026")},
            {told("KeysPick", "Select it; with Shift add it"), keyText("Space")},
            {told("KeysThis", "These keys"), QStringLiteral("?")}};
}

QWidget* tableOf(const QString& title, const QList<KeyRow>& rows, QWidget* parent)
{
    auto* frame = new QWidget(parent);
    auto* grid = new QGridLayout(frame);
    grid->setColumnStretch(0, 1);
    grid->setHorizontalSpacing(2 * kMargin);
    QLabel* head = PlainText::label(frame, title);
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    grid->addWidget(head, 0, 0, 1, 2);
    for (const KeyRow& row : rows) {
        const int line = grid->rowCount();
        grid->addWidget(PlainText::label(frame, row.title), line, 0);
        QLabel* keys = PlainText::label(frame, row.keys);
        keys->setObjectName(QStringLiteral("keyText"));
        grid->addWidget(keys, line, 1, Qt::AlignRight);
    }
    grid->setRowStretch(grid->rowCount(), 1);
    return frame;
}

/// Each table goes to the shortest column.
void fill(QWidget* page)
{
    auto* columns = new QHBoxLayout(page);
    QList<QVBoxLayout*> column;
    QList<qsizetype> heights(kColumns, 0);
    for (int i = 0; i < kColumns; ++i) {
        column << new QVBoxLayout;
        columns->addLayout(column.last(), 1);
        if (i + 1 < kColumns)
            columns->addSpacing(kBorder);
    }
    const auto add = [&](const QString& title, const QList<KeyRow>& rows) {
        if (rows.isEmpty())
            return;
        const qsizetype least = std::ranges::min_element(heights) - heights.begin();
        column[least]->addWidget(tableOf(title, rows, page));
        heights[least] += rows.size() + 2;
    };
    add(told("KeysOfWindow", "Everywhere"), keysOfWindow());
    for (const ToolbarItem& menu : MenuBar::get()->menus()) {
        QList<KeyRow> rows;
        collect(menu.menu, rows);
        add(withoutMark(menu.title), rows);
    }
    for (QVBoxLayout* each : column)
        each->addStretch(1);
}

} // namespace

void KeysOverlay::toggle(QWidget* window)
{
    if (auto* shown = window->findChild<QWidget*>(QStringLiteral("keysOverlay"), Qt::FindDirectChildrenOnly))
        static_cast<KeysOverlay*>(shown)->leave();
    else
        new KeysOverlay(window);
}

KeysOverlay::KeysOverlay(QWidget* window)
    : QFrame(window), m_page(new QWidget), m_before(QApplication::focusWidget())
{
    setObjectName(QStringLiteral("keysOverlay"));
    setFocusPolicy(Qt::StrongFocus);
    setAutoFillBackground(true);
    fill(m_page);
    auto* scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(m_page);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll);
    window->installEventFilter(this);
    place();
    show();
    raise();
    setFocus();
}

void KeysOverlay::place()
{
    const QRect room = parentWidget()->rect().adjusted(kBorder, kBorder, -kBorder, -kBorder);
    // With room for its own border.
    const QSize wanted = m_page->sizeHint() + QSize(kBorder, kBorder);
    QRect place(QPoint(), wanted.boundedTo(room.size()));
    place.moveCenter(room.center());
    setGeometry(place);
}

void KeysOverlay::leave()
{
    hide();
    if (m_before)
        m_before->setFocus();
    setObjectName(QString());
    deleteLater();
}

bool KeysOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        place();
    return QFrame::eventFilter(watched, event);
}

void KeysOverlay::keyPressEvent(QKeyEvent*)
{
    leave();
}

void KeysOverlay::mousePressEvent(QMouseEvent*)
{
    leave();
}

} // namespace Vu
