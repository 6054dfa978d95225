#include "TextBlock.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr int width = 300;
constexpr int height = 60;

/// Drawn by a thread of its own, as each keeps the texts that it has broken.
QImage drawn(const QString& text, Qt::Alignment alignment)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.fill(Qt::white);
    std::thread([&] {
        QPainter painter(&picture);
        TextBlock { text, QFont(), 0 }.draw(painter, QRectF(0, 0, width, height), alignment);
    }).join();
    return picture;
}

} // namespace

TEST(Texts, RunAsTheirOwnLettersDoInAMirroredApplication)
{
    for (const Qt::Alignment alignment : { Qt::AlignLeft, Qt::AlignRight }) {
        for (const char* text : { "+1 202 555 0143.", "Full stop.", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D 12." }) {
            const QImage usual = drawn(QString::fromUtf8(text), alignment);
            QGuiApplication::setLayoutDirection(Qt::RightToLeft);
            EXPECT_EQ(drawn(QString::fromUtf8(text), alignment), usual) << text;
            QGuiApplication::setLayoutDirection(Qt::LayoutDirectionAuto);
        }
    }
}
