#pragma once

#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/VertexStream.h"

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

    void drawLines(const Helper& helper, const GkMatrix3d& view);
    void drawPicture(const Helper& helper, const Vs::Scene::Projection& projection, const GkMatrix3d& view,
                     float pixel);
    void drawTwice(const Helper& helper, float occludedOpacity, GLenum kind);
    void setColour(const Vs::Colour& colour, float opacity);
    GLuint textureOf(const std::shared_ptr<const Graphics::Texture>& texture);

    Program m_program;
    VertexStream m_stream;
    std::unordered_map<const Graphics::Texture*, GlTexture> m_textures;
    std::vector<Vertex> m_vertices;
    const Vs::Colour* m_line = nullptr; ///< For what is itself dark, where it would be invisible.
};

} // namespace Rendra
