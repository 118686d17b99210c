#pragma once

#include "Server/Base/Strings.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "Tests/Support/Servers/TestServer.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QtTest/QTest>

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

#include <string>
#include <tuple>
#include <vector>

namespace CommandsTests {

/// The dialogs against a real server, driven by events.
class WithCloudDialogs : public WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        Vu::Application::get()->needGui();
    }
    void TearDown() override
    {
        std::ignore = auth().logout();
        WithProgram::TearDown();
    }

    static Vs::MeshportAuth& auth() { return *Vs::MeshportAuth::globalInstance(); }
    /// At an address other than the server's: that of a proxy in front of it.
    static void signIn(const TestSupport::TestServer& server, const std::string& address = {})
    {
        Vs::Cloud::DriveCredentials credentials;
        credentials.kind = Vs::Cloud::DriveCredentials::Kind::Password;
        credentials.user = server.user();
        credentials.secret = server.password();
        const auto result = auth().signIn(address.empty() ? server.address() : address, credentials, false);
        ASSERT_TRUE(result.isOk()) << result.detail;
    }
    static void put(const TestSupport::TestServer& server, const std::string& path,
                    const std::string& content = "x")
    {
        const boost::filesystem::path file = server.folder() / path;
        boost::filesystem::create_directories(file.parent_path());
        boost::filesystem::ofstream(file) << content;
    }

    template <class Widget>
    static Widget* part(const QWidget& dialog, const char* name)
    {
        auto* found = dialog.findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    static std::string message(const QWidget& dialog)
    {
        const auto* label = part<QLabel>(dialog, "cloudMessage");
        return label->isVisible() ? label->text().toStdString() : std::string();
    }
    static void type(QLineEdit* field, const std::string& text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QString::fromStdString(text));
    }
    static std::vector<std::string> names(const QTreeView& list)
    {
        std::vector<std::string> names;
        for (int row = 0; row < list.model()->rowCount(); ++row)
            names.push_back(list.model()->index(row, 0).data().toString().toStdString());
        return names;
    }
};

} // namespace CommandsTests
