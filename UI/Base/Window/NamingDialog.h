#pragma once

#include <QFileDialog>

namespace Vu {

/// Asks for a name to save under. Unlike Qt's own dialog, which takes quotes as delimiters of several names,
/// it takes what is typed literally.
class NamingDialog : public QFileDialog
{
public:
    /// What becomes of a name that is typed without a suffix.
    enum class Suffix { OfFilter, AsTyped };

    /// `entry` is the filter's that is chosen at first; if it isn't one, the first is.
    NamingDialog(QWidget* parent, const QString& caption, const QString& start, const QString& filter,
                 Suffix suffix = Suffix::OfFilter, const QString& entry = {});

    /// What the user chose; empty as long as nothing is.
    QString name() const;

protected:
    void accept() override;

private:
    /// Asks the user.
    bool mayReplace(const QString& name);

    QString m_quoted; ///< A name with quotes, which Qt would take apart.
};

} // namespace Vu
