#pragma once

#include "Server/Base/Object.h"

#include <string>
#include <vector>

namespace Vs::Services {

/// A title and what is opened for it.
struct EditionLink
{
    std::wstring title;
    std::wstring address;
};

/// Lets an edition of the application bring links of its own and impose its own ways. The default imposes
/// nothing and has no links.
///
/// An address is one of the web, or the full path of a file that the edition brings; empty where the edition
/// has none.
class ApplicationEditionService : public Implements<ApplicationEditionService>
{
public:
    /// The filter of the dialog that opens files; empty for the usual one.
    virtual std::wstring defaultOpenFileFilterStr() const { return {}; }

    virtual std::wstring productWikiHelpURL() const { return {}; }
    /// An address of mail, without "mailto:".
    virtual std::wstring productFeedbackAddress() const { return {}; }
    virtual std::wstring productDiscussionAddress() const { return {}; }
    virtual std::wstring productVideosURL() const { return {}; }
    /// Where users put down what they wish for.
    virtual std::vector<EditionLink> suggestboxLinks() const { return {}; }
    /// The steps of the tour through the window.
    virtual std::wstring tourGuideXmlPath() const { return {}; }
    /// Whether the edition has no cloud drive.
    virtual bool cloudDisabled() const { return false; }
    /// Whether the edition has no lifecycle service.
    virtual bool itemhubDisabled() const { return false; }
    /// A text file whose first line is the newest version that there is.
    virtual std::wstring newestVersionPath() const { return {}; }
};

} // namespace Vs::Services
