// The panel that shows the properties of the selection, and changes them.

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Tests/UI/Becomes.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "Tests/UI/Commands/InBrowser.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentFacts.h"
#include "UI/Base/Session/DocumentRemark.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QtTest/QTest>

using namespace Vu;

namespace {

class WithParts : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.New");
        answer(L"Design.Box 40 20 10");
        answer(L"Design.Cylinder 5 30 100,0,0");
    }
};

class PropertiesTest : public CommandsTests::InBrowser<WithParts>
{
protected:
    QWidget* panel() const { return tree->window()->findChild<QWidget*>("properties"); }
    template <class Widget>
    Widget* find(const char* name) const
    {
        return panel()->findChild<Widget*>(QString::fromLatin1(name));
    }
    static void settle()
    {
        Application::get()->flushDeferredTasks();
        QApplication::processEvents();
    }
    /// The text of a value; empty if it isn't shown.
    QString value(const char* name) const
    {
        const auto* label = find<QLabel>(name);
        return label->isVisible() ? label->text() : QString();
    }
    QString line(const char* name) const
    {
        const auto* edit = find<QLineEdit>(name);
        return edit->isVisible() ? edit->text() : QString();
    }
    bool measured(const char* name, const QString& wanted) const
    {
        const bool done = UiTests::becomes([&] { return value(name) == wanted; });
        EXPECT_TRUE(done) << value(name).toStdString();
        return done;
    }
    QString head() const { return find<QLabel>("propertiesHead")->text(); }
    void type(const char* name, const QString& text, int end = Qt::Key_Return) const
    {
        auto* edit = find<QLineEdit>(name);
        edit->setFocus();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        QTest::keyClick(edit, static_cast<Qt::Key>(end));
        settle();
    }
    QStringList facts() const
    {
        QStringList all;
        for (const QLabel* label : panel()->findChildren<QLabel*>("documentFact"))
            all << QString(label->text()).remove(QChar(0x200b));
        return all;
    }
    static std::wstring names()
    {
        std::wstring all;
        for (const auto& child : activeSession()->asset()->components()->children)
            all += child->name.text() + L' ';
        return all;
    }
};

} // namespace

TEST_F(PropertiesTest, APartTellsWhatItIsAndMeasuresAndAFaceOrEdgeItsFormToo)
{
    answer(L"Selection.Select Box1");
    settle();
    EXPECT_EQ(head(), "Part");
    EXPECT_EQ(line("propertyName"), "Box1");
    EXPECT_EQ(line("propertyX"), "0 mm");
    EXPECT_EQ(value("propertySize"), QStringLiteral("40 \u00d7 20 \u00d7 10 mm"));
    EXPECT_TRUE(measured("propertyVolume", QStringLiteral("8000 mm\u00b3")));
    EXPECT_EQ(value("propertyArea"), QStringLiteral("2800 mm\u00b2"));
    EXPECT_EQ(find<QLabel>("propertyArea")->accessibleName(), QStringLiteral("Area: 2800 mm\u00b2"));

    answer(L"Design.Rotate Box1 Z 45");
    answer(L"Selection.Select Box1");
    settle();
    EXPECT_EQ(value("propertySize"), QStringLiteral("40 \u00d7 20 \u00d7 10 mm")) << "along its own axes";

    answer(L"Selection.Select Cylinder1");
    settle();
    EXPECT_EQ(line("propertyX"), "100 mm");
    EXPECT_TRUE(measured("propertySize", QStringLiteral("10 \u00d7 10 \u00d7 30 mm")))
        << "not that of its triangles";
    EXPECT_EQ(value("propertyDiameter"), "10 mm");
    answer(L"Selection.Select Cylinder1/Face1");
    settle();
    ASSERT_TRUE(measured("propertyDiameter", "10 mm"));
    EXPECT_EQ(head(), "Face, cylinder");
    EXPECT_EQ(line("propertyName"), "Cylinder1");
    EXPECT_TRUE(find<QLineEdit>("propertyName")->isReadOnly()) << "a face has no name of its own";
    EXPECT_EQ(value("propertyArea"), QStringLiteral("942.478 mm\u00b2"));
    EXPECT_EQ(value("propertyVolume"), "");
    answer(L"Selection.Select Box1/Edge1");
    settle();
    EXPECT_TRUE(UiTests::becomes([&] { return head() == "Edge, line"; }));
    EXPECT_EQ(value("propertyDiameter"), "");
    EXPECT_FALSE(find<QToolButton>("propertyColour")->isVisible());
}

TEST_F(PropertiesTest, SeveralTellHowManyWhatTheyShareAndTheirSums)
{
    answer(L"Design.Box 40 20 10 0,0,50");
    answer(L"Selection.Select Box1 Box2");
    settle();
    EXPECT_EQ(head(), "2 parts");
    EXPECT_EQ(line("propertyName"), "");
    EXPECT_EQ(find<QLineEdit>("propertyName")->placeholderText(), "different");
    EXPECT_EQ(line("propertyX"), "0 mm");
    EXPECT_EQ(find<QLineEdit>("propertyZ")->placeholderText(), "different");
    EXPECT_TRUE(find<QLineEdit>("propertyZ")->isReadOnly());
    EXPECT_EQ(value("propertySize"), QStringLiteral("40 \u00d7 20 \u00d7 60 mm"));
    EXPECT_TRUE(measured("propertyVolume", QStringLiteral("16000 mm\u00b3")));
    answer(L"Design.Box 1 1 1");
    answer(L"Design.Move Box2 0 0 10");
    settle();
    EXPECT_EQ(value("propertySize"), QStringLiteral("40 \u00d7 20 \u00d7 70 mm"));
    EXPECT_TRUE(measured("propertyVolume", QStringLiteral("16000 mm\u00b3")));
    answer(L"Selection.Select Box1/Face1 Box1/Face2 Cylinder1/Edge1");
    settle();
    EXPECT_TRUE(UiTests::becomes([&] { return head() == "2 faces, 1 edge, several forms"; }))
        << head().toStdString();
    answer(L"Selection.Select Box1 Box2/Face1");
    settle();
    EXPECT_EQ(head(), "1 part, 1 face");
    EXPECT_EQ(value("propertyVolume"), "") << "wholes and parts of them have no sum";
    EXPECT_EQ(value("propertyArea"), "");
}

TEST_F(PropertiesTest, NamePositionAndColourAreChangedEachAsOneStepAndWhatMakesNoSenseIsRefused)
{
    answer(L"Selection.Select Box1");
    settle();
    type("propertyName", "Deck plate");
    EXPECT_EQ(names(), L"Deck plate Cylinder1 ");
    type("propertyX", "1/2 in");
    EXPECT_EQ(line("propertyX"), "12.7 mm");
    type("propertyX", "1/0");
    EXPECT_TRUE(find<QLineEdit>("propertyX")->property("failed").toBool());
    EXPECT_EQ(find<QLineEdit>("propertyX")->text(), "1/0");
    EXPECT_FALSE(find<QLineEdit>("propertyX")->accessibleDescription().isEmpty());
    QTest::keyClick(find<QLineEdit>("propertyX"), Qt::Key_Escape);
    EXPECT_EQ(line("propertyX"), "12.7 mm");
    auto* colour = find<QToolButton>("propertyColour");
    emit colour->menu()->aboutToShow();
    colour->menu()->actions().front()->trigger();
    settle();
    EXPECT_EQ(colour->text(), "Red");
    answer(L"VuCommands.UndoCmd");
    settle();
    EXPECT_NE(colour->text(), "Red");
    EXPECT_EQ(line("propertyX"), "12.7 mm");
    answer(L"VuCommands.UndoCmd");
    settle();
    EXPECT_EQ(line("propertyX"), "0 mm");
    EXPECT_EQ(line("propertyName"), "Deck plate");
    answer(L"VuCommands.UndoCmd");
    settle();
    EXPECT_EQ(names(), L"Box1 Cylinder1 ");

    answer(L"Commands.Start MoveCommand");
    settle();
    EXPECT_TRUE(find<QLineEdit>("propertyX")->isReadOnly()) << "the tool has the selection to itself";
    EXPECT_FALSE(colour->isEnabled());
    answer(L"Commands.Cancel");
    settle();
    EXPECT_FALSE(find<QLineEdit>("propertyX")->isReadOnly());
}

TEST_F(PropertiesTest, WithoutASelectionItTellsOfTheDocumentAndWhatAddInsKnowOfIt)
{
    answer(L"Document.Rename Bracket");
    answer(L"Selection.Clear");
    settle();
    EXPECT_EQ(head(), "Document");
    EXPECT_EQ(facts(), (QStringList{"Bracket", "2"}));
    answer(L"Document.Save \"" + scratch(L"Bracket.vlra") + L'"');
    {
        const DocumentFacts item([](const Vs::Document&) {
            return std::vector<DocumentFacts::Fact>{{L"Version", L"3"}, {L"Label", L"For <b>review</b>"}};
        });
        Vs::Event event;
        DocumentRemarkSource::get()->fireDocumentRemarksChanged(&event);
        settle();
        EXPECT_EQ(facts(), (QStringList{"Bracket", QString::fromStdWString(scratch(L"Bracket.vlra")), "2",
                                        "3", "For <b>review</b>"}));
    }
    answer(L"Selection.Select Box1");
    settle();
    EXPECT_TRUE(facts().isEmpty());
    answer(L"Document.CloseAll");
    settle();
}
