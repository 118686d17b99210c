#include "Server/Scene/Rendra/LampOnGround.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/Frame.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// The rectangle's longer side in pixels.
constexpr int kResolution = 480;
/// Lamps lower than this cast no shadow that ends near by, and the longest shadow in multiples of the bodies'
/// size.
constexpr double kLowest = 0.05, kLongest = 3;
/// Room around the shadow for its soft edge, as a part of the bodies' size.
constexpr double kMargin = 0.06;

constexpr const char* kFindFragment = R"(
uniform mat4 view;
uniform vec3 up;    // both in the camera's coordinates
uniform vec4 place; // from pixels to the ground: factors and offsets
out vec4 result;

void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    float turn = float((pixel.x & 3) * 4 + ((pixel.y & 3) ^ (pixel.x & 1) * 3)) * 0.392699;
    vec3 at = (view * vec4(gl_FragCoord.xy * place.xy + place.zw, 0.0, 1.0)).xyz;
    float found = lampReachesSoftly(at, up, turn, true);
    result = vec4(lampReaches(at, up, found), 1.0);
}
)";

constexpr const char* kBlurFragment = R"(
out vec4 result;

void main()
{
    ivec2 pixel = ivec2(gl_FragCoord.xy), last = textureSize(raw, 0) - 1;
    // Beyond the rectangle there is no shadow.
    bool outermost = any(equal(pixel, ivec2(0))) || any(equal(pixel, last));
    result = outermost ? vec4(1.0) : meanAround(pixel);
}
)";

} // namespace

bool LampOnGround::find(const Frame& frame, const Ground& ground)
{
    Kept& kept = frame.scene.onGround;
    const ObjectShadow::Kept& shadows = frame.scene.lit;
    if (kept.shapes == shadows.shapes && kept.up.isEqualTo(ground.up) &&
        kept.toLamp.isEqualTo(shadows.toLamp))
        return true;
    kept.shapes = 0;
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored;
        m_find.make("lamp on the ground", {kWholeVertex},
                    {"#define FOUND\n", ObjectShadow::kPlaces, ObjectShadow::kSoftLookUp,
                     ObjectShadow::kLookUp, kFindFragment},
                    ignored);
        m_blur.make("lamp on the ground, blur", {kWholeVertex}, {kMeanAround, kBlurFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    const double height = shadows.toLamp.dotProduct(ground.up);
    if (!m_find || !m_blur || height < kLowest)
        return false;

    // The shadow of the top lies that far aside.
    const GkVector3d away = shadows.toLamp * (-ground.height() / height);
    const double most = kLongest * ground.size(), margin = kMargin * ground.size();
    const auto extent = [&](double from, double length, double shift, double& first, double& whole) {
        shift = std::clamp(shift, -most, most);
        first = from + std::min(0.0, shift) - margin;
        whole = length + std::abs(shift) + 2 * margin;
    };
    extent(ground.left, ground.width, away.dotProduct(ground.right), kept.left, kept.width);
    extent(ground.front, ground.depth, away.dotProduct(ground.forward), kept.front, kept.depth);
    const double pixel = std::max(kept.width, kept.depth) / kResolution;
    if (!(pixel > 0))
        return false;
    const int width = std::max(4, int(std::ceil(kept.width / pixel)));
    const int depth = std::max(4, int(std::ceil(kept.depth / pixel)));
    if (!m_raw.make(Layer::Kind::Picture, width, depth) ||
        !kept.light.make(Layer::Kind::Picture, width, depth))
        return false;

    GkMatrix3d view;
    const GkVector3d origin = frame.scene.list.origin() + ground.up * ground.level;
    for (const auto& [column, direction] :
         {std::pair(0, ground.right), {1, ground.forward}, {2, ground.up}, {3, origin}}) {
        view.entry[0][column] = direction.x;
        view.entry[1][column] = direction.y;
        view.entry[2][column] = direction.z;
    }
    view = frame.projection.view() * view;
    const GkVector3d up = frame.projection.view() * ground.up;
    glDisable(GL_DEPTH_TEST);
    glBindVertexArray(m_noArray);
    m_raw.begin();
    m_find.use();
    ObjectShadow::setUnits(m_find);
    ObjectShadow::set(m_find, frame);
    m_find.setMatrix("view", view.entry);
    glUniform3f(m_find.uniform("up"), float(up.x), float(up.y), float(up.z));
    glUniform4f(m_find.uniform("place"), float(kept.width / width), float(kept.depth / depth),
                float(kept.left), float(kept.front));
    glDrawArrays(GL_TRIANGLES, 0, 3);
    kept.light.begin();
    m_blur.use();
    glBindTexture(GL_TEXTURE_2D, m_raw.texture());
    glUniform1i(m_blur.uniform("raw"), 0);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D, 0);
    glEnable(GL_DEPTH_TEST);
    m_raw.release();
    kept.shapes = shadows.shapes;
    kept.up = ground.up;
    kept.toLamp = shadows.toLamp;
    return true;
}

void LampOnGround::release()
{
    m_raw.release();
    m_find.release();
    m_blur.release();
    glDeleteVertexArrays(1, &m_noArray);
    *this = LampOnGround();
}

} // namespace Rendra
