#pragma once

#include "Server/Base/OptionGroup.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace Vu {

/// The lines that were run before in a field, kept in an option: Up and Down go through them.
class LineHistory
{
public:
    /// The option isn't owned.
    explicit LineHistory(Vs::Option<std::vector<std::wstring>>& option);

    /// A line that is there already becomes the newest.
    void remember(const QString& line);
    /// Goes back (-1) or forth (1). `text` is what the field shows, and gets the line to show. Returns
    /// whether that is another one.
    bool recall(int step, QString& text);
    /// From the newest again.
    void begin() { m_place = m_lines.size(); }

private:
    Vs::Option<std::vector<std::wstring>>& m_option;
    QStringList m_lines;
    QString m_unfinished; ///< What was typed before Up was pressed first.
    qsizetype m_place = 0;
};

} // namespace Vu
