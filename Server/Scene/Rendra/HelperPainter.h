#pragma once

#include "Server/Scene/Rendra/LineStrips.h"

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Rendra {

/// Draws the lines and pictures of a draw list over its bodies. There are few of them, so they are laid out
/// again for each picture and only the textures are cached.
class HelperPainter : public Pass
{
public:
    bool make(Vs::Status& status) override;
    void draw(const Frame& frame) override;
    void release() override;
    /// Frees textures that nobody shows any more.
    void collect() override;

private:
    struct Vertex
    {
        float position[3]; ///< In camera coordinates.
        float place[2];    ///< In the texture, from 0 to 1.
    };
    struct GlTexture
    {
        GLuint name = 0;
        std::weak_ptr<const Graphics::Texture> source;
    };

    void drawLines(const Frame& frame, const Helper& helper, const GkMatrix3d& view, float width);
    void drawPicture(const Frame& frame, const Helper& helper, const GkMatrix3d& view, float pixel);
    template <class Draw>
    void drawTwice(const Helper& helper, float occludedOpacity, Draw draw) const;
    std::array<float, 4> colourOnScreen(const Vs::Colour& colour, float opacity) const;
    GLuint textureOf(const std::shared_ptr<const Graphics::Texture>& texture);

    Program m_program;
    VertexStream m_stream;
    LineStrips m_strips;
    std::unordered_map<const Graphics::Texture*, GlTexture> m_textures;
    std::vector<Vertex> m_vertices;
    std::vector<LineStrips::Vertex> m_lines; ///< In camera coordinates.
    const Vs::Colour* m_line = nullptr;      ///< For what is itself dark, where it would be invisible.
};

} // namespace Rendra
