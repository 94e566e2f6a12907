// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/MUsersViewController.h"
#include "app/TamberContainerViewControllerDelegate.h"
#include "ui/NavigationController.h"

#include <memory>

namespace cvtamber {

struct AppContext;
class TamberPickUserOrFolderViewController;

// Hears what was picked, once, and dismisses the picker.
class TamberPickUserOrFolderViewControllerDelegate
{
public:
    TamberPickUserOrFolderViewControllerDelegate() = default;
    TamberPickUserOrFolderViewControllerDelegate(const TamberPickUserOrFolderViewControllerDelegate &) =
        delete;
    TamberPickUserOrFolderViewControllerDelegate &
    operator=(const TamberPickUserOrFolderViewControllerDelegate &) = delete;
    virtual ~TamberPickUserOrFolderViewControllerDelegate() = default;

    // Null after Cancel on the list of users.
    virtual void tamberPickUserOrFolderViewControllerUserPicked(TamberPickUserOrFolderViewController &picker,
                                                                const std::shared_ptr<TamberUser> &user) = 0;
    // Null after Cancel on the list of folders.
    virtual void
    tamberPickUserOrFolderViewControllerFolderPicked(TamberPickUserOrFolderViewController &picker,
                                                     const std::shared_ptr<TamberDataFolder> &folder) = 0;
};

// Asks for an active user and, if wanted, then for one of the user's folders or the user itself. It never dismisses
// itself.
//
// The picker owns its steps, as their navigation; they know it weakly.
// Thread: main thread. Owner: whoever presents it.
class TamberPickUserOrFolderViewController final : public NavigationController,
                                                   public MUsersViewControllerDelegate,
                                                   public TamberContainerViewControllerDelegate
{
    Q_OBJECT

public:
    enum class Mode : int { PickUser = 0, PickUserThenFolder = 1 };

    // The context outlives the picker.
    explicit TamberPickUserOrFolderViewController(AppContext &context);
    ~TamberPickUserOrFolderViewController() override;

    Mode mode() const { return _mode; }
    // Before the picker is presented; PickUser at first.
    void setMode(Mode mode) { _mode = mode; }
    void setPickDelegate(const std::weak_ptr<TamberPickUserOrFolderViewControllerDelegate> &delegate)
    {
        _pickDelegate = delegate;
    }
    // Of the button that picks the user itself, in the folder step.
    const QString &actionButtonTitle() const { return _actionButtonTitle; }
    void setActionButtonTitle(const QString &title) { _actionButtonTitle = title; }

    void usersViewControllerUserPicked(MUsersViewController &controller,
                                       const std::shared_ptr<TamberUser> &user) override;
    void tamberContainerViewControllerUserPicked(TamberContainerViewController &controller,
                                                 const std::shared_ptr<TamberUser> &user) override;
    void tamberContainerViewControllerFolderPicked(TamberContainerViewController &controller,
                                                   const std::shared_ptr<TamberDataFolder> &folder) override;

protected:
    void viewDidLoad() override;

private:
    using PickDelegate = TamberPickUserOrFolderViewControllerDelegate;

    std::shared_ptr<TamberPickUserOrFolderViewController> self();
    void pushContainer(const std::shared_ptr<TamberUser> &user);
    // The delegate for the first answer, null after it.
    std::shared_ptr<PickDelegate> takePickDelegate();
    void answerUser(const std::shared_ptr<TamberUser> &user);

    AppContext &_context;
    Mode _mode = Mode::PickUser;
    std::weak_ptr<PickDelegate> _pickDelegate;
    QString _actionButtonTitle;
};

} // namespace cvtamber
