// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/ViewController.h"

#include <memory>

namespace cvtamber {

struct AppContext;
class TamberUser;

// Hears how a user dialog ended, once; it dismisses the dialog.
class MeditUserDialogDelegateProtocol
{
public:
    enum Result : int { MoveResult = 0, DeleteResult = 1 };

    MeditUserDialogDelegateProtocol() = default;
    MeditUserDialogDelegateProtocol(const MeditUserDialogDelegateProtocol &) = delete;
    MeditUserDialogDelegateProtocol &operator=(const MeditUserDialogDelegateProtocol &) = delete;
    virtual ~MeditUserDialogDelegateProtocol() = default;

    virtual void userDialogCancelled() = 0;
    // A user that was edited has the names already.
    virtual void userDialogDoneWithFirstName(const QString &firstName, const QString &lastName,
                                             const QString &displayName) = 0;
    virtual void userDialogDoneWithResult(int result) = 0;
};

// The form for a user's names, of a new user or of one that exists; the latter can also be moved and deleted here.
//
// Save is enabled once a person has typed, unless all three fields are empty; filling the fields from the user is no
// typing. Cancel and Save are bar buttons. Scrolling a field out from under the keyboard is the view's business.
// Thread: main thread. Owner: shared, see ViewController.
class MEditUserDialog final : public cvtamber::ViewController
{
    Q_OBJECT
    // The fields, from the top: label, text, and what an empty field shows. The view fills its fields from the texts and
    // tells what a person types through firstNameTyped and its siblings.
    Q_PROPERTY(QString firstNameLabel READ firstNameLabel CONSTANT)
    Q_PROPERTY(QString firstName READ firstName NOTIFY namesChanged)
    Q_PROPERTY(QString firstNamePlaceholder READ firstNamePlaceholder CONSTANT)
    Q_PROPERTY(QString lastNameLabel READ lastNameLabel CONSTANT)
    Q_PROPERTY(QString lastName READ lastName NOTIFY namesChanged)
    Q_PROPERTY(QString lastNamePlaceholder READ lastNamePlaceholder CONSTANT)
    Q_PROPERTY(QString displayNameLabel READ displayNameLabel CONSTANT)
    Q_PROPERTY(QString displayName READ displayName NOTIFY namesChanged)
    Q_PROPERTY(QString displayNamePlaceholder READ displayNamePlaceholder CONSTANT)
    // The two buttons under the fields; hidden for a new user.
    Q_PROPERTY(bool moveVisible READ isMoveVisible NOTIFY userChanged)
    Q_PROPERTY(QString moveTitle READ moveTitle NOTIFY userChanged)
    Q_PROPERTY(bool deleteVisible READ isDeleteVisible NOTIFY userChanged)
    Q_PROPERTY(QString deleteTitle READ deleteTitle CONSTANT)
    // The Save bar button's state, for the Return key in a field.
    Q_PROPERTY(bool saveEnabled READ isSaveEnabled NOTIFY saveEnabledChanged)

public:
    // The context outlives the dialog.
    explicit MEditUserDialog(AppContext &context);
    ~MEditUserDialog() override;

    void setDelegate(const std::weak_ptr<MeditUserDialogDelegateProtocol> &delegate) { _delegate = delegate; }
    // Null when a user is added.
    const std::shared_ptr<TamberUser> &user() const { return _user; }
    // Fills the fields.
    void setUser(const std::shared_ptr<TamberUser> &user);

    QString firstNameLabel() const;
    QString firstNamePlaceholder() const;
    QString lastNameLabel() const;
    QString lastNamePlaceholder() const;
    QString displayNameLabel() const;
    QString displayNamePlaceholder() const;
    const QString &firstName() const { return _firstName; }
    const QString &lastName() const { return _lastName; }
    const QString &displayName() const { return _displayName; }
    bool isMoveVisible() const { return _user != nullptr; }
    QString moveTitle() const;
    bool isDeleteVisible() const { return _user != nullptr; }
    QString deleteTitle() const;
    bool isSaveEnabled() const { return _isSaveEnabled; }

    // What a person does, through the view. Typing gives the whole text of the field.
    Q_INVOKABLE void firstNameTyped(const QString &text);
    Q_INVOKABLE void lastNameTyped(const QString &text);
    Q_INVOKABLE void displayNameTyped(const QString &text);
    // Nothing while Save is not enabled.
    Q_INVOKABLE void saveClicked();
    Q_INVOKABLE void cancelClicked();
    Q_INVOKABLE void moveClicked();
    Q_INVOKABLE void deleteClicked();

signals:
    // By setUser and by typing; a text that a view shows already is no change for it.
    void namesChanged();
    void userChanged();
    void saveEnabledChanged();

protected:
    void viewDidLoad() override;

private:
    void nameTyped(QString &name, const QString &text);
    void textWasChanged();
    // The delegate, the first time: a dialog ends once.
    std::shared_ptr<MeditUserDialogDelegateProtocol> takeDelegate();
    void writeNames();

    AppContext &_context;
    std::weak_ptr<MeditUserDialogDelegateProtocol> _delegate;
    std::shared_ptr<TamberUser> _user;
    QString _firstName;
    QString _lastName;
    QString _displayName;
    bool _isSaveEnabled = false;
};

} // namespace cvtamber
