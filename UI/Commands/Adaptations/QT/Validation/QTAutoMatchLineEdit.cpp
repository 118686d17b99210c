#include "UI/Commands/Adaptations/QT/Validation/QTAutoMatchLineEdit.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"

#include <QCompleter>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>

namespace Vu::Commands {

QTAutoMatchLineEdit::QTAutoMatchLineEdit(const std::wstring& name, QWidget* parent)
    : QLineEdit(parent), m_name(name)
{
    boost::system::error_code ignored;
    if (!boost::filesystem::exists(file(), ignored))
        return;
    boost::filesystem::ifstream stream(file());
    for (std::string line; std::getline(stream, line);)
        m_history.push_back(Vs::Strings::widen(line));
    rebuildCompleter();
}

QTAutoMatchLineEdit::~QTAutoMatchLineEdit()
{
    if (m_history.empty())
        return;
    boost::filesystem::ofstream stream(file());
    for (const std::wstring& entry : m_history)
        stream << Vs::Strings::narrow(entry) << '\n';
}

void QTAutoMatchLineEdit::rememberText()
{
    const std::wstring entry = text().toStdWString();
    if (std::find(m_history.begin(), m_history.end(), entry) != m_history.end())
        return;
    m_history.push_back(entry);
    rebuildCompleter();
}

boost::filesystem::path QTAutoMatchLineEdit::file() const
{
    return Vs::PathInfo::temporaryDirectory(true) / boost::filesystem::path(m_name + L".txt");
}

void QTAutoMatchLineEdit::rebuildCompleter()
{
    delete completer();
    QStringList entries;
    for (const std::wstring& entry : m_history)
        entries.append(QString::fromStdWString(entry));
    setCompleter(new QCompleter(entries, this));
}

} // namespace Vu::Commands
