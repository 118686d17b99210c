#pragma once

#include "Server/Translate/MappedFile.h"

#include <STEPCAFControl_Reader.hxx>

#include <memory>
#include <string>
#include <string_view>

namespace Vs::Translate {

/// The kernel's reader of one STEP file, in the way in which all are read here.
///
/// The kernel reads annotations only in one go with everything else; apart, their failure can't cost the
/// geometry.
class StepSession : public STEPCAFControl_Reader
{
public:
    static std::shared_ptr<StepSession> make();

    /// Parses the text of a file, of which the path is only the name. False if it can't be understood.
    bool load(const std::string& path, std::string_view bytes, const ReportingBuffer::Report& report);
    /// Whether the kernel missed anything in an entity, as a reference that leads nowhere, doesn't know it,
    /// or took a number that can't be. It goes on, and says nothing, or stumbles over it later.
    bool lacksAnything() const;
    void readAnnotations(Handle(TDocStd_Document) document) { ReadGDTs(Reader().WS(), document); }
};

} // namespace Vs::Translate
