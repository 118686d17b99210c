#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/Occlusion.h"

namespace Rendra {

/// Draws the bodies of a fragment in its visual style: faces, edges, what is seen through.
class BodyPainter : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;

private:
    bool findOcclusion(const Frame& frame, double radius);
    void setLight(const Frame& frame, bool occluded);
    void drawEdges(const Frame& frame, const float (&colour)[4]);

    Program m_faces, m_edges;
    Occlusion m_occlusion;
};

} // namespace Rendra
