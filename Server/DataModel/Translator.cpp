#include "Server/DataModel/Translator.h"

namespace Vs {

std::unique_ptr<TranslatorOpenOptions> Translator::createOpenOptions() const
{
    return std::make_unique<TranslatorOpenOptions>();
}

std::unique_ptr<TranslatorSaveOptions> Translator::createSaveOptions() const
{
    return std::make_unique<TranslatorSaveOptions>();
}

uint64_t Translator::countTriangles(TranslatorSaveOptions&, TranslatorContext&,
                                    const std::function<bool()>&) const
{
    return 0;
}

} // namespace Vs
