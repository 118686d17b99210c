#pragma once

#include "UI/Base/Program/Preferences.h"

#include <QDialog>

#include <functional>
#include <vector>

class QGridLayout;
class QLineEdit;
class QListWidget;
class QScrollArea;
class QVBoxLayout;

namespace Vu {

class KeysPage;

/// All preferences on one scrolling page, with a section for each page; the list beside them jumps to a
/// section, and the search field filters them. Changes take effect at once.
class PreferencesDialog : public QDialog
{
public:
    explicit PreferencesDialog(QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row
    {
        const Preference* preference;
        QWidget* label; ///< Null if the editor has its own label.
        QWidget* editor;
        std::function<void()> read;
    };
    struct Section
    {
        QWidget* frame;
        std::vector<Row> rows;
        QWidget* page = nullptr; ///< Provided by an add-in.
    };

    void addSections(QVBoxLayout* column);
    /// A section with its title, and room for its content below.
    QVBoxLayout* addSection(QVBoxLayout* column, const QString& title);
    void addBroughtPages(QVBoxLayout* column);
    void addKeys(QVBoxLayout* column);
    void addRow(Section& section, QGridLayout* grid, const Preference& preference);
    void showPage(int page);
    /// Gives the focus to the first widget of a page that accepts it. False if there is none.
    bool enterPage(int page);
    void search(const QString& text);
    void resetAll();

    QLineEdit* m_search;
    QListWidget* m_pages;
    QScrollArea* m_scroll;
    std::vector<Section> m_sections; ///< The last is the page of keys, which has no rows.
    KeysPage* m_keys = nullptr;
};

} // namespace Vu
