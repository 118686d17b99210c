#pragma once

#include <QWidget>

#include <functional>
#include <string>

class QHBoxLayout;

namespace Vu::Commands {

/// The path from the root of the drive to a folder, with a button for each folder. If it is too long, the
/// ones at the front are left out.
class CloudPath : public QWidget
{
public:
    /// `go` is called with the identifier of the pressed folder.
    CloudPath(std::function<void(const std::string&)> go, QWidget* parent);

    void show(const std::string& folder);

protected:
    void resizeEvent(QResizeEvent* event) override;
    QSize minimumSizeHint() const override;

private:
    void add(const QString& title, const std::string& folder, bool isLast);
    void fit();

    std::function<void(const std::string&)> m_go;
    QHBoxLayout* m_row;
};

} // namespace Vu::Commands
