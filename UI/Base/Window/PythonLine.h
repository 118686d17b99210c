#pragma once

#include "UI/Base/Window/LineHistory.h"

#include <QString>
#include <QStringList>

namespace Vu {

/// Python typed line by line, as in a console, in which `quillet` and `design` are there already. A statement
/// may take several lines. What comes of it goes to the display of PythonManager.
class PythonLine
{
public:
    PythonLine();

    /// Starts the interpreter, if nobody has yet.
    static void start();

    /// Runs the line. Returns false if it wants to leave, as sys.exit does.
    bool run(const QString& line);
    /// Whether the statement goes on in the next line.
    bool goesOn() const { return m_goesOn; }
    /// Leaves a statement that goes on.
    void abandon();
    /// ">>> ", or "... " where the statement goes on.
    QString prompt() const { return QLatin1String(m_goesOn ? "... " : ">>> "); }
    /// What the next line of the statement begins with.
    const QString& indentation() const { return m_indentation; }

    /// Where the word before that place begins, of which `completions` are others.
    static qsizetype wordStart(const QString& line, qsizetype place);
    static QStringList completions(const QString& line, qsizetype place);

    LineHistory& history() { return m_history; }

private:
    Vs::OptionGroup m_store{"PythonLine"};
    Vs::Option<std::vector<std::wstring>> m_lines{m_store, "history", {}};
    LineHistory m_history{m_lines};
    QString m_indentation;
    bool m_goesOn = false;
};

} // namespace Vu
