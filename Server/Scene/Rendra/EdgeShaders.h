#pragma once

/// The programs that draw the edges of bodies, and the outlines of their round faces.
namespace Rendra::Shaders {

/// What both kinds of lines know of their body. Lines fade away on bodies that cover only some pixels, where
/// they would be all that is to be seen.
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

vec4 lineAt(vec3 seen)
{
    float across = middle.w * pixelsOfUnit / (perspective ? max(-seen.z, 1e-6) : 1.0);
    vec3 tint = !tinted || (flags & 3u) == 0u ? edgeColour.rgb : (flags & 2u) != 0u ? selectedColour : pointedColour;
    return vec4(tint, edgeColour.a * smoothstep(9.0, 60.0, across) * ((flags & 8u) != 0u ? 0.16 : mix(0.5, 1.0, colour.a)));
}
)";

/// Dashes are measured along the edge, in pixels at the distance of the body's middle, so that they neither
/// crawl when the camera moves nor begin anew at each piece of a curve.
inline constexpr const char* kEdgeVertex = R"(
layout(location = 1) in float along;
flat out vec4 line;
out float dash;

void main()
{
    vec4 seen = placed(position);
    gl_Position = projection * seen;
    dash = along * pixelsOfUnit / (perspective ? max(-placed(middle.xyz).z, 1e-6) : 1.0);
    line = lineAt(seen.xyz);
    // What cannot be seen goes where it is thrown away before it costs pixels.
    if (line.a < 0.02)
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
}
)";

inline constexpr const char* kEdgeFragment = R"(
flat in vec4 line;
in float dash;
uniform float dashLength; // in the units of `dash`, the gap included; 0 for a line without gaps
out vec4 result;

void main()
{
    if (dashLength > 0.0 && fract(dash / dashLength) > 0.58)
        discard;
    result = line;
}
)";

/// The outline of round faces: within a triangle, the line on which the surface turns away from the viewer,
/// found from the normals of its corners. Flat faces have none but their edges.
inline constexpr const char* kOutlineVertex = R"(
layout(location = 1) in vec4 normal;
out vec3 cornerPlace;
out float cornerFacing;
out vec4 cornerLine;

void main()
{
    cornerPlace = placed(position).xyz;
    cornerFacing = dot(turned(normal.xyz), perspective ? -normalize(cornerPlace) : vec3(0.0, 0.0, 1.0));
    cornerLine = lineAt(cornerPlace);
}
)";

inline constexpr const char* kOutlineGeometry = R"(
layout(triangles) in;
layout(line_strip, max_vertices = 2) out;
in vec3 cornerPlace[];
in float cornerFacing[];
in vec4 cornerLine[];
uniform mat4 projection;
uniform vec4 middle;
uniform bool perspective;
uniform vec2 pixels; // half the size of what is drawn into
flat out vec4 line;
out float dash;

void main()
{
    // Corners that face neither way, to rounding, count as facing away: planes seen from their side have no line.
    bool seen0 = cornerFacing[0] > 1e-6, seen1 = cornerFacing[1] > 1e-6, seen2 = cornerFacing[2] > 1e-6;
    if (seen0 == seen1 && seen1 == seen2)
        return;
    if (cornerLine[0].a < 0.02)
        return;
    // The line runs between the two sides that meet in the corner which differs from the others.
    int tip = seen1 == seen2 ? 0 : seen0 == seen2 ? 1 : 2;
    vec4 ends[2];
    for (int i = 0; i < 2; ++i) {
        int other = (tip + 1 + i) % 3;
        float part = cornerFacing[tip] / (cornerFacing[tip] - cornerFacing[other]);
        vec3 place = mix(cornerPlace[tip], cornerPlace[other], clamp(part, 0.0, 1.0));
        // A little nearer, so that the flat pieces which a round face is made of do not hide its outline.
        float nearer = 0.003 * middle.w;
        place += perspective ? -normalize(place) * nearer : vec3(0.0, 0.0, nearer);
        ends[i] = projection * vec4(place, 1.0);
    }
    vec2 from = ends[0].xy / ends[0].w * pixels, to = ends[1].xy / ends[1].w * pixels;
    bool level = abs(to.x - from.x) > abs(to.y - from.y);
    for (int i = 0; i < 2; ++i) {
        line = cornerLine[tip];
        vec2 at = i == 0 ? from : to;
        dash = level ? at.x : at.y;
        gl_Position = ends[i];
        EmitVertex();
    }
    EndPrimitive();
}
)";

} // namespace Rendra::Shaders
