#pragma once

#include "Server/Scene/Rendra/DrawList.h"
#include "Server/Scene/Rendra/Program.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Rendra {

/// Draws the lines and pictures of a draw list over its bodies. There are few of them, so that they are laid
/// out anew for each picture and nothing of them but the textures is kept.
class HelperPainter
{
public:
    bool make(Vs::Status& status);
    void release();

    /// Draws into the viewport that is set. `clip` is from camera to clip coordinates; `pixel` is how many
    /// pixels of the framebuffer make a logical one.
    void draw(const std::vector<Helper>& helpers, const Vs::Scene::Projection& projection,
              const double (&clip)[4][4], float pixel, float lineWidth);
    /// Frees textures that nobody shows any more.
    void collect();

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
    GLuint m_array = 0, m_buffer = 0;
    std::unordered_map<const Graphics::Texture*, GlTexture> m_textures;
    std::vector<Vertex> m_vertices;
};

} // namespace Rendra
