#pragma once

#include "Server/DataModel/ApplicationEditionService.h"
#include "UI/Base/Program/Application.h"

#include <memory>
#include <string>
#include <vector>

namespace CommandsTests {

/// The contents of an edition of the program; the rest is empty.
struct EditionContent
{
    std::wstring filter, help, feedback, discussion, videos, tour, newestVersion;
    std::vector<Vs::Services::EditionLink> suggestbox;
    bool cloudDisabled = false;
};

class TestEdition : public Vs::Implements<TestEdition, Vs::Services::ApplicationEditionService>
{
public:
    explicit TestEdition(EditionContent content) : m_content(std::move(content)) {}

    std::wstring defaultOpenFileFilterStr() const override { return m_content.filter; }
    std::wstring productWikiHelpURL() const override { return m_content.help; }
    std::wstring productFeedbackAddress() const override { return m_content.feedback; }
    std::wstring productDiscussionAddress() const override { return m_content.discussion; }
    std::wstring productVideosURL() const override { return m_content.videos; }
    std::vector<Vs::Services::EditionLink> suggestboxLinks() const override { return m_content.suggestbox; }
    std::wstring tourGuideXmlPath() const override { return m_content.tour; }
    std::wstring newestVersionPath() const override { return m_content.newestVersion; }
    bool cloudDisabled() const override { return m_content.cloudDisabled; }

private:
    EditionContent m_content;
};

/// Replaces the program's own edition as long as this lives.
class WithEdition
{
public:
    explicit WithEdition(EditionContent content)
    {
        auto edition = std::make_unique<TestEdition>(std::move(content));
        m_edition = edition.get();
        Vu::Application::get()->addService(std::move(edition));
    }
    ~WithEdition() { Vu::Application::get()->removeService(m_edition); }
    WithEdition(const WithEdition&) = delete;
    WithEdition& operator=(const WithEdition&) = delete;

private:
    const Vs::Object* m_edition;
};

} // namespace CommandsTests
