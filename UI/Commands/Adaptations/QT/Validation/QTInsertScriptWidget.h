#pragma once

#include <QWidget>

class QLineEdit;

namespace Vu::Commands {

/// Puts comments into the transcript that is being recorded.
class QTInsertScriptWidget : public QWidget
{
    Q_OBJECT

public:
    explicit QTInsertScriptWidget(QWidget* parent = nullptr);

private slots:
    void onClickInsert();

private:
    QLineEdit* m_comment;
};

} // namespace Vu::Commands
