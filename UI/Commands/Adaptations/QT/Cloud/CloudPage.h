#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/Skyvault/CloudEvents.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Vu::Commands {

/// The page of the preferences about the cloud drive: whether it is there at all, who is signed in where,
/// what the server was found to do, what waits to be sent, and how much disk the local copies take.
class CloudPage : public QWidget, private Vs::CloudEventSite, private Vs::OptionEventSite
{
public:
    explicit CloudPage(QWidget* parent);
    ~CloudPage() override;

private:
    void cloudSessionChanged(Vs::CloudEvent*) override { refresh(); }
    void cloudFileStateChanged(Vs::CloudEvent*) override { refresh(); }
    void cloudFileArrived(Vs::CloudEvent*) override { refresh(); }
    void optionChanged(Vs::OptionEvent*) override { refresh(); }

    QLabel* addHead(QVBoxLayout* column, const QString& title);
    QPushButton* addButton(QVBoxLayout* column, const char* name, const QString& title,
                           void (CloudPage::*run)());
    void refresh();
    void keepKeyboard(const QPushButton* button, bool stays);
    void showWaiting();
    void signInOrOut();
    void sendWaiting();
    void clearCache();

    QCheckBox* m_on = nullptr;
    QWidget* m_rest = nullptr; ///< All that only matters while the drive is on.
    QLabel* m_account = nullptr;
    QPushButton* m_sign = nullptr;
    QLabel* m_traitsHead = nullptr;
    QLabel* m_traits = nullptr;
    QLabel* m_waiting = nullptr;
    QPushButton* m_send = nullptr;
    QLabel* m_cache = nullptr;
    QPushButton* m_clear = nullptr;
};

} // namespace Vu::Commands
