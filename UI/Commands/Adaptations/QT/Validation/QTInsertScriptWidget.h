#pragma once

#include <QWidget>

class QLineEdit;

namespace Vu::Commands {

/// Inserts comments into the transcript being recorded.
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
