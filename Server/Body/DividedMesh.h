#pragma once

#include "Server/Body/BodyMesh.h"

namespace Vs {

/// Whether a mesh is of a body of triangles alone, which has no faces, edges and vertices of its own.
bool isOfTriangles(const BodyMesh& mesh);

/// The mesh of a body of triangles with what a person takes for its parts: faces, which are its flat parts
/// and the bent ones between sharp edges; edges where these meet or where the surface bends by more than 30
/// degrees or ends; vertices where edges meet or have a corner. The triangles are the same ones in another
/// order, those of a face one after the other. Which part has which number depends on the triangles and their
/// order alone. A surface that is too rough to have parts (a scan, say) keeps its faces and gets no edges and
/// vertices. Takes about a second for a million triangles.
BodyMesh dividedMesh(const BodyMesh& mesh);

} // namespace Vs
