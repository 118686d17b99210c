#pragma once

#include "Server/DataModel/ApplicationEditionService.h"

#include <boost/filesystem/path.hpp>

#include <memory>

namespace Vu {

/// The edition that a file describes: a JSON object with the members "help", "feedback", "discussion",
/// "videos", "tour" and "newestVersion", all texts, "suggestbox", a list of objects with "title" and
/// "address", "cloudDisabled", true in an edition without a cloud drive, and "itemhubDisabled", true in one
/// without a lifecycle service. All may be missing. An address that is none of the web is the path of a file,
/// seen from the root of the running tree.
///
/// Read at the first question. What is wrong with the file is told once, and counts as missing. Main thread
/// only.
class FileEdition : public Vs::Implements<FileEdition, Vs::Services::ApplicationEditionService>
{
public:
    explicit FileEdition(boost::filesystem::path file);
    ~FileEdition() override;

    std::wstring productWikiHelpURL() const override;
    std::wstring productFeedbackAddress() const override;
    std::wstring productDiscussionAddress() const override;
    std::wstring productVideosURL() const override;
    std::vector<Vs::Services::EditionLink> suggestboxLinks() const override;
    std::wstring tourGuideXmlPath() const override;
    std::wstring newestVersionPath() const override;
    bool cloudDisabled() const override;
    bool itemhubDisabled() const override;

private:
    struct Content;
    const Content& content() const;

    boost::filesystem::path m_file;
    mutable std::unique_ptr<Content> m_content;
};

} // namespace Vu
