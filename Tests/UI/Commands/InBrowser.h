#pragma once

#include "UI/Base/Program/Application.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>
#include <string>

namespace CommandsTests {

/// A fixture with the browser in a window, driven by Qt's events.
template <class Fixture>
class InBrowser : public Fixture
{
protected:
    void SetUp() override
    {
        m_before = Vu::WorkspaceMgr::activeWorkspace();
        m_workspace = Vu::WorkspaceMgr::get()->create();
        Vu::WorkspaceWindow* window = m_workspace->window();
        window->show();
        // As a user has it, whatever the screen: with room for the view between the panels.
        window->widget()->resize(1280, 800);
        Fixture::SetUp();
        QApplication::processEvents();
        tree = window->widget()->template findChild<QTreeView*>();
        ASSERT_TRUE(tree);
    }
    void TearDown() override
    {
        Fixture::TearDown();
        Vu::WorkspaceMgr::get()->close(m_workspace);
        Vu::WorkspaceMgr::activeWorkspace(m_before);
    }

    /// The item with that text; invalid if there is none.
    QModelIndex below(const QModelIndex& parent, const std::wstring& text) const
    {
        for (int row = 0; row < tree->model()->rowCount(parent); ++row)
            if (const QModelIndex index = tree->model()->index(row, 0, parent);
                index.data().toString().toStdWString() == text)
                return index;
        return {};
    }
    void click(const QModelIndex& index, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = {})
    {
        tree->scrollTo(index);
        QTest::mouseClick(tree->viewport(), button, modifiers, tree->visualRect(index).center());
        Vu::Application::get()->flushDeferredTasks();
        QApplication::processEvents();
    }
    /// Opens the item's menu, and runs the entry with that title; returns all titles.
    QStringList menu(const QModelIndex& index, const QString& wanted)
    {
        click(index);
        const QPoint place = tree->visualRect(index).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, tree->viewport()->mapToGlobal(place));
        QApplication::sendEvent(tree->viewport(), &event);
        return runFromPopup(wanted);
    }
    /// Runs the entry with that title in the open menu, if there is one, and closes it; returns all titles.
    static QStringList runFromPopup(const QString& wanted)
    {
        QStringList titles;
        auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        for (QAction* action : shown ? shown->actions() : QList<QAction*>()) {
            if (action->isSeparator())
                continue;
            titles << titleOf(*action);
            if (titles.last() == wanted)
                action->trigger();
        }
        if (shown)
            shown->close();
        Vu::Application::get()->flushDeferredTasks();
        return titles;
    }

    /// As displayed, without its mnemonic and shortcut.
    static QString titleOf(const QAction& action)
    {
        return action.text().section(QLatin1Char('\t'), 0, 0).remove(QLatin1Char('&'));
    }

    QTreeView* tree = nullptr;

private:
    Vu::Workspace* m_workspace = nullptr;
    Vu::Workspace* m_before = nullptr;
};

} // namespace CommandsTests
