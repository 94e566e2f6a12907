// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/BarButtonItem.h"
#include "ui/Presenter.h"

#include <QList>
#include <QObject>

namespace cvtamber {

class NavigationController;
class TabBarController;

// One screen: what it is called, its bar buttons, its life, and what it presents.
//
// Life: made -> viewDidLoad (once, when it is first to be seen) -> viewWillAppear -> viewDidAppear ->
// viewWillDisappear -> viewDidDisappear -> viewWillAppear ... What covers a screen wholly makes it disappear (a
// form sheet covers on a phone, not on a tablet). The `did` calls come when the animation has finished.
//
//   present   old WillDisappear, new WillAppear | new DidAppear, old DidDisappear, completion
//   dismiss   old WillDisappear, new WillAppear | new DidAppear, old DidDisappear, completion
//   push, pop old WillDisappear, new WillAppear | old DidDisappear, new DidAppear
//
// One transition runs at a time. What is asked for meanwhile waits its turn; what it then finds decides what it does.
// A person's action on a screen that is not shown any more, is covered or is about to leave does nothing
// (takesActions()); on a screen whose cover is just going it waits until the cover has gone (perform()).
// Thread: main thread. Owner: shared: the navigation, the screen under it, whoever made it. Delegates of screens
// are strong or weak as each screen says.
class ViewController : public QObject, public std::enable_shared_from_this<ViewController>
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(QList<cvtamber::BarButtonItem> leftItems READ leftItems NOTIFY itemsChanged)
    Q_PROPERTY(QList<cvtamber::BarButtonItem> rightItems READ rightItems NOTIFY itemsChanged)
    Q_PROPERTY(QString detailHint READ detailHint CONSTANT)
    Q_PROPERTY(bool editing READ isEditing NOTIFY editingChanged)

public:
    using Completion = std::function<void()>;
    using Controller = std::shared_ptr<ViewController>;

    explicit ViewController(Presenter &presenter);
    ~ViewController() override;

    const QString &title() const { return _title; }
    void setTitle(const QString &title);
    const QList<BarButtonItem> &leftItems() const { return _leftItems; }
    const QList<BarButtonItem> &rightItems() const { return _rightItems; }
    void setLeftItems(const QList<BarButtonItem> &items);
    void setRightItems(const QList<BarButtonItem> &items);
    // Of the first item of that kind on either side.
    void setItemEnabled(BarButtonItem::Kind kind, bool enabled);
    // What a person reads beside this screen, the root of a navigation, while nothing stands there. A root without it fills a wide
    // window alone.
    const QString &detailHint() const { return _detailHint; }
    void setDetailHint(const QString &hint) { _detailHint = hint; }
    bool isEditing() const { return _isEditing; }
    virtual void setEditing(bool editing);
    // "Edit" and "Done": turns editing on and off.
    BarButtonItem editButtonItem();

    PresentationStyle modalPresentationStyle() const { return _presentationStyle; }
    void setModalPresentationStyle(PresentationStyle style) { _presentationStyle = style; }
    TransitionStyle modalTransitionStyle() const { return _transitionStyle; }
    void setModalTransitionStyle(TransitionStyle style) { _transitionStyle = style; }
    // Above this screen's outermost container. A screen that already presents one or stands in a container that does,
    // or that is not shown, presents nothing and drops the completion: `refused` runs in its place. Without one the person is
    // told, unless the screen has gone.
    void presentViewController(const Controller &controller, bool animated, Completion completion = {},
                               Completion refused = {});
    // Dismisses what this screen presents, or itself (its outermost container) when it presents nothing, with all that
    // stands above. Nothing to dismiss: the completion runs from the loop all the same. Asked twice it dismisses once.
    void dismissViewController(bool animated, Completion completion = {});
    // What this screen or one inside it presents or is waiting to present; until the end of its dismissal.
    Controller presentedViewController() const;
    // The screen that presented this one or its container.
    Controller presentingViewController() const;
    std::shared_ptr<NavigationController> navigationController() const;
    Presenter &presenter() const { return _presenter; }

    // The answer comes once, and not at all when this screen has been dismissed, popped or destroyed meanwhile.
    void showAlert(AlertView alert);
    void showActionSheet(ActionSheet sheet);

    bool isViewLoaded() const { return _isLoaded; }
    // Between viewWillAppear and viewDidDisappear, or covered by what it presents itself.
    bool isInUse() const;
    // Whether it was dismissed or popped, alone or with its container.
    bool hasGone() const;
    // Whether a person may act on it: seen, nothing above it, no transition waiting that will change it.
    bool takesActions() const;
    // Does what a person asks of this screen: now, if the screen takes actions. While what stands above the screen is going,
    // after that, since a screen reader tells the screen from the first moment: one action waits, further ones are dropped. Else
    // never.
    void perform(std::function<void()> action);

    // For containers of screens and for presenting; each forwards to the hooks below once per change. Others
    // leave them alone.
    void loadViewIfNeeded();
    virtual void beginAppearing();
    virtual void endAppearing();
    virtual void beginDisappearing();
    virtual void endDisappearing();

    // What a person does, through the view: the index is one of leftItems() or rightItems().
    Q_INVOKABLE void leftItemClicked(int index);
    Q_INVOKABLE void rightItemClicked(int index);

signals:
    void titleChanged();
    void itemsChanged();
    void editingChanged();

protected:
    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    virtual void viewDidDisappear() {}
    // This screen, the root of two columns, has something else beside it than before, or nothing any more.
    virtual void detailDidChange() {}
    // Once, after viewDidLoad.
    virtual void viewLoaded() {}

private:
    friend class NavigationController;
    friend class TabBarController;
    friend class ModalTransition;
    enum class Appearance { Hidden, Appearing, Shown, Disappearing };

    bool isVisible() const { return _appearance != Appearance::Hidden; }
    bool isSeen() const { return _appearance == Appearance::Appearing || _appearance == Appearance::Shown; }
    // The container that this screen stands in, or null.
    Controller parent() const { return _parent.lock(); }
    const ViewController &outermost() const;
    bool isInside(const ViewController &container) const;
    // Whether there was one.
    bool updateEditItems();
    // By value: the action may replace the items.
    void itemClicked(QList<BarButtonItem> items, int index);
    std::function<std::shared_ptr<const void>()> asker() const;
    void refuseToPresent(const Completion &refused) const;

    Presenter &_presenter;
    QString _title;
    QString _detailHint;
    QList<BarButtonItem> _leftItems;
    QList<BarButtonItem> _rightItems;
    bool _isEditing = false;
    bool _isLoaded = false;
    Appearance _appearance = Appearance::Hidden;
    PresentationStyle _presentationStyle = PresentationStyle::FullScreen;
    TransitionStyle _transitionStyle = TransitionStyle::CoverVertical;
    std::weak_ptr<ViewController> _parent;
    std::weak_ptr<NavigationController> _navigation;
    // Of an outermost container: what stands directly above and below it.
    Controller _above;
    std::weak_ptr<ViewController> _below;
    // Who asked for it to be presented, and who is still to be presented by this screen.
    std::weak_ptr<ViewController> _presenting;
    std::weak_ptr<ViewController> _awaited;
    bool _covers = false;
    bool _isLeaving = false;
    bool _hasGone = false;
    bool _hasWaitingAction = false;
};

} // namespace cvtamber
