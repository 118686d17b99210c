#include "Tests/UI/Commands/Resources/Catalogue.h"

#include <QApplication>
#include <QFile>
#include <QWidget>
#include <QXmlStreamReader>

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

using Vu::Commands::Resources;

namespace {

struct CursorRow
{
    std::string name;
    Vs::CursorResource* (*accessor)();
};

std::vector<CursorRow> cursors()
{
    std::vector<CursorRow> rows;
#define QUILLET_ROW(name, path, x, y) rows.push_back({#name, &Resources::name});
    QUILLET_CURSORS(QUILLET_ROW)
#undef QUILLET_ROW
    return rows;
}

std::vector<Vs::ImageResource* (*)()> images()
{
    std::vector<Vs::ImageResource* (*)()> rows;
#define QUILLET_ROW(name, path) rows.push_back(&Resources::name);
    QUILLET_IMAGES(QUILLET_ROW)
#undef QUILLET_ROW
    return rows;
}

std::vector<Vs::Resource* (*)()> files()
{
    std::vector<Vs::Resource* (*)()> rows;
#define QUILLET_ROW(name, path) rows.push_back(&Resources::name);
    QUILLET_FILES(QUILLET_ROW)
#undef QUILLET_ROW
    return rows;
}

QByteArray contentOf(Vs::Resource* resource)
{
    QFile file(pathOf(resource));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST(Catalogue, HoldsTheAgreedNumberOfResourcesOfEachKind)
{
    EXPECT_EQ(icons().size(), 115u);
    EXPECT_EQ(cursors().size(), 8u);
    EXPECT_EQ(images().size(), 4u);
    EXPECT_EQ(files().size(), 6u);
}

TEST(Catalogue, GivesOneResourcePerRowAndTheSameOneAtEachCall)
{
    std::set<const void*> seen;
    for (const IconRow& row : icons()) {
        EXPECT_EQ(row.accessor(), row.accessor()) << row.name;
        EXPECT_TRUE(seen.insert(row.accessor()).second) << row.name << " is another row's resource";
    }
    for (const CursorRow& row : cursors()) {
        EXPECT_EQ(row.accessor(), row.accessor()) << row.name;
        EXPECT_TRUE(seen.insert(row.accessor()).second) << row.name << " is another row's resource";
    }
    for (auto accessor : images())
        EXPECT_EQ(accessor(), accessor());
    for (auto accessor : files())
        EXPECT_EQ(accessor(), accessor());
}

TEST(Catalogue, FindsIconsUnderTheirOwnPathsAndNotUnderTheirNames)
{
    EXPECT_TRUE(pathOf(Resources::Fit()).endsWith("/Localization/en/UI/Commands/Resources/Camera/ZoomAll"));
    EXPECT_TRUE(pathOf(Resources::ViewVisibility()).endsWith("/Resources/View"));
    EXPECT_TRUE(pathOf(Resources::EssentialVideos()).endsWith("/Resources/LX/EssentialVideos"));
    EXPECT_TRUE(pathOf(Resources::SelectedListItem()).endsWith("/Resources/Toolbar/QAT/SelectedListItem"));
}

TEST(Catalogue, HasAPictureOfEverySizeForEveryIcon)
{
    for (const IconRow& row : icons())
        for (int size : {16, 24, 32, 64})
            EXPECT_EQ(iconOf(row, size).size(), QSize(size, size)) << row.name;
}

TEST(Catalogue, HasPointersOfThirtyTwoPixelsWithTheirHotSpots)
{
    for (const CursorRow& row : cursors()) {
        const Vs::CursorResource* cursor = row.accessor();
        EXPECT_EQ(readPicture(pathOf(cursor)).size(), QSize(32, 32)) << row.name;
        const int expected = row.name == "MeasureCursor" ? 1 : -1;
        EXPECT_EQ(cursor->hotX(), expected) << row.name;
        EXPECT_EQ(cursor->hotY(), expected) << row.name;
    }
    // The tip of the measuring pointer must be where it measures.
    const QImage measure = readPicture(pathOf(Resources::MeasureCursor()));
    EXPECT_GT(qAlpha(measure.pixel(1, 1)), 128);
}

TEST(Catalogue, HasTheSinglePictures)
{
    for (auto accessor : images()) {
        const QImage picture = readPicture(pathOf(accessor()));
        EXPECT_GE(picture.width(), 16) << pathOf(accessor()).toStdString();
        EXPECT_EQ(picture.width(), picture.height()) << pathOf(accessor()).toStdString();
    }
}

TEST(Catalogue, HasFilesThatAreWhatTheirNamesPromise)
{
    for (auto accessor : files()) {
        const QString path = pathOf(accessor());
        if (!path.endsWith(".xml"))
            continue;
        if (!QFile::exists(path))
            GTEST_SKIP() << "not installed: " << path.toStdString();
        QXmlStreamReader xml(contentOf(accessor()));
        while (!xml.atEnd())
            xml.readNext();
        EXPECT_FALSE(xml.hasError()) << path.toStdString() << ": " << xml.errorString().toStdString();
    }
}

TEST(Catalogue, HasAStyleSheetThatTheToolkitAccepts)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    QApplication application(argc, argv);
    static QString complaint;
    auto* before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { complaint += text; });
    QWidget widget;
    widget.setStyleSheet(QString::fromUtf8(contentOf(Resources::DefaultStyle())));
    widget.ensurePolished();
    qInstallMessageHandler(before);
    EXPECT_EQ(complaint.toStdString(), "");
}

TEST(CatalogueDeathTest, NamesTheFileAlsoWhereTheInstallationHasNoResources)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            setenv("QUILLET_ROOT", "/nonexistent", 1);
            const QString path = pathOf(Resources::ToolbarXml());
            std::exit(path.endsWith("/Toolbar/Toolbars.xml") && !QFile::exists(path) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
