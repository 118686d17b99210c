#pragma once

#include <QLineEdit>

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vu::Commands {

/// A field that suggests earlier entries, also from earlier sessions. Its history is a text file named after
/// it in the folder for expendable files; if that fails, there is simply none.
class QTAutoMatchLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit QTAutoMatchLineEdit(const std::wstring& name, QWidget* parent = nullptr);
    /// Writes the history.
    ~QTAutoMatchLineEdit() override;

    /// Adds the present text to the history, unless it is there.
    void rememberText();

private:
    boost::filesystem::path file() const;
    void rebuildCompleter();

    std::wstring m_name;
    std::vector<std::wstring> m_history;
};

} // namespace Vu::Commands
