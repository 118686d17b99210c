#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Itemhub/ItemhubEvents.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Vu::Commands {

/// The page of the preferences about the lifecycle service: whether it is there at all, who is signed in
/// where, what has not been sent yet, and whether recovery files are attached to items.
class ItemhubPage : public QWidget, private Vs::ItemhubEventSite, private Vs::OptionEventSite
{
public:
    explicit ItemhubPage(QWidget* parent);
    ~ItemhubPage() override;

private:
    void sessionChanged(Vs::ItemhubEvent*) override { refresh(); }
    void uploadStateChanged(Vs::ItemhubUploadEvent*) override { refresh(); }
    void onRecoveryFileDeleted(Vs::ItemhubEvent*) override { refresh(); }
    void optionChanged(Vs::OptionEvent*) override { refresh(); }

    QPushButton* addButton(QVBoxLayout* column, const char* name, const QString& title);
    void refresh();

    QCheckBox* m_on;
    QWidget* m_rest; ///< All that only matters while the service is on.
    QLabel* m_account;
    QPushButton* m_sign;
    QLabel* m_pending;
    QPushButton* m_send;
    QCheckBox* m_snapshots;
};

} // namespace Vu::Commands
