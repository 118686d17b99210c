#pragma once

#include "UI/Commands/Resources.h"

#include <QImage>
#include <QString>

#include <string>
#include <vector>

// Shared by the tests of the pictures: the rows of the catalogue as lists, and pictures read back from disk.

struct IconRow
{
    std::string name;
    Vs::ImageSetResource* (*accessor)();
};

inline std::vector<IconRow> icons()
{
    std::vector<IconRow> rows;
#define QUILLET_ROW(name, path) rows.push_back({#name, &Vu::Commands::Resources::name});
    QUILLET_IMAGE_SETS(QUILLET_ROW)
#undef QUILLET_ROW
    return rows;
}

inline QString pathOf(const Vs::Resource* resource)
{
    return QString::fromStdWString(resource->localPath());
}

inline QImage readPicture(const QString& path)
{
    return QImage(path).convertToFormat(QImage::Format_ARGB32);
}

inline QImage iconOf(const IconRow& row, int size)
{
    return readPicture(QString::fromStdWString(row.accessor()->fileForSize(size)));
}
