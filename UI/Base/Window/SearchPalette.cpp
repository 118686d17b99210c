#include "UI/Base/Window/SearchPalette.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/FoundModel.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kWidth = 760;
constexpr int kHeight = 420;
/// The margin around it.
constexpr int kBorder = 24;
/// A share of the width, in per cent; the line has the rest.
constexpr int kTitleShare = 45;
constexpr int kKeysShare = 15;

/// The focus comes back automatically from a menu or another window.
bool comesBack(Qt::FocusReason reason)
{
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

} // namespace

void SearchPalette::toggle(QWidget* window, Actions actions)
{
    if (auto* shown =
            window->findChild<QWidget*>(QStringLiteral("searchPalette"), Qt::FindDirectChildrenOnly))
        static_cast<SearchPalette*>(shown)->leave(true);
    else
        new SearchPalette(window, std::move(actions));
}

SearchPalette::SearchPalette(QWidget* window, Actions actions)
    : QFrame(window),
      m_actions(std::move(actions)),
      m_found(new FoundModel(SearchIndex::ofProgram(UIBaseOptionGroup::get()->commandHistory()), this)),
      m_edit(new QLineEdit(this)),
      m_list(new QTreeView(this)),
      m_note(PlainText::label(this)),
      m_before(QApplication::focusWidget())
{
    setObjectName(QStringLiteral("searchPalette"));
    setAutoFillBackground(true);
    m_edit->setObjectName(QStringLiteral("searchText"));
    m_edit->setPlaceholderText(told("PaletteHint", "Search commands, keys and lines"));
    m_edit->setAccessibleName(m_edit->placeholderText());
    m_edit->setMaxLength(static_cast<int>(SearchText::kLongest));
    m_list->setObjectName(QStringLiteral("searchFound"));
    m_list->setAccessibleName(told("PaletteFound", "Found"));
    m_list->setModel(m_found);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setHeaderHidden(true);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(FoundModel::kLine, QHeaderView::Stretch);
    m_note->setObjectName(QStringLiteral("searchNote"));
    auto* column = new QVBoxLayout(this);
    for (QWidget* each :
         {static_cast<QWidget*>(m_edit), static_cast<QWidget*>(m_list), static_cast<QWidget*>(m_note)})
        column->addWidget(each);

    connect(m_edit, &QLineEdit::textChanged, this, &SearchPalette::find);
    connect(m_list, &QTreeView::clicked, this, &SearchPalette::accept);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &SearchPalette::tellRow);
    m_edit->installEventFilter(this);
    window->installEventFilter(this);
    // The height of a row is found once, and depends on the style sheet.
    m_list->ensurePolished();
    place();
    find();
    show();
    raise();
    m_edit->setFocus(Qt::ShortcutFocusReason);
}

SearchPalette::~SearchPalette() = default;

void SearchPalette::place()
{
    const QRect room = parentWidget()->rect().adjusted(kBorder, kBorder, -kBorder, -kBorder);
    QRect place(QPoint(), QSize(kWidth, kHeight).boundedTo(room.size()));
    place.moveCenter(room.center());
    place.moveTop(room.top() + kBorder);
    setGeometry(place.intersected(parentWidget()->rect()));
    m_list->setColumnWidth(FoundModel::kTitle, place.width() * kTitleShare / 100);
    m_list->setColumnWidth(FoundModel::kKeys, place.width() * kKeysShare / 100);
}

void SearchPalette::find()
{
    m_found->find(m_edit->text());
    choose(0);
    tellRow();
}

void SearchPalette::choose(int row)
{
    const QModelIndex index =
        m_found->index(std::clamp(row, 0, std::max(0, m_found->rowCount() - 1)), FoundModel::kTitle);
    m_list->setCurrentIndex(index);
    m_list->scrollTo(index);
}

/// Says what Enter will do with the chosen row.
void SearchPalette::tellRow()
{
    const int row = m_list->currentIndex().row();
    const SearchEntry* entry = m_found->entry(row);
    if (!entry)
        m_note->setText(told("PaletteNothing", "Nothing has that name."));
    else if (!m_found->canStart(row))
        m_note->setText(QString::fromStdWString(
            localizedFormat("PaletteCannotStart", "\"%1%\" can't start now.", entry->title.toStdWString())));
    else if (entry->command.empty())
        m_note->setText(told("PaletteFillsIn", "Enter puts the line into the command line."));
    else
        m_note->setText(told("PaletteStarts", "Enter starts the command."));
}

void SearchPalette::accept()
{
    const int row = m_list->currentIndex().row();
    const SearchEntry* entry = m_found->entry(row);
    if (!entry || !m_found->canStart(row))
        return;
    // They outlive this object, which may be destroyed within start and fillIn.
    const Actions actions = m_actions;
    const QString line = entry->fillIn;
    CommandDefinition* definition = FoundModel::definition(*entry);
    leave(true);
    if (definition)
        actions.start(*definition);
    else
        actions.fillIn(line);
}

bool SearchPalette::key(int key)
{
    const int row = m_list->currentIndex().row();
    const int page = m_list->verticalScrollBar()->pageStep();
    switch (key) {
    case Qt::Key_Up:
        choose(row - 1);
        return true;
    case Qt::Key_Down:
        choose(row + 1);
        return true;
    case Qt::Key_PageUp:
        choose(row - page);
        return true;
    case Qt::Key_PageDown:
        choose(row + page);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        accept();
        return true;
    case Qt::Key_Escape:
        leave(true);
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true; // There is no other widget to go to.
    default:
        return false;
    }
}

void SearchPalette::leave(bool giveBack)
{
    if (objectName().isEmpty())
        return;
    setObjectName(QString());
    hide();
    if (giveBack && m_before)
        m_before->setFocus();
    deleteLater();
}

bool SearchPalette::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_edit) {
        if (event->type() == QEvent::KeyPress)
            return key(static_cast<QKeyEvent*>(event)->key());
        if (event->type() == QEvent::FocusOut && !comesBack(static_cast<QFocusEvent*>(event)->reason()))
            leave(false);
    } else if (event->type() == QEvent::Resize) {
        place();
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace Vu
