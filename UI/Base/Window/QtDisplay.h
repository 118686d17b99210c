#pragma once

#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Window/DesktopSharing.h"
#include "UI/Base/Window/QtDialogs.h"
#include "UI/Base/Window/QtPictures.h"

#include <QCursor>

#include <utility>

namespace Vu {

class QtDisplay : public Display
{
public:
    std::unique_ptr<QCoreApplication> makeApplication(int& count, char** arguments, bool headless) override;
    int run() override;
    void onSessionEnds(std::function<void()> callback) override;

    std::unique_ptr<WindowFrame> makeWindow(WorkspaceWindow* owner) override;
    std::unique_ptr<CanvasSurface> makeSurface(GraphicsCanvas* canvas) override;
    void pointer(const Vs::CursorResource* pointer) override;

    int askMessage(const std::wstring& title, const std::wstring& text, int icon,
                   const std::vector<Button>& buttons, int cancel, QWidget* parent) override
    {
        return QtDialogs::askMessage(title, text, icon, buttons, cancel, parent);
    }
    std::vector<std::wstring> askFileNames(const FileDialog::Request& request, const std::wstring& start,
                                           QWidget* parent) override
    {
        return QtDialogs::askFileNames(request, start, parent);
    }
    bool askLabel(std::wstring& label, int longest, QWidget* parent) override;
    void showAbout(const std::wstring& title, const std::wstring& text, QWidget* parent) override;
    void showPreferences(QWidget* parent) override;

    bool readPicture(const std::wstring& path, Vs::Scene::Image& image) override
    {
        return QtPictures::readPicture(path, image);
    }
    bool writePicture(const Vs::Scene::Image& image, const std::wstring& path, const std::string& format,
                      bool keepsTransparency, int dotsPerInch, Vs::Status& status) override
    {
        return QtPictures::writePicture(image, path, format, keepsTransparency, dotsPerInch, status);
    }

    void share(ShareWith with, const std::wstring& path, const std::wstring& title,
               std::function<void()> failed) override
    {
        DesktopSharing::share(with, QString::fromStdWString(path), QString::fromStdWString(title),
                              std::move(failed));
    }
    void copyPicture(const Vs::Scene::Image& image) override { QtPictures::copyPicture(image); }
};

QCursor cursorOf(const Vs::CursorResource& resource);

} // namespace Vu
