#pragma once

#include "app/MainWindow.h"
#include "storage/DBOperator.h"
#include "storage/DataMgr.h"
#include "tests/Literal.h"
#include "tests/TestDevices.h"
#include "tests/User.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// The real window over a folder of its own, which is also the working directory, and its user.
class WindowFixture
{
protected:
    void setUpFolder()
    {
        registerContactTypes();
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QFile::link(QStringLiteral(VL_SOURCE_DIR "/resource"), path("resource")));
        QDir::setCurrent(m_folder->path());
        m_user = std::make_unique<User>();
    }

    void tearDown()
    {
        m_window.reset();
        m_dataMgr.reset();
        m_dbOperator.reset();
        m_user.reset();
        QDir::setCurrent("/"_s);
    }

    /// Starts the program, or ends it and starts it again.
    void openWindow()
    {
        m_window.reset();
        m_dataMgr.reset();
        m_dbOperator = std::make_unique<DBOperator>(path(""));
        m_dataMgr = std::make_unique<DataMgr>(*m_dbOperator, path(""));
        m_dataMgr->setSlice(m_slice);
        m_window = std::make_unique<MainWindow>(*m_dataMgr, path(""));
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    /// The path of a file in the folder.
    QString path(const char *name) const { return m_folder->path() + "/"_s + QLatin1String(name); }

    /// The window's child of that type and name, or of any name.
    template <typename Part = QWidget>
    Part *part(const char *name = nullptr) const
    {
        return m_window->findChild<Part *>(QLatin1String(name));
    }
    QPushButton *button(const char *name) const { return part<QPushButton>(name); }

    /// The open or closed window of that type.
    template <typename Window>
    static Window *topLevel()
    {
        Window *found = nullptr;
        const auto widgets = QApplication::topLevelWidgets();
        for (QWidget *const widget : widgets)
            found = found ? found : qobject_cast<Window *>(widget);
        return found;
    }

    /// Chooses the menu entry with that text.
    void choose(const QString &text) const { action(text)->trigger(); }
    QAction *action(const QString &text) const
    {
        const auto actions = m_window->findChildren<QAction *>();
        for (QAction *const candidate : actions) {
            if (candidate->text() == text)
                return candidate;
        }
        qFatal("no action %s", qPrintable(text));
    }

    /// Adds a device as the dialog does when its user saves.
    void addDevice(const QString &mac, const QString &account = QString()) const
    {
        ContactInfo device = deviceWithMac(mac);
        device.first_account = account;
        m_window->onContactDialogAddFinished(device);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<User> m_user;
    std::unique_ptr<DBOperator> m_dbOperator;
    std::unique_ptr<DataMgr> m_dataMgr;
    std::unique_ptr<MainWindow> m_window;
    int m_slice = -1; ///< of the window's next start: every job is over when its call returns
};
