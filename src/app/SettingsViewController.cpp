// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsViewController.h"

#include "base/Locations.h"
#include "base/UserDefaults.h"
#include "ui/Texts.h"

#include <QDir>
#include <QFileInfo>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

const QString CloudOn = QStringLiteral("iCloudOn");
const QString CloudFolder = QStringLiteral("cloudFolder");
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
    if (!_defaults.boolValue(CloudOn))
        return Status::Local;
    const QFileInfo folder(cloudFolder());
    if (cloudFolder().isEmpty())
        return Status::NothingChosen;
    if (!folder.isDir())
        return Status::Missing;
    return folder.isWritable() ? Status::Cloud : Status::NotWritable;
}

QString SettingsViewController::statusText() const
{
    switch (status()) {
    case Status::Local:
        return localized("Documents are kept on this computer.");
    case Status::NothingChosen:
        return localized("A cloud folder has not been chosen yet. Choose one, or turn the switch off to go "
                         "back to the documents on this computer.");
    case Status::Missing:
        return localized("The cloud folder is not there. Start the program that keeps it up to date, choose "
                         "another folder, or turn the switch off to go back to the documents on this "
                         "computer.");
    case Status::NotWritable:
        return localized("Nothing can be written to the cloud folder. Choose another folder, or turn the "
                         "switch off to go back to the documents on this computer.");
    case Status::Cloud:
        break;
    }
    return localized("Documents are kept in the cloud folder. CVTamber goes over to it when its window comes "
                     "to the front.");
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
        cell.detail = cloudFolder().isEmpty() ? localized("Not chosen yet") : cloudFolder();
        cell.accessory = TableCell::Accessory::Disclosure;
    } else {
        cell.style = TableCell::Style::Subtitle;
        cell.detail = statusText();
        cell.canHighlight = false;
        cell.accessibleName = cell.detail;
    }
    return cell;
}

void SettingsViewController::controlActivated(IndexPath, int control, bool on)
{
    if (control != CloudSwitch || on == _defaults.boolValue(CloudOn))
        return;
    _defaults.setValue(CloudOn, on);
    reloadRow({0, SwitchRow});
    reloadRow({0, StatusRow});
    presenter().announce(statusText());
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
        presenter().showNotice(localizedFormat("%@ is not a folder.", typed.trimmed()));
        return;
    }
    const QString own = QFileInfo(_locations.documentsFolder()).canonicalFilePath();
    const QString chosen = QFileInfo(path).canonicalFilePath();
    if (liesIn(chosen, own) || liesIn(own, chosen)) {
        presenter().showNotice(
            localized("This folder holds the documents of this computer. Choose another one."));
        return;
    }
    _defaults.setValue(CloudFolder, path);
    reloadRow({0, FolderRow});
    reloadRow({0, StatusRow});
    presenter().announce(statusText());
}

} // namespace cvtamber
