#pragma once

#include "Server/Body/BodyMesh.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

namespace Vs {

class Asset;
class Body;

/// What is known of bodies from one digest to the next, for whoever wants one after each step.
class BodyDigests
{
public:
    [[nodiscard]] uint64_t of(const Body& body);
    /// Forgets what wasn't asked for since the last time.
    void forgetUnused();

private:
    struct Known
    {
        std::shared_ptr<const BodyMesh> mesh; ///< Held, so that no other can have its place.
        std::wstring name;
        Colour colour;
        uint64_t digest = 0;
        bool used = true;
    };
    std::unordered_map<const BodyMesh*, Known> m_known;
};

/// A number that tells the asset's model from any other that a user could tell from it: the tree with names,
/// places, colours and visibility; the bodies with their meshes; the settings. Places count to a millionth of
/// a millimetre. The asset's own name doesn't count, nor how the model came to be: after a save and a
/// reopening, or after a step was undone and done again, it is the same number. Makes the meshes that aren't
/// there yet. Main thread.
[[nodiscard]] uint64_t modelDigest(const Asset& asset);
/// The same number.
[[nodiscard]] uint64_t modelDigest(const Asset& asset, BodyDigests& bodies);

} // namespace Vs
