#pragma once

#include "widgets/Modal.h"

#include <QPushButton>
#include <QSet>
#include <QStringList>

#include <functional>

struct SeenBox
{
    QString title;
    QString text;          ///< of a message box
    QSet<QString> buttons; ///< in no order: that is the desktop's choice
    int icon = QMessageBox::NoIcon;
};

/// Stands for the user of every test: remembers each modal box and presses a button of it.
class User
{
public:
    User()
    {
        Modal::setRunner([this](QDialog &dialog) { return answer(dialog); });
    }
    ~User() { Modal::setRunner({}); }
    User(const User &) = delete;
    User &operator=(const User &) = delete;

    /// The titles of the boxes since the last call.
    QStringList takeTitles()
    {
        QStringList titles;
        for (const SeenBox &box : qAsConst(boxes))
            titles.append(box.title);
        boxes.clear();
        return titles;
    }

    /// "title: text" of each box since the last call, one a line.
    QString told()
    {
        QStringList lines;
        for (const SeenBox &box : qAsConst(boxes))
            lines.append(box.title + QLatin1String(": ") + box.text);
        boxes.clear();
        return lines.join(QLatin1Char('\n'));
    }

    QList<SeenBox> boxes;
    /// Buttons to press in turn, the last one again and again. Without any, a box is closed.
    QStringList answers;
    std::function<void()> meanwhile; ///< happens while each box is open

private:
    int answer(QDialog &dialog)
    {
        const auto *const box = qobject_cast<QMessageBox *>(&dialog);
        SeenBox seen{dialog.windowTitle(), box ? box->text() : QString(), {}};
        seen.icon = box ? box->icon() : seen.icon;
        const QString wanted = answers.size() > 1 ? answers.takeFirst() : answers.value(0);
        QPushButton *pressed = nullptr;
        const auto buttons = dialog.findChildren<QPushButton *>();
        for (QPushButton *const button : buttons) {
            const QString text = button->text().remove(QLatin1Char('&'));
            seen.buttons.insert(text);
            if (text == wanted)
                pressed = button;
        }
        boxes.append(seen);
        if (meanwhile)
            meanwhile();
        if (pressed)
            pressed->click();
        return dialog.result();
    }
};
