#include "UI/Commands/Adaptations/QT/AutoSave/QTFileRecoveryListWidget.h"

#include "UI/Base/Session/WelcomeScreen.h"
#include "UI/Commands/Adaptations/QT/AutoSave/QTFileRecoveryListWidgetItem.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/AutoSave/RecoveryFiles.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>

namespace Vu::Commands {
namespace {
} // namespace

QTFileRecoveryListWidget::QTFileRecoveryListWidget(QWidget* parent)
    : QListWidget(parent),
      m_menu(new QMenu(this)),
      m_open(m_menu->addAction(told("RecoveryOpen", "Open"))),
      m_saveAs(m_menu->addAction(told("RecoverySaveAs", "Save As..."))),
      m_delete(m_menu->addAction(told("RecoveryDelete", "Delete")))
{
    setObjectName(QStringLiteral("recoveryFiles"));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(m_open, &QAction::triggered, this, &QTFileRecoveryListWidget::openFile);
    connect(m_saveAs, &QAction::triggered, this, &QTFileRecoveryListWidget::saveFileAs);
    connect(m_delete, &QAction::triggered, this, &QTFileRecoveryListWidget::deleteFile);
}

void QTFileRecoveryListWidget::fill()
{
    clear();
    for (const Vs::AutoSavedFileInfo& file : RecoveryFiles::offered())
        new QTFileRecoveryListWidgetItem(file, this);
    updateGeometry();
}

// As wide as its rows, up to the width at which a line can no longer be read at a glance.
QSize QTFileRecoveryListWidget::sizeHint() const
{
    constexpr int kMostLetters = 130;
    const int most = fontMetrics().averageCharWidth() * kMostLetters;
    const int content = sizeHintForColumn(0) + 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    const QSize usual = QListWidget::sizeHint();
    return {std::clamp(content, std::min(usual.width(), most), most), usual.height()};
}

void QTFileRecoveryListWidget::mouseReleaseEvent(QMouseEvent* event)
{
    QListWidget::mouseReleaseEvent(event);
    const bool asks = event->button() == Qt::LeftButton || event->button() == Qt::RightButton;
    if (asks && itemAt(event->position().toPoint()))
        showMenu(event->globalPosition().toPoint());
}

void QTFileRecoveryListWidget::keyPressEvent(QKeyEvent* event)
{
    const bool asks =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Menu;
    if (asks && currentItem() && currentItem()->isSelected())
        showMenu(viewport()->mapToGlobal(visualItemRect(currentItem()).bottomLeft()));
    else if (event->key() == Qt::Key_Delete)
        deleteFile();
    else
        QListWidget::keyPressEvent(event);
}

// It doesn't wait: the choice may remove the list.
void QTFileRecoveryListWidget::showMenu(const QPoint& place)
{
    m_saveAs->setEnabled(selectedItems().size() < 2);
    m_menu->popup(place);
}

void QTFileRecoveryListWidget::openFile()
{
    if (WelcomeScreen::dialogExists())
        WelcomeScreen::get()->close();
    forEachSelected(RecoveryFiles::open);
}

void QTFileRecoveryListWidget::saveFileAs()
{
    QListWidgetItem* item = currentItem();
    const QPointer<QTFileRecoveryListWidget> alive(this);
    // While the user is asked, anything can happen to the rows.
    if (item && RecoveryFiles::saveAs(static_cast<QTFileRecoveryListWidgetItem*>(item)->file()) && alive)
        removeRow(item);
}

void QTFileRecoveryListWidget::deleteFile()
{
    forEachSelected([](const Vs::AutoSavedFileInfo& file) {
        RecoveryFiles::remove(file);
        return true;
    });
}

void QTFileRecoveryListWidget::forEachSelected(
    const std::function<bool(const Vs::AutoSavedFileInfo&)>& isDone)
{
    const QPointer<QTFileRecoveryListWidget> alive(this);
    QList<QListWidgetItem*> rows = selectedItems();
    std::sort(rows.begin(), rows.end(),
              [this](auto* first, auto* second) { return row(first) < row(second); });
    for (QListWidgetItem* each : rows)
        if (isDone(static_cast<QTFileRecoveryListWidgetItem*>(each)->file()) && alive)
            removeRow(each);
        else if (!alive)
            return;
}

void QTFileRecoveryListWidget::removeRow(QListWidgetItem* item)
{
    delete takeItem(row(item));
    if (count() == 0)
        emit closeDialog();
}

} // namespace Vu::Commands
