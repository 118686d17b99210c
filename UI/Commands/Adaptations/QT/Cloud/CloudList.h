#pragma once

#include "Server/Skyvault/SkyvaultNodeData.h"

#include <QTreeView>

#include <functional>
#include <string>

class QLabel;

namespace Vu::Commands {

class CloudFolderModel;

/// The content of the shown folder, or a line of text if it is empty.
class CloudList : public QTreeView
{
public:
    struct Actions
    {
        std::function<void(const QModelIndex&)> activate; ///< A double click, or Return.
        std::function<void()> goAbove;                    ///< Backspace.
    };
    CloudList(CloudFolderModel* model, Actions actions, QWidget* parent);

    /// Null if nothing is selected; owned by the model, and so only valid until the next folder.
    const Vs::SkyvaultNodeData* selected() const;
    QString selectedName() const;
    /// After going from the folder `left` to the shown one: going up makes the previous folder the current
    /// row. Otherwise the first row is current, and selected only with `selects`.
    void stand(const std::string& left, bool selects);
    /// The text shown while there are no rows.
    void emptyText(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    CloudFolderModel* m_model;
    Actions m_actions;
    QLabel* m_empty;
};

} // namespace Vu::Commands
