#include "SheetModel.h"

#include "Foundation/NSString.h"
#include "Phone/Phone.h"
#include "Picture.h"
#include "SettingsHost.h"
#include "libtandem/TDProduct.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>
#include <QStandardPaths>

namespace {

/// The picture that a mail carries, while it is written.
constexpr const char* outboxPicture = "Pairo.png";
constexpr int mostCopies = 1000;
constexpr const char* noMailProgram = QT_TRANSLATE_NOOP("SheetModel", "No mail program could be reached.");

SheetModel::Kind kindOf(const UIViewController& controller)
{
    if (const auto* alert = dynamic_cast<const UIAlertController*>(&controller))
        return alert->preferredStyle() == UIAlertControllerStyle::Alert ? SheetModel::Kind::Alert
                                                                        : SheetModel::Kind::Actions;
    return dynamic_cast<const UIImagePickerController*>(&controller) ? SheetModel::Kind::Photos
                                                                     : SheetModel::Kind::Share;
}

/// "Pairo.png", or "Pairo 2.png" and so on where that is taken; empty when there is no place left.
QString freeName(const QDir& folder, const QString& suffix)
{
    for (int copy = 1; copy < mostCopies; ++copy) {
        const QString name = copy == 1 ? QStringLiteral("Pairo.%1").arg(suffix)
                                       : QStringLiteral("Pairo %1.%2").arg(QString::number(copy), suffix);
        if (!folder.exists(name))
            return folder.filePath(name);
    }
    return {};
}

} // namespace

SheetModel::SheetModel(std::shared_ptr<UIViewController> controller, QStringList photos, SettingsHost& host)
    : _controller(std::move(controller))
    , _kind(kindOf(*_controller))
    , _photos(std::move(photos))
    , _host(host)
{
}

std::shared_ptr<UIAlertController> SheetModel::alert() const
{
    return std::dynamic_pointer_cast<UIAlertController>(_controller);
}

std::shared_ptr<UIActivityViewController> SheetModel::activity() const
{
    return std::dynamic_pointer_cast<UIActivityViewController>(_controller);
}

bool SheetModel::isUp() const
{
    return _controller->presentingViewController() != nullptr;
}

QString SheetModel::title() const
{
    return QString::fromStdString(_controller->title());
}

QString SheetModel::message() const
{
    if (const auto question = alert())
        return QString::fromStdString(question->message());
    return activity() ? QString::fromStdString(activity()->message()) : QString();
}

QStringList SheetModel::actions() const
{
    QStringList titles;
    if (const auto question = alert()) {
        for (const UIAlertAction& action : question->actions())
            titles.push_back(QString::fromStdString(action.title));
    }
    return titles;
}

bool SheetModel::allowsEditing() const
{
    const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(_controller);
    return picker && picker->allowsEditing();
}

PictureHandle SheetModel::picture() const
{
    return PictureHandle(activity() ? activity()->image() : nullptr);
}

bool SheetModel::isCancel(int action) const
{
    return alert() && alert()->actions().at(static_cast<std::size_t>(action)).style == UIAlertActionStyle::Cancel;
}

bool SheetModel::isDestructive(int action) const
{
    return alert() && alert()->actions().at(static_cast<std::size_t>(action)).style == UIAlertActionStyle::Destructive;
}

void SheetModel::choose(int action)
{
    if (alert() && isUp() && action >= 0)
        _host.turn([&] { alert()->chooseAction(static_cast<std::size_t>(action)); });
}

void SheetModel::cancel()
{
    if (!isUp())
        return;
    if (const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(_controller)) {
        _host.turn([&] { picker->cancel(); });
        return;
    }
    for (int i = 0; i < actions().size(); ++i) {
        if (isCancel(i))
            return choose(i);
    }
    _host.turn([this] { _controller->dismissViewControllerAnimated_completion(true, nullptr); });
}

void SheetModel::pickWhole(const QString& photo)
{
    pick(_host.photo(photo));
}

void SheetModel::pick(const QImage& picture)
{
    const auto picker = std::dynamic_pointer_cast<UIImagePickerController>(_controller);
    if (picker && isUp() && !picture.isNull())
        _host.turn([&] { picker->finishPickingImage(pictureOf(picture)); });
}

void SheetModel::copy()
{
    auto* content = new QMimeData;
    content->setText(message());
    if (activity() && activity()->image())
        content->setImageData(imageOf(*activity()->image()));
    QGuiApplication::clipboard()->setMimeData(content);
    setOutcome(tr("Copied"));
}

void SheetModel::save()
{
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    const auto png = activity() ? UIImagePNGRepresentation(activity()->image()) : std::nullopt;
    const QString name =
        png && folder.mkpath(QStringLiteral(".")) ? freeName(folder, QStringLiteral("png")) : QString();
    QFile file(name);
    const bool saved = !name.isEmpty() && file.open(QIODevice::WriteOnly)
        && file.write(reinterpret_cast<const char*>(png->data()), static_cast<qint64>(png->size()))
            == static_cast<qint64>(png->size())
        && file.flush();
    setOutcome(saved ? tr("Saved as %1").arg(QDir::toNativeSeparators(name)) : tr("The picture could not be saved."));
}

void SheetModel::mail()
{
    const Phone& phone = Phone::current();
    MailDraft draft { "", "", message().toStdString(), {} };
    draft.onFailure = [sheet = QPointer(this)] {
        if (sheet)
            sheet->setOutcome(tr(noMailProgram));
    };
    const auto png = activity() ? UIImagePNGRepresentation(activity()->image()) : std::nullopt;
    const std::string outbox = TDProduct::cacheDirectory();
    const std::string picture = stringByAppendingPathComponent(outbox, outboxPicture);
    if (png && phone.files && phone.files->createDirectory(outbox) && phone.files->replace(picture, *png))
        draft.attachments.push_back(picture);
    const bool composed = phone.mail && phone.mail->compose(draft);
    setOutcome(composed ? tr("Handed to the mail program") : tr(noMailProgram));
}

void SheetModel::setOutcome(const QString& outcome)
{
    _outcome = outcome;
    emit outcomeChanged();
}
