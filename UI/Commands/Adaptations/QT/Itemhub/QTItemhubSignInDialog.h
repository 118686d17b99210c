#pragma once

#include <QDialog>

#include <functional>

class QCheckBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace Vu::Commands {

/// Signs the user in to the lifecycle service: to the program's own on this computer, or to a team's by its
/// address, through the browser or with a name and a password. It is accepted once the user is signed in;
/// errors are shown in it.
class QTItemhubSignInDialog : public QDialog
{
public:
    explicit QTItemhubSignInDialog(QWidget* parent);
    ~QTItemhubSignInDialog() override;

    void reject() override;

private:
    QWidget* makeOwn();
    QWidget* makeTeams();
    QWidget* makeButtons();
    QLineEdit* field(QFormLayout* form, const char* name, const QString& title, const QString& hint);
    void refresh();
    /// Asks the service; meanwhile only Cancel can be pressed.
    void sign(const std::function<bool()>& way);
    void signInByBrowser();
    void signInWithPassword();
    void tryWithoutKeeping(QString& failure);
    void tell(const QString& text);

    QLineEdit* m_address = nullptr;
    QLineEdit* m_customer = nullptr;
    QLineEdit* m_account = nullptr;
    QLineEdit* m_password = nullptr;
    QCheckBox* m_keep = nullptr;
    QPushButton* m_own = nullptr;
    QPushButton* m_browser = nullptr;
    QPushButton* m_signIn = nullptr;
    QLabel* m_message = nullptr;
    bool m_asking = false;
};

} // namespace Vu::Commands
