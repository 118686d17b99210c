#pragma once

/// Pieces of shaders shared by several passes (see Program::make). Colours go in and out as they look on the
/// screen; lighting is computed with linear values in between.
namespace Rendra {

/// The vertex shader of passes that cover a whole layer or picture: one triangle, without attributes.
inline constexpr const char* kWholeVertex = R"(
void main()
{
    gl_Position = vec4((gl_VertexID & 1) * 4 - 1, (gl_VertexID >> 1) * 4 - 1, 0.0, 1.0);
}
)";

/// The beginning of vertex shaders for bodies: the position of the vertex in its mesh, and the placement of
/// the occurrence in the scene (see Attribute).
inline constexpr const char* kInstance = R"(
layout(location = 0) in vec3 position;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;

uniform mat4 view;
uniform mat4 projection;

// A place of the mesh, in the camera's coordinates.
vec4 placed(vec3 place)
{
    vec4 p = vec4(place, 1.0);
    return view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0);
}

// A normal of the mesh, in the camera's coordinates and of any length. The cofactors keep it right under
// scaling, without an inverse.
vec3 turned(vec3 normal)
{
    vec3 x = vec3(row0.x, row1.x, row2.x), y = vec3(row0.y, row1.y, row2.y), z = vec3(row0.z, row1.z, row2.z);
    return mat3(view) * (cross(y, z) * normal.x + cross(z, x) * normal.y + cross(x, y) * normal.z);
}
)";

/// The light of what surrounds the scene, in the environment's own coordinates.
inline constexpr const char* kSurroundings = R"(
uniform mat3 toEnvironment; // from the camera's coordinates
uniform vec3 irradiance[9];
uniform vec3 least;
uniform float exposure;
uniform vec3 lampDirections[3];
uniform vec3 lampColours[3];

vec3 lightFromAround(vec3 n)
{
    vec3 sum = irradiance[0] * 0.282095;
    sum += 0.488603 * (irradiance[1] * n.y + irradiance[2] * n.z + irradiance[3] * n.x);
    sum += 1.092548 * (irradiance[4] * n.x * n.y + irradiance[5] * n.y * n.z + irradiance[7] * n.x * n.z);
    sum += irradiance[6] * (0.315392 * (3.0 * n.z * n.z - 1.0)) + irradiance[8] * (0.546274 * (n.x * n.x - n.y * n.y));
    return max(sum, vec3(0.0));
}
)";

/// The mean of four by four pixels of the layer `raw`, which evens out what was found with a grain of that
/// period.
inline constexpr const char* kMeanAround = R"(
uniform sampler2D raw;

vec4 meanAround(ivec2 pixel)
{
    ivec2 last = textureSize(raw, 0) - 1;
    vec4 sum = vec4(0.0);
    for (int y = -2; y < 2; ++y)
        for (int x = -2; x < 2; ++x)
            sum += texelFetch(raw, clamp(pixel + ivec2(x, y), ivec2(0), last), 0);
    return sum / 16.0;
}
)";

/// Shaders for depth-only passes.
inline constexpr const char* kDepthVertex = R"(
void main()
{
    gl_Position = projection * placed(position);
}
)";

inline constexpr const char* kDepthFragment = R"(
void main() {}
)";

} // namespace Rendra
