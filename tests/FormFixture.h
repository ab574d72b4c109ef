#pragma once

#include "dialogs/ContactForm.h"
#include "dialogs/FormDialog.h"
#include "model/DebugLog.h"
#include "widgets/ToolTipWidget.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <memory>

/// A dialog with a form, in the program's own style sheet, and what its user sees of it.
template <typename Dialog>
class FormFixture
{
protected:
    /// The size of the texts is the style sheet's business, and whether they fit is ours.
    static void useStyleSheet()
    {
        QFile sheet(QStringLiteral(VL_SOURCE_DIR "/resource/style.qss"));
        QVERIFY(sheet.open(QIODevice::ReadOnly));
        qApp->setStyleSheet(QString::fromUtf8(sheet.readAll()));
    }

    void setUp() { m_dialog = std::make_unique<Dialog>(); }

    void tearDown()
    {
        m_dialog.reset();
        debugLog().setEnabled(QtDebugMsg, false);
    }

    void showDialog()
    {
        m_dialog->show();
        QApplication::setActiveWindow(m_dialog.get());
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }

    template <typename Input>
    Input *input(const char *name) const
    {
        auto *const found = m_dialog->template findChild<Input *>(QLatin1String(name));
        Q_ASSERT(found);
        return found;
    }

    QString visibleTip() const
    {
        const auto *const tip = m_dialog->template findChild<ToolTipWidget *>();
        return tip->isVisible() ? tip->text() : QString();
    }

    /// Rows one below the other, nothing cut off, and the buttons below what scrolls.
    void checkLayout() const
    {
        const auto *const area = input<QScrollArea>("formScrollArea");
        QVERIFY(!area->horizontalScrollBar()->isVisible());
        const auto *const form = m_dialog->template findChild<ContactForm *>();
        int bottom = -1;
        const auto labels = form->template findChildren<QLabel *>();
        for (const QLabel *const label : labels) {
            const QWidget *const buddy = label->buddy();
            if (!buddy || !label->isVisible())
                continue;
            const QByteArray name = label->text().toUtf8();
            QVERIFY2(label->sizeHint().width() <= label->width(), name.constData());
            QVERIFY2(form->rect().contains(label->geometry()), name.constData());
            QVERIFY2(form->rect().contains(buddy->geometry()), name.constData());
            QVERIFY2(buddy->height() >= buddy->minimumSizeHint().height(), name.constData());
            QVERIFY2(buddy->y() > bottom, name.constData());
            bottom = buddy->geometry().bottom();
        }
        QVERIFY(bottom > 0);
        const auto buttons = m_dialog->template findChildren<QPushButton *>();
        for (const QPushButton *const button : buttons) {
            QVERIFY(m_dialog->rect().contains(button->geometry()));
            QVERIFY(button->y() > area->geometry().bottom());
        }
    }

    std::unique_ptr<Dialog> m_dialog;
};
