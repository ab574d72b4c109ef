#pragma once

#include "dialogs/ContactForm.h"
#include "dialogs/FormDialog.h"
#include "dialogs/IpLine.h"
#include "model/ContactFields.h"
#include "widgets/ToolTipWidget.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
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

    void tearDown() { m_dialog.reset(); }

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

    /// Enters each field that has an input, under the name that goes with its column: choices by
    /// their text.
    void enter(const ContactInfo &shown)
    {
        for (const ContactField &field : contactFields()) {
            QString name = QLatin1String(field.column);
            for (int at = name.indexOf(QLatin1Char('_')); at >= 0;
                 at = name.indexOf(QLatin1Char('_')))
                name.replace(at, 2, name.at(at + 1).toUpper());
            const QString text = shown.*field.member;
            if (auto *const line =
                    m_dialog->template findChild<IpLine *>(name + QLatin1String("IpLine")))
                line->setText(text);
            else if (auto *const box = m_dialog->template findChild<QComboBox *>(
                         name + QLatin1String("ComboBox")))
                box->setCurrentText(text);
            else if (auto *const edit = m_dialog->template findChild<QLineEdit *>(
                         name + QLatin1String("LineEdit")))
                edit->setText(text);
        }
    }

    QString visibleTip() const
    {
        const auto *const tip = m_dialog->template findChild<ToolTipWidget *>();
        return tip->isVisible() ? tip->text() : QString();
    }

    std::unique_ptr<Dialog> m_dialog;
};
