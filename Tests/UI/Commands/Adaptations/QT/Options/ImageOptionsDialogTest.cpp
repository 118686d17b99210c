#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/PrintedImageResource.h"
#include "UI/Commands/Adaptations/QT/Options/QTSaveAsImageOptionsDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>

#include <cmath>

using namespace Vu;
using namespace Vu::Commands;

namespace {

class ImageOptionsDialogTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        Application::get()->needGui();
        forget();
    }
    void TearDown() override
    {
        forget();
        WithProgram::TearDown();
    }

    /// As if the dialog had never been used.
    static void forget()
    {
        UIInternalOptionGroup* kept = UIInternalOptionGroup::get();
        const std::string dialog = "QTSaveAsImageOptionsDlg_";
        for (const auto& [name, value] : {std::pair("size", 0),
                                          {"unit", 0},
                                          {"resolution", 72},
                                          {"lockRatio", 0},
                                          {"transparent", 0},
                                          {"antiAliasing", 1}})
            kept->setValue((dialog + name).c_str(), value);
    }

    /// What a user would do in the dialog: the fields by their names.
    struct Dialog
    {
        explicit Dialog(ImageOptions& options) : dialog(&options, nullptr) {}
        QComboBox* size() const { return dialog.findChild<QComboBox*>("comboBoxSize"); }
        QComboBox* unit() const { return dialog.findChild<QComboBox*>("comboBoxWidthUnit"); }
        QLineEdit* field(const char* name) const { return dialog.findChild<QLineEdit*>(name); }
        QCheckBox* box(const char* name) const { return dialog.findChild<QCheckBox*>(name); }
        void type(const char* name, const QString& text) const
        {
            field(name)->setText(text);
            emit field(name)->textEdited(text);
        }
        QTSaveAsImageOptionsDlg dialog;
    };
    static ImageOptions ofWindow() { return {.width = 900, .height = 600}; }
};

TEST_F(ImageOptionsDialogTest, WhatWasChosenIsThereTheNextTimeUnlessItWasCancelled)
{
    ImageOptions first = ofWindow();
    {
        Dialog dialog(first);
        EXPECT_EQ(first.width, 900u);
        dialog.unit()->setCurrentIndex(1);
        dialog.type("lineEditReso", "300");
        dialog.type("lineEditWidth", "4");
        dialog.type("lineEditHeight", "2");
        dialog.box("checkBoxTransBgd")->setChecked(true);
        dialog.box("checkBoxEnableAA")->setChecked(false);
        dialog.dialog.accept();
    }
    for (int time = 0; time < 2; ++time) {
        ImageOptions again = ofWindow();
        Dialog dialog(again);
        EXPECT_EQ(again.width, 1200u);
        EXPECT_EQ(again.height, 600u);
        EXPECT_EQ(again.resolution, 300);
        EXPECT_TRUE(again.transparentBackground);
        EXPECT_FALSE(again.antiAliasing);
        EXPECT_EQ(dialog.field("lineEditWidth")->text(), "4");
        dialog.type("lineEditWidth", "7");
        dialog.dialog.reject();
    }
    // The window's size means the present window's, and a format without transparency stays without it.
    ImageOptions third = ofWindow();
    {
        Dialog dialog(third);
        dialog.size()->setCurrentIndex(0);
        dialog.dialog.accept();
    }
    ImageOptions other{.width = 320, .height = 200, .transparencyLocked = true};
    Dialog dialog(other);
    EXPECT_EQ(other.width, 320u);
    EXPECT_FALSE(other.transparentBackground);
    dialog.dialog.accept();
    ImageOptions last = ofWindow();
    const Dialog unlocked(last);
    EXPECT_TRUE(last.transparentBackground);
}

TEST_F(ImageOptionsDialogTest, TheResolutionReachesTheFile)
{
    answer(L"Design.Sample");
    GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    ASSERT_NE(view, nullptr);
    for (const wchar_t* name : {L"print.png", L"print.jpg", L"print.tif"}) {
        PrintedImageResource image(scratch(name), 300);
        ASSERT_TRUE(view->renderImage(&image, 64, 48));
        const QImage read(QString::fromStdWString(scratch(name)));
        EXPECT_EQ(read.size(), QSize(64, 48));
        EXPECT_EQ(std::lround(read.dotsPerMeterX() * 0.0254), 300) << name;
        EXPECT_EQ(std::lround(read.dotsPerMeterY() * 0.0254), 300) << name;
    }
}

} // namespace
