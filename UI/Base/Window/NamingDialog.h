#pragma once

#include <QFileDialog>

namespace Vu {

/// Asks for a name to save under. Unlike Qt's own dialog, which takes quotes as delimiters of several names,
/// it takes what is typed literally.
class NamingDialog : public QFileDialog
{
public:
    /// The name to use for one typed without a suffix.
    enum class Suffix { OfFilter, AsTyped };

    /// `entry` is the filter chosen initially; if it isn't one, the first is.
    NamingDialog(QWidget* parent, const QString& caption, const QString& start, const QString& filter,
                 Suffix suffix = Suffix::OfFilter, const QString& entry = {});

    /// The user's choice; empty until there is one.
    QString name() const;

protected:
    void accept() override;

private:
    /// Asks the user.
    bool mayReplace(const QString& name);

    QString m_quoted; ///< A name with quotes, which Qt would take apart.
};

} // namespace Vu
