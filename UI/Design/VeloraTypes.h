#pragma once

#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DocumentType.h"

namespace Vu::Design {

/// The native document of a design. Registered with the data model for as long as it lives.
class VeloraDocType : public Vs::Implements<VeloraDocType, Vs::DocumentType>
{
public:
    static constexpr const char* kIdentifier = "VeloraDocType";

    VeloraDocType();
    ~VeloraDocType() override;
};

/// A design: an assembly of solid parts. Registered with the data model for as long as it lives.
class VeloraAssetType : public Vs::Implements<VeloraAssetType, Vs::AssetType>
{
public:
    static constexpr const char* kIdentifier = "VeloraAssetType";

    VeloraAssetType();
    ~VeloraAssetType() override;
};

} // namespace Vu::Design
