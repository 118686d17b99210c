#include "UI/Base/Window/QtDisplay.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Base/StringTable.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/About.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/CanvasWidget.h"
#include "UI/Base/Window/DesktopMotion.h"
#include "UI/Base/Window/DesktopNotifications.h"
#include "UI/Base/Window/LabelDialog.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/PreferencesDialog.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/QtWindow.h"
#include "UI/Base/Window/Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPixmap>
#include <QPushButton>
#include <QSessionManager>
#include <QSurfaceFormat>
#include <QTranslator>

namespace Vu {
namespace {

/// Qt's own texts (in file dialogs, for instance) in the language of the program's own. If Qt's translations
/// are not installed, they stay English.
void translateQt(QApplication* application)
{
    auto* translator = new QTranslator(application);
    const QString language = QString::fromStdString(Vs::StringTable::language());
    if (translator->load(QStringLiteral("qtbase_") + language,
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
}

/// As "4.5 (Core Profile) Mesa ..., llvmpipe ..."; empty if windows are drawn without OpenGL.
std::wstring graphicsOfWindows()
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface))
        return {};
    const auto text = [&](GLenum name) {
        const GLubyte* value = context.functions()->glGetString(name);
        return value ? QString::fromLatin1(reinterpret_cast<const char*>(value)) : QString();
    };
    return (text(GL_VERSION) + QStringLiteral(", ") + text(GL_RENDERER)).toStdWString();
}

/// The desktop finds it by its name only once the program is installed.
void setWindowIcon()
{
    QIcon icon;
    for (const char* size : {"16x16", "32x32", "48x48", "128x128"})
        icon.addPixmap(QPixmap::fromImage(pngFromFile(
            (Vs::PathInfo::rootDirectory() / "share/icons/hicolor" / size / "apps/quillet.png").wstring())));
    QApplication::setWindowIcon(icon);
}

} // namespace

std::unique_ptr<QCoreApplication> QtDisplay::makeApplication(int& count, char** arguments, bool headless)
{
    if (headless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    // Without it Qt requests a context in which lines are one pixel wide, whatever is set.
    format.setOption(QSurfaceFormat::DeprecatedFunctions);
    format.setDepthBufferSize(24);
    // Where the driver can, it tells of a reset in place of ending the program.
    format.setOption(QSurfaceFormat::ResetNotification);
    QSurfaceFormat::setDefaultFormat(format);
    QApplication::setApplicationName(QStringLiteral("Quillet"));
    QApplication::setDesktopFileName(QStringLiteral("quillet"));

    auto application = std::make_unique<QApplication>(count, arguments);
    application->setQuitOnLastWindowClosed(false);
    if (!headless) {
        followTheme();
        translateQt(application.get());
        setWindowIcon();
        new DesktopNotifications(application.get());
        new DesktopMotion(application.get());
        Accessible::begin();
    }
    return application;
}

int QtDisplay::run()
{
    return QApplication::exec();
}

void QtDisplay::onSessionEnds(std::function<void()> callback)
{
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, qApp,
        [callback = std::move(callback)](QSessionManager&) { callback(); }, Qt::DirectConnection);
}

std::unique_ptr<WindowFrame> QtDisplay::makeWindow(WorkspaceWindow* owner)
{
    return std::make_unique<QtWindow>(owner);
}

std::unique_ptr<CanvasSurface> QtDisplay::makeSurface(GraphicsCanvas* canvas)
{
    return makeCanvasSurface(canvas);
}

void QtDisplay::pointer(const Vs::CursorResource* pointer)
{
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    if (pointer)
        QGuiApplication::setOverrideCursor(cursorOf(*pointer));
}

bool QtDisplay::askLabel(std::wstring& label, int longest, QWidget* parent)
{
    LabelDialog dialog(QString::fromStdWString(label), longest, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    label = dialog.label().toStdWString();
    return true;
}

void QtDisplay::showAbout(const std::wstring& title, const std::wstring& text, QWidget* parent)
{
    const std::unique_ptr<QMessageBox> box =
        PlainText::messageBox(parent, QString::fromStdWString(title), QString::fromStdWString(text));
    constexpr int kPictureSide = 64;
    box->setIconPixmap(QApplication::windowIcon().pixmap(kPictureSide, kPictureSide));
    const QString details = QString::fromStdWString(aboutDetails(graphicsOfWindows()));
    QString all = box->text();
    if (!all.contains(details)) {
        PlainText::setDetails(box.get(), details);
        all += QStringLiteral("\n\n") + details;
    }
    box->setStandardButtons(QMessageBox::Ok);
    box->setEscapeButton(QMessageBox::Ok);
    // It copies, and leaves the original in place.
    QPushButton* copy =
        box->addButton(QString::fromStdWString(localized("AboutCopy", "Copy")), QMessageBox::ActionRole);
    copy->disconnect();
    QObject::connect(copy, &QPushButton::clicked, [all] { QGuiApplication::clipboard()->setText(all); });
    box->exec();
}

void QtDisplay::showPreferences(QWidget* parent)
{
    PreferencesDialog(parent).exec();
}

QCursor cursorOf(const Vs::CursorResource& resource)
{
    /// The numbers are Qt's, except that of the wait pointer.
    constexpr int kWaitShape = 17;
    if (resource.shape() == kWaitShape)
        return QCursor(Qt::WaitCursor);
    if (resource.shape() >= 0 && resource.shape() <= Qt::LastCursor)
        return QCursor(static_cast<Qt::CursorShape>(resource.shape()));
    const QPixmap picture(QString::fromStdWString(resource.localPath()));
    return picture.isNull() ? QCursor(Qt::ArrowCursor) : QCursor(picture, resource.hotX(), resource.hotY());
}

} // namespace Vu

extern "C" Vu::Display* vuDisplay()
{
    static Vu::QtDisplay display;
    return &display;
}
