#pragma once

/// The programs of the renderer, in GLSL 3.30. Colours come and go as they look on the screen; light is
/// reckoned with linear values in between.
namespace Rendra::Shaders {

/// The light stands still relative to the viewer, so that a turning model shows all its sides well lit; only
/// the sky and the ground of the ambient light belong to the model.
inline constexpr const char* kFaceVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 normal;
layout(location = 2) in vec4 faceColour;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform mat4 view;
uniform mat4 projection;

out vec3 viewPosition;
out vec3 viewNormal;
flat out vec4 base;
flat out vec3 glow;

void main()
{
    vec4 p = vec4(position, 1.0);
    vec4 seen = view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0);
    viewPosition = seen.xyz;
    // The cofactors keep normals right under scaling, without an inverse.
    vec3 x = vec3(row0.x, row1.x, row2.x), y = vec3(row0.y, row1.y, row2.y), z = vec3(row0.z, row1.z, row2.z);
    vec3 turned = cross(y, z) * normal.x + cross(z, x) * normal.y + cross(x, y) * normal.z;
    viewNormal = mat3(view) * normalize(turned);
    vec4 own = faceColour.a > 0.0 ? vec4(faceColour.rgb, faceColour.a * colour.a) : colour;
    base = vec4(pow(own.rgb, vec3(2.2)), own.a);
    glow = (flags & 2u) != 0u ? vec3(0.01, 0.20, 0.80) : (flags & 1u) != 0u ? vec3(0.10, 0.45, 0.90) : vec3(0.0);
    gl_Position = projection * seen;
}
)";

inline constexpr const char* kFaceFragment = R"(#version 330 core
in vec3 viewPosition;
in vec3 viewNormal;
flat in vec4 base;
flat in vec3 glow;

uniform vec3 up;
uniform bool perspective;
uniform bool occluded;
uniform sampler2D occlusion;
uniform vec4 occlusionPlace; // from pixels of the framebuffer: factors and offsets

out vec4 result;

const vec3 kSky = vec3(0.42, 0.44, 0.47);
const vec3 kGround = vec3(0.17, 0.16, 0.15);
const vec3 kKeyDirection = vec3(-0.4082, 0.6532, 0.6379);
const vec3 kKeyColour = vec3(0.57, 0.56, 0.54);
const vec3 kFillDirection = vec3(0.8222, -0.0514, 0.5669);
const vec3 kFillColour = vec3(0.14, 0.15, 0.17);

void main()
{
    vec3 toViewer = perspective ? normalize(-viewPosition) : vec3(0.0, 0.0, 1.0);
    // Both sides of a face are lit: which one is seen follows from the triangle, not from its winding.
    vec3 flatNormal = cross(dFdx(viewPosition), dFdy(viewPosition));
    if (dot(flatNormal, toViewer) < 0.0)
        flatNormal = -flatNormal;
    vec3 n = normalize(viewNormal);
    if (dot(n, flatNormal) < 0.0)
        n = -n;

    float open = occluded ? texture(occlusion, gl_FragCoord.xy * occlusionPlace.xy + occlusionPlace.zw).r : 1.0;
    vec3 light = mix(kGround, kSky, dot(n, up) * 0.5 + 0.5) * open;
    float key = max(dot(n, kKeyDirection), 0.0) * mix(1.0, open, 0.7);
    light += kKeyColour * key + kFillColour * max(dot(n, kFillDirection), 0.0);
    float facing = max(dot(n, toViewer), 0.0);
    light += 0.10 * facing;

    vec3 halfway = normalize(kKeyDirection + toViewer);
    float gloss = pow(max(dot(n, halfway), 0.0), 48.0) * 0.16;
    float rim = pow(1.0 - facing, 4.0) * 0.10;
    vec3 shade = base.rgb * light + vec3(gloss + rim * (dot(n, up) * 0.5 + 0.5));
    if (glow != vec3(0.0))
        shade = mix(shade, glow * (0.45 + 0.55 * facing), 0.68);
    // Bright parts bend over softly in place of being cut off.
    shade = shade / (1.0 + max(shade - 0.75, vec3(0.0)) * 0.55);
    result = vec4(pow(clamp(shade, 0.0, 1.0), vec3(1.0 / 2.2)), base.a);
}
)";

/// Edges fade away on bodies that cover only some pixels, where lines would be all that is to be seen.
inline constexpr const char* kEdgeVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform mat4 view;
uniform mat4 projection;
uniform vec4 edgeColour;
uniform float pixelsOfBody; // across the body, at distance 1 in a perspective
uniform bool perspective;

flat out vec4 line;

void main()
{
    vec4 p = vec4(position, 1.0);
    vec4 seen = view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0);
    gl_Position = projection * seen;
    float across = perspective ? pixelsOfBody / max(-seen.z, 1e-6) : pixelsOfBody;
    float strength = smoothstep(9.0, 60.0, across);
    vec3 tint = (flags & 2u) != 0u ? vec3(0.02, 0.20, 0.50) : (flags & 1u) != 0u ? vec3(0.05, 0.30, 0.60) : edgeColour.rgb;
    line = vec4(tint, edgeColour.a * strength * mix(0.5, 1.0, colour.a));
    // What cannot be seen goes where it is thrown away before it costs pixels.
    if (strength < 0.03)
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
}
)";

inline constexpr const char* kEdgeFragment = R"(#version 330 core
flat in vec4 line;
out vec4 result;

void main()
{
    result = line;
}
)";

/// One triangle over the whole picture.
inline constexpr const char* kBackgroundVertex = R"(#version 330 core
uniform vec2 tile; // the lowest and the highest part of the picture's height that is drawn
out float height;

void main()
{
    vec2 corner = vec2((gl_VertexID & 1) * 4 - 1, (gl_VertexID >> 1) * 4 - 1);
    height = mix(tile.x, tile.y, corner.y * 0.5 + 0.5);
    gl_Position = vec4(corner, 1.0, 1.0);
}
)";

inline constexpr const char* kBackgroundFragment = R"(#version 330 core
in float height;
uniform vec3 low;
uniform vec3 high;
out vec4 result;

void main()
{
    // A grain finer than one step of the colours hides their bands.
    float grain = fract(sin(dot(gl_FragCoord.xy, vec2(12.9898, 78.233))) * 43758.5453) - 0.5;
    result = vec4(mix(low, high, smoothstep(0.0, 1.0, height)) + grain / 255.0, 1.0);
}
)";

/// Lines and pictures that are no bodies; the points come in camera coordinates.
inline constexpr const char* kHelperVertex = R"(#version 330 core
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

inline constexpr const char* kHelperFragment = R"(#version 330 core
in vec2 inPicture;
uniform bool textured;
uniform sampler2D picture; // premultiplied
uniform vec4 colour;
out vec4 result;

void main()
{
    vec4 seen = textured ? texture(picture, inPicture) : vec4(1.0);
    if (seen.a < 0.004)
        discard;
    result = vec4(seen.rgb / seen.a, seen.a) * colour;
}
)";

} // namespace Rendra::Shaders
