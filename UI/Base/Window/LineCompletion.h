#pragma once

#include <QString>

class QLineEdit;

namespace Vu {

class CompletionPopup;

/// Completes the word before the cursor of the command line: the name of a command, a parameter or a file, or
/// in a line of Python a name. What there is to choose from is shown in the popup.
class LineCompletion
{
public:
    /// Both must outlive it.
    LineCompletion(QLineEdit* edit, CompletionPopup* popup) : m_edit(edit), m_popup(popup) {}

    /// Whether the line is one of Python; otherwise it is a command.
    void takesPython(bool takes) { m_takesPython = takes; }

    /// Shows how the word can go on, or hides the popup if there is no way.
    void offer();
    /// Replaces the word by a candidate, and offers what may follow it. Returns false if there is no such
    /// row.
    bool accept(int row);
    /// What the Tab key does: accepts the chosen or the only candidate, otherwise adds the letters that all
    /// of them share, or else chooses the first. Returns whether a candidate was accepted.
    bool complete();

private:
    QString word() const;
    void replaceWord(const QString& text);

    QLineEdit* const m_edit;
    CompletionPopup* const m_popup;
    bool m_takesPython = false;
};

} // namespace Vu
