#include "UI/Base/Window/PreferencesDialog.h"

#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Preferences.h"
#include "UI/Base/Program/PreferencesPage.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QtTest/QTest>

using Vu::Preference;

namespace {

class PreferencesDialogTest : public UiTest
{
protected:
    PreferencesDialogTest()
    {
        Vu::Application::get()->needGui();
        dialog = std::make_unique<Vu::PreferencesDialog>(nullptr);
        dialog->show();
    }

    template <class Editor>
    Editor* editor(const char* id) const
    {
        return dialog->findChild<Editor*>(QString::fromLatin1(id));
    }
    static std::wstring valueOf(const wchar_t* id) { return Vu::Preferences::find(id)->text(); }

    std::unique_ptr<Vu::PreferencesDialog> dialog;
};

} // namespace

TEST_F(PreferencesDialogTest, WhatIsChangedInTheDialogHoldsAtOnceAndCanBePutBack)
{
    QTest::mouseClick(editor<QCheckBox>("Graphics.MSAA"), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_EQ(valueOf(L"Graphics.MSAA"), L"false");
    QTest::keyClick(editor<QSpinBox>("Units.generalPrecision"), Qt::Key_Up);
    EXPECT_EQ(valueOf(L"Units.generalPrecision"), L"4");
    auto* unit = editor<QComboBox>("Units.lengthUnit");
    QTest::keyClick(unit, Qt::Key_Down);
    EXPECT_EQ(valueOf(L"Units.lengthUnit"), unit->currentData().toString().toStdWString());
    EXPECT_NE(valueOf(L"Units.lengthUnit"), L"mm");

    for (auto* button : dialog->findChildren<QAbstractButton*>())
        if (button->text().contains(QStringLiteral("Defaults")))
            QTest::mouseClick(button, Qt::LeftButton);
    for (const Preference& preference : Vu::Preferences::all())
        EXPECT_TRUE(preference.isDefault());
    EXPECT_EQ(unit->currentData().toString(), QStringLiteral("mm")) << "the dialog shows it, too";
    EXPECT_TRUE(editor<QCheckBox>("Graphics.MSAA")->isChecked());
}

TEST_F(PreferencesDialogTest, TheSearchLeavesWhatItFindsByTitleNameOrPage)
{
    const auto shown = [&](const char* id) { return editor<QWidget>(id)->isVisible(); };
    auto* search = dialog->findChild<QLineEdit*>();
    QTest::keyClicks(search, "decimals");
    EXPECT_TRUE(shown("Units.generalPrecision"));
    EXPECT_FALSE(shown("Units.lengthUnit"));
    EXPECT_FALSE(shown("UIBase.theme"));
    search->setText(QStringLiteral("units"));
    EXPECT_TRUE(shown("Units.lengthUnit")) << "the whole page";
    search->setText(QStringLiteral("no such thing"));
    for (const Preference& preference : Vu::Preferences::all())
        EXPECT_FALSE(shown(QString::fromStdWString(preference.id()).toLatin1().constData()));
    search->clear();
    EXPECT_TRUE(shown("UIBase.theme"));
}

TEST_F(PreferencesDialogTest, APageThatAnAddInBringsStandsAmongTheOthersAndIsFoundByWhatItSays)
{
    const Vu::PreferencesPage page([] { return std::wstring(L"Weather"); },
                                   [](QWidget* parent) {
                                       auto* box = new QCheckBox(QStringLiteral("Ask for umbrellas"), parent);
                                       box->setObjectName(QStringLiteral("umbrellas"));
                                       return box;
                                   });
    Vu::PreferencesDialog withPage(nullptr);
    withPage.show();
    const auto* box = withPage.findChild<QCheckBox*>(QStringLiteral("umbrellas"));
    ASSERT_TRUE(box && box->isVisible());
    auto* search = withPage.findChild<QLineEdit*>();
    for (const char* wanted : {"weather", "umbrella"}) {
        search->setText(QLatin1String(wanted));
        EXPECT_TRUE(box->isVisible()) << wanted;
    }
    search->clear();
    // Keys go from the list of pages into the page, and a second click jumps there again.
    ASSERT_TRUE(QTest::qWaitForWindowActive(&withPage));
    auto* pages = withPage.findChild<QListWidget*>();
    const QListWidgetItem* weather = pages->findItems(QStringLiteral("Weather"), Qt::MatchExactly).front();
    pages->setCurrentRow(pages->row(weather));
    pages->setFocus();
    QTest::keyClick(pages, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), box);
    const auto isInSight = [&] { return !box->visibleRegion().isEmpty(); };
    withPage.findChild<QScrollArea*>()->verticalScrollBar()->setValue(0);
    ASSERT_FALSE(isInSight());
    QTest::mouseClick(pages->viewport(), Qt::LeftButton, {}, pages->visualItemRect(weather).center());
    EXPECT_TRUE(isInSight());
    search->setText(QStringLiteral("decimals"));
    EXPECT_FALSE(box->isVisible());
    EXPECT_EQ(editor<QWidget>("umbrellas"), nullptr) << "a dialog from before doesn't have it";
}
