#include "UI/Base/Window/StatusFields.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Types/LengthUnit.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/UnitName.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/RestingCommand.h"
#include "UI/Base/Window/SelectionText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QBoxLayout>
#include <QDateTime>
#include <QFileInfo>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QToolButton>

namespace Vu {
namespace {

constexpr int kSecond = 1000;
constexpr int kWidestField = 420, kWidestPrompt = 800;

QToolButton* listButton(const char* name, const QString& what, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setProperty("status", true);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(new QMenu(button));
    button->setAccessibleName(what);
    PlainText::setTooltip(button, what);
    return button;
}

/// A label that shrinks when there is little room.
QLabel* field(const char* name, QWidget* parent)
{
    QLabel* label = PlainText::label(parent);
    label->setObjectName(QLatin1String(name));
    label->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    label->setMinimumWidth(0);
    label->hide();
    return label;
}

/// A name may be of any length, and the fields after it must not move.
void showIn(QLabel* label, const QString& shown, int widest = kWidestField)
{
    label->setText(label->fontMetrics().elidedText(shown, Qt::ElideMiddle, widest));
    label->setVisible(!shown.isEmpty());
    PlainText::setTooltip(label, shown);
}

QString timeText(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / kSecond;
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

void runByMenu(const wchar_t* command)
{
    if (CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(command))
        definition->runByHand(ECommandAccessPoint::Menu);
}

} // namespace

StatusFields::StatusFields(QWidget* parent)
    : QWidget(parent),
      m_prompt(field("prompt", this)),
      m_selection(field("selection", this)),
      m_unit(listButton("unit", told("StatusUnit", "Unit of length"), this)),
      m_snap(listButton("snap", told("StatusSnap", "Distance snapping"), this)),
      m_recording(field("recording", this))
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2 * kMargin);
    for (QWidget* each : std::initializer_list<QWidget*>{m_prompt, m_selection, m_unit, m_snap, m_recording})
        row->addWidget(each);
    m_soon.setSingleShot(true);
    m_second.setInterval(kSecond);
    connect(&m_soon, &QTimer::timeout, this, &StatusFields::refresh);
    connect(&m_second, &QTimer::timeout, this, &StatusFields::showRecording);
    connect(m_unit->menu(), &QMenu::aboutToShow, this, &StatusFields::chooseUnit);
    connect(m_snap->menu(), &QMenu::aboutToShow, this, &StatusFields::chooseSnap);
    m_subscriptions.add(Vs::UnitsOptionGroup::get(), this);
    m_subscriptions.add(Inference::SnapManager::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
    refresh();
}

StatusFields::~StatusFields()
{
    m_followed.follow(nullptr);
    m_subscriptions.clear();
}

void StatusFields::optionChanged(Vs::OptionEvent*)
{
    refreshSoon();
}

void StatusFields::sessionClosed(SessionEvent*)
{
    // Of any session: what is followed must not outlive it.
    m_followed.follow(nullptr);
    refreshSoon();
}

void StatusFields::refreshSoon()
{
    if (!m_soon.isActive())
        m_soon.start(0);
}

void StatusFields::refresh()
{
    m_soon.stop();
    showPrompt();
    showSelection();
    showRecording();
    m_unit->setText(QString::fromLatin1(Vs::LengthUnit::display().key));
    const auto* snap = Inference::SnapManager::get();
    m_snap->setText(!snap->enableDistanceSnapping() ? told("StatusNoSnap", "no snap")
                    : snap->adaptiveSnap()
                        ? told("StatusSnapByZoom", "snap")
                        : QStringLiteral("%1 %2").arg(told("StatusSnapByZoom", "snap"),
                                                      QLocale().toString(snap->snapIncrement())));
}

void StatusFields::showPrompt()
{
    const CommandBase* active = CommandBase::getActiveCommand();
    const CommandDefinition* definition = active && !commandRests() ? active->commandDefinition() : nullptr;
    if (!definition) {
        showIn(m_prompt, {});
        return;
    }
    const Info& info = *definition->info();
    QString prompt = QString::fromStdWString(info.name());
    if (const std::wstring& what = info.tooltip().description(); !what.empty() && what != info.name())
        prompt += QStringLiteral(": ") + QString::fromStdWString(what);
    showIn(m_prompt, prompt, kWidestPrompt);
}

void StatusFields::showSelection()
{
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    Vs::SelectionMgr* manager = session ? session->selectionManager() : nullptr;
    m_followed.follow(manager ? &manager->selectionSet() : nullptr);
    showIn(m_selection, manager && session->asset()
                            ? QString::fromStdWString(selectionText(*manager, *session->asset()))
                            : QString());
}

void StatusFields::showRecording()
{
    const std::wstring file =
        Vs::TranscriptMgr::get()->recording() ? Vs::TranscriptMgr::get()->recordingFile() : std::wstring();
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (file != m_recordedFile)
        m_recordedSince = now;
    m_recordedFile = file;
    if (file.empty()) {
        m_second.stop();
        m_recording->hide();
        return;
    }
    if (!m_second.isActive())
        m_second.start();
    const QString name = QFileInfo(QString::fromStdWString(file)).fileName();
    m_recording->setText(QStringLiteral("\u25cf REC  %1  %2").arg(name, timeText(now - m_recordedSince)));
    PlainText::setTooltip(m_recording, QString::fromStdWString(file));
    m_recording->show();
}

void StatusFields::chooseUnit()
{
    QMenu* menu = m_unit->menu();
    menu->clear();
    for (const Vs::LengthUnit& unit : Vs::LengthUnit::all()) {
        QAction* action = menu->addAction(QStringLiteral("%1 (%2)").arg(
            QString::fromStdWString(unitName(unit)), QString::fromLatin1(unit.key)));
        action->setCheckable(true);
        action->setChecked(&unit == &Vs::LengthUnit::display());
        connect(action, &QAction::triggered, menu, [&unit] { Vs::LengthUnit::display(unit); });
    }
}

void StatusFields::chooseSnap()
{
    QMenu* menu = m_snap->menu();
    menu->clear();
    const auto* snap = Inference::SnapManager::get();
    const auto add = [&](const QString& title, bool on, const wchar_t* command) {
        QAction* action = menu->addAction(title);
        action->setCheckable(true);
        action->setChecked(on);
        connect(action, &QAction::triggered, menu, [command] { runByMenu(command); });
    };
    add(told("StatusSnapAdaptive", "Snap according to the zoom"), snap->adaptiveSnap(),
        L"EnableAdaptiveSnapCmd");
    add(told("StatusSnapFixed", "Snap to a fixed distance"), !snap->adaptiveSnap(),
        L"DisableAdaptiveSnapCmd");
}

} // namespace Vu
