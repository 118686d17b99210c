#include "UI/Commands/Adaptations/QT/Validation/QTInsertScriptWidget.h"

#include "UI/Commands/Adaptations/QT/Panels/PanelLayout.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Transcripts/TranscriptLines.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace Vu::Commands {

QTInsertScriptWidget::QTInsertScriptWidget(QWidget* parent) : QWidget(parent)
{
    auto* insert = new QPushButton(QString::fromStdWString(localized("InsertComment", "Insert")));
    m_comment = new QLineEdit;
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(insert);
    row->addWidget(m_comment);
    putInGroup(this, QString::fromStdWString(localized("Comment", "Comment")), row);
    connect(insert, &QPushButton::clicked, this, &QTInsertScriptWidget::onClickInsert);
}

void QTInsertScriptWidget::onClickInsert()
{
    insertTranscriptLine(L"# " + m_comment->text().toStdWString());
}

} // namespace Vu::Commands
