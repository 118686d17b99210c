#pragma once

#include "Server/Base/OptionGroup.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace Vu {

/// The lines run earlier in a field, stored in an option: Up and Down step through them.
class LineHistory
{
public:
    /// The option isn't owned.
    explicit LineHistory(Vs::Option<std::vector<std::wstring>>& option);

    /// A line already in the list becomes the newest.
    void remember(const QString& line);
    /// Steps back (-1) or forward (1). `text` is what the field shows, and receives the line to show. Returns
    /// whether it changed.
    bool recall(int step, QString& text);
    /// Starts from the newest again.
    void begin() { m_place = m_lines.size(); }

private:
    Vs::Option<std::vector<std::wstring>>& m_option;
    QStringList m_lines;
    QString m_unfinished; ///< What was typed before the first Up.
    qsizetype m_place = 0;
};

} // namespace Vu
