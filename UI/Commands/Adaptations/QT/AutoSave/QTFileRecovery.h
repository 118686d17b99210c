#pragma once

#include <QDialog>

namespace Vu::Commands {

class QTFileRecoveryListWidget;

/// Lists the recovery files of runs that ended abnormally. Deletes itself when it is closed.
class QTFileRecovery : public QDialog
{
public:
    explicit QTFileRecovery(QWidget* parent = nullptr);

private:
    QTFileRecoveryListWidget* m_list = nullptr;
};

} // namespace Vu::Commands
