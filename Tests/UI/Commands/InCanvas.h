#pragma once

#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/EditComponents.h"
#include "Tests/UI/Commands/InBrowser.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewMgr.h"

namespace CommandsTests {

/// The three boxes in a window with browser and canvas, seen from the front, driven by Qt's events.
class InCanvas : public InBrowser<EditComponents>
{
protected:
    void SetUp() override
    {
        InBrowser::SetUp();
        // The window adopts the new layout after the events already queued.
        ASSERT_TRUE(UiTests::becomes([this] { return findCanvas(); }));
        canvas = graphicsCanvas->existingWidget();
        Vu::SplitViewMgr::get()->activeCanvas(graphicsCanvas);
        camera()->look({0, 1, 0}, {0, 0, 1});
        camera()->fit(fragment()->bounds());
        settle();
    }

    Vs::Scene::ViewFragment* fragment() const { return graphicsCanvas->view()->modelFragment(); }
    Vs::Scene::Camera* camera() const { return fragment()->camera(); }
    static void settle()
    {
        Vu::Application::get()->flushDeferredTasks();
        QApplication::processEvents();
        Vu::Application::get()->flushDeferredTasks();
    }

    /// The position of the middle of the component.
    QPoint placeOf(const std::wstring& component) const
    {
        BBox box;
        const Vs::LogicalSelection object(asset(), path(component), Vs::StrongRef<Vs::Selection>());
        EXPECT_TRUE(object.calculateBounds(*asset(), box));
        const Vs::Scene::Projection projection(*camera(), canvas->width(), canvas->height());
        const GkPoint3d place = projection.worldToScreen(box.centre());
        return {static_cast<int>(place.x), static_cast<int>(canvas->height() - place.y)};
    }
    /// A place beside all of them.
    QPoint nowhere() const { return {canvas->width() / 2, canvas->height() - 5}; }

    void clickAt(const QPoint& place, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseMove(canvas, place);
        settle();
        QTest::mouseClick(canvas, button, modifiers, place);
        settle();
    }
    /// The components of the selection, as their paths.
    static Texts selectedComponents()
    {
        Texts texts;
        for (const auto& selection : selected().selections())
            texts.push_back(Vs::pathText(
                Vs::ObjectPath{Vs::cast<Vs::LogicalSelection>(selection.get())->componentId()}, *asset()));
        return texts;
    }
    /// Opens the menu there, and runs the entry with that title; returns all titles.
    QStringList menuAt(const QPoint& place, const QString& wanted = {})
    {
        clickAt(place, Qt::RightButton);
        const QStringList titles = runFromPopup(wanted);
        settle();
        return titles;
    }

    Vu::GraphicsCanvas* graphicsCanvas = nullptr;
    QWidget* canvas = nullptr; ///< Its widget.

private:
    /// That of this window: other workspaces have canvases, too.
    bool findCanvas()
    {
        std::vector<Vu::GraphicsCanvas*> all;
        Vu::GraphicsCanvas::allCanvases(all);
        for (Vu::GraphicsCanvas* each : all)
            if (each->view() && each->existingWidget() && each->existingWidget()->isVisible() &&
                each->existingWidget()->window() == tree->window())
                graphicsCanvas = each;
        return graphicsCanvas;
    }
};

} // namespace CommandsTests
