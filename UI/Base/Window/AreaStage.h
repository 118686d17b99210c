#pragma once

#include "UI/Base/Window/AreaFrame.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Vu {

class CollapseBar;

/// The widgets of a layout. Each shows, hides and moves in its place as its area does; what stands in an area
/// is made when it is first shown, and goes with the area. Areas that float lie over the others, and those
/// that are collapsed stand on the bars at the sides.
class AreaStage : public QWidget
{
public:
    struct Makers
    {
        /// The widget of an area without children; null for contents that nothing draws.
        std::function<QWidget*(Area&, QWidget* parent)> contents;
        /// Whether there is only one such widget for all layouts.
        std::function<bool(const QWidget*)> isShared;
        /// Called before the widget of an area that is gone goes, or a shared one isn't shown: what is to
        /// outlive it is taken out.
        std::function<void(QWidget*)> leaves;
    };

    AreaStage(Makers makers, QWidget* parent);
    ~AreaStage() override;

    /// Shows the areas below `root` as they are now; null for none. The keyboard focus stays where it was.
    /// The content of areas of `others` is kept, hidden, for when these are shown again.
    void show(Area* root, const std::vector<Area*>& others);
    /// Whether the change that an area tells was made by a splitter of this stage.
    bool isResizing() const { return m_resizing; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Leaf
    {
        QWidget* widget; ///< What stands in the area.
        QWidget* outer;  ///< The widget, or the panel around it.
    };

    /// The bool says whether any of the areas shows.
    bool sync(Area& area, AreaFrame& frame);
    bool showLeaf(Area& area, bool wanted, AreaFrame& frame, std::vector<AreaFrame::Place>& places);
    bool showFrame(Area& area, bool wanted, AreaFrame& frame, std::vector<AreaFrame::Place>& places);
    Leaf* leafOf(Area& area, bool make, QWidget* parent);
    AreaFrame* frameOf(Area& area, QWidget* parent);
    QWidget* enclosed(const Area& area, AreaFrame* frame, QWidget* parent);
    void put(Area& area, QWidget* outer, bool shows, bool isBar, std::vector<AreaFrame::Place>& places);
    void setHidden(unsigned long area, QWidget* outer, bool hidden);
    void floatOver(Area& area, QWidget* outer, bool shows);
    void keepInside() const;
    void drop(const std::set<unsigned long>& shown, const std::set<unsigned long>& alive);
    void forget(unsigned long area);
    void retire(QWidget* widget);

    struct Container
    {
        AreaFrame* frame;
        QWidget* outer; ///< The frame, or what encloses it.
    };

    Makers m_makers;
    std::map<unsigned long, Leaf> m_leaves;
    std::map<unsigned long, Container> m_containers;
    std::map<unsigned long, QPointer<QWidget>> m_floating;
    std::set<unsigned long> m_hidden; ///< By this stage: contents may hide themselves as well.
    std::map<EPlacement, CollapseBar*> m_bars;
    std::vector<QPointer<QWidget>> m_gone; ///< They go at the end of the event.
    QWidget* m_limbo;                      ///< Where they are until then, unseen.
    QWidget* m_top = nullptr;              ///< The frame of the root.
    bool m_resizing = false;
};

} // namespace Vu
