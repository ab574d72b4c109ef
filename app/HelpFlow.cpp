#include "app/HelpFlow.h"

#include "app/Language.h"
#include "app/LanguageSetting.h"
#include "app/ProgramVersion.h"
#include "widgets/Modal.h"
#include "widgets/ScreenRoom.h"
#include "widgets/ShowInFront.h"
#include "widgets/UserGuide.h"

#include <QIcon>

namespace {

/// Centres a window without a parent, which the system would put anywhere, and keeps it on screen.
void centreOver(QWidget &window, const QWidget &other)
{
    QRect place(QPoint(), window.size());
    place.moveCenter(other.geometry().center());
    window.setGeometry(pulledInto(screenRoom(other), place));
}

} // namespace

HelpFlow::HelpFlow(const LanguageSetting &language, QWidget &window)
    : QObject(&window)
    , m_language(language)
    , m_window(window)
{
}

HelpFlow::~HelpFlow() = default;

void HelpFlow::showGuide()
{
    const bool isNew = !m_guide;
    if (isNew)
        m_guide = std::make_unique<UserGuide>(QLatin1String(m_language.language().word));
    const bool isElsewhere = !m_guide->isVisible() && m_guide->screen() != m_window.screen();
    if (isNew || isElsewhere) {
        m_guide->fitInto(screenRoom(m_window));
        centreOver(*m_guide, m_window);
    }
    showInFront(*m_guide);
}

void HelpFlow::showAbout()
{
    QMessageBox box(&m_window);
    box.setWindowIcon(Modal::windowIcon());
    box.setWindowTitle(m_window.windowTitle());
    box.setTextFormat(Qt::RichText);
    box.setText(QStringLiteral("<h2>%1</h2><p>%2</p><p>%3</p><p>%4</p>")
                    .arg(m_window.windowTitle(),
                         tr("Version: %1").arg(QLatin1String(programVersion)),
                         tr("Keeps the list of your desk phones and gives each one its "
                            "configuration over the local network."),
                         tr("Free software under the MIT licence.")));
    box.setStandardButtons(QMessageBox::Ok);
    Modal::run(box);
}
