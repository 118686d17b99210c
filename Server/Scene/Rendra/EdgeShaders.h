#pragma once

/// The shaders that draw the edges of bodies, and the outlines of their round faces.
namespace Rendra::Shaders {

/// What both kinds of lines know about their body. Lines fade out on bodies that cover only a few pixels,
/// where nothing else would be visible.
inline constexpr const char* kLineOfBody = R"(
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform vec4 edgeColour;
uniform bool tinted;
uniform vec3 pointedColour;
uniform vec3 selectedColour;
uniform vec4 middle;        // of the body, and its size
uniform float pixelsOfUnit; // at distance 1 in a perspective
uniform bool perspective;
uniform bool onFaces;

vec4 lineAt(vec3 seen)
{
    // Dark lines could not be seen on dark faces.
    float bright = max(colour.r, max(colour.g, colour.b));
    vec3 plain = onFaces ? mix(max(edgeColour.rgb, vec3(0.40)), edgeColour.rgb, smoothstep(0.10, 0.30, bright)) : edgeColour.rgb;
    float across = middle.w * pixelsOfUnit / (perspective ? max(-seen.z, 1e-6) : 1.0);
    vec3 tint = !tinted || (flags & 3u) == 0u ? plain : (flags & 2u) != 0u ? selectedColour : pointedColour;
    return vec4(tint, edgeColour.a * smoothstep(9.0, 60.0, across) * ((flags & 8u) != 0u ? 0.16 : mix(0.5, 1.0, colour.a)));
}
)";

/// Dashes are measured along the edge, in pixels at the distance of the body's middle, so that they neither
/// crawl when the camera moves nor restart at each segment of a curve.
inline constexpr const char* kEdgeVertex = R"(
layout(location = 1) in float along;
#ifdef PLAIN
#define endLine line
#define endDash dash
flat
#endif
out vec4 endLine;
out float endDash;

void main()
{
    vec4 seen = placed(position);
    gl_Position = projection * seen;
    endDash = along * pixelsOfUnit / (perspective ? max(-placed(middle.xyz).z, 1e-6) : 1.0);
    endLine = lineAt(seen.xyz);
#ifdef PLAIN
    // What cannot be seen goes where it is thrown away before it costs pixels.
    if (line.a < 0.02)
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
#endif
}
)";

/// The same for outlines, whose ends are given in the scene's coordinates, with the size of their body.
inline constexpr const char* kOutlineVertex = R"(
layout(location = 0) in vec4 place;  // and how visible the line is
layout(location = 1) in vec4 body;   // its size, flags and opacity
uniform mat4 view;
uniform mat4 projection;
uniform vec4 edgeColour;
uniform bool tinted;
uniform vec3 pointedColour;
uniform vec3 selectedColour;
uniform bool perspective;
uniform vec2 pixels;
out vec4 endLine;
out float endDash;

void main()
{
    vec3 seen = (view * vec4(place.xyz, 1.0)).xyz;
    // A little nearer, so that the flat pieces which a round face is made of do not hide its outline.
    seen += (perspective ? -normalize(seen) : vec3(0.0, 0.0, 1.0)) * 0.003 * body.x;
    gl_Position = projection * vec4(seen, 1.0);
    vec3 tint = !tinted || body.y == 0.0 ? edgeColour.rgb : body.y >= 2.0 ? selectedColour : pointedColour;
    endLine = vec4(tint, edgeColour.a * place.w * body.z);
    // Without a length of their own, they are dashed along rows or columns.
    vec2 at = gl_Position.xy / max(gl_Position.w, 1e-6) * pixels;
    endDash = at.x + at.y;
}
)";

/// Lines as strips of pixels: then no driver limits their width, and their coverage of a pixel is computed
/// and not sampled.
inline constexpr const char* kLineGeometry = R"(
layout(lines) in;
layout(triangle_strip, max_vertices = 4) out;
in vec4 endLine[];
in float endDash[];
uniform vec2 pixels; // half the size of what is drawn into
uniform float lineWidth;
flat out vec4 line;
out float dash;
noperspective out float across; // in pixels, from the middle

void main()
{
    vec4 a = gl_in[0].gl_Position, b = gl_in[1].gl_Position;
    // Faint lines are left out before they cost pixels.
    if (max(endLine[0].a, endLine[1].a) < 0.02)
        return;
    // What lies behind the viewer is cut off.
#ifdef CLAMPED
    float nearA = a.w - 1e-4 * max(a.w, b.w), nearB = b.w - 1e-4 * max(a.w, b.w);
#else
    float nearA = a.z + a.w, nearB = b.z + b.w;
#endif
    if (nearA <= 0.0 && nearB <= 0.0)
        return;
    if (nearA < 0.0)
        a = mix(b, a, nearB / (nearB - nearA) * 0.9999);
    if (nearB < 0.0)
        b = mix(a, b, nearA / (nearA - nearB) * 0.9999);
    vec2 from = a.xy / a.w * pixels, to = b.xy / b.w * pixels;
    vec2 along = to - from;
    float length2 = dot(along, along);
    along = length2 > 1e-12 ? along * inversesqrt(length2) : vec2(1.0, 0.0);
    float half_ = 0.5 * lineWidth + 0.5;
    vec2 aside = vec2(-along.y, along.x) * half_;
    // A little longer than it is, so that nothing opens where it goes on in a slightly other direction.
    from -= along * 0.2;
    to += along * 0.2;
    line = endLine[0].a < endLine[1].a ? endLine[0] : endLine[1];
    for (int i = 0; i < 4; ++i) {
        bool first = i < 2;
        float side = (i & 1) == 0 ? -1.0 : 1.0;
        vec4 end = first ? a : b;
        dash = first ? endDash[0] : endDash[1];
        across = side * half_;
        gl_Position = vec4(((first ? from : to) + aside * side) / pixels * end.w, end.zw);
        EmitVertex();
    }
    EndPrimitive();
}
)";

inline constexpr const char* kEdgeFragment = R"(
flat in vec4 line;
in float dash;
#ifndef PLAIN
noperspective in float across;
uniform float lineWidth;
#endif
uniform float dashLength; // in the units of `dash`, the gap included; 0 for a line without gaps
out vec4 result;

void main()
{
    if (dashLength > 0.0 && fract(dash / dashLength) > 0.58)
        discard;
    float cover = 1.0;
#ifndef PLAIN
    cover = clamp(0.5 * lineWidth + 0.5 - abs(across), 0.0, 1.0) * min(lineWidth, 1.0);
    if (cover <= 0.0)
        discard;
#endif
    result = vec4(line.rgb, line.a * cover);
}
)";

} // namespace Rendra::Shaders
