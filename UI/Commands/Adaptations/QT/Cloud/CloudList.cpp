#include "UI/Commands/Adaptations/QT/Cloud/CloudList.h"

#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudFolderModel.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>

#include <algorithm>

namespace Vu::Commands {

CloudList::CloudList(CloudFolderModel* model, Actions actions, QWidget* parent)
    : QTreeView(parent), m_model(model), m_actions(std::move(actions)), m_empty(PlainText::label(viewport()))
{
    setObjectName(QStringLiteral("cloudList"));
    setModel(model);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setSortingEnabled(true);
    sortByColumn(CloudFolderModel::Name, Qt::AscendingOrder);
    setFrameShape(QFrame::NoFrame);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(CloudFolderModel::Name, QHeaderView::Stretch);
    constexpr int kSizeWidth = 100, kTimeWidth = 150;
    header()->resizeSection(CloudFolderModel::Size, kSizeWidth);
    header()->resizeSection(CloudFolderModel::Modified, kTimeWidth);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_empty->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(this, &QTreeView::activated, this,
            [this](const QModelIndex& index) { m_actions.activate(index); });
}

const Vs::SkyvaultNodeData* CloudList::selected() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : &m_model->node(rows.front().row());
}

QString CloudList::selectedName() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? QString() : m_model->name(rows.front().row());
}

void CloudList::stand(const std::string& left, bool selects)
{
    if (m_model->rowCount() == 0)
        return;
    const int cameFrom = left.empty() ? -1 : m_model->rowOf(CloudTexts::shown(left));
    selectionModel()->setCurrentIndex(m_model->index(std::max(cameFrom, 0), 0),
                                      selects || cameFrom >= 0
                                          ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                                          : QItemSelectionModel::NoUpdate);
}

void CloudList::emptyText(const QString& text)
{
    m_empty->setText(text);
    m_empty->setGeometry(viewport()->rect());
}

void CloudList::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Backspace)
        m_actions.goAbove();
    else if (isReturn && currentIndex().isValid())
        m_actions.activate(currentIndex());
    else
        QTreeView::keyPressEvent(event);
}

void CloudList::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    m_empty->setGeometry(viewport()->rect());
}

} // namespace Vu::Commands
