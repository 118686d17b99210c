#pragma once

#include "Server/Base/ResourceMgr.h"

namespace Vu {

/// A picture whose file says how large it is in print.
class PrintedImageResource : public Vs::Implements<PrintedImageResource, Vs::ImageResource>
{
public:
    PrintedImageResource(std::wstring path, int dotsPerInch)
        : Implements(std::move(path)), m_dotsPerInch(dotsPerInch)
    {
    }
    int dotsPerInch() const { return m_dotsPerInch; }

private:
    int m_dotsPerInch;
};

} // namespace Vu
