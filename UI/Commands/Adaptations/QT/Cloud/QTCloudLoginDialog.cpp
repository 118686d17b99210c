#include "UI/Commands/Adaptations/QT/Cloud/QTCloudLoginDialog.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Skyvault/CloudOptionGroup.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "UI/Base/Program/Address.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Resources.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

#include <tuple>

namespace Vu::Commands {
namespace {

using CloudTexts::named;
using CloudTexts::text;
using Vs::Cloud::DriveCredentials;
using Vs::Cloud::DriveResult;

constexpr int kBorder = 20, kSpacing = 12, kWidth = 460, kPicture = 48;

QLabel* wrapped(QWidget* parent, const QString& content)
{
    QLabel* label = PlainText::label(parent, content);
    label->setWordWrap(true);
    return label;
}

QLabel* faint(QWidget* parent, const QString& content)
{
    QLabel* label = wrapped(parent, content);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QVBoxLayout* columnOf(QWidget* widget)
{
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kSpacing * 2 / 3);
    return column;
}

} // namespace

QTCloudLoginDialog::QTCloudLoginDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("cloudLogin"));
    setWindowTitle(named(text("CloudLoginTitle", "Sign In to %1")));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
    column->setSpacing(kSpacing);
    column->setSizeConstraint(QLayout::SetFixedSize);
    for (QWidget* part : {makeHead(), makeAddress(), makeWays(), makeWaiting()})
        column->addWidget(part);
    m_message = wrapped(this, {});
    m_message->setObjectName(QStringLiteral("cloudMessage"));
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->hide();
    column->addWidget(m_message);
    column->addWidget(makeButtons());
    go(Step::Address);
    m_address->setFocus();
}

QTCloudLoginDialog::~QTCloudLoginDialog()
{
    m_password->clear();
}

QWidget* QTCloudLoginDialog::makeHead()
{
    auto* head = new QWidget(this);
    head->setFixedWidth(kWidth);
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kSpacing);
    QLabel* picture = PlainText::label(head);
    picture->setPixmap(iconOf(Resources::Cloud()).pixmap(kPicture, kPicture));
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addWidget(
        wrapped(head, named(text("CloudLoginHead",
                                 "%1 keeps your documents on a server: the cloud of your company, of your "
                                 "provider, or your own. Any server that speaks WebDAV will do."))),
        1);
    return head;
}

QWidget* QTCloudLoginDialog::makeAddress()
{
    auto* part = new QWidget(this);
    QVBoxLayout* column = columnOf(part);
    QLabel* label = PlainText::label(part, text("CloudLoginServer", "Address of the server"));
    m_address = new QLineEdit(part);
    m_address->setObjectName(QStringLiteral("cloudAddress"));
    m_address->setPlaceholderText(QStringLiteral("cloud.example.org"));
    m_address->setAccessibleName(label->text());
    m_address->setText(QString::fromStdWString(Vs::CloudOptionGroup::get()->server()));
    label->setBuddy(m_address);
    column->addWidget(label);
    column->addWidget(m_address);
    // Another address means another server, with other ways to sign in.
    connect(m_address, &QLineEdit::textChanged, this, [this] {
        if (m_step == Step::Ways)
            go(Step::Address);
        tell({}, false);
        showDefault();
    });
    return part;
}

QWidget* QTCloudLoginDialog::makeWays()
{
    m_ways = new QWidget(this);
    QVBoxLayout* column = columnOf(m_ways);
    m_found = faint(m_ways, {});
    m_browser = new QPushButton(text("CloudLoginBrowser", "Sign In with the Browser"), m_ways);
    m_browser->setObjectName(QStringLiteral("cloudBrowser"));
    m_or = faint(m_ways, text("CloudLoginOr", "or with a name and a password:"));
    m_fields = new QWidget(m_ways);
    auto* form = new QFormLayout(m_fields);
    form->setContentsMargins(0, 0, 0, 0);
    m_user = new QLineEdit(QString::fromStdWString(Vs::CloudOptionGroup::get()->user()), m_fields);
    m_user->setObjectName(QStringLiteral("cloudUser"));
    m_password = new QLineEdit(m_fields);
    m_password->setObjectName(QStringLiteral("cloudPassword"));
    m_password->setEchoMode(QLineEdit::Password);
    form->addRow(text("CloudLoginUser", "User"), m_user);
    form->addRow(text("CloudLoginPassword", "Password"), m_password);
    form->addRow(faint(m_fields,
                       text("CloudLoginAppPassword", "Preferably a password for this program alone, which "
                                                     "many servers offer in the settings of your account.")));
    m_keep =
        new QCheckBox(text("CloudLoginKeep", "Keep me signed in (in the keyring of this desktop)"), m_ways);
    m_keep->setObjectName(QStringLiteral("cloudKeep"));
    m_keep->setChecked(true);
    for (QWidget* each : std::initializer_list<QWidget*>{m_found, m_browser, m_or, m_fields, m_keep})
        column->addWidget(each);
    connect(m_browser, &QPushButton::clicked, this, &QTCloudLoginDialog::signInByBrowser);
    for (const QLineEdit* field : {m_user, m_password})
        connect(field, &QLineEdit::textChanged, this, &QTCloudLoginDialog::showDefault);
    return m_ways;
}

QWidget* QTCloudLoginDialog::makeWaiting()
{
    m_waiting = new QWidget(this);
    QVBoxLayout* column = columnOf(m_waiting);
    m_waitingFor = wrapped(m_waiting, {});
    auto* bar = new QProgressBar(m_waiting);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    m_again = new QPushButton(text("CloudLoginAgain", "Open the Browser Again"), m_waiting);
    m_again->setAutoDefault(false);
    connect(m_again, &QPushButton::clicked, this, [this] { std::ignore = openBrowser(m_browserAddress); });
    column->addWidget(m_waitingFor);
    column->addWidget(bar);
    column->addWidget(m_again, 0, Qt::AlignLeft);
    return m_waiting;
}

QWidget* QTCloudLoginDialog::makeButtons()
{
    auto* part = new QWidget(this);
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, kSpacing / 2, 0, 0);
    row->addStretch();
    m_proceed = new QPushButton(part);
    m_proceed->setObjectName(QStringLiteral("cloudProceed"));
    m_cancel = new QPushButton(part);
    m_cancel->setObjectName(QStringLiteral("cloudCancel"));
    m_cancel->setAutoDefault(false);
    row->addWidget(m_proceed);
    row->addWidget(m_cancel);
    connect(m_proceed, &QPushButton::clicked, this, &QTCloudLoginDialog::proceed);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        if (m_step == Step::Warning)
            std::ignore = Vs::MeshportAuth::globalInstance()->logout();
        reject();
    });
    return part;
}

void QTCloudLoginDialog::go(Step step)
{
    m_step = step;
    const bool isAsking = step == Step::Address || step == Step::Ways;
    m_address->setEnabled(isAsking);
    m_ways->setVisible(step == Step::Ways);
    m_waiting->setVisible(step == Step::Waiting);
    m_proceed->setVisible(step != Step::Waiting);
    m_proceed->setText(step == Step::Address   ? text("CloudLoginContinue", "Continue")
                       : step == Step::Warning ? text("CloudLoginUnderstood", "Use This Server")
                                               : text("CloudLoginSignIn", "Sign In"));
    m_cancel->setText(step == Step::Warning ? text("CloudLoginSignOut", "Sign Out")
                                            : text("CloudLoginCancel", "Cancel"));
    if (step == Step::Ways) {
        m_found->setText(text("CloudLoginFound", "Found: %1").arg(QString::fromStdString(m_offer.address)));
        m_browser->setVisible(offersBrowser());
        m_or->setVisible(offersBrowser() && m_offer.password);
        m_fields->setVisible(m_offer.password);
        m_proceed->setVisible(m_offer.password);
    }
    showDefault();
}

/// Return presses the button of the method that the user has started to fill in.
void QTCloudLoginDialog::showDefault()
{
    const bool isTyped = !m_user->text().isEmpty() && !m_password->text().isEmpty();
    const bool byBrowser = m_step == Step::Ways && offersBrowser() && !isTyped;
    m_proceed->setEnabled(m_step == Step::Address ? !m_address->text().trimmed().isEmpty()
                                                  : m_step != Step::Ways || isTyped);
    (byBrowser ? m_browser : m_proceed)->setDefault(true);
}

void QTCloudLoginDialog::proceed()
{
    if (m_step == Step::Address)
        find();
    else if (m_step == Step::Ways)
        signIn();
    else if (m_step == Step::Warning)
        accept();
}

template <class Request>
DriveResult QTCloudLoginDialog::wait(const QString& what, Request&& request)
{
    tell({}, false);
    m_waitingFor->setText(what);
    m_again->setVisible(false);
    go(Step::Waiting);
    m_cancel->setFocus();
    return request(*Vs::MeshportAuth::globalInstance());
}

void QTCloudLoginDialog::find()
{
    const std::string typed = m_address->text().trimmed().toStdString();
    const DriveResult result = wait(text("CloudLoginLooking", "Looking for the drive..."),
                                    [&](Vs::MeshportAuth& auth) { return auth.discover(typed, m_offer); });
    if (m_closes) {
        QDialog::reject();
    } else if (!result.isOk()) {
        go(Step::Address);
        if (result.state != Vs::CloudErrorState::Cancelled)
            tell(CloudTexts::notFound(result, m_address->text().trimmed()), true);
        m_address->setFocus();
    } else {
        go(Step::Ways);
        QWidget* next = offersBrowser()            ? static_cast<QWidget*>(m_browser)
                        : m_user->text().isEmpty() ? m_user
                                                   : m_password;
        next->setFocus();
    }
}

void QTCloudLoginDialog::signIn()
{
    DriveCredentials credentials;
    credentials.kind = DriveCredentials::Kind::Password;
    credentials.user = m_user->text().toStdString();
    credentials.secret = m_password->text().toStdString();
    finish(wait(text("CloudLoginTrying", "Signing in, and testing what the server can do..."),
                [&](Vs::MeshportAuth& auth) {
                    return auth.signIn(m_offer.address, credentials, m_keep->isChecked());
                }));
}

void QTCloudLoginDialog::signInByBrowser()
{
    finish(wait(text("CloudLoginInBrowser",
                     "Finish signing in in your browser. This dialog then continues by itself."),
                [&](Vs::MeshportAuth& auth) {
                    return auth.signInByBrowser(m_offer, m_keep->isChecked(),
                                                [this](const std::string& address) {
                                                    m_browserAddress = address;
                                                    m_again->setVisible(true);
                                                    return openBrowser(address);
                                                });
                }));
}

bool QTCloudLoginDialog::openBrowser(const std::string& address)
{
    Vs::Status status;
    openAddress(Vs::Strings::widen(address), AddressOf::Anybody, status);
    if (!status.isOk())
        tell(QString::fromStdWString(status.toString()), true);
    return status.isOk();
}

void QTCloudLoginDialog::finish(const DriveResult& result)
{
    if (result.isOk()) {
        const Vs::Cloud::DriveTraits* traits = Vs::MeshportAuth::globalInstance()->traits();
        if (!traits || !traits->isUnsafe()) {
            accept();
            return;
        }
        go(Step::Warning);
        tell(CloudTexts::unsafe(), false);
        m_proceed->setFocus();
        return;
    }
    if (m_closes) {
        QDialog::reject();
        return;
    }
    go(Step::Ways);
    (m_offer.password ? m_password : static_cast<QWidget*>(m_browser))->setFocus();
    m_password->selectAll();
    if (result.state == Vs::CloudErrorState::Cancelled)
        return;
    QString why = CloudTexts::failure(result);
    if (result.state == Vs::CloudErrorState::Unauthorized)
        why = text("CloudLoginWrong", "The server does not accept this name and password.");
    // Everything except the keyring succeeded.
    if (result.state == Vs::CloudErrorState::CacheFailed && m_keep->isChecked()) {
        why = text("CloudLoginNoKeyring", "The keyring of this desktop could not keep your password. Without "
                                          "\"Keep me signed in\", you "
                                          "are signed in until the program ends.") +
              QLatin1Char('\n') + QString::fromStdString(result.detail);
        m_keep->setChecked(false);
    }
    tell(why, true);
}

void QTCloudLoginDialog::tell(const QString& content, bool isError)
{
    QPalette colours = palette();
    if (isError)
        colours.setColor(QPalette::WindowText, errorColour());
    m_message->setPalette(colours);
    m_message->setText(content);
    m_message->setVisible(!content.isEmpty());
}

void QTCloudLoginDialog::reject()
{
    if (m_step == Step::Waiting)
        Vs::Progress::requestCancel();
    else
        QDialog::reject();
}

void QTCloudLoginDialog::closeEvent(QCloseEvent* event)
{
    // A request must return first.
    m_closes = m_step == Step::Waiting;
    if (m_closes) {
        event->ignore();
        reject();
        return;
    }
    QDialog::closeEvent(event);
}

namespace {

const bool registered = [] {
    Vs::CloudLoginDialog::asker([](Vs::CloudLoginDialog::ELoginMode) {
        if (Application::headless() || Application::testing())
            return false;
        Application::get()->needGui();
        // The caller may be the preferences.
        QWidget* above = QApplication::activeModalWidget();
        return QTCloudLoginDialog(above ? above : Application::get()->mainWidget()).exec() ==
               QDialog::Accepted;
    });
    return true;
}();

} // namespace
} // namespace Vu::Commands
