#pragma once

#include <QBitArray>
#include <QFrame>
#include <QPoint>
#include <QVector>

#include <functional>
#include <utility>

class QLabel;

namespace Vs {
class ItemhubSearchResultsEvent;
}

namespace Vu::Commands {

class SearchResult;

/// The results of a search bar, below the bar or above it, over whatever else is in the window: a row for
/// each result, with messages between and after them. Keys come from the bar (`press`).
class QTSearchResultPanel : public QFrame
{
    Q_OBJECT

public:
    /// The bits of the sections that say whether they are shown.
    enum Section {
        kSearching = 0, ///< While a search runs.
        kMessage = 1,   ///< Why nothing was found.
        kMore = 2       ///< That there are more results than shown.
    };

    /// Attached to the bar, in whose window it lies.
    explicit QTSearchResultPanel(QWidget* bar);

    /// Where it begins, in the window: the bar's lower left corner if it grows downwards, else the upper one.
    void anchor(const QPoint& point, bool growDown);
    const QPoint& anchor() const { return m_anchor; }

    /// Does nothing if the section is already shown, or hidden.
    void showSection(Section section, bool shown);
    [[nodiscard]] bool isShown(Section section) const { return m_shown.testBit(section); }

    /// Shows an event's results; with `keep`, the selection stays if it was found again.
    void results(const Vs::ItemhubSearchResultsEvent& event, bool keep);
    const QVector<SearchResult*>& results() const { return m_results; }
    void clearResults();

    /// The selection: the kind, and its index among those of its kind.
    enum Kind { kNothing = -1, kBar = 0, kSection1 = 1, kResult = 2, kSection0 = 3, kSection2 = 4 };
    const std::pair<int, int>& selection() const { return m_selection; }
    void select(int kind, int index);
    void clearSelection();

    /// Handles a key of the bar, which moves the selection, opens what is selected, or closes the panel.
    /// False for one that the panel doesn't use.
    [[nodiscard]] bool press(int key);

    /// Whether there is something to show, and the bar is in use.
    void open();
    void close();
    /// The function called to open an item.
    void opener(std::function<void(int itemId)> opener) { m_opener = std::move(opener); }

public slots:
    void onWndDestroyed(QObject* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* sectionOf(int kind) const;
    void arrange();
    void follow();
    void message(const QString& text, bool offersSignIn);
    void choose(int index);
    void signIn();
    void step(int by);
    bool isEmpty() const;

    QWidget* m_window; ///< Whose moves the panel follows; null once it is gone.
    QWidget* m_bar;
    QLabel* m_message;
    bool m_offersSignIn = false; ///< By a click on the message.
    QLabel* m_searching;
    QLabel* m_more;
    QVector<SearchResult*> m_results;
    QPoint m_anchor;
    bool m_growDown = true;
    QBitArray m_shown{3};
    std::pair<int, int> m_selection{kNothing, kNothing};
    std::function<void(int)> m_opener;
    bool m_open = false;
};

} // namespace Vu::Commands
