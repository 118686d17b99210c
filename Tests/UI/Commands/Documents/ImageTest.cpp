#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Document.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/PngWriter.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Documents/ImageOptions.h"

#include <QFile>
#include <QImage>
#include <QStandardPaths>
#include <QtEndian>

#include <boost/filesystem/operations.hpp>

#include <cmath>
#include <csignal>
#include <ctime>
#include <fstream>
#include <set>
#include <sys/resource.h>

using namespace Vu::Commands;

namespace {

TEST(ImageOptionsTest, NamesDecideAboutTransparencyAndSuffix)
{
    EXPECT_TRUE(locksTransparency(L"a.jpg"));
    EXPECT_TRUE(locksTransparency(L"a.JPG"));
    EXPECT_FALSE(locksTransparency(L"a.png"));
    EXPECT_FALSE(locksTransparency(L"jpg"));
    EXPECT_EQ(withImageSuffix(L"a.bmp"), L"a.bmp.png");
    EXPECT_EQ(withImageSuffix(L"a.PNG"), L"a.PNG");
    EXPECT_EQ(withImageSuffix(L"a.tif"), L"a.tif");
    EXPECT_EQ(withImageSuffix(L"a"), L"a.png");
    EXPECT_EQ(withImageSuffix(L""), L".png");
}

TEST(ImageOptionsTest, LargePicturesAreNotAntiAliased)
{
    EXPECT_TRUE(rendersAntiAliased({.width = 4096, .height = 4096}));
    EXPECT_FALSE(rendersAntiAliased({.width = 4097, .height = 10}));
    EXPECT_FALSE(rendersAntiAliased({.width = 10, .height = 5000}));
    EXPECT_FALSE(rendersAntiAliased({.width = 10, .height = 10, .antiAliasing = false}));
}

TEST(ImageOptionsTest, EntriesOfTheSizeListGiveTheirNumbers)
{
    EXPECT_EQ(sizeOfEntry(L"1280 x 1024 (4:3)"), (std::pair<uint32_t, uint32_t>{1280, 1024}));
    EXPECT_EQ(sizeOfEntry(L"Custom..."), std::nullopt);
    EXPECT_EQ(sizeOfEntry(L""), std::nullopt);
}

TEST(ImageSizeModelTest, ALockedRatioFollowsTheWindow)
{
    ImageOptions options{.width = 800, .height = 400};
    ImageSizeModel model(options, 2.0);
    model.heightEdited(300);
    EXPECT_EQ(options.width, 800u);
    model.ratioLocked(true);
    EXPECT_EQ(options.height, 400u);
    model.widthEdited(1001);
    EXPECT_EQ(options.height, 501u);
    model.heightEdited(10);
    EXPECT_EQ(options.width, 20u);
}

TEST(ImageSizeModelTest, InchesAreWholePixelsDividedByTheResolution)
{
    ImageOptions options{.width = 150, .height = 80};
    ImageSizeModel model(options, 1.5);
    model.unit(ImageSizeModel::Unit::Inches);
    EXPECT_EQ(model.shownWidth(), 2u);
    EXPECT_EQ(model.shownHeight(), 1u);
    EXPECT_EQ(options.width, 150u);
    model.resolutionEdited(100);
    EXPECT_EQ(options.width, 200u);
    EXPECT_EQ(options.height, 100u);
    model.resolutionEdited(0);
    EXPECT_EQ(model.resolution(), 72);
    model.widthEdited(3);
    EXPECT_EQ(options.width, 216u);
}

/// The rows of a PNG file as they were compressed; empty if the sum that stands behind them is wrong.
QByteArray rowsOf(const QByteArray& file)
{
    QByteArray stream(4, '\0'); // a guess at the size, which the function below wants
    for (qsizetype at = 8; at + 8 <= file.size();) {
        const auto length = qsizetype(qFromBigEndian<quint32>(file.constData() + at));
        if (file.mid(at + 4, 4) == "IDAT")
            stream += file.mid(at + 8, length);
        at += length + 12;
    }
    return qUncompress(stream);
}

TEST(PngTest, FilesHoldTheVeryPixelsOfPicturesOfEverySize)
{
    for (const auto& [width, height] : {std::pair{1u, 1u}, {1u, 900u}, {901u, 2u}, {700u, 1300u}}) {
        Vs::Scene::Image image{width, height, std::vector<uint8_t>(size_t(width) * height * 4)};
        // Half of it smooth, half of it noise.
        uint32_t noise = 1;
        for (size_t i = 0; i < image.pixels.size(); ++i) {
            noise = noise * 1664525 + 1013904223;
            image.pixels[i] = uint8_t(i < image.pixels.size() / 2 ? i / width : noise >> 24);
        }
        for (const bool transparent : {false, true}) {
            QByteArray file;
            const auto take = [&](const char* bytes, size_t count) {
                file.append(bytes, qsizetype(count));
                return true;
            };
            ASSERT_TRUE(Vs::Scene::writePng(image, {transparent, 254}, take));
            const QImage read = QImage::fromData(file, "PNG");
            ASSERT_EQ(read.size(), QSize(int(width), int(height)));
            EXPECT_EQ(read.hasAlphaChannel(), transparent);
            EXPECT_EQ(rowsOf(file).size(), qsizetype(height) * (1 + width * (transparent ? 4 : 3)));
            EXPECT_EQ(read.dotsPerMeterX(), 10000);
            const QImage wanted(image.pixels.data(), int(width), int(height), qsizetype(width) * 4,
                                transparent ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888);
            const auto compared = transparent ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
            EXPECT_EQ(read.convertToFormat(compared), wanted.convertToFormat(compared))
                << width << " x " << height << (transparent ? ", transparent" : "");
            EXPECT_FALSE(Vs::Scene::writePng(image, {}, [](const char*, size_t count) { return count < 9; }));
        }
    }
}

class ImageTest : public CommandsTests::WithProgram
{
protected:
    static QImage image(const std::wstring& path) { return QImage(QString::fromStdWString(path)); }

    static std::wstring capture(const std::wstring& path, const std::wstring& arguments)
    {
        return L"Commands.Start SaveAsImageCommand Path=" + path + L" " + arguments;
    }
};

TEST_F(ImageTest, APictureHasTheSizeAskedForAndShowsTheModel)
{
    answer(L"Design.Sample");
    const std::wstring path = scratch(L"shot.png");
    answer(capture(path, L"Width=320 Height=240 Transparent=1"));
    const QImage picture = image(path);
    ASSERT_EQ(picture.size(), QSize(320, 240));
    EXPECT_EQ(qAlpha(picture.pixel(1, 1)), 0);
    EXPECT_EQ(qAlpha(picture.pixel(160, 120)), 255);
}

TEST_F(ImageTest, ModelsOfEverySizeAreFramedAlikeAndAPointLeavesACameraThatWorks)
{
    // A tetrahedron; its picture is that of any other of the same shape.
    const auto picture = [](double size, int projection) {
        const std::wstring model = scratch(L"model.stl"), path = scratch(L"model.png");
        std::ofstream stream(Vs::Strings::narrow(model));
        stream << "solid model\n";
        for (const char* corners : {"021", "013", "123", "032"}) {
            stream << "facet normal 0 0 0\nouter loop\n";
            for (const char* corner = corners; *corner; ++corner)
                stream << "vertex " << (*corner == '1') * size << ' ' << (*corner == '2') * size << ' '
                       << (*corner == '3') * size << '\n';
            stream << "endloop\nendfacet\n";
        }
        stream << "endsolid model\n";
        stream.close();
        answer(L"Document.Open " + model);
        Vs::Scene::Camera* camera =
            Vu::SceneUtilities::getActiveAssetGraphicView()->modelFragment()->camera();
        camera->projection(projection);
        answer(L"Commands.Start FitCommand");
        answer(L"Camera.ZoomIn 2");
        answer(L"Camera.ZoomOut 0.5");
        answer(capture(path, L"Width=160 Height=120 Transparent=1"));
        for (const double number : {camera->position().x, camera->target().y, camera->up().z,
                                    camera->clipNear(), camera->clipFar(), camera->extentsWidth()})
            EXPECT_TRUE(std::isfinite(number));
        answer(L"Document.CloseAll");
        return image(path);
    };
    const auto covered = [](const QImage& image) {
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += qAlpha(image.pixel(x, y)) > 127;
        return count;
    };
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection}) {
        const int usual = covered(picture(100, projection));
        EXPECT_GT(usual, 160 * 120 / 10);
        for (const double size : {1e-6, 1e-3, 1e9})
            EXPECT_NEAR(covered(picture(size, projection)), usual, usual / 50) << size;
        EXPECT_EQ(covered(picture(0, projection)), 0);
    }
}

TEST_F(ImageTest, WithoutASizeTheDefaultsAreTakenAndNobodyIsAsked)
{
    answer(L"Design.Sample");
    const std::wstring path = scratch(L"default");
    answer(capture(path, L""));
    EXPECT_EQ(image(path + L".png").size(), QSize(1920, 1080));
}

TEST_F(ImageTest, GraphicsOptionsAreAsBeforeAfterwards)
{
    Vs::Scene::GraphicsOptionGroup* options = Vs::Scene::GraphicsOptionGroup::get();
    answer(L"Design.Sample");
    options->displayGroundPlane(true);
    options->MSAA(true);
    const auto file = Vs::PathInfo::optionsDirectory() / "Graphics.json";
    boost::filesystem::remove(file);
    answer(capture(scratch(L"options.png"), L"Width=64 Height=64 AntiAliasing=0"));
    EXPECT_FALSE(boost::filesystem::exists(file)) << "a run that is killed meanwhile leaves them, too";
    EXPECT_TRUE(options->displayGroundPlane());
    EXPECT_TRUE(options->MSAA());
    EXPECT_FALSE(options->transparentBackground());
    options->displayGroundPlane(false);
}

TEST_F(ImageTest, TheGroundAndTheGridAreLeftOutAndStayOnTheScreen)
{
    Vs::Scene::GraphicsOptionGroup* options = Vs::Scene::GraphicsOptionGroup::get();
    answer(L"Design.Sample");
    answer(L"VuCommands.ViewGroundPlaneCmd ViewGroundPlaneOffCommand");
    const std::wstring plain = scratch(L"plain.png"), onGround = scratch(L"on-ground.png");
    answer(capture(plain, L"Width=320 Height=240"));
    answer(L"VuCommands.ViewGroundPlaneCmd ViewGroundPlaneOnCommand");
    answer(L"VuCommands.ViewLayoutGridOnCmd ViewLayoutGridOnCommand");
    answer(capture(onGround, L"Width=320 Height=240"));
    EXPECT_EQ(image(onGround), image(plain));
    answer(L"VuCommands.ViewAxisCrossCmd ViewAxisCrossOnCommand");
    answer(capture(onGround, L"Width=320 Height=240"));
    EXPECT_EQ(image(onGround), image(plain)) << "marks belong to views";
    const auto below = [](const QImage& picture) { return picture.copy(20, 140, 90, 80); };
    answer(capture(onGround, L"Width=320 Height=240 AsShown=1"));
    const QImage shown = image(onGround);
    EXPECT_NE(shown, image(plain));
    answer(L"VuCommands.ViewAxisCrossCmd ViewAxisCrossOffCommand");
    answer(capture(onGround, L"Width=320 Height=240 AsShown=1"));
    EXPECT_NE(below(image(onGround)), below(shown)) << "unless the view is captured as it is shown";
    EXPECT_TRUE(Vu::SceneUtilities::getActiveAssetGraphicView()
                    ->modelFragment()
                    ->renderParams()
                    ->groundPlaneEnabled());
    EXPECT_TRUE(options->showLayoutGrid());
    options->reset();
}

TEST_F(ImageTest, ATurntableGoesOnceAroundTheModelAndLeavesTheCameraWhereItWas)
{
    answer(L"Design.New");
    answer(L"Design.Box 60 20 30");
    answer(L"Camera.Set 400,10,15 30,10,15 0,0,1 1 10000 160 120 1");
    const std::wstring before = answer(L"Camera.Dump");
    const std::wstring name = scratch(L"turn.png");
    EXPECT_EQ(answer(L"Camera.Turntable " + name + L" 4 160x120 /Transparent"), L"Drew 4 pictures.");
    EXPECT_EQ(answer(L"Camera.Dump"), before);
    const auto width = [&](int number) {
        const QImage picture = image(scratch(L"turn-000" + std::to_wstring(number) + L".png"));
        EXPECT_EQ(picture.size(), QSize(160, 120));
        int left = picture.width(), right = -1;
        for (int x = 0; x < picture.width(); ++x)
            if (qAlpha(picture.pixel(x, 60)) > 127) {
                left = std::min(left, x);
                right = x;
            }
        EXPECT_NEAR(left + right, 159, 6) << "it stays in the middle";
        return right - left + 1;
    };
    const int narrow = width(1), wide = width(2);
    EXPECT_GT(wide, narrow * 2) << "a quarter turn shows the long side";
    EXPECT_NEAR(width(3), narrow, 2);
    EXPECT_NEAR(width(4), wide, 2);
    EXPECT_TRUE(image(scratch(L"turn-0005.png")).isNull());

    const auto refuses = [&](const std::wstring& line, const wchar_t* cause) {
        EXPECT_NE(failure(L"Camera.Turntable " + line).find(cause), std::wstring::npos);
    };
    refuses(scratch(L"turn.bmp"), L"must end in");
    refuses(scratch(L"none/turn.png"), L"no folder");
    refuses(name + L" 0", L"number of pictures");
    refuses(name + L" 4 99999x10", L"number of pictures");
    // Where there is no ffmpeg, the answer says so; where there is, there is a film.
    const std::wstring film = scratch(L"turn.mp4");
    const auto isThere = [&] { return QFile::exists(QString::fromStdWString(film)); };
    if (QStandardPaths::findExecutable("ffmpeg").isEmpty()) {
        refuses(film + L" 2 64x64", L"needs the program ffmpeg");
        EXPECT_FALSE(isThere());
    } else {
        answer(L"Camera.Turntable " + film + L" 5 65x63");
        EXPECT_TRUE(isThere());
    }
}

TEST_F(ImageTest, AboveTheLimitEdgesAreNotSmoothedWhateverIsWished)
{
    answer(L"Design.Sample");
    // Without lines, whose own coverage makes them smooth in any case.
    answer(L"VuCommands.ViewVisualStyleCmd ViewVisualStyleShaded");
    const auto opacities = [](const std::wstring& name, const std::wstring& size) {
        const std::wstring path = scratch(name);
        answer(capture(path, size + L" Height=96 Transparent=1 AntiAliasing=1"));
        const QImage picture = image(path);
        std::set<int> found;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                found.insert(qAlpha(picture.pixel(x, y)));
        return found.size();
    };
    const size_t smooth = opacities(L"smooth.png", L"Width=4096");
    EXPECT_GT(2 * smooth, 3 * opacities(L"rough.png", L"Width=4097"));
    Vs::Scene::GraphicsOptionGroup::get()->reset();
}

TEST_F(ImageTest, APictureForWhichThereIsNoRoomOnTheDiskLeavesTheOldOne)
{
    answer(L"Design.Sample");
    const std::wstring path = scratch(L"full.png");
    answer(capture(path, L"Width=64 Height=48"));
    // The system refuses to let files grow, as on a full disk.
    struct NoRoom
    {
        rlimit before;
        NoRoom()
        {
            std::signal(SIGXFSZ, SIG_IGN);
            getrlimit(RLIMIT_FSIZE, &before);
            const rlimit none{2048, before.rlim_max};
            setrlimit(RLIMIT_FSIZE, &none);
        }
        ~NoRoom()
        {
            setrlimit(RLIMIT_FSIZE, &before);
            std::signal(SIGXFSZ, SIG_DFL);
        }
    };
    for (const wchar_t* name : {L"full.png", L"full.jpg", L"full.tif"}) {
        const NoRoom noRoom;
        EXPECT_NE(failure(capture(scratch(name), L"Width=640 Height=480")).find(name), std::wstring::npos);
    }
    EXPECT_EQ(image(path).size(), QSize(64, 48));
    EXPECT_FALSE(boost::filesystem::exists(scratch(L"full.tif")));
}

TEST_F(ImageTest, WhatCannotBeDrawnIsSaid)
{
    EXPECT_EQ(failure(capture(scratch(L"none.png"), L"Width=64 Height=64")),
              L"There is no view to make a picture of.");
    answer(L"Design.Sample");
    for (const wchar_t* size : {L"Width=0 Height=64", L"Width=64 Height=-1", L"Width=64 Height=100000"})
        EXPECT_NE(failure(capture(scratch(L"none.png"), size)).find(L"each side must be from 1 to 16384"),
                  std::wstring::npos);
    EXPECT_EQ(failure(capture(scratch(L"none.png"), L"Width=wide Height=64")),
              L"Width must be a whole number, not \"wide\".");
    EXPECT_NE(failure(capture(scratch(L"no/folder/none.png"), L"Width=64 Height=64")).find(L"none.png"),
              std::wstring::npos);
}

TEST_F(ImageTest, ASharedPictureLiesWhereItsWaySaysUnderTheDocumentsName)
{
    const auto share = [](const std::wstring& arguments) {
        return L"Commands.Start ShareSheetsCommand " + arguments;
    };
    EXPECT_FALSE(applicable(L"ShareSheetsCommand"));
    answer(L"Design.Sample");
    activeDocument()->displayName(L"lamp/left");
    const auto passing = Vs::PathInfo::temporaryDirectory(true) / "shared";
    answer(share(L"CmdId=ShareOpenWithCommand"));
    answer(share(L"CmdId=ShareByMailCommand"));
    for (const wchar_t* name : {L"lamp_left.png", L"lamp_left 2.png"})
        EXPECT_EQ(image((passing / name).wstring()).size(), QSize(1920, 1080)) << Vs::Strings::narrow(name);
    answer(share(L"CmdId=ShareInFolderCommand Path=" + scratch(L"given")));
    EXPECT_FALSE(image(scratch(L"given.png")).isNull());

    // Nobody reads what is older than a day.
    boost::filesystem::last_write_time(passing / "lamp_left.png", std::time(nullptr) - 25 * 60 * 60);
    answer(share(L"CmdId=ShareOpenWithCommand"));
    EXPECT_LT(std::time(nullptr) - boost::filesystem::last_write_time(passing / "lamp_left.png"), 60 * 60);

    EXPECT_NE(failure(share(L"CmdId=Fax")).find(L"can't be shared by \"Fax\""), std::wstring::npos);
    EXPECT_NE(failure(share(L"")).find(L"ShareByMailCommand"), std::wstring::npos);
    EXPECT_NE(failure(share(L"CmdId=ShareToItemCommand")).find(L"belongs to no item"), std::wstring::npos);
    EXPECT_NE(failure(share(L"CmdId=ShareCopyPictureCommand")).find(L"no clipboard"), std::wstring::npos);
    EXPECT_NE(failure(share(L"CmdId=ShareByMailCommand Path=/no/such/folder/a.png")).find(L"/no/such/folder"),
              std::wstring::npos);
}

} // namespace
