#include "app/Appearance.h"

#include <QApplication>
#include <QFile>
#include <QFont>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace {

const QColor windowColor(0xf4, 0xf6, 0xf9);
const QColor alternateColor(0xfb, 0xfc, 0xfe);
const QColor textColor(0x1f, 0x2d, 0x3d);
const QColor disabledColor(0x76, 0x85, 0x9a);
const QColor placeholderColor(0x68, 0x77, 0x89);
const QColor accentColor(0x1f, 0x6f, 0xeb);
const QColor tipColor(0x24, 0x34, 0x4a);

/// The colours that the style sheet leaves to the palette: a text colour for line edits in the
/// sheet would also colour their placeholders, too faintly to read. The palette also overrides a
/// dark desktop.
QPalette lightPalette()
{
    QPalette palette = QApplication::style()->standardPalette();
    palette.setColor(QPalette::Window, windowColor);
    palette.setColor(QPalette::Button, windowColor);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, alternateColor);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, textColor);
        palette.setColor(QPalette::Disabled, role, disabledColor);
    }
    palette.setColor(QPalette::PlaceholderText, placeholderColor);
    palette.setColor(QPalette::Highlight, accentColor);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, accentColor);
    palette.setColor(QPalette::ToolTipBase, tipColor);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

} // namespace

void applyAppearance(QApplication &application)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(lightPalette());
    QFile sheet(QStringLiteral("./resource/style.qss"));
    if (sheet.open(QIODevice::ReadOnly | QIODevice::Text))
        application.setStyleSheet(QString::fromUtf8(sheet.readAll()));
}

void applyChineseFont()
{
    QFont font = QApplication::font();
    font.setFamilies({QStringLiteral("Microsoft YaHei UI"), QStringLiteral("Noto Sans CJK SC"),
                      QStringLiteral("Source Han Sans SC"), QStringLiteral("WenQuanYi Micro Hei"),
                      font.family()});
    QApplication::setFont(font);
}
