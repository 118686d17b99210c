#pragma once

#include <QWidget>

class QBoxLayout;
class QLabel;

namespace Vu {

class CommandInputBase;

/// The widget that shows one input in a panel, with a mark if something is wrong with it. It outlives the
/// input for a moment when a change of the input ends the command; `forget` then detaches it.
class InputField : public QWidget
{
public:
    /// The width of a button beside the field, so that fields end below one another.
    static constexpr int kBesideWidth = 22;

    /// The widget for an input of any kind. Not for groups.
    static InputField* make(CommandInputBase* input, QWidget* parent);

    /// Null after `forget`.
    CommandInputBase* input() const { return m_input; }
    virtual void forget() { m_input = nullptr; }

    /// Whether the title is part of the widget itself.
    virtual bool hasOwnTitle() const { return false; }
    /// Shows the input as it is now.
    void refresh();
    /// Commits what was typed but not entered yet.
    virtual void enter() {}

protected:
    InputField(CommandInputBase* input, QWidget* parent);
    /// Puts a widget into the row; the first one takes the focus and the space.
    void add(QWidget* widget);
    virtual void show(const CommandInputBase& input, bool failed) = 0;

    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void hover(bool entering);

    CommandInputBase* m_input;
    QBoxLayout* m_row;
    QLabel* m_mark;
};

} // namespace Vu
