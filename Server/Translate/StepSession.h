#pragma once

#include "Server/Translate/MappedFile.h"

#include <STEPCAFControl_Reader.hxx>
#include <Standard_Version.hxx>
#if OCC_VERSION_HEX >= 0x070800
#include <StepData_Factors.hxx>
#endif

#include <memory>
#include <string>
#include <string_view>

namespace Vs::Translate {

/// The kernel's reader of one STEP file, configured as for all of them here.
///
/// The kernel reads annotations only together with everything else; read separately, their failure can't cost
/// the geometry.
class StepSession : public STEPCAFControl_Reader
{
public:
    static std::shared_ptr<StepSession> make();

    /// Parses the text of a file, without what nobody reads of it; the path is only its name. False if it
    /// can't be understood.
    bool load(const std::string& path, std::string_view bytes, const ReportingBuffer::Report& report);
    /// Whether the kernel missed anything in an entity, such as a dangling reference, doesn't know it, or
    /// accepted an impossible number. It carries on silently, or fails on it later.
    bool lacksAnything() const;
    void readAnnotations(Handle(TDocStd_Document) document)
    {
#if OCC_VERSION_HEX < 0x070800
        ReadGDTs(Reader().WS(), document);
#else
        ReadGDTs(Reader().WS(), document, StepData_Factors());
#endif
    }
};

} // namespace Vs::Translate
