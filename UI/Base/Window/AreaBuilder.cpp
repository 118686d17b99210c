#include "UI/Base/Window/AreaBuilder.h"

#include "UI/Base/Workspace/Area.h"

#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace Vu {
namespace {

constexpr int kUsualExtent = 260;

struct Built
{
    Area* area;
    QWidget* widget;
};

/// Those of the children that stand at `placement`.
std::vector<Built> at(EPlacement placement, const std::vector<Built>& all)
{
    std::vector<Built> found;
    for (const Built& one : all)
        if (one.area->placement() == placement)
            found.push_back(one);
    return found;
}

bool isSplitView(const Area& area)
{
    return area.contents() && area.contents()->text() == "SplitView";
}

} // namespace

QWidget* AreaBuilder::build(Area& area, QWidget* parent) const
{
    if (!area.visible() || area.collapsed())
        return nullptr;
    if (area.children().empty())
        return contents(area, parent);

    auto* frame = new QWidget(parent);
    std::vector<Built> children;
    for (const auto& child : area.children())
        if (QWidget* widget = build(*child, frame))
            children.push_back({child.get(), widget});
    if (children.empty()) {
        delete frame;
        return nullptr;
    }
    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    QSplitter* rows = isSplitView(area) ? new QSplitter(Qt::Vertical, frame) : nullptr;
    if (rows) {
        rows->setChildrenCollapsible(false);
        column->addWidget(rows, 1);
    }
    const auto add = [&](QWidget* widget, int stretch) {
        if (rows) {
            rows->addWidget(widget);
            rows->setStretchFactor(rows->count() - 1, 1);
        } else {
            column->addWidget(widget, stretch);
        }
    };
    for (const Built& top : at(EPlacement::Top, children))
        add(top.widget, 0);

    std::vector<Built> row = at(EPlacement::Left, children);
    for (const EPlacement placement : {EPlacement::Fill, EPlacement::Floating, EPlacement::Right})
        for (const Built& one : at(placement, children))
            row.push_back(one);
    if (row.size() == 1) {
        add(row.front().widget, 1);
    } else if (row.size() > 1) {
        auto* splitter = new QSplitter(Qt::Horizontal, frame);
        splitter->setChildrenCollapsible(false);
        QList<int> sizes;
        const int plenty = frame->window()->width();
        for (int i = 0; i < static_cast<int>(row.size()); ++i) {
            const Built& one = row[static_cast<size_t>(i)];
            const bool fills = one.area->placement() == EPlacement::Fill;
            splitter->addWidget(one.widget);
            splitter->setStretchFactor(i, fills ? 1 : 0);
            const int wished = one.area->extent() > 0 ? one.area->extent() : kUsualExtent;
            sizes << (fills ? 0 : wished);
        }
        // Those that fill share evenly what the others leave; a splitter scales its sizes to the width that
        // it has.
        int taken = 0;
        for (const int size : sizes)
            taken += size;
        const int filling = static_cast<int>(sizes.count(0));
        for (int& size : sizes)
            if (size == 0)
                size = std::max(kUsualExtent, (plenty - taken) / filling);
        splitter->setSizes(sizes);
        QObject::connect(splitter, &QSplitter::splitterMoved, splitter, [this_ = *this, row, splitter] {
            const QList<int> now = splitter->sizes();
            for (int i = 0; i < static_cast<int>(row.size()) && i < now.size(); ++i)
                if (row[static_cast<size_t>(i)].area->placement() != EPlacement::Fill)
                    this_.resized(*row[static_cast<size_t>(i)].area, now[i]);
        });
        add(splitter, 1);
    } else if (!rows) {
        column->addStretch(1);
    }
    for (const Built& bottom : at(EPlacement::Bottom, children))
        add(bottom.widget, 0);
    if (rows) {
        // What is scaled to the height that there is must not be nothing.
        QList<int> sizes;
        sizes.insert(0, rows->count(), kUsualExtent);
        rows->setSizes(sizes);
    }
    return enclose(area, frame);
}

} // namespace Vu
