#pragma once

#include <QObject>

#include <memory>

class LanguageSetting;
class UserGuide;

/// Shows the user guide, and the box with the version. Owns the box and the guide, which is created
/// on first use and without a parent, so that it can be read beside an open dialog. GUI thread.
class HelpFlow : public QObject
{
    Q_OBJECT
public:
    /// `window` is the parent of this object and of the box. `language`, whose pictures the guide
    /// shows, must outlive this object.
    HelpFlow(const LanguageSetting &language, QWidget &window);
    ~HelpFlow() override;

    /// Shows the help window, at the page where it was closed.
    void showGuide();
    /// Shows what the program is, and its version. Returns when the box is closed.
    void showAbout();

private:
    const LanguageSetting &m_language;
    QWidget &m_window;
    std::unique_ptr<UserGuide> m_guide;
};
