#include "Tests/UI/Commands/Resources/Catalogue.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

double channel(int value)
{
    const double v = value / 255.0;
    return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double luminance(QRgb colour)
{
    return 0.2126 * channel(qRed(colour)) + 0.7152 * channel(qGreen(colour)) +
           0.0722 * channel(qBlue(colour));
}

double contrast(QRgb one, QRgb other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

QRgb over(QRgb top, QRgb ground)
{
    const int alpha = qAlpha(top);
    auto mix = [alpha](int above, int below) { return (above * alpha + below * (255 - alpha)) / 255; };
    return qRgb(mix(qRed(top), qRed(ground)), mix(qGreen(top), qGreen(ground)),
                mix(qBlue(top), qBlue(ground)));
}

// The share of the picture that contrasts with a toolbar of that colour. A line of a mid tone has a contrast
// of 3 or more; where its antialiased edge covers three quarters of a pixel, 2.4 remain.
double readableShare(const QImage& icon, QRgb ground)
{
    int readable = 0;
    for (int y = 0; y < icon.height(); ++y)
        for (int x = 0; x < icon.width(); ++x)
            readable += contrast(over(icon.pixel(x, y), ground), ground) >= 2.4;
    return readable / double(icon.width() * icon.height());
}

// The mean difference of two pictures over their pixels, 0 for equal ones.
double difference(const QImage& one, const QImage& other)
{
    const QRgb ground = qRgb(240, 240, 240);
    double sum = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = over(one.pixel(x, y), ground);
            const QRgb b = over(other.pixel(x, y), ground);
            sum +=
                std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
        }
    return sum / (3.0 * one.width() * one.height());
}

} // namespace

TEST(Icons, StandOutFromALightAndFromADarkToolbar)
{
    for (const IconRow& row : icons()) {
        const QImage icon = iconOf(row, 24);
        EXPECT_GT(readableShare(icon, qRgb(0xf4, 0xf4, 0xf4)), 0.05) << row.name;
        EXPECT_GT(readableShare(icon, qRgb(0x2b, 0x2b, 0x2b)), 0.05) << row.name;
    }
}

TEST(Icons, LeaveTheirCornersFreeOfPaint)
{
    for (const IconRow& row : icons()) {
        const QImage icon = iconOf(row, 64);
        for (const QPoint corner : {QPoint(0, 0), QPoint(63, 0), QPoint(0, 63), QPoint(63, 63)})
            EXPECT_EQ(qAlpha(icon.pixel(corner)), 0) << row.name << " at " << corner.x() << "," << corner.y();
    }
}

TEST(Icons, CanBeToldApartInTheSmallestSize)
{
    const std::vector<IconRow> rows = icons();
    std::vector<QImage> pictures;
    for (const IconRow& row : rows)
        pictures.push_back(iconOf(row, 16));
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (std::size_t k = i + 1; k < rows.size(); ++k)
            EXPECT_GT(difference(pictures[i], pictures[k]), 2.0) << rows[i].name << " and " << rows[k].name;
}
