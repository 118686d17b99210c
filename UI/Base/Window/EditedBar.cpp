#include "UI/Base/Window/EditedBar.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/ContextMenu.h"
#include "UI/Base/Window/PlainText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Vu {
namespace {

constexpr std::wstring_view kReturnCommand = L"ReturnToEnvironmentCommand";

/// From the model down to whatever contains the component being edited.
QString placeOf(const AssetSession& session)
{
    QStringList names;
    for (std::string id = Vs::parentId(session.editedComponent()); !id.empty(); id = Vs::parentId(id))
        if (const Vs::Component* component = session.asset()->findComponent(id))
            names.prepend(QString::fromStdWString(component->name));
    names.prepend(QString::fromStdWString(session.asset()->name()));
    return names.join(QStringLiteral(" \u203a ")) + QStringLiteral(" \u203a");
}

} // namespace

EditedBar::EditedBar(QWidget* parent)
    : QWidget(parent), m_place(PlainText::label(this)), m_name(PlainText::label(this))
{
    m_place->setObjectName(QStringLiteral("EditedPlace"));
    m_name->setObjectName(QStringLiteral("EditedName"));
    for (QLabel* label : {m_place, m_name})
        label->setWordWrap(true);
    QFont bold = m_name->font();
    bold.setBold(true);
    m_name->setFont(bold);
    auto* leave = new QPushButton(QString::fromStdWString(localized("EditedBarOk", "OK")), this);
    leave->setObjectName(QStringLiteral("EditedLeave"));
    PlainText::setTooltip(
        leave, QString::fromStdWString(localized("EditedBarOkDesc", "Go back to what contains it")));
    leave->setFocusPolicy(Qt::NoFocus);
    const QFontMetrics metrics = leave->fontMetrics();
    leave->setFixedWidth(metrics.horizontalAdvance(leave->text()) + 3 * metrics.height());
    connect(leave, &QPushButton::clicked, this, [] { runFromContextMenu(kReturnCommand); });
    auto* names = new QVBoxLayout;
    names->setSpacing(0);
    names->addWidget(m_place);
    names->addWidget(m_name);
    auto* row = new QHBoxLayout(this);
    row->addLayout(names, 1);
    row->addWidget(leave);
    m_subscriptions.add(SessionEventSource::get(), this);
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
    refresh();
}

// A name may have changed.
void EditedBar::assetComponentsChanged(Vs::ComponentsEvent*)
{
    if (!isHidden())
        refresh();
}

void EditedBar::refresh()
{
    const AssetSession* session = SessionMgr::get()->currentAssetSession();
    const std::string edited = session ? session->editedComponent() : std::string();
    const Vs::Component* component = edited.empty() ? nullptr : session->asset()->findComponent(edited);
    if (component) {
        m_place->setText(placeOf(*session));
        m_name->setText(QString::fromStdWString(component->name));
    }
    setVisible(component != nullptr);
}

} // namespace Vu
