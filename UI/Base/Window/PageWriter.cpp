#include "UI/Base/Window/PageWriter.h"

#include "Server/Base/Status.h"

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <cmath>

namespace {

/// Both writers count in whole dots.
constexpr int kDotsPerMillimetre = 100;
constexpr int kDotsPerInch = 2540;
/// The height of a capital, as a fraction of a font's size.
constexpr double kCapital = 0.72;

void paint(const Vu::VectorPage& page, QPainter& painter)
{
    constexpr double kDots = kDotsPerMillimetre;
    for (const Vu::VectorPage::Line& line : page.lines) {
        QPen pen(Qt::black, line.width * kDots, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        // Dashes are counted in widths of the line.
        if (line.dashed)
            pen.setDashPattern({3 / line.width * 0.7, 1.5 / line.width * 0.7});
        painter.setPen(pen);
        QPolygonF points;
        for (const GkPoint2d& point : line.points)
            points << QPointF(point.x * kDots, point.y * kDots);
        painter.drawPolyline(points);
    }
    painter.setPen(Qt::black);
    for (const Vu::VectorPage::Text& text : page.texts) {
        QFont font("DejaVu Sans");
        font.setPixelSize(int(std::lround(text.height / kCapital * kDots)));
        painter.setFont(font);
        painter.drawText(QPointF(text.place.x * kDots, text.place.y * kDots),
                         QString::fromStdWString(text.text));
    }
}

bool paintSvg(const Vu::VectorPage& page, QIODevice& file)
{
    QSvgGenerator generator;
    const QSize dots(int(std::lround(page.width * kDotsPerMillimetre)),
                     int(std::lround(page.height * kDotsPerMillimetre)));
    generator.setOutputDevice(&file);
    generator.setResolution(kDotsPerInch);
    generator.setSize(dots);
    generator.setViewBox(QRect(QPoint(), dots));
    generator.setTitle(QString::fromStdWString(page.title));
    QPainter painter;
    if (!painter.begin(&generator))
        return false;
    paint(page, painter);
    return painter.end();
}

bool paintPdf(const Vu::VectorPage& page, QIODevice& file)
{
    QPdfWriter writer(&file);
    writer.setResolution(kDotsPerInch);
    writer.setTitle(QString::fromStdWString(page.title));
    writer.setPageSize(QPageSize(QSizeF(page.width, page.height), QPageSize::Millimeter));
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    if (!painter.begin(&writer))
        return false;
    paint(page, painter);
    return painter.end();
}

} // namespace

extern "C" bool quilletWritePage(const Vu::VectorPage& page, const std::wstring& path, Vs::Status& status)
{
    const QString name = QString::fromStdWString(path);
    QSaveFile file(name);
    const bool painted =
        file.open(QIODevice::WriteOnly) &&
        (name.endsWith(".svg", Qt::CaseInsensitive) ? paintSvg(page, file) : paintPdf(page, file)) &&
        file.commit();
    if (!painted)
        status.addError(L"The drawing " + path + L" cannot be written: " + file.errorString().toStdWString());
    return painted;
}
