// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MEditUserDialog.h"

#include "app/AppContext.h"
#include "app/MGlobals.h"
#include "app/UserTexts.h"
#include "base/VisibleText.h"
#include "store/TamberStorage.h"
#include "store/TamberUser.h"
#include "ui/Texts.h"

#include <utility>

namespace cvtamber {

MEditUserDialog::MEditUserDialog(AppContext &context)
    : ViewController(context.presenter)
    , _context(context)
{}

MEditUserDialog::~MEditUserDialog() = default;

// Texts

QString MEditUserDialog::firstNameLabel() const
{
    return localized("1.4");
}

QString MEditUserDialog::firstNamePlaceholder() const
{
    return localized("1.5");
}

QString MEditUserDialog::lastNameLabel() const
{
    return localized("1.6");
}

QString MEditUserDialog::lastNamePlaceholder() const
{
    return localized("1.7");
}

QString MEditUserDialog::displayNameLabel() const
{
    return localized("1.8");
}

QString MEditUserDialog::displayNamePlaceholder() const
{
    return localized("1.9");
}

QString MEditUserDialog::deleteTitle() const
{
    return localized("Delete");
}

QString MEditUserDialog::moveTitle() const
{
    const auto &storage = MGlobals::tamberStorage();
    const bool isActive = _user && storage && _user->users() == storage->activeUsers();
    return localized(isActive ? "1.10" : "1.11");
}

// The form

void MEditUserDialog::viewDidLoad()
{
    setTitle(localized("1.3"));
    setLeftItems({{BarButtonItem::Kind::Cancel, localized("Cancel"), true, [this] { cancelClicked(); }}});
    setRightItems(
        {{BarButtonItem::Kind::Save, localized("Save"), _isSaveEnabled, [this] { saveClicked(); }}});
}

void MEditUserDialog::setUser(const std::shared_ptr<TamberUser> &user)
{
    _user = user;
    _firstName = user ? user->firstName() : QString();
    _lastName = user ? user->lastName() : QString();
    _displayName = user ? user->displayName() : QString();
    emit userChanged();
    emit namesChanged();
}

void MEditUserDialog::firstNameTyped(const QString &text)
{
    nameTyped(_firstName, text);
}

void MEditUserDialog::lastNameTyped(const QString &text)
{
    nameTyped(_lastName, text);
}

void MEditUserDialog::displayNameTyped(const QString &text)
{
    nameTyped(_displayName, text);
}

void MEditUserDialog::nameTyped(QString &name, const QString &text)
{
    if (!isInUse() || name == text)
        return;
    name = text;
    textWasChanged();
    emit namesChanged();
}

void MEditUserDialog::textWasChanged()
{
    const bool enabled = !(isBlank(_firstName) && isBlank(_lastName) && isBlank(_displayName));
    if (enabled == _isSaveEnabled)
        return;
    _isSaveEnabled = enabled;
    setItemEnabled(BarButtonItem::Kind::Save, enabled);
    emit saveEnabledChanged();
}

// How it ends

std::shared_ptr<MeditUserDialogDelegateProtocol> MEditUserDialog::takeDelegate()
{
    return std::exchange(_delegate, {}).lock();
}

void MEditUserDialog::writeNames()
{
    // The record of a user who has gone would be written into a directory that nobody lists.
    if (!isListedUser(_user)) {
        _context.presenter.showNotice(localized("This user is not there any more."));
        return;
    }
    _user->setFirstName(_firstName);
    _user->setLastName(_lastName);
    _user->setDisplayName(_displayName);
}

void MEditUserDialog::saveClicked()
{
    if (!takesActions() || !_isSaveEnabled)
        return;
    const auto delegate = takeDelegate();
    if (!delegate)
        return;
    for (QString *name : {&_firstName, &_lastName, &_displayName}) {
        if (isBlank(*name))
            name->clear();
    }
    if (_user)
        writeNames();
    delegate->userDialogDoneWithFirstName(_firstName, _lastName, _displayName);
}

void MEditUserDialog::cancelClicked()
{
    if (!takesActions())
        return;
    if (const auto delegate = takeDelegate())
        delegate->userDialogCancelled();
}

void MEditUserDialog::moveClicked()
{
    if (!takesActions() || !_user)
        return;
    if (const auto delegate = takeDelegate())
        delegate->userDialogDoneWithResult(MeditUserDialogDelegateProtocol::MoveResult);
}

void MEditUserDialog::deleteClicked()
{
    if (!takesActions() || !_user)
        return;
    AlertView alert;
    alert.title = localized("1.1");
    alert.message = localizedFormat("1.2", userFullDescription(*_user));
    alert.buttons = {localized("Cancel"), localized("Delete")};
    alert.cancelButtonIndex = 0;
    alert.didDismiss = [this](const AlertView &asked, int buttonIndex, const QString &) {
        if (buttonIndex == asked.cancelButtonIndex)
            return;
        if (const auto delegate = takeDelegate())
            delegate->userDialogDoneWithResult(MeditUserDialogDelegateProtocol::DeleteResult);
    };
    showAlert(std::move(alert));
}

} // namespace cvtamber
