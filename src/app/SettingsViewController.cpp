// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsViewController.h"

#include "app/StoreSwitch.h"
#include "base/Locations.h"
#include "base/UserDefaults.h"
#include "base/VisibleText.h"
#include "store/CloudContainer.h"
#include "ui/Texts.h"

#include <QDir>
#include <QFileInfo>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString CloudFolder = CloudFolderDefault.toString();
const QString CloudStore = CloudStoreDefault.toString();
constexpr int ChooseButton = 1;

// As a person types it: blanks around it, "~" for their own folder.
QString absolutePath(const QString &typed)
{
    const QString path = typed.trimmed();
    if (path == u"~" || path.startsWith(u"~/"_s))
        return QDir::cleanPath(QDir::homePath() + path.mid(1));
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
}

bool liesIn(const QString &path, const QString &folder)
{
    return path == folder || path.startsWith(QString(folder % u'/'));
}

} // namespace

SettingsViewController::SettingsViewController(Presenter &presenter, UserDefaults &defaults,
                                               Locations &locations)
    : TableViewController(presenter)
    , _defaults(defaults)
    , _locations(locations)
{
    setTitle(localized("Settings"));
}

void SettingsViewController::viewDidLoad()
{
    _defaults.synchronize();
}

void SettingsViewController::viewWillAppear()
{
    refresh();
}

void SettingsViewController::refresh()
{
    _defaults.synchronize();
    reloadData();
}

int SettingsViewController::numberOfRows(int) const
{
    return RowCount;
}

QString SettingsViewController::titleForHeader(int) const
{
    return localized("Documents");
}

quintptr SettingsViewController::rowIdentity(IndexPath path) const
{
    return static_cast<quintptr>(path.row) + 1;
}

QString SettingsViewController::cloudFolder() const
{
    return _defaults.value(CloudFolder).toString();
}

SettingsViewController::Status SettingsViewController::status() const
{
    const auto isUsable = [](const QFileInfo &folder) { return folder.isDir() && folder.isWritable(); };
    if (!_defaults.boolValue(CloudOn))
        return isUsable(QFileInfo(_locations.documentsFolder())) ? Status::Local : Status::LocalUnusable;
    if (cloudFolder().isEmpty())
        return Status::NothingChosen;
    const QFileInfo folder(cloudFolder());
    const bool hasHeldStore = _defaults.value(CloudStore).toString() == cloudFolder();
    if (!folder.isDir() ||
        (hasHeldStore && !QFileInfo::exists(cloudFolder() % u"/Documents/" % StoreMarkName)))
        return Status::Missing;
    return isUsable(folder) ? Status::Cloud : Status::NotWritable;
}

QString SettingsViewController::statusText() const
{
    switch (status()) {
    case Status::Local:
        return localized("Documents are kept on this computer.");
    case Status::LocalUnusable:
        return localizedFormat(
            "Documents cannot be kept on this computer, because nothing can be written to %@.",
            visibleText(_locations.documentsFolder()));
    case Status::NothingChosen:
        return localized("A cloud folder has not been chosen yet.");
    case Status::Missing:
        return localized("The cloud folder is not there.");
    case Status::NotWritable:
        return localized("Nothing can be written to the cloud folder.");
    case Status::Cloud:
        break;
    }
    return localized("Documents are kept in the cloud folder.");
}

QString SettingsViewController::adviceText() const
{
    switch (status()) {
    case Status::Local:
        return localized("A cloud folder lets you use them on other devices too.");
    case Status::LocalUnusable:
        return localized("Put that right, or keep the documents in a cloud folder.");
    case Status::Missing:
        return localized(
            "Start your cloud program, choose another folder, or turn the switch off to go back to the "
            "documents on this computer.");
    case Status::NothingChosen:
    case Status::NotWritable:
        return localized(
            "Choose a folder, or turn the switch off to go back to the documents on this computer.");
    case Status::Cloud:
        break;
    }
    return localized("CVTamber goes over to it when its window comes to the front.");
}

TableCell SettingsViewController::cellForRow(IndexPath path) const
{
    TableCell cell;
    if (path.row == SwitchRow) {
        cell.text = localized("Keep documents in the cloud");
        cell.canHighlight = false;
        CellControl control;
        control.id = CloudSwitch;
        control.kind = CellControl::Kind::Switch;
        control.accessibleName = cell.text;
        control.isOn = _defaults.boolValue(CloudOn);
        cell.controls = {control};
    } else if (path.row == FolderRow) {
        cell.style = TableCell::Style::Subtitle;
        cell.text = localized("Cloud folder");
        cell.detail = cloudFolder().isEmpty() ? localized("Not chosen yet") : visibleText(cloudFolder());
        cell.accessory = TableCell::Accessory::Disclosure;
    } else {
        cell.style = TableCell::Style::Centered;
        cell.text = path.row == StatusRow ? statusText() : adviceText();
        cell.canHighlight = false;
    }
    return cell;
}

void SettingsViewController::controlActivated(IndexPath, int control, bool on)
{
    if (control != CloudSwitch || on == _defaults.boolValue(CloudOn))
        return;
    _defaults.setValue(CloudOn, on);
    tellStatus();
}

void SettingsViewController::tellStatus()
{
    refresh();
    presenter().announce(statusText() % u' ' % adviceText());
}

void SettingsViewController::didSelectRow(IndexPath path)
{
    if (path.row == FolderRow)
        askForFolder();
}

void SettingsViewController::askForFolder()
{
    AlertView alert;
    alert.title = localized("Cloud folder");
    alert.message =
        localized("Which folder does your cloud program keep up to date? Type its whole path, for "
                  "example ~/Cloud.");
    alert.buttons = {localized("Cancel"), localized("Choose")};
    alert.cancelButtonIndex = 0;
    alert.textField = AlertTextField{cloudFolder(), true, true};
    const std::weak_ptr<ViewController> screen = weak_from_this();
    alert.didDismiss = [this, screen](const AlertView &, int button, const QString &text) {
        if (!screen.expired() && button == ChooseButton)
            chooseFolder(text);
    };
    showAlert(alert);
}

void SettingsViewController::chooseFolder(const QString &typed)
{
    const QString path = absolutePath(typed);
    if (path.isEmpty() || !QFileInfo(path).isDir()) {
        presenter().showNotice(localizedFormat("%@ is not a folder.", visibleText(typed.trimmed())));
        return;
    }
    const QString own = QFileInfo(_locations.documentsFolder()).canonicalFilePath();
    const QString chosen = QFileInfo(path).canonicalFilePath();
    if (liesIn(chosen, own) || liesIn(own, chosen)) {
        presenter().showNotice(
            localized("This folder holds the documents of this computer. Choose another one."));
        return;
    }
    // Whatever stands there now is what the person means.
    _defaults.setValue(CloudStore, QString());
    _defaults.setValue(CloudFolder, path);
    tellStatus();
}

} // namespace cvtamber
