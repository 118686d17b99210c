#pragma once

/// What face shaders write when they draw transparent faces, and how the layers of these are composited into
/// the picture (see GlassLayers).
namespace Rendra::Shaders {

/// How the fragment shader of a face outputs its colour.
inline constexpr const char* kFaceResult = R"(
#ifdef GLASS
uniform vec2 clipRange; // near and far
uniform bool parallel;
layout(location = 0) out vec4 sum;     // added up; of the light that passes, the logarithms are
layout(location = 1) out vec2 weights; // of all, which are added up, and of the foremost
layout(location = 2) out vec4 foremost;

// What consists of such steps adds up without rounding, hundreds of times: so the order does not matter.
vec4 inSteps(vec4 value)
{
    return floor(value * vec4(vec3(65536.0), 4096.0) + 0.5) / vec4(vec3(65536.0), 4096.0);
}

// What lies farther back counts less. Only places between the foremost and the last are weighed by this.
void give(vec4 colour)
{
    float ahead = parallel ? gl_FragCoord.z : (1.0 / gl_FragCoord.w - clipRange.x) / (clipRange.y - clipRange.x);
    float weight = inSteps(vec4(colour.a * exp2(-6.0 * clamp(ahead, 0.0, 1.0)))).x;
    sum = inSteps(vec4(colour.rgb * weight, -log2(max(1.0 - colour.a, 1e-3))));
    weights = vec2(weight);
    foremost = vec4(colour.rgb * colour.a, colour.a);
}
#else
out vec4 result;

void give(vec4 colour)
{
    result = colour;
}
#endif
)";

/// With FINE, the foremost layer is known separately, and there may be lines on it; what is behind it is the
/// mean of the others, which is exact for one. With SAMPLED, the layers have one sample per pixel and the
/// picture several: each gets the depth of the foremost layer, so that those of an opaque body in front stay
/// as they are; and if such a body has the one sample, a neighbouring pixel tells what is behind. Software
/// drivers compute whatever stands in a condition, so these are programs of their own.
inline constexpr const char* kGlassFragment = R"(
uniform sampler2D sums;
uniform sampler2D weights;

// With how much light passes: 1 where there is nothing.
vec4 sumAt(ivec2 at)
{
    vec4 sum = texelFetch(sums, at, 0);
    return vec4(sum.rgb, exp2(-sum.a));
}

#ifdef FINE
uniform sampler2D foremost;
uniform sampler2D lines;
uniform bool lined;
uniform bool separate; // the sums are of those behind the foremost alone
#endif
#ifdef SAMPLED
uniform sampler2D depths;

float depthAt(ivec2 at)
{
    return texelFetch(depths, at, 0).r;
}
#endif
out vec4 result; // multiplied by its opacity

void main()
{
    ivec2 at = ivec2(gl_FragCoord.xy);
    vec4 sum = sumAt(at);
    vec4 line = vec4(0.0), front = vec4(0.0);
#ifdef SAMPLED
    const ivec2 ways[4] = ivec2[](ivec2(1, 0), ivec2(-1, 0), ivec2(0, 1), ivec2(0, -1));
    float here = depthAt(at), slope = 1.0;
    ivec2 behind = at;
    for (int i = 0; i < 4; ++i) {
        ivec2 beside = clamp(at + ways[i], ivec2(0), textureSize(depths, 0) - 1);
        float there = depthAt(beside);
        slope = min(slope, beside == at ? 1.0 : abs(there - here));
        if (there > here + 1e-6 && sumAt(beside).a < 1.0)
            behind = beside;
    }
    if (sum.a == 1.0 && behind != at) {
        at = behind;
        sum = sumAt(at);
        here = depthAt(at);
        slope = 0.0;
    }
    gl_FragDepth = here - slope - 1e-6;
#endif
#ifdef FINE
    line = lined ? texelFetch(lines, at, 0) : line;
    front = texelFetch(foremost, at, 0);
    sum.a *= separate ? 1.0 - front.a : 1.0;
#endif
    if (sum.a == 1.0 && line.a == 0.0)
        discard;
    vec2 weight = texelFetch(weights, at, 0).rg;
#ifdef FINE
    weight.g = separate ? 0.0 : weight.g;
#endif
    vec3 seen = front.rgb;
    float behindFront = 1.0 - clamp(sum.a / max(1.0 - front.a, 1e-3), 0.0, 1.0);
    vec3 others = sum.rgb - front.rgb / max(front.a, 1e-3) * weight.g;
    if (weight.r - weight.g > 1e-3 * weight.g)
        seen += (1.0 - front.a) * behindFront * clamp(others / (weight.r - weight.g), 0.0, 1.0);
    result = vec4(mix(seen, line.rgb, line.a), 1.0 - (1.0 - line.a) * sum.a);
}
)";

} // namespace Rendra::Shaders
