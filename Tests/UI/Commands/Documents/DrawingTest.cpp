// Drawings of a model at scale, as files.

#include "Server/Base/Progress.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Tests/Server/Skyvault/Client/ScriptedServer.h"
#include "Tests/Support/Files.h"
#include "Tests/Support/Process.h"
#include "Tests/Support/RealData.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/PrintDialog.h"
#include "UI/Commands/Documents/DrawingPage.h"

#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QPointF>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <QXmlStreamReader>

#include <cmath>
#include <numbers>

namespace {

using Vu::Commands::drawingPage;
using Vu::Commands::readScale;
using Vu::Commands::scaleText;

TEST(DrawingPageTest, ScalesAreReadAndWrittenAsPeopleDo)
{
    EXPECT_EQ(readScale(L"1:2"), 0.5);
    EXPECT_EQ(readScale(L"5:1"), 5);
    EXPECT_EQ(readScale(L"0.25"), 0.25);
    for (const wchar_t* none : {L"", L"1:0", L"0:1", L"-1:2", L"1:2:3", L"large", L"1:1e999"})
        EXPECT_EQ(readScale(none), std::nullopt) << none;
    EXPECT_EQ(scaleText(0.5), L"1:2");
    EXPECT_EQ(scaleText(10), L"10:1");
    EXPECT_EQ(scaleText(0.4), L"1:2.5");
}

TEST(DrawingPageTest, TheSheetFitsTheScaleOrTheScaleTheSheet)
{
    const Vs::LineDrawing drawing{{{false, false, {{-100, 0}, {500, 0}, {500, 40}}}}};
    const auto usual = drawingPage(drawing, {L"Beam", L"2026-01-31"}, std::nullopt);
    ASSERT_TRUE(usual);
    EXPECT_EQ(usual->width, 297);
    const auto lengthOf = [](const Vu::VectorPage& page) {
        return page.lines[0].points[1].x - page.lines[0].points[0].x;
    };
    EXPECT_NEAR(lengthOf(*usual), 120, 1e-9) << "600 at 1:5, since 1:2 has no room";
    const auto large = drawingPage(drawing, {L"Beam", L""}, 1.0);
    ASSERT_TRUE(large);
    EXPECT_EQ(large->width, 841);
    EXPECT_NEAR(lengthOf(*large), 600, 1e-9);
    EXPECT_LT(large->lines[0].points[2].y, large->lines[0].points[1].y) << "up is up";
    EXPECT_FALSE(drawingPage(drawing, {}, 10.0)) << "not even A0 has room";
    EXPECT_FALSE(drawingPage({}, {}, 1.0)) << "there is nothing";
}

class DrawingTest : public CommandsTests::WithProgram
{
protected:
    /// The polylines of a written drawing, in millimetres, with whether they are dashed; and its texts.
    struct Written
    {
        std::vector<std::pair<std::vector<QPointF>, bool>> lines;
        QStringList texts;
        QString width;
    };
    static Written read(const std::wstring& path)
    {
        Written written;
        QFile file(QString::fromStdWString(path));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        QXmlStreamReader xml(&file);
        bool dashed = false;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == u"svg")
                written.width = xml.attributes().value("width").toString();
            else if (xml.name() == u"g")
                dashed = xml.attributes().value("stroke-dasharray").contains(u',');
            else if (xml.name() == u"text")
                written.texts << xml.readElementText().trimmed();
            else if (xml.name() == u"polyline") {
                std::vector<QPointF> points;
                for (const QString& point :
                     xml.attributes().value("points").toString().split(' ', Qt::SkipEmptyParts)) {
                    const QStringList numbers = point.split(',');
                    points.emplace_back(numbers.value(0).toDouble() / 100, numbers.value(1).toDouble() / 100);
                }
                written.lines.emplace_back(points, dashed);
            }
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        return written;
    }
    static double distance(const QPointF& a, const QPointF& b)
    {
        return std::hypot(a.x() - b.x(), a.y() - b.y());
    }
    /// Whether each line of one is in the other, from either end, to a hundredth of a millimetre.
    static bool areSame(const Written& one, const Written& other)
    {
        const auto isNear = [](const auto& a, const auto& b) {
            const auto& [p, q] = std::pair(a.first, b.first);
            const auto meet = [](const QPointF& x, const QPointF& y) { return distance(x, y) < 0.01; };
            return a.second == b.second && ((meet(p.front(), q.front()) && meet(p.back(), q.back())) ||
                                            (meet(p.front(), q.back()) && meet(p.back(), q.front())));
        };
        return one.lines.size() == other.lines.size() &&
               std::ranges::all_of(one.lines, [&](const auto& line) {
                   return std::ranges::any_of(other.lines,
                                              [&](const auto& each) { return isNear(line, each); });
               });
    }
    /// Lines of about that length.
    static int count(const Written& written, double length, bool dashed)
    {
        return int(std::ranges::count_if(written.lines, [&](const auto& line) {
            double sum = 0;
            for (size_t i = 1; i < line.first.size(); ++i)
                sum += std::hypot(line.first[i].x() - line.first[i - 1].x(),
                                  line.first[i].y() - line.first[i - 1].y());
            return line.second == dashed && std::abs(sum - length) < 0.1;
        }));
    }
};

TEST_F(DrawingTest, ABoxBehindAnotherShowsNothingUnlessHiddenLinesAreWanted)
{
    answer(L"Design.New");
    answer(L"Design.Box 60 20 30");
    answer(L"Design.Box 8 20 8 20,40,10");
    answer(L"Camera.Set 30,-400,15 30,10,15 0,0,1 1 10000 160 120 1"); // from the front
    const std::wstring path = scratch(L"front.svg");
    answer(L"Commands.Start SaveDrawingCommand Path=" + path + L" Scale=2:1");
    const Written plain = read(path);
    EXPECT_EQ(plain.width, "297mm");
    EXPECT_EQ(count(plain, 120, false), 2) << "60 at twice the size, above and below";
    EXPECT_EQ(count(plain, 60, false), 2);
    EXPECT_EQ(count(plain, 16, false), 0);
    for (const char* text : {"2:1", "mm", "A4"})
        EXPECT_TRUE(plain.texts.contains(text)) << text;
    answer(L"Commands.Start SaveDrawingCommand Path=" + path + L" Scale=2:1 Hidden=1");
    const Written all = read(path);
    EXPECT_GE(count(all, 16, true), 4) << "the other one, dashed";
    EXPECT_EQ(count(all, 120, false), 2);

    const std::wstring pdf = scratch(L"front.pdf");
    answer(L"Commands.Start SaveDrawingCommand Path=" + pdf);
    QFile file(QString::fromStdWString(pdf));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().startsWith("%PDF-"));

    const auto refuses = [&](const std::wstring& arguments, const wchar_t* cause) {
        EXPECT_NE(failure(L"Commands.Start SaveDrawingCommand Path=" + path + arguments).find(cause),
                  std::wstring::npos);
    };
    refuses(L" Scale=large", L"is not a scale");
    refuses(L" Scale=1000:1", L"doesn't fit");
    struct Cancelling : Vs::ProgressSink
    {
        void begin(const std::wstring&) override {}
        bool update(double, const std::wstring&) override { return false; }
        void end() override {}
    } cancelling;
    Vs::Progress::sink(&cancelling);
    refuses(L"", L"was cancelled");
    Vs::Progress::sink(nullptr);
    answer(L"Design.New");
    refuses(L"", L"Nothing that could be drawn");
}

TEST_F(DrawingTest, MeshesAreDrawnAsTheExactShapesAreAndHideThemAndAreHidden)
{
    const std::wstring path = scratch(L"front.svg"), stl = scratch(L"both.stl"), one = scratch(L"one.stl");
    const auto drawn = [&](const wchar_t* hidden) {
        answer(L"Camera.Set 230,-400,115 30,10,15 0,0,1 1 10000 160 120 1");
        answer(L"Commands.Start SaveDrawingCommand Path=" + path + L" Scale=2:1" + hidden);
        return read(path);
    };
    const auto makeOne = [&](const wchar_t* line) {
        answer(L"Design.New");
        answer(line);
        answer(L"Design.Export " + one);
        answer(L"Design.New");
        answer(L"Commands.Start VeloraImportCommand Path=" + one);
    };
    constexpr const wchar_t *kLarge = L"Design.Box 60 20 30", *kSmall = L"Design.Box 8 20 8 20,40,10";
    answer(L"Design.New");
    answer(kLarge);
    answer(kSmall);
    const Written plain = drawn(L""), all = drawn(L" Hidden=1");
    EXPECT_GT(all.lines.size(), plain.lines.size() + 9) << "what the large box hides";
    answer(L"Design.Export " + stl + L" /Combine");

    answer(L"Design.New");
    answer(L"Commands.Start VeloraImportCommand Path=" + stl);
    EXPECT_TRUE(areSame(drawn(L""), plain));
    EXPECT_TRUE(areSame(drawn(L" Hidden=1"), all));
    makeOne(kLarge);
    answer(kSmall);
    EXPECT_TRUE(areSame(drawn(L""), plain)) << "a mesh hides an exact shape";
    makeOne(kSmall);
    answer(kLarge);
    EXPECT_TRUE(areSame(drawn(L""), plain)) << "an exact shape hides a mesh";
    EXPECT_TRUE(areSame(drawn(L" Hidden=1"), all));
}

TEST_F(DrawingTest, RoundSurfacesHaveOutlinesWithoutFacetsAndSeams)
{
    answer(L"Design.New");
    answer(L"Design.Sphere 20");
    answer(L"Camera.Set 200,-400,300 0,0,0 0,0,1 1 10000 160 120 1");
    const std::wstring path = scratch(L"sphere.svg");
    answer(L"Commands.Start SaveDrawingCommand Scale=2:1 Path=" + path);
    const QPointF middle(297.0 / 2, (210 - 18) / 2.0);
    double around = 0;
    for (const auto& [points, dashed] : read(path).lines)
        for (size_t i = 1; i < points.size() && distance(points[0], middle) < 60; ++i) {
            around += distance(points[i - 1], points[i]);
            EXPECT_NEAR(distance(points[i], middle), 40, 0.03);
        }
    EXPECT_NEAR(around, 80 * std::numbers::pi, 2);
    const auto hasThinLines = [&] {
        answer(L"Commands.Start SaveDrawingCommand Path=" + path);
        return TestSupport::contentOf(path).find("stroke-width=\"13\"") != std::string::npos;
    };
    answer(L"Design.New");
    answer(L"Design.Box 40 40 40");
    EXPECT_FALSE(hasThinLines());
    answer(L"Design.Fillet 10 Box1/Edge1");
    EXPECT_TRUE(hasThinLines()) << "where the fillet begins";
    SKIP_WITHOUT_REAL_DATA();
    answer(L"Document.Open " + (TestSupport::realDataFolder() / "as1-oc-214.stp").wstring());
    EXPECT_FALSE(hasThinLines()) << "its round parts consist of two halves";
}

class PrintTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable("pdftoppm").isEmpty())
            GTEST_SKIP() << "pdftoppm, which shows what a PDF file says, isn't installed";
        WithProgram::SetUp();
        answer(L"Design.New");
        answer(L"Design.Box 60 20 30");
        answer(L"Camera.Set 30,-400,15 30,10,15 0,0,1 1 10000 160 120 1"); // from the front
    }
    /// The page at 2 dots a millimetre.
    QImage printed(const std::wstring& wishes) const
    {
        const std::wstring path = scratch(L"page.pdf");
        answer(L"Commands.Start PrintCommand Path=" + path + wishes);
        const QString name = QString::fromStdWString(path);
        EXPECT_EQ(QProcess::execute("pdftoppm", {"-r", "50.8", "-png", "-singlefile", name, name}), 0);
        return QImage(name + ".png");
    }
    static bool isWhite(const QImage& page, const QRect& part)
    {
        for (int y = part.top(); y <= part.bottom(); ++y)
            for (int x = part.left(); x <= part.right(); ++x)
                if (qGray(page.pixel(x, y)) < 250)
                    return false;
        return true;
    }
};

TEST_F(PrintTest, APageHasItsPaperItsMarginsAndTheViewOrTheModelOrADrawing)
{
    const QImage view = printed(L" Margin=20");
    EXPECT_NEAR(view.width(), 594, 1) << "A4, landscape";
    EXPECT_NEAR(view.height(), 420, 1);
    EXPECT_TRUE(isWhite(view, {0, 0, 594, 36}));
    EXPECT_TRUE(isWhite(view, {0, 0, 38, 420}));
    EXPECT_FALSE(isWhite(view, {42, 80, 4, 4})) << "the surroundings";
    const QImage model = printed(L" Margin=20 Print=Model");
    EXPECT_TRUE(isWhite(model, {42, 80, 4, 4}));
    EXPECT_FALSE(isWhite(model, {290, 205, 8, 8}));
    const QImage drawing = printed(L" Print=Drawing Scale=2:1 Paper=A3 Portrait=1");
    EXPECT_NEAR(drawing.width(), 594, 1);
    EXPECT_NEAR(drawing.height(), 840, 1);
    EXPECT_FALSE(isWhite(drawing, {18, 400, 4, 4})) << "the frame";
    // The box is 120 mm wide there, above the title block.
    EXPECT_FALSE(isWhite(drawing, {297 - 122, 402, 4, 4}));
    EXPECT_TRUE(isWhite(drawing, {297 - 116, 360, 232, 84}));
    EXPECT_FALSE(isWhite(drawing, {297 + 118, 402, 4, 4}));
}

TEST_F(PrintTest, WhatCanNotBePrintedIsToldWithItsCause)
{
    const auto refuses = [&](const std::wstring& arguments, const wchar_t* cause) {
        const std::wstring told = failure(L"Commands.Start PrintCommand " + arguments);
        EXPECT_NE(told.find(cause), std::wstring::npos) << Vs::Strings::narrow(told);
    };
    const std::wstring path = L"Path=" + scratch(L"page.pdf");
    refuses(L"", L"no file name");
    refuses(L"Printer=Nowhere", L"No printer is named \"Nowhere\"");
    refuses(path + L" Print=All", L"View, Model and Drawing");
    refuses(path + L" Paper=B9", L"There are: A4, A3");
    refuses(path + L" Margin=wide", L"from 0 to 50");
    refuses(path + L" Print=Drawing Scale=100:1", L"on a sheet of size A4");
    refuses(path + L" Print=Drawing Scale=x", L"is not a scale");
    refuses(L"Path=/nowhere/page.pdf", L"can't be written");
    EXPECT_FALSE(QFile::exists(QString::fromStdWString(scratch(L"page.pdf"))));
}

// In a run of its own, since CUPS remembers the first server that a process asks for.
TEST_F(PrintTest, APrinterGetsThePageAtItsSize)
{
    const ScriptedServer server("printers.py");
    REQUIRE_SERVER(server);
    const size_t blank = server.address().find(' ');
    const std::string received = server.address().substr(blank + 1) + "/d00001-001";
    const auto printing = [&](const std::string& arguments) {
        return TestSupport::runQuillet({"--headless", "--command", "Design.New", "--command",
                                        "Design.Box 60 20 30", "--command",
                                        "Commands.Start PrintCommand Print=Drawing " + arguments},
                                       {.environment = {"CUPS_SERVER=" + server.address().substr(0, blank)}});
    };
    const TestSupport::ProcessResult unknown = printing("Printer=Nowhere");
    EXPECT_NE(unknown.exitCode, 0);
    EXPECT_NE(unknown.errors.find("Available printers: Kept."), std::string::npos) << unknown.errors;
    const TestSupport::ProcessResult printed = printing("Printer=Kept Paper=A3 Portrait=1 Scale=2:1");
    EXPECT_EQ(printed.exitCode, 0) << printed.errors;
    const std::string facts = TestSupport::runProcess("/usr/bin/pdfinfo", {received}).output;
    EXPECT_NE(facts.find("Pages:           1\n"), std::string::npos) << facts;
    EXPECT_NE(facts.find("842 x 1191 pts"), std::string::npos) << facts;
}

TEST_F(PrintTest, TheDialogShowsThePageOrWhyThereIsNoneAndPrintsNothingElse)
{
    Vu::Application::get()->needGui();
    Vu::PrintWish made;
    QWidget* preview = nullptr;
    QString toldMeanwhile;
    QImage seenMeanwhile;
    const Vu::PageMaker maker = [&](const Vu::PrintWish& wish, Vs::Status& told) {
        made = wish;
        toldMeanwhile = preview->accessibleDescription();
        seenMeanwhile = preview->grab().toImage();
        if (wish.scale == L"9:1")
            told.addError(L"It has no room.");
        return told.isError() ? std::nullopt : std::optional(Vu::VectorPage());
    };
    Vu::PrintDialog dialog({.paper = L"A3"}, maker, nullptr);
    dialog.show();
    auto* what = dialog.findChild<QComboBox*>("printWhat");
    auto* scale = dialog.findChild<QLineEdit*>("printScale");
    preview = dialog.findChild<QWidget*>("printPreview");
    ASSERT_TRUE(what && scale && preview);
    EXPECT_TRUE(QTest::qWaitFor([&] { return made.paper == L"A3"; }));
    EXPECT_FALSE(scale->isVisible()) << "a picture has none";
    EXPECT_EQ(toldMeanwhile, "");
    what->setCurrentIndex(2);
    EXPECT_TRUE(scale->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return toldMeanwhile == "Computing the drawing..."; }));
    EXPECT_NE(seenMeanwhile, preview->grab().toImage()) << "it says so over the page";
    EXPECT_EQ(preview->accessibleDescription(), "");
    QTest::keyClicks(scale, "9:1");
    EXPECT_TRUE(QTest::qWaitFor([&] { return preview->accessibleDescription() == "It has no room."; }));
    QTest::keyClick(scale, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "there is nothing to print";
    QTest::keyClick(scale, Qt::Key_Backspace);
    QTest::keyClick(scale, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible()) << "though the preview had not come yet";
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(made.what, Vu::PrintWish::What::Drawing);
    EXPECT_EQ(made.scale, L"9:");
}

} // namespace
