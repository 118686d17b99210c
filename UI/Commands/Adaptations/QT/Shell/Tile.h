#pragma once

#include <QAbstractButton>
#include <QIcon>
#include <QImage>
#include <QPoint>

#include <functional>
#include <string>

class QToolButton;

namespace Vu::Commands {

/// A card of the home screen: a picture, a name, and two lines below it. It is pressed like a button; with
/// the keyboard, Return opens it, P pins it and Delete takes it off the list. Its height follows its width.
class Tile : public QAbstractButton
{
public:
    static constexpr int kLeastWidth = 196;
    static constexpr int kMostWidth = 264;

    /// `icon` stands where there is no picture.
    Tile(const QString& name, const QIcon& icon, QWidget* parent);

    /// The first line below the name, shortened from its left, so that the end shows.
    void place(const QString& text);
    const QString& place() const { return m_place; }
    /// The second one.
    void note(const QString& text);
    const QString& note() const { return m_note; }
    /// A null image brings the icon back.
    void picture(const QImage& image);
    bool hasPicture() const { return !m_picture.isNull(); }
    /// A tile that stands for nothing any more is faint, and offers all the time what the others offer below
    /// the pointer: to be taken away.
    void missing(bool value);
    bool missing() const { return m_missing; }
    /// A small picture in the corner of the large one, which tells where the thing is kept; null for none.
    void mark(const QIcon& icon);

    /// Gives the tile a small button in its corner, with that tooltip. The tile may be gone afterwards.
    void onRemove(std::function<void()> action, const QIcon& icon, const QString& tooltip);
    /// The file that a drag out of the tile gives to other programs; one without a path gives none, nor does
    /// a tile that is missing its thing.
    void file(const std::wstring& path) { m_file = path; }
    /// Another one beside it. `pinned` tells how it looks.
    void onPin(std::function<void()> action);
    /// A tile that is pinned shows its pin all the time.
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
    /// Its keys are its own, also where the window has a hot key of the same letter.
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
    /// The corner's button that a key presses; null if none.
    QToolButton* buttonOf(const QKeyEvent& event) const;

    QIcon m_icon, m_mark;
    QImage m_picture;
    QString m_place, m_note;
    QToolButton *m_remove = nullptr, *m_pin = nullptr;
    std::function<void()> m_onRemove, m_onPin;
    std::wstring m_file;
    QPoint m_pressed; ///< Where the button went down last.
    bool m_missing = false;
    bool m_pinned = false;
};

} // namespace Vu::Commands
