#pragma once

#include "Server/Base/Object.h"

#include <string>
#include <vector>

namespace Vs::Services {

/// A title and what opens for it.
struct EditionLink
{
    std::wstring title;
    std::wstring address;
};

/// Lets an edition of the application bring its own links and restrictions. The default has neither.
///
/// An address is one of the web, or the full path of a file that the edition brings; empty where the edition
/// has none.
class ApplicationEditionService : public Implements<ApplicationEditionService>
{
public:
    /// The filter of the dialog that opens files; empty for the default one.
    virtual std::wstring defaultOpenFileFilterStr() const { return {}; }

    virtual std::wstring productWikiHelpURL() const { return {}; }
    /// A mail address, without "mailto:".
    virtual std::wstring productFeedbackAddress() const { return {}; }
    virtual std::wstring productDiscussionAddress() const { return {}; }
    virtual std::wstring productVideosURL() const { return {}; }
    /// Where users leave their suggestions.
    virtual std::vector<EditionLink> suggestboxLinks() const { return {}; }
    /// The steps of the tour through the window.
    virtual std::wstring tourGuideXmlPath() const { return {}; }
    /// Whether the edition has no cloud drive.
    virtual bool cloudDisabled() const { return false; }
    /// Whether the edition has no lifecycle service.
    virtual bool itemhubDisabled() const { return false; }
    /// A text file whose first line is the newest version available.
    virtual std::wstring newestVersionPath() const { return {}; }
};

} // namespace Vs::Services
