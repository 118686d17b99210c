#include "UI/Base/Window/KeysPage.h"

#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

namespace Vu {
namespace {

constexpr int kListHeight = 240;

} // namespace

KeysPage::KeysPage(QWidget* parent)
    : QWidget(parent),
      m_list(new QTreeWidget(this)),
      m_edit(new QKeySequenceEdit(this)),
      m_none(new QPushButton(told("KeysNone", "None"), this)),
      m_usual(new QPushButton(told("KeysUsual", "Default"), this)),
      m_take(new QPushButton(told("KeysTake", "Take It"), this)),
      m_conflict(PlainText::label(this))
{
    Accessible::role(m_edit, QAccessible::HotkeyField);
    m_list->setObjectName(QStringLiteral("keysList"));
    m_edit->setObjectName(QStringLiteral("keysEdit"));
    m_take->setObjectName(QStringLiteral("keysTake"));
    m_conflict->setObjectName(QStringLiteral("keysConflict"));
    m_list->setHeaderLabels({told("KeysCommand", "Command"), told("KeysKeys", "Keys")});
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->setRootIsDecorated(false);
    m_list->setMinimumHeight(kListHeight);
    m_list->setAccessibleName(told("PreferencesKeys", "Keys"));
    m_edit->setAccessibleName(told("KeysKeys", "Keys"));
    for (QLineEdit* line : m_edit->findChildren<QLineEdit*>())
        line->setAccessibleName(m_edit->accessibleName());
    for (QPushButton* button : {m_none, m_usual, m_take})
        button->setAutoDefault(false);
    m_conflict->setWordWrap(true);

    auto* row = new QHBoxLayout;
    row->addWidget(m_edit, 1);
    row->addWidget(m_none);
    row->addWidget(m_usual);
    auto* conflict = new QHBoxLayout;
    conflict->addWidget(m_conflict, 1);
    conflict->addWidget(m_take);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_list);
    column->addLayout(row);
    column->addLayout(conflict);

    connect(m_list, &QTreeWidget::currentItemChanged, this, &KeysPage::showCurrent);
    connect(m_edit, &QKeySequenceEdit::editingFinished, this, &KeysPage::entered);
    connect(m_none, &QPushButton::clicked, this, [this] {
        if (const CommandDefinition* definition = current())
            KeyTable::get()->change(*definition, {});
    });
    connect(m_usual, &QPushButton::clicked, this, [this] {
        if (const CommandDefinition* definition = current())
            KeyTable::get()->change(*definition, KeyTable::get()->defaultKeysOf(*definition));
    });
    connect(m_take, &QPushButton::clicked, this, &KeysPage::take);
    connect(KeyTable::get(), &KeyTable::changed, this, &KeysPage::refresh);
    for (const CommandDefinition* definition : CommandDefinitionMgr::get()->commandDefinitions())
        if (!definition->info()->name().empty())
            add(*definition);
    m_list->sortItems(0, Qt::AscendingOrder);
    m_list->setCurrentItem(m_list->topLevelItem(0));
    refresh();
    showConflict(KeyTable::get()->problems().join(QLatin1Char('\n')));
}

void KeysPage::add(const CommandDefinition& definition)
{
    auto* item = new QTreeWidgetItem(m_list);
    item->setText(0, QString::fromStdWString(definition.info()->name()));
    item->setIcon(0, iconOf(definition.info()->icon()));
    item->setData(0, Qt::UserRole, QString::fromStdWString(definition.id()));
}

const CommandDefinition* KeysPage::current() const
{
    const QTreeWidgetItem* item = m_list->currentItem();
    return item ? CommandDefinitionMgr::get()->findCommandDefinitionById(
                      item->data(0, Qt::UserRole).toString().toStdWString())
                : nullptr;
}

void KeysPage::refresh()
{
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = m_list->topLevelItem(i);
        const CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(
            item->data(0, Qt::UserRole).toString().toStdWString());
        const QString keys =
            definition ? KeyTable::toText(KeyTable::get()->keysOf(*definition), QKeySequence::NativeText)
                       : QString();
        item->setText(1, keys);
        item->setData(1, Qt::AccessibleTextRole, keys.isEmpty() ? told("KeysNone", "None") : keys);
    }
    showCurrent();
}

void KeysPage::showCurrent()
{
    const CommandDefinition* definition = current();
    m_edit->setEnabled(definition);
    m_edit->setKeySequence(definition ? KeyTable::get()->keysOf(*definition).value(0) : QKeySequence());
    showConflict({});
}

void KeysPage::showConflict(const QString& text)
{
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, errorColour());
    m_conflict->setPalette(colours);
    m_conflict->setText(text);
    m_conflict->setVisible(!text.isEmpty());
    m_take->setVisible(!m_wanted.isEmpty() && !text.isEmpty());
    if (text.isEmpty())
        m_wanted = {};
}

void KeysPage::entered()
{
    const CommandDefinition* definition = current();
    const QKeySequence key = m_edit->keySequence();
    if (!definition || key.isEmpty() || key == KeyTable::get()->keysOf(*definition).value(0))
        return;
    const std::vector<CommandDefinition*> rivals = KeyTable::get()->rivals(*definition, {key});
    if (rivals.empty()) {
        KeyTable::get()->change(*definition, {key});
        return;
    }
    m_wanted = key;
    showConflict(QString::fromStdWString(localizedFormat(
        "KeysTaken", "%1% belongs to \"%2%\".", key.toString(QKeySequence::NativeText).toStdWString(),
        rivals.front()->info()->name())));
}

void KeysPage::take()
{
    const CommandDefinition* definition = current();
    const QKeySequence key = m_wanted;
    if (!definition || key.isEmpty())
        return;
    for (const CommandDefinition* rival : KeyTable::get()->rivals(*definition, {key})) {
        KeyTable::Keys left = KeyTable::get()->keysOf(*rival);
        left.removeAll(key);
        KeyTable::get()->change(*rival, left);
    }
    KeyTable::get()->change(*definition, {key});
}

bool KeysPage::filter(const QString& text)
{
    bool any = false;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = m_list->topLevelItem(i);
        const bool found = item->text(0).contains(text, Qt::CaseInsensitive) ||
                           item->text(1).contains(text, Qt::CaseInsensitive) ||
                           item->data(0, Qt::UserRole).toString().contains(text, Qt::CaseInsensitive);
        item->setHidden(!found);
        any = any || found;
        if (found && m_list->currentItem() && m_list->currentItem()->isHidden())
            m_list->setCurrentItem(item);
    }
    return any;
}

} // namespace Vu
