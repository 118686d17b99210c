#pragma once

#include <QListWidget>
#include <QString>
#include <QStringList>

class QLineEdit;

namespace Vu {

/// The candidates for the word that is being typed in a line, above it. Never takes the keyboard: typing goes
/// on in the line.
class CompletionPopup : public QListWidget
{
public:
    /// A child of `parent`; `line` outlives it.
    CompletionPopup(QLineEdit* line, QWidget* parent);

    /// Shows them with none chosen; hides when there are none.
    void offer(const QStringList& candidates);
    bool isChosen() const { return isVisible() && currentRow() >= 0; }
    /// Goes to the next, or with -1 to the one before.
    void step(int by);
    /// With what all candidates begin.
    QString commonStart() const;

private:
    QLineEdit* m_line;
};

} // namespace Vu
