#pragma once

#include "PictureHandle.h"
#include "UIKit/UIAlertController.h"

#include <QImage>
#include <QObject>
#include <QStringList>

class SettingsHost;

/// What stands above a page: a sheet of choices, an alert, the photo library or the share sheet.
class SheetModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The host makes the sheets.")
    Q_PROPERTY(Kind kind READ kind CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QStringList actions READ actions CONSTANT)
    Q_PROPERTY(QStringList photos READ photos CONSTANT)
    Q_PROPERTY(bool allowsEditing READ allowsEditing CONSTANT)
    Q_PROPERTY(PictureHandle picture READ picture CONSTANT)
    Q_PROPERTY(QString outcome READ outcome NOTIFY outcomeChanged)

public:
    enum class Kind { Actions, Alert, Photos, Share };
    Q_ENUM(Kind)

    SheetModel(std::shared_ptr<UIViewController> controller, QStringList photos, SettingsHost& host);

    const std::shared_ptr<UIViewController>& controller() const { return _controller; }
    Kind kind() const { return _kind; }
    QString title() const;
    QString message() const;
    QStringList actions() const;
    QStringList photos() const { return _photos; }
    bool allowsEditing() const;
    PictureHandle picture() const;
    /// What became of the last thing that was shared, in words; empty before.
    QString outcome() const { return _outcome; }

    Q_INVOKABLE bool isCancel(int action) const;
    Q_INVOKABLE bool isDestructive(int action) const;
    Q_INVOKABLE void choose(int action);
    /// Takes the sheet down as its cancel button would.
    Q_INVOKABLE void cancel();
    /// The user takes that picture of the library, as it is.
    Q_INVOKABLE void pickWhole(const QString& photo);
    void pick(const QImage& picture);

    Q_INVOKABLE void copy();
    Q_INVOKABLE void save();
    Q_INVOKABLE void mail();

signals:
    void outcomeChanged();

private:
    std::shared_ptr<UIAlertController> alert() const;
    std::shared_ptr<UIActivityViewController> activity() const;
    bool isUp() const;
    void setOutcome(const QString& outcome);

    std::shared_ptr<UIViewController> _controller;
    Kind _kind;
    QStringList _photos;
    SettingsHost& _host;
    QString _outcome;
};
