#pragma once

#include <QAbstractButton>
#include <QIcon>
#include <QImage>
#include <QPoint>

#include <functional>
#include <string>

class QToolButton;

namespace Vu::Commands {

/// A card of the home screen: a picture, a name, and two lines below it. It is pressed like a button; on the
/// keyboard, Return opens it, P pins it and Delete removes it from the list. Its height follows its width.
class Tile : public QAbstractButton
{
public:
    static constexpr int kLeastWidth = 196;
    static constexpr int kMostWidth = 264;

    /// `icon` is shown without a picture.
    Tile(const QString& name, const QIcon& icon, QWidget* parent);

    /// The first line below the name, elided on the left so that its end is visible.
    void place(const QString& text);
    const QString& place() const { return m_place; }
    /// The second one.
    void note(const QString& text);
    const QString& note() const { return m_note; }
    /// A null image restores the icon.
    void picture(const QImage& image);
    bool hasPicture() const { return !m_picture.isNull(); }
    /// A tile whose file is missing is faint, and always shows the remove button that others show only on
    /// hover.
    void missing(bool value);
    bool missing() const { return m_missing; }
    /// A badge in the corner of the picture that tells where the file is stored; null for none.
    void mark(const QIcon& icon);

    /// Gives the tile a small button in its corner, with that tooltip. Its action may delete the tile.
    void onRemove(std::function<void()> action, const QIcon& icon, const QString& tooltip);
    /// The file that dragging the tile gives to other programs; one without a path gives none, nor does a
    /// tile whose file is missing.
    void file(const std::wstring& path) { m_file = path; }
    /// Another one beside it, for pinning. `pinned` sets its look.
    void onPin(std::function<void()> action);
    /// A pinned tile always shows its pin.
    void pinned(bool value);
    bool pinned() const { return m_pinned; }

    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override { return {kLeastWidth, heightForWidth(kLeastWidth)}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    /// It handles its own keys, even if the window has a shortcut with the same letter.
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QToolButton* makeCornerButton(const char* name, std::function<void()> Tile::*action);
    void dragFile();
    void paintPicture(QPainter& painter, const QRect& rect) const;
    void paintMark(QPainter& painter) const;
    void paintTexts(QPainter& painter) const;
    void describe();
    void showCornerButtons();
    /// The corner button for a key; null if none.
    QToolButton* buttonOf(const QKeyEvent& event) const;

    QIcon m_icon, m_mark;
    QImage m_picture;
    QString m_place, m_note;
    QToolButton *m_remove = nullptr, *m_pin = nullptr;
    std::function<void()> m_onRemove, m_onPin;
    std::wstring m_file;
    QPoint m_pressed; ///< Where the mouse button was last pressed.
    bool m_missing = false;
    bool m_pinned = false;
};

} // namespace Vu::Commands
