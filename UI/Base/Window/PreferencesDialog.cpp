#include "UI/Base/Window/PreferencesDialog.h"

#include "UI/Base/Program/PreferencesPage.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/KeyTable.h"
#include "UI/Base/Window/KeysPage.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>

#include <algorithm>
#include <tuple>

namespace Vu {
namespace {

constexpr int kPagesWidth = 130;
constexpr QSize kSize(600, 480);

QString valueOf(const Preference& preference)
{
    return QString::fromStdWString(preference.text());
}

// What the editors offer is always a valid value of the preference.
void set(const Preference& preference, const QString& value)
{
    std::ignore = preference.setText(value.toStdWString());
}

QWidget* editorOf(const Preference& preference, const Preference::Toggle&, std::function<void()>& read)
{
    auto* box = new QCheckBox(QString::fromStdWString(preference.title()));
    read = [box, &preference] { box->setChecked(preference.text() == L"true"); };
    QObject::connect(box, &QCheckBox::clicked, box,
                     [&preference](bool on) { set(preference, on ? "true" : "false"); });
    return box;
}

QWidget* editorOf(const Preference& preference, const Preference::Count& count, std::function<void()>& read)
{
    auto* number = new QSpinBox;
    number->setRange(count.least, count.most);
    read = [number, &preference] {
        const QSignalBlocker quiet(number);
        number->setValue(valueOf(preference).toInt());
    };
    QObject::connect(number, &QSpinBox::valueChanged, number,
                     [&preference](int value) { set(preference, QString::number(value)); });
    return number;
}

QWidget* editorOf(const Preference& preference, const Preference::TextChoice& choice,
                  std::function<void()>& read)
{
    auto* list = new QComboBox;
    for (const Preference::Choice& each : choice.choices())
        list->addItem(QString::fromStdWString(each.title), QString::fromStdWString(each.value));
    read = [list, &preference] { list->setCurrentIndex(list->findData(valueOf(preference))); };
    QObject::connect(list, &QComboBox::activated, list,
                     [list, &preference] { set(preference, list->currentData().toString()); });
    return list;
}

/// Whether the text occurs anywhere on the page.
bool says(const QWidget& page, const QString& wanted)
{
    const auto has = [&](const auto* widget) { return widget->text().contains(wanted, Qt::CaseInsensitive); };
    const auto labels = page.findChildren<QLabel*>();
    const auto buttons = page.findChildren<QAbstractButton*>();
    return std::any_of(labels.begin(), labels.end(), has) || std::any_of(buttons.begin(), buttons.end(), has);
}

} // namespace

PreferencesDialog::PreferencesDialog(QWidget* parent)
    : QDialog(parent), m_search(new QLineEdit), m_pages(new QListWidget), m_scroll(new QScrollArea)
{
    setWindowTitle(told("PreferencesTitle", "Preferences"));
    m_search->setPlaceholderText(told("PreferencesSearch", "Search"));
    m_search->setAccessibleName(m_search->placeholderText());
    Accessible::clearButton(m_search);
    m_pages->setFixedWidth(kPagesWidth);
    m_pages->setSpacing(kMargin / 3);
    m_pages->setAccessibleName(windowTitle());

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    addSections(column);
    addBroughtPages(column);
    addKeys(column);
    column->addStretch();
    m_scroll->setWidget(content);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);

    auto* middle = new QHBoxLayout;
    middle->addWidget(m_pages);
    middle->addWidget(m_scroll, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    // The style's icon is black on any background.
    buttons->button(QDialogButtonBox::Close)->setIcon({});
    QPushButton* defaults =
        buttons->addButton(told("PreferencesDefaults", "Restore Defaults"), QDialogButtonBox::ResetRole);
    defaults->setAutoDefault(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addLayout(middle, 1);
    layout->addWidget(buttons);

    connect(m_search, &QLineEdit::textChanged, this, &PreferencesDialog::search);
    connect(m_pages, &QListWidget::currentRowChanged, this, &PreferencesDialog::showPage);
    // Even for a page that was already current.
    connect(m_pages, &QListWidget::itemClicked, this, [this] { showPage(m_pages->currentRow()); });
    m_pages->installEventFilter(this);
    connect(defaults, &QPushButton::clicked, this, &PreferencesDialog::resetAll);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(kSize);
    m_search->setText(QString::fromStdWString(Preferences::searched()));
    m_search->setFocus();
}

void PreferencesDialog::showPage(int page)
{
    if (page >= 0)
        m_scroll->ensureWidgetVisible(m_sections[static_cast<size_t>(page)].frame, 0, 0);
}

bool PreferencesDialog::enterPage(int page)
{
    if (page < 0)
        return false;
    for (QWidget* each : m_sections[static_cast<size_t>(page)].frame->findChildren<QWidget*>())
        if (each->isVisible() && each->isEnabled() && (each->focusPolicy() & Qt::TabFocus)) {
            each->setFocus(Qt::TabFocusReason);
            return true;
        }
    return false;
}

/// From the list, the focus moves on to the page that it leads to, not to the first one.
bool PreferencesDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pages && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if ((key == Qt::Key_Tab || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Right) &&
            enterPage(m_pages->currentRow()))
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void PreferencesDialog::addSections(QVBoxLayout* column)
{
    QGridLayout* grid = nullptr;
    const Preference* before = nullptr;
    for (const Preference& preference : Preferences::all()) {
        if (!before || before->page() != preference.page()) {
            const QString title = QString::fromStdWString(Preferences::titleOf(preference.page()));
            m_pages->addItem(title);
            m_sections.push_back({new QWidget, {}});
            grid = new QGridLayout(m_sections.back().frame);
            grid->setContentsMargins(0, 0, 0, kMargin);
            grid->setColumnStretch(1, 1);
            QLabel* head = PlainText::label(m_sections.back().frame, title);
            QFont bold = head->font();
            bold.setBold(true);
            head->setFont(bold);
            grid->addWidget(head, 0, 0, 1, 2);
            column->addWidget(m_sections.back().frame);
        }
        addRow(m_sections.back(), grid, preference);
        before = &preference;
    }
}

QVBoxLayout* PreferencesDialog::addSection(QVBoxLayout* column, const QString& title)
{
    m_pages->addItem(title);
    m_sections.push_back({new QWidget, {}});
    QWidget* frame = m_sections.back().frame;
    auto* inner = new QVBoxLayout(frame);
    inner->setContentsMargins(0, 0, 0, kMargin);
    QLabel* head = PlainText::label(frame, title);
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    inner->addWidget(head);
    column->addWidget(frame);
    return inner;
}

void PreferencesDialog::addBroughtPages(QVBoxLayout* column)
{
    for (const PreferencesPage* page : PreferencesPage::all()) {
        QVBoxLayout* inner = addSection(column, QString::fromStdWString(page->title()));
        m_sections.back().page = page->make(m_sections.back().frame);
        inner->addWidget(m_sections.back().page);
    }
}

void PreferencesDialog::addKeys(QVBoxLayout* column)
{
    QVBoxLayout* inner = addSection(column, told("PreferencesKeys", "Keys"));
    m_keys = new KeysPage(m_sections.back().frame);
    inner->addWidget(m_keys);
}

void PreferencesDialog::addRow(Section& section, QGridLayout* grid, const Preference& preference)
{
    Row row{&preference, nullptr, nullptr, {}};
    row.editor =
        std::visit([&](const auto& kind) { return editorOf(preference, kind, row.read); }, preference.kind());
    row.editor->setObjectName(QString::fromStdWString(preference.id()));
    row.editor->setAccessibleName(QString::fromStdWString(preference.title()));
    PlainText::setTooltip(row.editor, QString::fromStdWString(preference.id()));
    const int line = grid->rowCount();
    if (std::holds_alternative<Preference::Toggle>(preference.kind())) {
        grid->addWidget(row.editor, line, 0, 1, 2);
    } else {
        QLabel* label = PlainText::label(section.frame, QString::fromStdWString(preference.title()));
        label->setBuddy(row.editor);
        row.label = label;
        grid->addWidget(label, line, 0);
        grid->addWidget(row.editor, line, 1, Qt::AlignLeft);
    }
    row.read();
    section.rows.push_back(std::move(row));
}

void PreferencesDialog::search(const QString& wanted)
{
    for (size_t i = 0; i < m_sections.size(); ++i) {
        const bool whole = m_pages->item(static_cast<int>(i))->text().contains(wanted, Qt::CaseInsensitive);
        const bool isKeys = i + 1 == m_sections.size();
        bool any = isKeys && m_keys->filter(whole ? QString() : wanted);
        if (m_sections[i].page)
            any = whole || says(*m_sections[i].frame, wanted);
        for (const Row& row : m_sections[i].rows) {
            const bool found =
                whole ||
                QString::fromStdWString(row.preference->title()).contains(wanted, Qt::CaseInsensitive) ||
                QString::fromStdWString(row.preference->id()).contains(wanted, Qt::CaseInsensitive);
            row.editor->setVisible(found);
            if (row.label)
                row.label->setVisible(found);
            any = any || found;
        }
        m_sections[i].frame->setVisible(any);
        m_pages->item(static_cast<int>(i))->setHidden(!any);
    }
}

void PreferencesDialog::resetAll()
{
    KeyTable::get()->resetAll();
    for (const Section& section : m_sections)
        for (const Row& row : section.rows) {
            row.preference->reset();
            row.read();
        }
}

} // namespace Vu
