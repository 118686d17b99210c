#include "UI/Commands/Adaptations/QT/Cloud/CloudPath.h"

#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Resources.h"

#include <QBoxLayout>
#include <QTimer>
#include <QToolButton>

namespace Vu::Commands {
namespace {
/// A folder's name may be of any length.
constexpr int kLongest = 180;
} // namespace

CloudPath::CloudPath(std::function<void(const std::string&)> go, QWidget* parent)
    : QWidget(parent), m_go(std::move(go)), m_row(new QHBoxLayout(this))
{
    setObjectName(QStringLiteral("cloudPath"));
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(0);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void CloudPath::show(const std::string& folder)
{
    while (QLayoutItem* item = m_row->takeAt(0)) {
        if (QWidget* gone = item->widget()) {
            gone->hide();
            gone->deleteLater(); // One of them may be the sender.
        }
        delete item;
    }
    std::vector<std::pair<QString, std::string>> stops;
    stops.emplace_back(QString::fromStdWString(Vs::SkyvaultUtilities::getCloud_TM()), "/");
    for (size_t from = 1; from < folder.size();) {
        const size_t to = std::min(folder.find('/', from), folder.size());
        stops.emplace_back(CloudTexts::shown(folder.substr(from, to - from)), folder.substr(0, to));
        from = to + 1;
    }
    for (size_t i = 0; i < stops.size(); ++i)
        add(stops[i].first, stops[i].second, i + 1 == stops.size());
    m_row->addStretch();
    fit();
}

void CloudPath::add(const QString& title, const std::string& folder, bool isLast)
{
    auto* button = new QToolButton(this);
    button->setProperty("flat", true);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    if (folder == "/") {
        button->setIcon(iconOf(Resources::Cloud()));
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
    // An ampersand is literal, not a mnemonic.
    QString shown = fontMetrics().elidedText(title, Qt::ElideMiddle, kLongest);
    shown.replace(QLatin1Char('&'), QStringLiteral("&&"));
    button->setText(isLast ? shown : shown + QStringLiteral("  \u203a"));
    button->setAccessibleName(title);
    connect(button, &QToolButton::clicked, this, [this, folder] { m_go(folder); });
    m_row->addWidget(button);
}

void CloudPath::fit()
{
    int room = width();
    for (int i = m_row->count() - 1; i >= 0; --i) {
        QWidget* button = m_row->itemAt(i)->widget();
        if (!button)
            continue;
        room -= button->sizeHint().width();
        // The current folder is always visible, and the root can always be reached.
        button->setVisible(room >= 0 || i == 0 || i + 2 == m_row->count());
    }
}

void CloudPath::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fit();
}

QSize CloudPath::minimumSizeHint() const
{
    constexpr int kLeast = 120;
    return {kLeast, m_row->minimumSize().height()};
}

} // namespace Vu::Commands
