#pragma once

#include <string>
#include <vector>

namespace Vs {
class ImageResource;
class Resource;
} // namespace Vs

namespace Vu {

/// Gives what the program's style sheet draws with. The base constructor registers; the destructor takes it
/// back.
class IStyleCollector
{
public:
    IStyleCollector();
    virtual ~IStyleCollector();
    IStyleCollector(const IStyleCollector&) = delete;
    IStyleCollector& operator=(const IStyleCollector&) = delete;

    /// Adds pictures; called when the first window is shown.
    virtual void collectImages(std::vector<Vs::ImageResource*>& images) = 0;
    /// Adds style sheets, which are applied in the order of registration.
    virtual void collectStyleSheets(std::vector<Vs::Resource*>&) {}

    static const std::vector<IStyleCollector*>& collectors();
};

} // namespace Vu
