#include "UI/Base/Window/PageWriter.h"

#include "Server/Base/Status.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Window/PagePainter.h"

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
    Vu::paintPage(page, painter, kDotsPerMillimetre);
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
    Vu::paintPage(page, painter, kDotsPerMillimetre);
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
        status.addError(Vu::localizedFormat("PageNotWritten", "\"%1%\" can't be written: %2%.", path,
                                            file.errorString().toStdWString()));
    return painted;
}
