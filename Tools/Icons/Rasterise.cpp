// Draws the SVG sources of the pictures into PNG files, in one process for all of them.
//
//     quillet-icons JOBS
//
// JOBS is a text file with one picture a line: size in pixels, source, target, with tabs between. Only a
// picture whose target is missing or older than its source, or than this program, is drawn; `JOBS` itself
// carries no date that matters. A target is written whole or not at all.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgRenderer>
#include <QTextStream>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

[[noreturn]] void fail(const QString& file, const char* what)
{
    throw std::runtime_error((file + ": " + what).toStdString());
}

bool isFresh(const QFileInfo& target, const QFileInfo& source, const QDateTime& program)
{
    return target.exists() && target.lastModified() >= source.lastModified() &&
           target.lastModified() >= program;
}

void draw(const QString& source, const QString& target, int size)
{
    QSvgRenderer renderer;
    if (!renderer.load(source))
        fail(source, "cannot be read as SVG");
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, size, size));
    painter.end();

    if (!QDir().mkpath(QFileInfo(target).path()))
        fail(target, "its folder cannot be made");
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit())
        fail(target, "cannot be written");
}

void run(const QString& jobs)
{
    QFile list(jobs);
    if (!list.open(QIODevice::ReadOnly | QIODevice::Text))
        fail(jobs, "cannot be read");
    const QDateTime program = QFileInfo(QCoreApplication::applicationFilePath()).lastModified();
    QTextStream lines(&list);
    for (QString line; lines.readLineInto(&line);) {
        const QStringList job = line.split('\t');
        const int size = job.value(0).toInt();
        if (job.size() != 3 || size <= 0)
            fail(jobs, "a line is not of the form SIZE<tab>SOURCE<tab>TARGET");
        if (!isFresh(QFileInfo(job[2]), QFileInfo(job[1]), program))
            draw(job[1], job[2], size);
    }
}

} // namespace

int main(int argc, char** argv)
{
    // Pictures without text need no window system, so a core application is all there is.
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: quillet-icons JOBS\n");
        return 2;
    }
    try {
        run(QString::fromLocal8Bit(argv[1]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
