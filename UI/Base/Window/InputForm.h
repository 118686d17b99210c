#pragma once

#include <QWidget>

#include <vector>

class QGridLayout;
class QLabel;
class QToolButton;

namespace Vu {

class CommandInputBase;
class CommandInputSet;
class GroupCommandInput;
class InputField;

/// The inputs of a set, one below the other in the order of their creation, with their titles, and the groups
/// as collapsible headings. `forget` cuts it off from the inputs, which may be destroyed first.
class InputForm : public QWidget
{
public:
    InputForm(const CommandInputSet& inputs, QWidget* parent);

    void forget();
    /// Shows all inputs as they are now.
    void refresh();
    /// Commits what was typed but not entered yet.
    void enter();
    /// Null for none.
    InputField* firstField(bool invalid) const;
    /// The field of the input that takes the clicks in the view; null for none.
    InputField* pickingField() const;

private:
    struct Row
    {
        InputField* field;
        QLabel* title; ///< Null if the field has its own.
    };
    struct Heading
    {
        GroupCommandInput* group;
        QToolButton* button;
    };
    void addRow(CommandInputBase* input);
    void addHeading(GroupCommandInput* group);

    QGridLayout* m_grid;
    std::vector<Row> m_rows;
    std::vector<Heading> m_headings;
};

} // namespace Vu
