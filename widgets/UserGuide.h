#pragma once

#include "widgets/GuidePage.h"

#include <QPixmap>
#include <QVector>
#include <QWidget>

class QLabel;
class QPushButton;
class UserGuideControl;

/// The help window: nine pages, each a title, a text and a picture, turned by two arrow buttons or
/// the keys Up, Down, Page Up and Page Down; Escape closes. Closing only hides the window, which
/// opens again at the same page. GUI thread.
class UserGuide : public QWidget
{
    Q_OBJECT

public:
    /// `language` is the code of the interface language: "en" selects the English pictures, any
    /// other code the Chinese ones. Without a readable "./resource/UserGuide/userguide.xml" the
    /// pages have no pictures.
    explicit UserGuide(const QString &language, QWidget *parent = nullptr);

    /// Takes its initial size, and a text size to match, for a screen with `room` for its content.
    /// The constructor does so for the primary screen.
    void fitInto(const QRect &room);

    const QVector<GuidePage> &pages() const { return m_pages; }

signals:
    /// The user has closed the window.
    /// Part of the interface; nothing here connects to it.
    void closeClicked();

public slots:
    /// Turns to the previous page; does nothing on the first.
    void leftPressed();
    /// Turns to the next page; does nothing on the last.
    void rightPressed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void createPages();
    void loadPictures(const QString &language);
    QPushButton *createArrow(const QString &name, const QString &text);
    void createLayout();
    int highestText(int textPx) const;
    void createShortcuts();
    void goTo(int page);
    void showPosition();

    QVector<GuidePage> m_pages;
    QPixmap m_background;
    UserGuideControl *m_control;
    QPushButton *m_upButton;
    QPushButton *m_downButton;
    QLabel *m_counter;
    int m_current = 0;
};
