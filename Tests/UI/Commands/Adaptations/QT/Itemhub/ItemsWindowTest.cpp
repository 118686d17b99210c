// What the window shows of items, against a real service, driven by events.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Itemhub/ItemhubOptionGroup.h"
#include "Tests/Server/Skyvault/Client/ScriptedServer.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Commands/Itemhub/WithItems.h"
#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/FilePlace.h"
#include "UI/Base/Window/LabelDialog.h"
#include "UI/Base/Window/PreferencesDialog.h"
#include "UI/Commands/Adaptations/QT/Itemhub/ItemhubSearchHandler.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTItemhubSignInDialog.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchBar.h"
#include "UI/Commands/Adaptations/QT/Itemhub/QTSearchResultPanel.h"
#include "UI/Commands/Adaptations/QT/Itemhub/SearchResult.h"

#include <QCheckBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest/QTest>

#include <future>

namespace {

using namespace Vu::Commands;
using Panel = QTSearchResultPanel;

class ItemsWindowTest : public CommandsTests::WithItems
{
protected:
    void SetUp() override
    {
        WithItems::SetUp();
        Vu::Application::get()->needGui();
    }

    /// An item without a design.
    static int makeItem(const std::wstring& caption)
    {
        if (!activeDocument())
            answer(L"Design.New");
        const std::wstring file =
            hub().addNewItem(activeDocument()->documentType(), 1, 0, 0, caption, L"Notes <img src=x>");
        return static_cast<int>(hub().itemOf(file)->itemId);
    }
    static long searches()
    {
        long count = 0;
        for (const auto& request : service().proxy().requests())
            count += request.target.starts_with("/search");
        return count;
    }
    static QStringList captions(const Panel& panel)
    {
        QStringList captions;
        for (const SearchResult* result : panel.results())
            captions << result->accessibleName();
        return captions;
    }
    template <class Widget>
    static Widget* part(const QWidget& parent, const char* name)
    {
        auto* found = parent.findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
};

/// A window with a bar in it.
struct BarWindow
{
    BarWindow()
    {
        auto* column = new QVBoxLayout(&window);
        column->addWidget(bar = new QTSearchBar(QStringLiteral("Search"), &window));
        column->addStretch(1);
        window.resize(600, 500);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        bar->edit()->setFocus();
    }
    QWidget window;
    QTSearchBar* bar;
};

} // namespace

TEST_F(ItemsWindowTest, ABurstOfLettersCostsTwoSearchesAndTheLastTextIsSearchedFor)
{
    makeItem(L"Burstable gear");
    makeItem(L"Burstable gearing");
    QWidget window;
    Panel panel(&window);
    Vu::ItemhubSearchHandler handler(&panel, nullptr);
    handler.search(L"");
    handler.searchAgain();
    EXPECT_FALSE(handler.isSearching()) << "nothing is looked for";

    service().proxy().forgetRequests();
    for (const wchar_t* typed : {L"b", L"bur", L"burs", L"burstable geari"})
        handler.search(typed);
    EXPECT_EQ(handler.currentQuery(), L"b");
    EXPECT_EQ(handler.pendingQuery(), L"burstable geari");
    EXPECT_TRUE(panel.isShown(Panel::kSearching));
    ASSERT_TRUE(until([&] { return !handler.isSearching(); }));
    EXPECT_EQ(handler.currentQuery(), L"burstable geari");
    EXPECT_EQ(searches(), 2);
    EXPECT_EQ(captions(panel), QStringList{"Burstable gearing"});
    EXPECT_FALSE(panel.isShown(Panel::kSearching));

    // The search left waiting asks for what was found already.
    service().proxy().forgetRequests();
    handler.search(L"burstable gear");
    handler.search(L"burstable gearx");
    handler.search(L"burstable gear");
    ASSERT_TRUE(until([&] { return !handler.isSearching(); }));
    EXPECT_EQ(searches(), 1);
    EXPECT_EQ(panel.results().size(), 2);

    // Repeating a search keeps the rows until the results arrive, and what is selected stays selected.
    panel.select(Panel::kResult, 1);
    const int chosen = panel.results()[1]->itemId();
    handler.searchAgain();
    EXPECT_EQ(panel.results().size(), 2);
    ASSERT_TRUE(until([&] { return !handler.isSearching(); }));
    ASSERT_EQ(panel.selection().first, Panel::kResult);
    EXPECT_EQ(panel.results()[panel.selection().second]->itemId(), chosen);

    handler.search(L"burstable");
    handler.search(L"");
    ASSERT_TRUE(until([&] { return !handler.isSearching(); }));
    EXPECT_TRUE(panel.results().isEmpty()) << "nobody looks for it any more";
    service().stop();
    handler.search(L"gear");
    ASSERT_TRUE(until([&] { return !handler.isSearching(); }));
    service().start();
    EXPECT_TRUE(panel.isShown(Panel::kMessage)) << "why there is nothing";
}

TEST_F(ItemsWindowTest, ThePanelsRowsLieBelowEachOtherAndItGrowsAwayFromItsAnchor)
{
    for (int i = 0; i < 10; ++i)
        makeItem(L"Rowed " + std::to_wstring(i));
    QWidget window;
    window.resize(500, 500);
    Panel panel(&window);
    panel.resize(300, 10);
    Vu::ItemhubSearchHandler handler(&panel, nullptr);
    panel.anchor({10, 400}, true);
    handler.search(L"rowed");
    ASSERT_TRUE(until([&] { return !handler.isSearching(); }));
    ASSERT_EQ(panel.results().size(), 8);
    EXPECT_TRUE(panel.isShown(Panel::kMore));
    int y = 3;
    for (const SearchResult* result : panel.results()) {
        EXPECT_EQ(result->pos(), QPoint(2, y));
        y += result->height() + 3;
    }
    const auto* more = part<QLabel>(panel, "searchMore");
    EXPECT_EQ(more->pos(), QPoint(2, y));
    y += more->height() + 3;
    EXPECT_EQ(panel.height(), y);
    EXPECT_EQ(panel.pos(), QPoint(10, 400));
    panel.showSection(Panel::kSearching, true);
    EXPECT_EQ(part<QLabel>(panel, "searching")->pos(), QPoint(2, y));
    panel.anchor({10, 400}, false);
    EXPECT_EQ(panel.geometry().bottom() + 1, 400);
    panel.showSection(Panel::kSearching, false);
    EXPECT_EQ(panel.geometry().bottom() + 1, 400) << "its bottom stays";
}

TEST_F(ItemsWindowTest, WhatIsFoundIsOpenedByKeysAndShownLetterByLetter)
{
    newItem(L"Keyed <b>wheel</b>");
    makeItem(L"Keyed axle & <img src=x>");
    answer(L"Document.CloseAll");
    BarWindow test;
    QLineEdit* edit = test.bar->edit();
    QTest::keyClicks(edit, QStringLiteral("keyed"));
    ASSERT_NE(test.bar->panel(), nullptr);
    Panel& panel = *test.bar->panel();
    ASSERT_TRUE(until([&] { return panel.results().size() == 2 && !test.bar->handler()->isSearching(); }));
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(captions(panel).contains("Keyed <b>wheel</b>"));
    for (const SearchResult* result : panel.results())
        EXPECT_FALSE(result->toolTip().contains("<img")) << result->toolTip().toStdString();

    QTest::keyClick(edit, Qt::Key_Down);
    EXPECT_EQ(panel.selection(), std::pair(int(Panel::kResult), 0));
    QTest::keyClick(edit, Qt::Key_Up);
    EXPECT_EQ(panel.selection().first, Panel::kNothing) << "back in the bar";
    while (captions(panel).value(panel.selection().second) != "Keyed <b>wheel</b>")
        QTest::keyClick(edit, Qt::Key_Down);
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_FALSE(panel.isVisible());
    ASSERT_TRUE(until([] { return documents() == 1; }))
        << (told().empty() ? "" : Vs::Strings::narrow(told()[0]));
    EXPECT_TRUE(hub().isItemhubDocument(activeDocument()));

    // One without a design says so; Escape clears the bar; switching to another window hides the panel.
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_Escape);
    EXPECT_EQ(edit->text(), QString());
    EXPECT_FALSE(panel.isVisible());
    QTest::keyClicks(edit, QStringLiteral("axle"));
    ASSERT_TRUE(until([&] { return panel.results().size() == 1; }));
    QTest::mouseClick(panel.results()[0], Qt::LeftButton, {}, QPoint(20, 10));
    EXPECT_TRUE(until([&] { return !told().empty(); }));
    EXPECT_EQ(documents(), 1u);

    Vs::ItemhubOptionGroup::get()->itemhubDisabled(true);
    EXPECT_FALSE(test.bar->isVisible());
    Vs::ItemhubOptionGroup::get()->itemhubDisabled(false);
    EXPECT_TRUE(test.bar->isVisible());
}

TEST_F(ItemsWindowTest, FavouritesAreButtonsThatOpenTheirItem)
{
    const int item = newItem(L"Starred <i>wheel</i>");
    answer(L"Document.CloseAll");
    BarWindow test;
    const auto buttons = [&](const char* contents, const char* name) {
        static QWidget* made = nullptr;
        delete made;
        made = Vu::AreaContents::make(contents, &test.window);
        EXPECT_NE(made, nullptr);
        static_cast<void>(
            until([&] { return made->findChild<QToolButton*>(QLatin1String(name)) != nullptr; }));
        // A list that was just refilled still has the old buttons, hidden.
        QList<QToolButton*> shown = made->findChildren<QToolButton*>(QLatin1String(name));
        shown.removeIf([](const QToolButton* button) { return button->isHidden(); });
        return shown;
    };
    // Through the star of a search result.
    QTest::keyClicks(test.bar->edit(), QStringLiteral("starred"));
    ASSERT_TRUE(until([&] { return test.bar->panel()->results().size() == 1; }));
    SearchResult* result = test.bar->panel()->results()[0];
    EXPECT_FALSE(result->isFavourite());
    QTest::mouseClick(result, Qt::LeftButton, {}, QPoint(result->width() - 8, 10));
    EXPECT_TRUE(result->isFavourite());
    EXPECT_EQ(documents(), 0u) << "the star opens nothing";

    const QList<QToolButton*> home = buttons("HomeFavourites", "shellButton");
    ASSERT_EQ(home.size(), 1);
    EXPECT_EQ(home[0]->accessibleName(), "Starred <i>wheel</i>");
    EXPECT_FALSE(home[0]->toolTip().contains("<i>"));
    QTest::mouseClick(home[0], Qt::LeftButton);
    ASSERT_TRUE(until([] { return documents() == 1; }));
    EXPECT_EQ(itemOfShown(), item);
    EXPECT_EQ(buttons("BrowserFoot", "favourite").size(), 1);
    EXPECT_NE(Vu::DocumentRemark::of(*activeDocument()).find(L"version"), std::wstring::npos);
}

TEST_F(ItemsWindowTest, ASaveIsToldOnceWithTheVersionThatHasArrived)
{
    newItem(L"Told wheel");
    answer(L"Design.Box 1 1 1");
    answer(L"Document.Save");
    const std::wstring file = activeDocument()->path();
    const auto version = [&] { return std::to_wstring(hub().itemOf(file)->version); };
    const auto newest = [] {
        const auto all = Vs::NotificationCenter::get()->notifications();
        return all.empty() ? std::wstring() : all.front()->title();
    };
    ASSERT_TRUE(arrives());
    EXPECT_TRUE(until([&] { return newest() == L"\"Told wheel\" is saved as version " + version(); }))
        << Vs::Strings::narrow(newest());
    const auto all = Vs::NotificationCenter::get()->notifications();
    ASSERT_EQ(all.size(), 1u) << "one for each file";
    EXPECT_EQ(Vu::FilePlace::shown(all[0]->file()),
              Vs::ItemhubUtilities::getItemhub_TM() + L" \u203a item " + std::to_wstring(itemOfShown()));
}

TEST_F(ItemsWindowTest, APersonSignsInByNameAndPasswordAndThePageTellsIt)
{
    Vu::PreferencesDialog preferences(nullptr);
    preferences.show();
    const auto* shown = part<QLabel>(preferences, "itemhubAccount");
    EXPECT_NE(shown->text().indexOf(QString::fromStdString(account())), -1) << shown->text().toStdString();
    hub().signOut();
    EXPECT_EQ(shown->text().indexOf(QString::fromStdString(account())), -1);

    QTItemhubSignInDialog dialog(nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* proceed = part<QPushButton>(dialog, "itemhubProceed");
    EXPECT_FALSE(proceed->isEnabled());
    const auto type = [&](const char* name, const std::string& text) {
        auto* field = part<QLineEdit>(dialog, name);
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QString::fromStdString(text));
        return field;
    };
    type("itemhubAddress", service().address());
    type("itemhubCustomer", "acme");
    type("itemhubAccount", account());
    QLineEdit* password = type("itemhubPassword", "not the password");
    for (QCheckBox* keep : dialog.findChildren<QCheckBox*>())
        keep->setChecked(false);
    QTest::keyClick(password, Qt::Key_Return);
    const auto* message = part<QLabel>(dialog, "itemhubMessage");
    EXPECT_TRUE(message->isVisible());
    EXPECT_FALSE(hub().isAuthenticated());
    type("itemhubPassword", TestSupport::ItemService::password());
    EXPECT_FALSE(message->isVisible()) << "that was about another password";
    QTest::keyClick(password, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted) << message->text().toStdString();
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account()));
    EXPECT_NE(shown->text().indexOf(QString::fromStdString(account())), -1) << shown->text().toStdString();
    QTest::mouseClick(part<QCheckBox>(preferences, "itemhubOn"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(hub().ItemhubDisabled());
    EXPECT_FALSE(shown->isVisible());
    QTest::mouseClick(part<QCheckBox>(preferences, "itemhubOn"), Qt::LeftButton, {}, QPoint(8, 8));
}

/// Uses the address that is reported where tests run, since no browser is opened there, and signs in on its
/// page.
class Person : private Vu::AlertEventSite
{
public:
    explicit Person(std::string account) : m_account(std::move(account))
    {
        Vu::AlertEventSource::get()->subscribe(this);
    }
    ~Person() { Vu::AlertEventSource::get()->unsubscribe(this); }

    std::string page;               ///< Empty before anything was reported.
    std::future<std::string> shown; ///< Finally through the browser.

private:
    void alertAdded(Vu::AlertController*, const Vu::Alert& alert) override
    {
        page = Vs::Strings::narrow(alert.text);
        shown = std::async(std::launch::async, TestSupport::ItemService::signInWithBrowser, page, m_account);
    }

    const std::string m_account;
};

TEST_F(ItemsWindowTest, APersonSignsInWithTheBrowserWhileTheDialogWaits)
{
    hub().signOut();
    QTItemhubSignInDialog dialog(nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    part<QLineEdit>(dialog, "itemhubAddress")->setText(QString::fromStdString(service().address()));
    part<QLineEdit>(dialog, "itemhubCustomer")->setText(QStringLiteral("acme"));
    for (QCheckBox* keep : dialog.findChildren<QCheckBox*>())
        keep->setChecked(false);
    Person person(account());
    QTest::mouseClick(part<QPushButton>(dialog, "itemhubBrowser"), Qt::LeftButton);
    EXPECT_EQ(person.page.find(service().address() + "oauth/authorize?"), 0u) << person.page;
    EXPECT_EQ(dialog.result(), QDialog::Accepted)
        << part<QLabel>(dialog, "itemhubMessage")->text().toStdString();
    EXPECT_EQ(hub().accountName(), Vs::Strings::widen(account()));
    ASSERT_TRUE(person.shown.valid());
    EXPECT_NE(person.shown.get().find("You can close this page"), std::string::npos);
    Vu::CommandMgr::get()->GetAlertController()->clearAllAlerts();
}

TEST_F(ItemsWindowTest, ATrackerIsSignedInToByALineWithAKeyAndByTheDialogWithAPassword)
{
    const ScriptedServer tracker("issue_tracker.py");
    if (!tracker.missing().empty() && TestSupport::serversAreRequired())
        FAIL() << "Not installed: " << tracker.missing();
    if (!tracker.missing().empty())
        GTEST_SKIP() << "NOTICE: not installed: " << tracker.missing();
    const QJsonObject told = QJsonDocument::fromJson(QByteArray::fromStdString(tracker.address())).object();
    const std::string address = "redmine+" + told["address"].toString().toStdString();
    hub().signOut();

    // Through a line, in a separate program, which creates an item there.
    const auto lines = TestSupport::runQuillet(
        {"--headless", "--command", "Itemhub.SignIn " + address + ' ' + told["ada"].toString().toStdString(),
         "--command", "Dashboard.NewItemCmd 1 \"Tracked wheel\" 0 0 VeloraAssetType", "--command",
         "Design.Box 10 20 30", "--command", "Document.Save", "--command", "Itemhub.Wait 60", "--command",
         "Itemhub.Account", "--command", "Itemhub.Search Tracked"},
        {.secondsLimit = 120});
    EXPECT_EQ(lines.exitCode, 0) << lines.output << lines.errors;
    EXPECT_NE(lines.output.find("ada"), std::string::npos) << lines.output;
    const size_t row = lines.output.find("\tTracked wheel");
    ASSERT_NE(row, std::string::npos) << lines.output;
    const size_t begin = lines.output.find_last_of('\n', row) + 1;
    const std::string item = lines.output.substr(begin, row - begin);

    // Through the dialog, as another user, who opens it.
    QTItemhubSignInDialog dialog(nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    for (const auto& [name, text] :
         {std::pair("itemhubAddress", address), {"itemhubCustomer", ""}, {"itemhubAccount", "bob"}}) {
        auto* field = part<QLineEdit>(dialog, name);
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, QString::fromStdString(text));
    }
    for (QCheckBox* keep : dialog.findChildren<QCheckBox*>())
        keep->setChecked(false);
    auto* password = part<QLineEdit>(dialog, "itemhubPassword");
    password->setFocus();
    QTest::keyClicks(password, QStringLiteral("not the password"));
    QTest::keyClick(password, Qt::Key_Return);
    const auto* message = part<QLabel>(dialog, "itemhubMessage");
    EXPECT_TRUE(message->isVisible());
    EXPECT_FALSE(hub().isAuthenticated());
    password->selectAll();
    QTest::keyClicks(password, QString::fromStdString(TestSupport::ItemService::password()));
    QTest::keyClick(password, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted) << message->text().toStdString();
    EXPECT_EQ(hub().accountName(), L"bob");
    answer(L"Itemhub.Open " + Vs::Strings::widen(item));
    EXPECT_EQ(activeDocument()->displayName(), L"Tracked wheel");
    EXPECT_EQ(itemOfShown(), std::stoi(item));
}

TEST_F(ItemsWindowTest, ALabelIsOneLineThatIsNotEmpty)
{
    Vu::LabelDialog dialog(QString(), 20, nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* field = part<QLineEdit>(dialog, "label");
    QTest::keyClicks(field, QStringLiteral("   "));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "blanks are no label";
    QTest::keyClicks(field, QStringLiteral("For  review and for all eternity"));
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.label(), "For review and f");
}
