#include "UI/Base/Window/CanvasAccess.h"

#include "Server/Base/Object.h"
#include "UI/Base/View/AutoCamViewFragment.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/CanvasMenu.h"
#include "UI/Base/Window/Told.h"

#include <QAccessibleWidget>
#include <QMenu>
#include <QWidget>

#include <algorithm>
#include <iterator>

namespace Vu {
namespace {

struct Side
{
    const char* name;
    const char* key;
    const char* english;
    GkVector3d out;
};

const Side kSides[] = {
    {"home", "CubeFromCorner", "From the corner", {1, -1, 1}},
    {"front", "CubeFromFront", "From the front", {0, -1, 0}},
    {"back", "CubeFromBack", "From the back", {0, 1, 0}},
    {"left", "CubeFromLeft", "From the left", {-1, 0, 0}},
    {"right", "CubeFromRight", "From the right", {1, 0, 0}},
    {"top", "CubeFromTop", "From the top", {0, 0, 1}},
    {"bottom", "CubeFromBottom", "From below", {0, 0, -1}},
};

const Side* sideOf(const QString& name)
{
    const auto* found =
        std::ranges::find_if(kSides, [&](const Side& side) { return name == QLatin1String(side.name); });
    return found == std::end(kSides) ? nullptr : found;
}

/// The cube is drawn in the canvas and is not a widget, so nobody else reports it.
class CubeInterface : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    explicit CubeInterface(QWidget* widget, const GraphicsCanvas& canvas)
        : m_widget(widget), m_canvas(&canvas)
    {
    }

    /// Null if the view has none.
    static AutoCamViewFragment* cubeOf(const GraphicsCanvas& canvas)
    {
        if (const GraphicsView* view = canvas.view())
            for (Vs::Scene::ViewFragment* fragment : view->viewFragments())
                if (auto* cube = Vs::cast<AutoCamViewFragment>(fragment))
                    return cube;
        return nullptr;
    }

    bool isValid() const override { return m_widget; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return parent()->window(); }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_widget); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessible::Role role() const override { return QAccessible::Graphic; }
    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return told("CubeName", "Orientation cube");
        return kind == QAccessible::Description
                   ? told("CubeDescription",
                          "Shows how the model is turned; its actions turn the view to a side")
                   : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        const AutoCamViewFragment* cube = cubeOf(*m_canvas);
        if (!cube)
            return {};
        const AutoCamViewFragment::Place& place = cube->place();
        const QRect inside = QRectF(place.left, place.top, place.size, place.size).toAlignedRect();
        return inside.translated(m_widget->mapToGlobal(QPoint()));
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        const AutoCamViewFragment* cube = cubeOf(*m_canvas);
        state.invisible = !cube || !cube->enabled() || !m_widget->isVisible();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override
    {
        QStringList names;
        for (const Side& side : kSides)
            names << QLatin1String(side.name);
        return names;
    }
    QString localizedActionName(const QString& name) const override
    {
        const Side* side = sideOf(name);
        return side ? told(side->key, side->english) : QString();
    }
    QString localizedActionDescription(const QString& name) const override
    {
        return localizedActionName(name);
    }
    void doAction(const QString& name) override
    {
        AutoCamViewFragment* cube = cubeOf(*m_canvas);
        const Side* side = sideOf(name);
        if (cube && side)
            cube->lookFrom(side->out);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QWidget* m_widget;
    const GraphicsCanvas* m_canvas;
};

/// The context menu open over the canvas: being a popup, the toolkit puts it into no tree.
QMenu* openMenuOf(const QWidget& canvas)
{
    const auto menus = canvas.window()->findChildren<QMenu*>(QLatin1String(CanvasMenu::kName));
    const auto open = std::ranges::find_if(menus, &QMenu::isVisible);
    return open == menus.end() ? nullptr : *open;
}

class CanvasInterface : public QAccessibleWidget
{
public:
    CanvasInterface(QWidget* widget, const GraphicsCanvas& canvas)
        : QAccessibleWidget(widget, QAccessible::Canvas, told("CanvasName", "View of the model")),
          m_canvas(&canvas),
          m_cube(QAccessible::registerAccessibleInterface(new CubeInterface(widget, canvas)))
    {
    }
    ~CanvasInterface() override { QAccessible::deleteAccessibleInterface(m_cube); }

    int childCount() const override { return static_cast<int>(children().size()); }
    QAccessibleInterface* child(int index) const override { return children().value(index); }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto all = children();
        const auto found = std::ranges::find(all, child);
        return found == all.end() ? -1 : static_cast<int>(found - all.begin());
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        for (QAccessibleInterface* each : children())
            if (each->rect().contains(x, y))
                return each;
        return nullptr;
    }

private:
    QList<QAccessibleInterface*> children() const
    {
        QList<QAccessibleInterface*> all;
        if (CubeInterface::cubeOf(*m_canvas))
            all << QAccessible::accessibleInterface(m_cube);
        if (QMenu* menu = openMenuOf(*widget()))
            all << QAccessible::queryAccessibleInterface(menu);
        return all;
    }

    const GraphicsCanvas* m_canvas;
    QAccessible::Id m_cube;
};

} // namespace

void tellOfCanvas(QWidget* widget, const GraphicsCanvas& canvas)
{
    Accessible::maker(widget, [&canvas](QWidget* each) { return new CanvasInterface(each, canvas); });
}

} // namespace Vu
