#include "UI/Commands/Adaptations/QT/Itemhub/QTItemhubSignInDialog.h"

#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Program/Address.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/Itemhub/ItemhubSessionCmds.h"
#include "UI/Commands/Localized.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <tuple>

namespace Vu::Commands {
namespace {

using Vs::ItemhubUtilities;

constexpr int kBorder = 20, kSpacing = 12, kWidth = 460;

QString named(const char* key, const char* english)
{
    return QString::fromStdWString(localizedFormat(key, english, ItemhubUtilities::getItemhub_TM()));
}

QLabel* wrapped(QWidget* parent, const QString& content)
{
    QLabel* label = PlainText::label(parent, content);
    label->setWordWrap(true);
    return label;
}

std::string utf8(const QLineEdit* field)
{
    return field->text().trimmed().toStdString();
}

} // namespace

QTItemhubSignInDialog::QTItemhubSignInDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("itemhubSignIn"));
    setWindowTitle(named("ItemhubSignInTitle", "Sign In to %1%"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
    column->setSpacing(kSpacing);
    QLabel* head = wrapped(this, named("ItemhubSignInHead",
                                       "%1% keeps designs as items, with all of their versions, comments and "
                                       "links."));
    head->setMinimumWidth(kWidth);
    m_message = wrapped(this, {});
    m_message->setObjectName(QStringLiteral("itemhubMessage"));
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->hide();
    for (QWidget* part :
         std::initializer_list<QWidget*>{head, makeOwn(), makeTeams(), m_message, makeButtons()})
        column->addWidget(part);
    for (const QLineEdit* field : {m_address, m_customer, m_account, m_password})
        connect(field, &QLineEdit::textChanged, this, [this] {
            tell({});
            refresh();
        });
    refresh();
    m_own->setFocus();
}

QTItemhubSignInDialog::~QTItemhubSignInDialog()
{
    m_password->clear();
}

QWidget* QTItemhubSignInDialog::makeOwn()
{
    auto* part = new QGroupBox(told("ItemhubOwn", "On this computer"), this);
    auto* column = new QVBoxLayout(part);
    column->addWidget(wrapped(
        part, told("ItemhubOwnWhat",
                   "For one person: the items are kept in your profile, and nobody else sees them.")));
    m_own = new QPushButton(told("ItemhubUseOwn", "Use This Computer"), part);
    m_own->setObjectName(QStringLiteral("itemhubOwn"));
    m_own->setAutoDefault(false);
    column->addWidget(m_own, 0, Qt::AlignLeft);
    connect(m_own, &QPushButton::clicked, this,
            [this] { sign([] { return ItemhubUtilities::get()->signInToOwnService(); }); });
    return part;
}

QLineEdit* QTItemhubSignInDialog::field(QFormLayout* form, const char* name, const QString& title,
                                        const QString& hint)
{
    auto* made = new QLineEdit(form->parentWidget());
    made->setObjectName(QLatin1String(name));
    made->setAccessibleName(title);
    made->setPlaceholderText(hint);
    form->addRow(PlainText::label(form->parentWidget(), title), made);
    return made;
}

QWidget* QTItemhubSignInDialog::makeTeams()
{
    auto* part = new QGroupBox(told("ItemhubTeams", "Of a team"), this);
    auto* form = new QFormLayout(part);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const auto* options = Vs::ItemhubOptionGroup::get();
    m_address = field(form, "itemhubAddress", told("ItemhubAddress", "Address"),
                      QStringLiteral("https://items.example.org"));
    m_customer = field(form, "itemhubCustomer", told("ItemhubCustomer", "Customer"),
                       told("ItemhubCustomerHint", "if the service has several"));
    m_account = field(form, "itemhubAccount", told("ItemhubAccount", "Name"), {});
    m_password = field(form, "itemhubPassword", told("ItemhubPassword", "Password"), {});
    m_password->setEchoMode(QLineEdit::Password);
    m_address->setText(QString::fromStdWString(options->service()));
    m_customer->setText(QString::fromStdWString(options->customer()));
    m_account->setText(options->service().empty() ? QString() : QString::fromStdWString(options->account()));
    m_keep = new QCheckBox(told("ItemhubKeep", "Stay signed in"), part);
    m_keep->setChecked(true);
    form->addRow(QString(), m_keep);
    auto* buttons = new QHBoxLayout;
    m_browser = new QPushButton(told("ItemhubBrowser", "Sign In with the Browser"), part);
    m_browser->setObjectName(QStringLiteral("itemhubBrowser"));
    m_browser->setAutoDefault(false);
    m_signIn = new QPushButton(told("ItemhubSignIn", "Sign In"), part);
    m_signIn->setObjectName(QStringLiteral("itemhubProceed"));
    m_signIn->setDefault(true);
    buttons->addWidget(m_browser);
    buttons->addStretch(1);
    buttons->addWidget(m_signIn);
    form->addRow(buttons);
    connect(m_browser, &QPushButton::clicked, this, [this] { signInByBrowser(); });
    connect(m_signIn, &QPushButton::clicked, this, [this] { signInWithPassword(); });
    return part;
}

QWidget* QTItemhubSignInDialog::makeButtons()
{
    auto* part = new QWidget(this);
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch(1);
    auto* cancel = new QPushButton(told("ItemhubCancel", "Cancel"), part);
    cancel->setAutoDefault(false);
    row->addWidget(cancel);
    connect(cancel, &QPushButton::clicked, this, &QTItemhubSignInDialog::reject);
    return part;
}

void QTItemhubSignInDialog::refresh()
{
    const bool hasAddress = !utf8(m_address).empty();
    m_own->setEnabled(!m_asking);
    m_browser->setEnabled(!m_asking && hasAddress);
    m_signIn->setEnabled(!m_asking && hasAddress && !utf8(m_account).empty() &&
                         !m_password->text().isEmpty());
}

void QTItemhubSignInDialog::signInByBrowser()
{
    sign([this] {
        return ItemhubUtilities::get()->signInByBrowser(
            utf8(m_address), utf8(m_customer), m_keep->isChecked(), [](const std::string& address) {
                Vs::Status status;
                openAddress(Vs::Strings::widen(address), AddressOf::Anybody, status);
                return status.isOk();
            });
    });
}

void QTItemhubSignInDialog::signInWithPassword()
{
    sign([this] {
        return ItemhubUtilities::get()->signInWithPassword(utf8(m_address), utf8(m_customer), utf8(m_account),
                                                           m_password->text().toStdString(),
                                                           m_keep->isChecked());
    });
}

void QTItemhubSignInDialog::sign(const std::function<bool()>& way)
{
    m_asking = true;
    tell({});
    refresh();
    const QPointer<QTItemhubSignInDialog> alive(this);
    QString failure;
    bool signedIn = false;
    try {
        signedIn = way();
    } catch (const std::exception&) {
        failure = QString::fromStdWString(ItemhubUtilities::currentFailure());
        tryWithoutKeeping(failure);
    }
    if (!alive)
        return;
    m_asking = false;
    refresh();
    if (signedIn)
        accept();
    else
        tell(failure);
}

/// If no keyring can store the credentials, the user can continue without. Call this in a handler.
void QTItemhubSignInDialog::tryWithoutKeeping(QString& failure)
{
    using Failure = Corvane::Itemstore::WebServices::ItemhubException;
    try {
        throw;
    } catch (const Failure& error) {
        if (error.kind() != Failure::Kind::Local || !m_keep->isChecked())
            return;
        m_keep->setChecked(false);
        failure +=
            QLatin1String(failure.endsWith(u'.') ? " " : ". ") +
            told("ItemhubWithoutKeeping", "Sign in once more to stay signed in until the program ends.");
    } catch (...) {
        return;
    }
}

void QTItemhubSignInDialog::tell(const QString& content)
{
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, errorColour());
    m_message->setPalette(colours);
    m_message->setText(content);
    m_message->setVisible(!content.isEmpty());
    // adjustSize() stops at two thirds of the screen's height, and would squeeze the fields.
    const int width = sizeHint().width();
    resize(width, layout()->totalHeightForWidth(width));
}

/// Esc in a request cancels only the request.
void QTItemhubSignInDialog::reject()
{
    if (!m_asking)
        QDialog::reject();
}

namespace {

/// Installed as long as the library is loaded.
class Installed
{
public:
    Installed()
    {
        ItemhubSignInCmdDef::asker([] {
            QTItemhubSignInDialog dialog(Application::get()->mainWidget());
            std::ignore = dialog.exec();
        });
    }
    ~Installed() { ItemhubSignInCmdDef::asker(nullptr); }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;
};

const Installed kInstalled;

} // namespace
} // namespace Vu::Commands
