#pragma once

#include "Phone/Result.h"

#include <QString>

class SettingsWindow;

/// Writes a PNG of every page and every sheet that the phone has, light and dark, into a folder, by working the pages
/// as a user does.
class PictureBook {
public:
    PictureBook(SettingsWindow& window, QString folder)
        : _window(window)
        , _folder(std::move(folder))
    {
    }

    /// Fails when a picture cannot be written.
    Result<void> write();

private:
    void writeAll();
    void writePage(const QString& name);
    int heightOfPage() const;
    void writeSheets();
    /// False when the page on top has no such row, or the row opens no page.
    bool open(const QString& identifier);
    bool tap(const QString& identifier);
    /// Turns the switch in the page's first row on, so that the rows below it are there.
    void turnOnFirst();
    void takeCropPicture();
    void takePicture(const QString& name);
    void settle();

    SettingsWindow& _window;
    QString _folder;
    /// The first failure counts.
    Result<void> _written;
};
