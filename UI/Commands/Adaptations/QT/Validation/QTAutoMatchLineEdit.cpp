#include "UI/Commands/Adaptations/QT/Validation/QTAutoMatchLineEdit.h"

#include "Server/Base/Exception.h"
#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <QCompleter>

#include <algorithm>
#include <exception>
#include <optional>
#include <sstream>

namespace Vu::Commands {

QTAutoMatchLineEdit::QTAutoMatchLineEdit(const std::wstring& name, QWidget* parent)
    : QLineEdit(parent), m_name(name)
{
    const boost::filesystem::path kept = file();
    const std::optional<std::string> content =
        kept.empty() ? std::optional<std::string>() : Vs::OwnFiles::read(kept);
    if (!content)
        return;
    std::istringstream stream(*content);
    for (std::string line; std::getline(stream, line);)
        m_history.push_back(Vs::Strings::widen(line));
    rebuildCompleter();
}

QTAutoMatchLineEdit::~QTAutoMatchLineEdit()
{
    const boost::filesystem::path kept = file();
    if (m_history.empty() || kept.empty())
        return;
    std::string content;
    for (const std::wstring& entry : m_history)
        content += Vs::Strings::narrow(entry) + '\n';
    try {
        Vs::OwnFiles::write(kept, content);
    } catch (const Vs::Exception& error) {
        Vs::warn(error.message() + L'.');
    }
}

void QTAutoMatchLineEdit::rememberText()
{
    const std::wstring entry = text().toStdWString();
    if (std::find(m_history.begin(), m_history.end(), entry) != m_history.end())
        return;
    m_history.push_back(entry);
    rebuildCompleter();
}

// Suggestions of earlier texts are a convenience that a recording does without.
boost::filesystem::path QTAutoMatchLineEdit::file() const
{
    try {
        return Vs::PathInfo::temporaryDirectory(true) / boost::filesystem::path(m_name + L".txt");
    } catch (const std::exception&) {
        return {};
    }
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
