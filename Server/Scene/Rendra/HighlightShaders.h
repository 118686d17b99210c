#pragma once

/// The shaders that draw lines around what is pointed at or selected.
namespace Rendra::Shaders {

/// What is highlighted, as a mask: 0.5 for what is pointed at, 1 for what is selected.
inline constexpr const char* kMaskVertex = R"(
layout(location = 7) in uint flags;
flat out float strength;

void main()
{
    gl_Position = projection * placed(position);
    strength = (flags & 2u) != 0u ? 1.0 : 0.5;
}
)";

inline constexpr const char* kMaskFragment = R"(
flat in float strength;
out vec2 result; // the other one for whether there is anything
void main()
{
    result = vec2(strength, 1.0);
}
)";

/// A corner of a block, in pixels of the mask.
inline constexpr const char* kOutlineVertex = R"(
layout(location = 0) in vec2 corner;
uniform float margin; // of the mask around the picture's part
uniform vec2 size;    // of that part

void main()
{
    gl_Position = vec4((corner - margin) / size * 2.0 - 1.0, 0.0, 1.0);
}
)";

/// Outside of what is highlighted, the distance to it decides, sampled in rings around the pixel. What is
/// selected has a broad line with a glow, what is pointed at a thin one. The line is as deep as the adjacent
/// body, or a little nearer, since what a body stands on comes nearer below its foot.
inline constexpr const char* kOutlineFragment = R"(
uniform sampler2D mask;
uniform sampler2D depths;
uniform ivec2 shift; // from pixels of the framebuffer to those of the mask
uniform float reach; // in pixels
uniform int rings;   // of four, which are asked
uniform vec3 pointed;
uniform vec3 selected;
uniform vec2 strengths; // of what is pointed at and of what is selected
uniform bool perspective;
uniform vec2 lens;  // what the projection makes of depths
uniform float pixel; // its size, at distance 1 in a perspective
out vec4 result;

float nearer(float depth)
{
    float clip = depth * 2.0 - 1.0;
    float seen = perspective ? -lens.y / (clip + lens.x) : (clip - lens.y) / lens.x;
    seen += 3.0 * reach * pixel * (perspective ? -seen : 1.0);
    clip = perspective ? -(lens.x * seen + lens.y) / min(seen, -1e-6) : lens.x * seen + lens.y;
    return clamp(clip * 0.5 + 0.5, 0.0, 1.0);
}

void main()
{
    ivec2 here = ivec2(gl_FragCoord.xy) + shift;
    if (texelFetch(mask, here, 0).r > 0.0)
        discard;
    float found = 0.0, depth = 1.0;
    int ring = 1;
    for (; ring <= rings; ++ring) {
        float radius = reach * float(ring) / 4.0;
        for (int i = 0; i < 12; ++i) {
            float angle = (float(i) + 0.5 * float(ring & 1)) * 0.5235988;
            ivec2 place = here + ivec2(round(vec2(cos(angle), sin(angle)) * radius));
            float value = texelFetch(mask, place, 0).r;
            if (value > (ring <= 2 ? 0.0 : 0.75)) {
                found = max(found, value);
                depth = min(depth, texelFetch(depths, place, 0).r);
            }
        }
        if (found > 0.0)
            break;
    }
    if (found == 0.0)
        discard;
    bool chosen = found > 0.75;
    float strength = chosen ? (ring <= 2 ? 0.95 : ring == 3 ? 0.5 : 0.22) : (ring == 1 ? 0.95 : 0.5);
    result = vec4(chosen ? selected : pointed, strength * (chosen ? strengths.y : strengths.x));
    gl_FragDepth = nearer(depth);
}
)";

} // namespace Rendra::Shaders
