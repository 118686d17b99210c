#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Base/ShownWindow.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/MessageBox.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

#include <boost/filesystem/operations.hpp>

#include <algorithm>

using namespace Vu;

namespace {

/// A window on which files are dropped, and what is opened then.
class DropTest : public UiTest
{
protected:
    DropTest()
        : m_open(L"OpenDocumentCommand",
                 [this](CommandContext& context) {
                     m_journal.push_back(context.argumentAsString(Vs::UniqueString::find("DragAndDrop")));
                 }),
          m_home(L"ManagementShellCommand", [this](CommandContext&) { m_journal.push_back(L"home"); })
    {
        m_window = UiTests::windowWith({"TextCommands"})->mainWindow();
        CommandMgr::get()->GetAlertController()->clearAllAlerts();
    }
    ~DropTest() override
    {
        MessageBox::responder({});
        WorkspaceMgr::get()->closeAll();
    }

    static QUrl file(const QString& path) { return QUrl::fromLocalFile(path); }
    bool enters(const QList<QUrl>& urls) const
    {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent event(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(m_window, &event);
        return event.isAccepted();
    }
    void drop(const QList<QUrl>& urls)
    {
        m_journal.clear();
        QMimeData data;
        data.setUrls(urls);
        QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        static_cast<QObject*>(m_window)->event(&event); // Qt delivers none without a preceding drag.
        EXPECT_TRUE(m_journal.empty()) << "the source of the drop waits for its end";
        Application::get()->flushDeferredTasks();
    }
    static bool told(const std::wstring& text)
    {
        return std::ranges::any_of(CommandMgr::get()->GetAlertController()->alerts(), [&](const auto& alert) {
            return alert.text.find(text) != std::wstring::npos;
        });
    }
    using Journal = std::vector<std::wstring>;

    Journal m_journal;
    FunctionCommandDef m_open, m_home;
    MainWindow* m_window = nullptr;
};

} // namespace

TEST_F(DropTest, AFileIsOpenedByTheCommandWithItsPathAndSeveralStayOpenBesideEachOther)
{
    drop({QUrl(QStringLiteral("https://example.org/x")), file(QStringLiteral("/tmp/a b.step"))});
    EXPECT_EQ(m_journal, Journal{L"/tmp/a b.step"});
    drop({file(QStringLiteral("/a.step")), file(QStringLiteral("/b.stl"))});
    EXPECT_EQ(m_journal, (Journal{L"/a.step", L"home", L"/b.stl"}));
}

TEST_F(DropTest, AsLongAsFilesHangOverItTheWholeWindowShowsThatTheyCanBeDropped)
{
    auto* target = m_window->findChild<QWidget*>(QStringLiteral("dropTarget"));
    ASSERT_NE(target, nullptr);
    EXPECT_FALSE(enters({})) << "a text, say";
    EXPECT_FALSE(target->isVisible());
    EXPECT_TRUE(enters({file(QStringLiteral("/a.step"))}));
    EXPECT_TRUE(target->isVisible());
    EXPECT_EQ(target->geometry(), m_window->rect());
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(m_window, &leave);
    EXPECT_FALSE(target->isVisible());
    EXPECT_TRUE(enters({file(QStringLiteral("/a.step"))}));
    drop({file(QStringLiteral("/a.step"))});
    EXPECT_FALSE(target->isVisible());
}

TEST_F(DropTest, FoldersAndAddressesAreToldAndAThousandFilesAreAskedAbout)
{
    for (const char* address : {"https://example.org/x.step", "file://elsewhere.example.org/tmp/x.step"}) {
        CommandMgr::get()->GetAlertController()->clearAllAlerts();
        drop({QUrl(QString::fromLatin1(address))});
        EXPECT_TRUE(told(L"isn't a file on this computer")) << address;
        EXPECT_TRUE(m_journal.empty()) << address;
    }
    drop({file(QString::fromStdWString(boost::filesystem::temp_directory_path().wstring()))});
    EXPECT_TRUE(told(L"is a folder"));
    EXPECT_TRUE(m_journal.empty());
    QList<QUrl> many;
    for (int i = 0; i < 1000; ++i)
        many.push_back(file(QStringLiteral("/no such/%1.step").arg(i)));
    for (const int answer : {1, 0}) {
        MessageBox::responder([answer](const MessageBox&) { return answer; });
        drop(many);
        EXPECT_EQ(std::ranges::count_if(m_journal, [](const auto& each) { return each != L"home"; }),
                  answer == 0 ? 1000 : 0);
    }
}
