#pragma once

#include <QDialog>

namespace Vu::Commands {

class QTFileRecoveryListWidget;

/// Lists the files of runs that ended badly. Deletes itself when it is closed.
class QTFileRecovery : public QDialog
{
public:
    explicit QTFileRecovery(QWidget* parent = nullptr);

private:
    QTFileRecoveryListWidget* m_list = nullptr;
};

} // namespace Vu::Commands
