#pragma once

#include <QListWidget>

#include <functional>

class QAction;
class QMenu;

namespace Vs {
class AutoSavedFileInfo;
}

namespace Vu::Commands {

/// The offered recovery files. A click on one, with either button, opens a menu of actions for the selected
/// ones.
class QTFileRecoveryListWidget : public QListWidget
{
    Q_OBJECT

public:
    explicit QTFileRecoveryListWidget(QWidget* parent);

    /// Shows the present offers.
    void fill();

    QSize sizeHint() const override;

signals:
    /// Nothing is left to show.
    void closeDialog();

public slots:
    void openFile();
    /// Of the current row.
    void saveFileAs();
    void deleteFile();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showMenu(const QPoint& place);
    void forEachSelected(const std::function<bool(const Vs::AutoSavedFileInfo&)>& isDone);
    void removeRow(QListWidgetItem* item);

    QMenu* m_menu;
    QAction* m_open;
    QAction* m_saveAs;
    QAction* m_delete;
};

} // namespace Vu::Commands
