#pragma once

#include "UI/Commands/Cloud/CloudDialog.h"

#include <QStringList>
#include <QWidget>

#include <functional>

class QComboBox;
class QLineEdit;

namespace Vu::Commands {

/// The rows below the list in the drive's dialog: the name to save under, if one is asked for, and the kinds
/// of files listed.
class CloudName : public QWidget
{
public:
    struct Actions
    {
        std::function<void()> begin;  ///< The user moves on to the name.
        std::function<void()> change; ///< Of the name.
        std::function<void(const QStringList&)> kinds;
    };
    CloudName(const CloudDialog::Request& request, const QString& name, Actions actions, QWidget* parent);

    /// Trimmed.
    QString name() const;
    void name(const QString& name);
    void goToName();
    /// Wildcards of the chosen kind, "*.vlra".
    QStringList kinds() const;
    void enableKinds(bool value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fillKinds(const CloudDialog::Request& request);

    Actions m_actions;
    QLineEdit* m_name;
    QComboBox* m_kinds;
};

} // namespace Vu::Commands
