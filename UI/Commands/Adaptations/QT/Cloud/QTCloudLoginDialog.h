#pragma once

#include "Server/Skyvault/Drive.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace Vu::Commands {

/// Signs the user in to the cloud drive: first the address, then one of the methods that the server offers.
/// It is accepted once the user is signed in. While a request runs, Cancel and Esc cancel that; otherwise the
/// dialog. Errors are shown in the dialog.
class QTCloudLoginDialog : public QDialog
{
public:
    explicit QTCloudLoginDialog(QWidget* parent);
    ~QTCloudLoginDialog() override;

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    /// The dialog's present question. Each shows its own rows.
    enum class Step {
        Address, ///< No server is known yet.
        Ways,    ///< How to sign in.
        Waiting, ///< A request is running, or the user is in the browser.
        Warning  ///< Signed in, on a server that doesn't protect concurrent changes.
    };

    QWidget* makeHead();
    QWidget* makeAddress();
    QWidget* makeWays();
    QWidget* makeWaiting();
    QWidget* makeButtons();
    void go(Step step);
    void showDefault();
    void proceed();
    void find();
    void signIn();
    void signInByBrowser();
    bool openBrowser(const std::string& address);
    template <class Request>
    Vs::Cloud::DriveResult wait(const QString& what, Request&& request);
    void finish(const Vs::Cloud::DriveResult& result);
    void tell(const QString& text, bool isError);
    bool offersBrowser() const { return m_offer.browserFlow || m_offer.oauth2; }

    Vs::Cloud::DriveOffer m_offer;
    std::string m_browserAddress;
    Step m_step = Step::Address;
    bool m_closes = false; ///< Once the running request has been cancelled.

    QLineEdit* m_address = nullptr;
    QWidget* m_ways = nullptr;
    QLabel* m_found = nullptr;
    QPushButton* m_browser = nullptr;
    QLabel* m_or = nullptr;
    QWidget* m_fields = nullptr;
    QLineEdit* m_user = nullptr;
    QLineEdit* m_password = nullptr;
    QCheckBox* m_keep = nullptr;
    QWidget* m_waiting = nullptr;
    QLabel* m_waitingFor = nullptr;
    QPushButton* m_again = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_proceed = nullptr;
    QPushButton* m_cancel = nullptr;
};

} // namespace Vu::Commands
