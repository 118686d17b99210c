#pragma once

#include "UI/Base/Program/CanvasBand.h"
#include "UI/Base/Program/CanvasRect.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Program/Sharing.h"
#include "UI/Base/Program/Tour.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QCoreApplication;
class QWidget;

namespace Vs {
class CursorResource;
class Status;
} // namespace Vs

namespace Vs::Scene {
struct Image;
}

namespace Vu {

class GraphicsCanvas;
class MainWindow;
class WorkspaceWindow;

/// The widget of a canvas, seen from the canvas. The widget itself belongs to its parent and may go with it;
/// the surface then is empty until it is put somewhere again.
class CanvasSurface
{
public:
    virtual ~CanvasSurface() = default;

    virtual QWidget* widget() const = 0;
    /// Makes the widget, or moves it, into `parent`. Returns whether it is new.
    [[nodiscard]] virtual bool put(QWidget* parent) = 0;

    /// In logical pixels; 0 while empty.
    virtual int width() const = 0;
    virtual int height() const = 0;
    /// Pixels of the screen for each logical one; 1 while empty.
    virtual double pixelRatio() const = 0;
    virtual void update() = 0;
    virtual void repaint() = 0;
    /// Null for the usual pointer.
    virtual void pointer(const Vs::CursorResource* pointer) = 0;
    virtual bool underPointer() const = 0;
    virtual void activateWindow() = 0;
    /// Shows a band over the picture, which is not drawn anew for it; nothing for none.
    virtual void band(const std::optional<CanvasBand>& band) = 0;
    /// Adds the parts of the canvas that other widgets lie over.
    virtual void covered(std::vector<CanvasRect>& parts) const = 0;
};

/// Where a window shows the progress of work.
class ProgressDisplay
{
public:
    virtual ~ProgressDisplay() = default;

    /// From here to `end`, user input reaches nothing but the cancel button.
    virtual void begin(const std::wstring& title) = 0;
    virtual void show(double fraction, const std::wstring& step) = 0;
    virtual void end() = 0;
    virtual bool cancelled() const = 0;
};

/// The window of a workspace, seen from the workspace.
class WindowFrame
{
public:
    virtual ~WindowFrame() = default;

    virtual MainWindow* mainWindow() const = 0;
    virtual QWidget* widget() const = 0;
    virtual std::shared_ptr<ProgressDisplay> progress() const = 0;

    virtual void show() = 0;
    virtual void bringToFront() = 0;
    virtual bool minimized() const = 0;
    virtual bool maximized() const = 0;
    virtual bool fullScreen() const = 0;
    virtual void showNormal() = 0;
    virtual void showMinimized() = 0;
    virtual void showMaximized() = 0;
    virtual void showFullScreen() = 0;

    virtual void message(const std::wstring& text) = 0;
    /// False if none of the areas is shown.
    virtual bool showTour(const std::vector<TourStep>& steps) = 0;
    virtual void toggleSearch() = 0;
    /// Both at the end of the event.
    virtual void refresh() = 0;
    virtual void rebuild() = 0;
    /// Does now what the two have put off.
    virtual void settleLayout() = 0;
    /// What the window shows, without its frame; false before it is shown.
    [[nodiscard]] virtual bool picture(Vs::Scene::Image& image) = 0;
};

/// Everything made of pixels: windows, dialogs, pointers, picture files. Qt's widget and picture code is
/// behind it, in the library VuWindow10, which is opened when something is shown for the first time: a run
/// that shows nothing doesn't load it, and so starts in half the time. Private to the host.
class Display
{
public:
    /// Opens the library at the first call. Throws std::runtime_error if that fails.
    static Display* get();

    virtual ~Display() = default;

    /// Qt's application object with the palette and the words of the program; there is one at a time.
    [[nodiscard]] virtual std::unique_ptr<QCoreApplication> makeApplication(int& count, char** arguments,
                                                                            bool headless) = 0;
    /// Runs the main loop until Qt's application exits; returns its exit code.
    virtual int run() = 0;
    /// Calls back when the desktop's session is about to end, and tells it that nothing stands in its way.
    virtual void onSessionEnds(std::function<void()> callback) = 0;

    [[nodiscard]] virtual std::unique_ptr<WindowFrame> makeWindow(WorkspaceWindow* owner) = 0;
    [[nodiscard]] virtual std::unique_ptr<CanvasSurface> makeSurface(GraphicsCanvas* canvas) = 0;
    /// Over the whole program; null for the usual one.
    virtual void pointer(const Vs::CursorResource* pointer) = 0;

    struct Button
    {
        std::wstring text;
        int standard; ///< EStandardButton, or -1.
        bool isDefault;
    };
    /// Returns the index of the pressed button; `cancel` is that of Escape. The icon is an EMessageIcon.
    [[nodiscard]] virtual int askMessage(const std::wstring& title, const std::wstring& text, int icon,
                                         const std::vector<Button>& buttons, int cancel, QWidget* parent) = 0;
    /// Empty if the person cancelled. `start` is a folder or a proposed file.
    [[nodiscard]] virtual std::vector<std::wstring>
    askFileNames(const FileDialog::Request& request, const std::wstring& start, QWidget* parent) = 0;
    /// Asks for the label of a version, of at most so many letters. False if the person cancelled.
    [[nodiscard]] virtual bool askLabel(std::wstring& label, int longest, QWidget* parent) = 0;
    virtual void showAbout(const std::wstring& title, const std::wstring& text, QWidget* parent) = 0;
    /// Returns when the dialog is closed.
    virtual void showPreferences(QWidget* parent) = 0;

    /// False if there is no picture in the file. Colours come as red, green, blue, opacity.
    [[nodiscard]] virtual bool readPicture(const std::wstring& path, Vs::Scene::Image& image) = 0;
    /// As the function in PictureFile.h, for "jpg" and "tiff".
    virtual bool writePicture(const Vs::Scene::Image& image, const std::wstring& path,
                              const std::string& format, bool keepsTransparency, int dotsPerInch,
                              Vs::Status& status) = 0;

    /// Gives a file to another program; `failed` is called on the main thread if none takes it.
    virtual void share(ShareWith with, const std::wstring& path, const std::wstring& title,
                       std::function<void()> failed) = 0;
    /// To the desktop's clipboard.
    virtual void copyPicture(const Vs::Scene::Image& image) = 0;
};

} // namespace Vu
