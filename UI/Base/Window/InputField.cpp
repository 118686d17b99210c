#include "UI/Base/Window/InputField.h"

#include "UI/Base/Command/ColourCommandInput.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/ControlCommandInputs.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Window/ColourButton.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/TextField.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/TickMenu.h"

#include <QAction>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QToolButton>

namespace Vu {
namespace {

QString titleOf(const Info& info)
{
    return QString::fromStdWString(info.name());
}

/// The record's tooltip, or its title without one.
QString tipOf(const Info& info)
{
    const ToolTipInfo& tooltip = info.tooltip();
    if (tooltip.description().empty())
        return titleOf(info);
    const QString extended = QString::fromStdWString(tooltip.extended());
    return QString::fromStdWString(tooltip.description()) +
           (extended.isEmpty() ? QString() : QLatin1Char('\n') + extended);
}

class CheckField : public InputField
{
public:
    CheckField(BoolValueCommandInput* input, QWidget* parent)
        : InputField(input, parent), m_box(new QCheckBox(titleOf(*input->info()), this))
    {
        add(m_box);
        connect(m_box, &QCheckBox::clicked, this, [this](bool on) {
            if (auto* value = Vs::cast<BoolValueCommandInput>(this->input()))
                value->value(on);
        });
    }
    bool hasOwnTitle() const override { return true; }

protected:
    void show(const CommandInputBase& input, bool) override
    {
        m_box->setChecked(Vs::cast<BoolValueCommandInput>(&input)->value());
    }

private:
    QCheckBox* m_box;
};

class ColourField : public InputField
{
public:
    ColourField(ColourCommandInput* input, QWidget* parent)
        : InputField(input, parent),
          m_button(new ColourButton(
              titleOf(*input->info()),
              [self = QPointer(this)](const std::wstring& code) {
                  if (auto* colour = self ? Vs::cast<ColourCommandInput>(self->input()) : nullptr)
                      colour->value(code);
              },
              this))
    {
        add(m_button);
    }

protected:
    void show(const CommandInputBase& input, bool) override
    {
        m_button->colour(Vs::cast<ColourCommandInput>(&input)->value(),
                         QString::fromStdWString(input.displayText()));
    }

private:
    ColourButton* m_button;
};

/// A field that draws a control, which may change by itself.
template <class Input>
class ControlField : public InputField, protected InputControlSite
{
public:
    ControlField(Input* input, QWidget* parent) : InputField(input, parent), m_control(input->control())
    {
        m_control->subscribe(this);
    }
    ~ControlField() override
    {
        if (m_control)
            m_control->unsubscribe(this);
    }

protected:
    auto* control() const { return m_control; }
    void inputControlChanged(InputControl*) override { refresh(); }
    void inputControlDestroyed(InputControl*) override { m_control = nullptr; }

private:
    decltype(std::declval<Input>().control()) m_control;
};

class ListField : public ControlField<ListCommandInput>
{
public:
    ListField(ListCommandInput* input, QWidget* parent)
        : ControlField(input, parent), m_box(new QComboBox(this))
    {
        // A long item widens the list that opens, not the panel.
        constexpr int kLeastLetters = 6;
        m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_box->setMinimumContentsLength(kLeastLetters);
        add(m_box);
        connect(m_box, &QComboBox::activated, this, [this](int index) {
            if (control())
                control()->selectedItem(control()->items()[static_cast<size_t>(index)], true);
        });
    }

protected:
    void show(const CommandInputBase&, bool) override
    {
        if (!control())
            return;
        m_box->clear();
        for (const Info* item : control()->items())
            m_box->addItem(iconOf(item->icon()), titleOf(*item));
        const auto& items = control()->items();
        const auto chosen = std::find(items.begin(), items.end(), control()->selectedItem());
        m_box->setCurrentIndex(chosen == items.end() ? -1 : static_cast<int>(chosen - items.begin()));
    }

private:
    QComboBox* m_box;
};

/// The items as buttons side by side, or in a menu behind one button that names those with a mark.
class MenuField : public ControlField<MenuCommandInput>
{
public:
    MenuField(MenuCommandInput* input, QWidget* parent)
        : ControlField(input, parent), m_button(new QToolButton(this)), m_menu(new QMenu(m_button))
    {
        m_button->setFocusPolicy(Qt::StrongFocus);
        m_button->setPopupMode(QToolButton::InstantPopup);
        m_button->setMenu(m_menu);
        m_button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        add(m_button);
        connect(m_menu, &QMenu::aboutToShow, this,
                [this] { fillWithTicks(m_menu, [this] { return control(); }); });
    }

protected:
    void show(const CommandInputBase&, bool) override
    {
        if (!control())
            return;
        const bool asButtons = control()->presentationStyle() == MenuControl::EPresentationStyle::Buttons;
        m_button->setVisible(!asButtons);
        QStringList marked;
        for (const MenuItem* item : control()->items())
            if (item->checked() && !item->separator())
                marked << titleOf(*item->info());
        m_button->setText(marked.isEmpty() ? QString::fromStdWString(localized("InputNone", "None"))
                                           : marked.join(QStringLiteral(", ")));
        if (asButtons)
            showButtons();
    }

private:
    void showButtons()
    {
        if (m_buttons.size() != control()->items().size()) {
            for (QToolButton* button : m_buttons)
                button->deleteLater();
            m_buttons.clear();
            for (size_t i = 0; i < control()->items().size(); ++i)
                m_buttons.push_back(makeButton(i));
        }
        for (size_t i = 0; i < m_buttons.size(); ++i) {
            const MenuItem& item = *control()->items()[i];
            m_buttons[i]->setVisible(!item.separator());
            m_buttons[i]->setChecked(item.checked());
            m_buttons[i]->setEnabled(item.enabled());
        }
    }
    QToolButton* makeButton(size_t index)
    {
        const Info& info = *control()->items()[index]->info();
        auto* button = new QToolButton(this);
        button->setProperty("flat", true);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setCheckable(true);
        button->setIcon(iconOf(info.icon()));
        button->setText(titleOf(info));
        PlainText::setTooltip(button, tipOf(info));
        button->setAccessibleName(titleOf(info));
        if (info.icon())
            button->setIconSize(QSize(kIconSize, kIconSize));
        add(button);
        connect(button, &QToolButton::clicked, this, [this, index](bool on) {
            if (control() && index < control()->items().size())
                control()->selectItem(control()->items()[index], on, true);
        });
        return button;
    }

    QToolButton* m_button;
    QMenu* m_menu;
    std::vector<QToolButton*> m_buttons;
};

class ButtonField : public ControlField<ButtonCommandInput>
{
public:
    ButtonField(ButtonCommandInput* input, QWidget* parent)
        : ControlField(input, parent),
          m_button(new QPushButton(iconOf(input->info()->icon()), titleOf(*input->info()), this))
    {
        m_button->setAutoDefault(false);
        add(m_button);
        connect(m_button, &QPushButton::clicked, this, [this] {
            if (control())
                control()->clicked();
        });
    }
    bool hasOwnTitle() const override { return true; }

protected:
    void show(const CommandInputBase&, bool) override {}

private:
    QPushButton* m_button;
};

/// Shows how much is selected and whether clicks in the view go here, which pressing it activates; the small
/// button beside it clears the selection, as the keys Del and Backspace do.
class SelectionField : public InputField
{
public:
    SelectionField(SelectionCommandInput* input, QWidget* parent)
        : InputField(input, parent), m_button(new QPushButton(this)), m_clear(new QToolButton(this))
    {
        m_button->setObjectName(QStringLiteral("inputSelection"));
        m_button->setAutoDefault(false);
        m_button->setCheckable(true);
        add(m_button);
        connect(m_button, &QPushButton::clicked, this, [this] {
            if (auto* selection = Vs::cast<SelectionCommandInput>(this->input())) {
                selection->makeCurrent();
                m_button->setChecked(selection->isCurrent());
            }
        });
        const QString tip = QString::fromStdWString(localized("InputClearSelection", "Clear the selection"));
        m_clear->setProperty("flat", true);
        m_clear->setText(QString(QChar(u'\u00d7')));
        m_clear->setFixedWidth(kBesideWidth);
        PlainText::setTooltip(m_clear, tip);
        m_clear->setAccessibleName(tip);
        // It has its own keys, so it isn't a tab stop in the panel.
        m_clear->setFocusPolicy(Qt::NoFocus);
        add(m_clear);
        connect(m_clear, &QToolButton::clicked, this, &SelectionField::clear);
        m_button->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        // A key that isn't claimed first could be a command's.
        const bool claims = event->type() == QEvent::ShortcutOverride;
        if (claims || event->type() == QEvent::KeyPress)
            if (const int key = static_cast<QKeyEvent*>(event)->key();
                key == Qt::Key_Delete || key == Qt::Key_Backspace) {
                claims ? event->accept() : clear();
                return true;
            }
        return InputField::eventFilter(object, event);
    }
    void show(const CommandInputBase& input, bool) override
    {
        const auto& selection = *Vs::cast<SelectionCommandInput>(&input);
        m_button->setText(QString::fromStdWString(input.displayText()));
        m_button->setChecked(selection.isCurrent());
        m_clear->setEnabled(!selection.selectionSet().empty());
    }

private:
    void clear()
    {
        if (auto* selection = Vs::cast<SelectionCommandInput>(input()))
            selection->clear();
    }

    QPushButton* m_button;
    QToolButton* m_clear;
};

} // namespace

InputField* InputField::make(CommandInputBase* input, QWidget* parent)
{
    if (auto* check = Vs::cast<BoolValueCommandInput>(input))
        return new CheckField(check, parent);
    if (auto* colour = Vs::cast<ColourCommandInput>(input))
        return new ColourField(colour, parent);
    if (auto* list = Vs::cast<ListCommandInput>(input))
        return new ListField(list, parent);
    if (auto* menu = Vs::cast<MenuCommandInput>(input))
        return new MenuField(menu, parent);
    if (auto* button = Vs::cast<ButtonCommandInput>(input))
        return new ButtonField(button, parent);
    if (auto* selection = Vs::cast<SelectionCommandInput>(input))
        return new SelectionField(selection, parent);
    return new TextField(input, parent);
}

InputField::InputField(CommandInputBase* input, QWidget* parent)
    : QWidget(parent),
      m_input(input),
      m_row(new QHBoxLayout(this)),
      m_mark(PlainText::label(this, QStringLiteral("!")))
{
    setObjectName(QString::fromStdWString(input->info()->key()));
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(2);
    m_row->addWidget(m_mark);
    m_mark->setObjectName(QStringLiteral("inputMark"));
    m_mark->setAlignment(Qt::AlignCenter);
    QSizePolicy keepsRoom = m_mark->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    m_mark->setSizePolicy(keepsRoom);
}

void InputField::add(QWidget* widget)
{
    const bool first = m_row->count() == 1;
    m_row->insertWidget(m_row->count() - 1, widget, first ? 1 : 0);
    if (!first)
        return;
    setFocusProxy(widget);
    widget->setAccessibleName(titleOf(*m_input->info()));
    const ToolTipInfo& tooltip = m_input->info()->tooltip();
    if (!tooltip.empty())
        PlainText::setTooltip(widget, QString::fromStdWString(tooltip.description()));
}

void InputField::refresh()
{
    if (!m_input)
        return;
    const QString why = QString::fromStdWString(m_input->whyInvalid());
    const bool isWrong = !why.isEmpty() && !m_input->isAwaiting();
    m_mark->setVisible(isWrong);
    PlainText::setTooltip(m_mark, why);
    setEnabled(m_input->isUsable());
    show(*m_input, isWrong);
}

void InputField::enterEvent(QEnterEvent* event)
{
    hover(true);
    QWidget::enterEvent(event);
}

void InputField::leaveEvent(QEvent* event)
{
    hover(false);
    QWidget::leaveEvent(event);
}

void InputField::hover(bool entering)
{
    if (m_input)
        m_input->hover(entering);
}

} // namespace Vu
