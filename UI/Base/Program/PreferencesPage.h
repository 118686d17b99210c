#pragma once

#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace Vu {

/// A page of the preferences that an add-in brings, for what is more than a value of an option. Registered
/// for as long as it lives. Main thread only.
class PreferencesPage
{
public:
    using Title = std::function<std::wstring()>;
    /// The widget belongs to the parent, and goes with the dialog.
    using Make = std::function<QWidget*(QWidget* parent)>;

    PreferencesPage(Title title, Make make);
    ~PreferencesPage();
    PreferencesPage(const PreferencesPage&) = delete;
    PreferencesPage& operator=(const PreferencesPage&) = delete;

    std::wstring title() const { return m_title(); }
    QWidget* make(QWidget* parent) const { return m_make(parent); }

    /// In the order in which they were registered.
    [[nodiscard]] static const std::vector<PreferencesPage*>& all();

private:
    Title m_title;
    Make m_make;
};

} // namespace Vu
