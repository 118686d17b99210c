#pragma once

#include "Server/Geometry/GkPoint2d.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs {
class Status;
}

namespace Vs::Scene {
struct Image;
}

namespace Vu {

/// A sheet of paper with lines, texts and pictures. Lengths are in millimetres, x to the right and y
/// downwards from the upper left corner.
struct VectorPage
{
    struct Line
    {
        std::vector<GkPoint2d> points;
        double width = 0.35;
        bool dashed = false;
    };
    struct Text
    {
        std::wstring text;
        GkPoint2d place;   ///< Of the left end of its base line.
        double height = 3; ///< Of a capital.
    };
    struct Picture
    {
        std::shared_ptr<const Vs::Scene::Image> image;
        GkPoint2d place; ///< Of the upper left corner.
        double width = 0, height = 0;
    };

    std::wstring title;
    double width = 297, height = 210;
    std::vector<Line> lines;
    std::vector<Text> texts;
    std::vector<Picture> pictures;
};

/// Writes the page as SVG or PDF, by the file's suffix; the file is replaced as a whole. False, with the
/// reason in the status, if that fails. Needs the GUI (Application::needGui).
bool writePage(const VectorPage& page, const std::wstring& path, Vs::Status& status);

} // namespace Vu
