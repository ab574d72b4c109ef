#pragma once

#include "app/MainWindow.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "widgets/Modal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

inline void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write(content);
}

/// The real window over a folder of its own, which is also the working directory, and a user who
/// answers its boxes.
class WindowFixture
{
protected:
    /// A box as the user met it.
    struct Shown
    {
        QString title;
        QString text;
        QStringList buttons;
    };

    void setUpFolder()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QVERIFY(QFile::link(QStringLiteral(VL_SOURCE_DIR "/resource"),
                            m_folder->filePath(QStringLiteral("resource"))));
        QDir::setCurrent(m_folder->path());
        m_shown.clear();
        m_answers.clear();
        m_whileAsking = {};
        Modal::setRunner([this](QDialog &dialog) { return answer(dialog); });
    }

    void tearDown()
    {
        m_window.reset();
        m_dataMgr.reset();
        m_dbOperator.reset();
        Modal::setRunner({});
        QDir::setCurrent(QStringLiteral("/"));
    }

    /// Another start of the program when it is open already.
    void openWindow()
    {
        m_window.reset();
        const QString folder = m_folder->path() + QLatin1Char('/');
        m_dataMgr.reset();
        m_dbOperator = std::make_unique<DBOperator>(folder);
        m_dataMgr = std::make_unique<DataMgr>(*m_dbOperator, folder);
        m_dataMgr->setSlice(m_slice);
        m_window = std::make_unique<MainWindow>(*m_dataMgr, folder);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    QPushButton *button(const char *name) const
    {
        return m_window->findChild<QPushButton *>(QLatin1String(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DBOperator> m_dbOperator;
    std::unique_ptr<DataMgr> m_dataMgr;
    std::unique_ptr<MainWindow> m_window;
    QList<Shown> m_shown;
    QStringList m_answers; ///< texts of the buttons to press, in order
    std::function<void()> m_whileAsking;
    int m_slice = -1; ///< of the window's next start: every job is over when its call returns

private:
    int answer(QDialog &dialog)
    {
        Shown shown = {dialog.windowTitle(), QString(), {}};
        if (const auto *const box = qobject_cast<QMessageBox *>(&dialog))
            shown.text = box->text();
        const QString wanted = m_answers.isEmpty() ? QString() : m_answers.takeFirst();
        QPushButton *pressed = nullptr;
        const auto buttons = dialog.findChildren<QPushButton *>();
        for (QPushButton *const candidate : buttons) {
            const QString text = candidate->text().remove(QLatin1Char('&'));
            shown.buttons.append(text);
            if (text == wanted)
                pressed = candidate;
        }
        m_shown.append(shown);
        if (m_whileAsking)
            m_whileAsking();
        if (pressed)
            pressed->click();
        return dialog.result();
    }
};
