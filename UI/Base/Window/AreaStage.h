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

/// The widgets of a layout. Each follows its area's visibility and place; an area's content is created when
/// first shown, and destroyed with the area. Floating areas lie over the others, and collapsed ones are on
/// the bars at the sides.
class AreaStage : public QWidget
{
public:
    struct Makers
    {
        /// The widget of an area without children; null for contents that nothing draws.
        std::function<QWidget*(Area&, QWidget* parent)> contents;
        /// Whether there is only one such widget for all layouts.
        std::function<bool(const QWidget*)> isShared;
        /// Called before the widget of a removed area is destroyed, or a shared one is hidden: what must
        /// outlive it is taken out.
        std::function<void(QWidget*)> leaves;
    };

    AreaStage(Makers makers, QWidget* parent);
    ~AreaStage() override;

    /// Shows the areas below `root` in their present state; null for none. The keyboard focus stays where it
    /// was. The contents of the areas of `others` are kept, hidden, until these are shown again.
    void show(Area* root, const std::vector<Area*>& others);
    /// Whether the change that an area reports was caused by a splitter of this stage.
    bool isResizing() const { return m_resizing; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Leaf
    {
        QWidget* widget; ///< The area's content.
        QWidget* outer;  ///< The widget, or the panel around it.
    };

    /// The bool says whether any of the areas is shown.
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
    std::vector<QPointer<QWidget>> m_gone; ///< They are deleted at the end of the event.
    QWidget* m_limbo;                      ///< Their hidden parent until then.
    QWidget* m_top = nullptr;              ///< The frame of the root.
    bool m_resizing = false;
};

} // namespace Vu
