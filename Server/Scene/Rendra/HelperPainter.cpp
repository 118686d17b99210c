#include "Server/Scene/Rendra/HelperPainter.h"

#include <algorithm>
#include <cmath>

namespace Rendra {

using Graphics::Texture;

namespace {

/// Pictures that aren't bodies; the points are given in camera coordinates.
constexpr const char* kHelperVertex = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec2 place;
uniform mat4 projection;
out vec2 inPicture;

void main()
{
    inPicture = place;
    gl_Position = projection * vec4(position, 1.0);
}
)";

constexpr const char* kHelperFragment = R"(
in vec2 inPicture;
uniform sampler2D picture; // premultiplied
uniform vec4 colour;
out vec4 result;

void main()
{
    vec4 seen = texture(picture, inPicture);
    if (seen.a < 0.004)
        discard;
    result = vec4(seen.rgb / seen.a, seen.a) * colour;
}
)";

} // namespace

bool HelperPainter::make(Vs::Status& status)
{
    if (!m_program.make("helpers", {kHelperVertex}, {kHelperFragment}, status))
        return false;
    m_stream.make({3, 2});
    return true;
}

void HelperPainter::release()
{
    m_program.release();
    m_stream.release();
    m_strips.release();
    for (const auto& [source, texture] : m_textures)
        glDeleteTextures(1, &texture.name);
    m_textures.clear();
}

void HelperPainter::collect()
{
    std::erase_if(m_textures, [](const auto& entry) {
        if (!entry.second.source.expired())
            return false;
        glDeleteTextures(1, &entry.second.name);
        return true;
    });
}

// Premultiplied, so that the edges of the picture keep their colour where pixels are interpolated.
GLuint HelperPainter::textureOf(const std::shared_ptr<const Texture>& texture)
{
    GlTexture& kept = m_textures[texture.get()];
    if (kept.name != 0 && !kept.source.expired())
        return kept.name;
    if (kept.name == 0)
        glGenTextures(1, &kept.name);
    kept.source = texture;
    std::vector<uint8_t> pixels = texture->pixels;
    for (size_t i = 0; i + 3 < pixels.size(); i += 4)
        for (size_t j = i; j < i + 3; ++j)
            pixels[j] = uint8_t(pixels[j] * pixels[i + 3] / 255);
    glBindTexture(GL_TEXTURE_2D, kept.name);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, texture->width, texture->height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 pixels.data());
    glGenerateMipmap(GL_TEXTURE_2D);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return kept.name;
}

void HelperPainter::draw(const Frame& frame)
{
    if (frame.scene.list.helpers().empty())
        return;
    const Vs::Scene::Projection& projection = frame.projection;
    const bool isOverModel = frame.params().visualStyle() == Vs::Scene::kHelpersOnly;
    m_line = isOverModel && frame.environment.isDark() ? &frame.environment.line : nullptr;
    const float pixel = std::max(1.0f, frame.target.lineWidth); // of the framebuffer for a logical one
    glActiveTexture(GL_TEXTURE0);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    for (const Helper& helper : frame.scene.list.helpers()) {
        const GkMatrix3d view = projection.view() * helper.matrix;
        drawLines(frame, helper, view, 1.5f * pixel * helper.lineWeight);
        if (const Texture* texture = helper.node->texture().get();
            texture && texture->pixels.size() >= size_t(texture->width) * size_t(texture->height) * 4)
            drawPicture(frame, helper, view, pixel);
    }
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

// First what is hidden, in its own look, then what is visible.
template <class Draw>
void HelperPainter::drawTwice(const Helper& helper, float occludedOpacity, Draw draw) const
{
    Vs::Colour colour = helper.colour;
    if (helper.occluded) {
        const Vs::Colour& effect = helper.occluded->colour;
        colour = {colour.r * effect.r, colour.g * effect.g, colour.b * effect.b, colour.a * effect.a};
        if (helper.occluded->opacity >= 0)
            occludedOpacity = helper.occluded->opacity;
    }
    if (occludedOpacity > 0) {
        glDepthFunc(GL_GREATER);
        draw(colourOnScreen(colour, occludedOpacity));
    }
    glDepthFunc(GL_LEQUAL);
    draw(colourOnScreen(helper.colour, 1));
}

void HelperPainter::drawLines(const Frame& frame, const Helper& helper, const GkMatrix3d& view, float width)
{
    m_lines.clear();
    for (const Graphics::GeometryNode::Polyline& line : helper.node->polylines())
        for (size_t i = 1; i < line.size(); ++i)
            for (const GkPoint3d& end : {view * line[i - 1], view * line[i]})
                m_lines.push_back({{float(end.x), float(end.y), float(end.z)}, {1, 1, 1, 1}});
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    if (!m_strips.begin(frame, clip, m_lines))
        return;
    drawTwice(helper, helper.occluded ? 1 : 0, [&](const std::array<float, 4>& colour) {
        m_strips.draw(width, {colour[0], colour[1], colour[2], colour[3]});
    });
}

void HelperPainter::drawPicture(const Frame& frame, const Helper& helper, const GkMatrix3d& view, float pixel)
{
    const Vs::Scene::Projection& projection = frame.projection;
    const Texture& texture = *helper.node->texture();
    const GkPoint3d middle = view * helper.node->billBoard().origin;
    const double ahead = -middle.z;
    if (projection.perspective() && ahead <= 0)
        return;
    const double unit = projection.pixelSize(ahead) * pixel * texture.scale;
    // Pulled towards the viewer without moving on the screen, so that a slanted face under it doesn't cut the
    // picture in two.
    const double pull =
        std::min(helper.node->depthPriority() * unit * std::max(texture.width, texture.height) / 2,
                 projection.perspective() ? ahead / 2 : 1e300);
    const double nearer = projection.perspective() ? (ahead - pull) / ahead : 1.0;
    const double z = projection.perspective() ? middle.z * nearer : middle.z + pull;
    m_vertices.clear();
    for (const auto& [right, up] : {std::pair{0, 0}, {1, 0}, {0, 1}, {1, 1}}) {
        const double x = middle.x + ((right - 0.5) * texture.width - texture.anchor.x) * unit;
        const double y = middle.y + ((up - 0.5) * texture.height - texture.anchor.y) * unit;
        m_vertices.push_back(
            {{float(x * nearer), float(y * nearer), float(z)}, {float(right), float(1 - up)}});
    }
    glBindTexture(GL_TEXTURE_2D, textureOf(helper.node->texture()));
    double clip[4][4];
    frame.clipMatrix(frame.part, clip);
    m_program.use();
    m_program.setMatrix("projection", clip);
    glUniform1i(m_program.uniform("picture"), 0);
    m_stream.fill(m_vertices);
    // A marker may be beyond all bodies, which alone determine the clip planes.
    glEnable(GL_DEPTH_CLAMP);
    drawTwice(helper, float(texture.occludedOpacity), [&](const std::array<float, 4>& colour) {
        glUniform4fv(m_program.uniform("colour"), 1, colour.data());
        glDrawArrays(GL_TRIANGLE_STRIP, 0, GLsizei(m_vertices.size()));
    });
    glDisable(GL_DEPTH_CLAMP);
}

std::array<float, 4> HelperPainter::colourOnScreen(const Vs::Colour& wanted, float opacity) const
{
    Vs::Colour colour = wanted;
    // Something dark, such as a reticle over the model, would be invisible against a dark sky.
    constexpr float kDark = 0.1f;
    if (m_line && std::max({wanted.r, wanted.g, wanted.b}) < kDark)
        colour = {m_line->r, m_line->g, m_line->b, wanted.a};
    const auto onScreen = [](float linear) { return std::pow(std::clamp(linear, 0.0f, 1.0f), 1 / 2.2f); };
    return {onScreen(colour.r), onScreen(colour.g), onScreen(colour.b), colour.a * opacity};
}

} // namespace Rendra
