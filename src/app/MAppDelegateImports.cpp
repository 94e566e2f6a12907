// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MAppDelegate.h"

#include "app/MGlobals.h"
#include "app/StoreNotices.h"
#include "app/TextImport.h"
#include "base/UserDefaults.h"
#include "base/VisibleText.h"
#include "store/FileCoordinator.h"
#include "store/StoreDisk.h"
#include "store/StoreNames.h"
#include "store/TamberUser.h"
#include "ui/NavigationController.h"
#include "ui/TabBarController.h"
#include "ui/Texts.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

#define CVTAMBER_HERE __func__, __LINE__

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// How often it is looked whether what covers the tabs has gone, while a file waits.
constexpr std::chrono::seconds PresentationRetry{1};
// More sentences in one notice than these nobody reads.
constexpr qsizetype MostRefusalsTold = 3;

struct SwitchOutcome
{
    int tag;
    int button;
    const char *key;
    bool value;
    const char *message;
};

constexpr SwitchOutcome SwitchOutcomes[] = {
    {0, 0, "prev_iCloudOn", true, "Files moved to iCloud"},
    {0, 1, "prev_iCloudOn", true, "Files copied to iCloud"},
    {0, 2, "iCloudOn", false, "iCloud is still disabled"},
    {1, 0, "prev_iCloudOn", false, "Files moved to local storage"},
    {1, 1, "prev_iCloudOn", false, "Files copied to local storage"},
    {1, 2, "iCloudOn", true, "iCloud is still enabled"},
};

QString whyNotImported(const QString &name, const ImportedText &import)
{
    switch (import.outcome) {
    case ImportedText::Outcome::TooLarge:
        return localizedFormat("%@ is larger than 5 MB and was not opened.", name);
    case ImportedText::Outcome::NotText:
        return localizedFormat("%@ does not hold text that can be read.", name);
    default:
        return withReason(localizedFormat("%@ could not be opened.", name), import.why);
    }
}

} // namespace

void MAppDelegate::handOver(const QStringList &paths, const QStringList &others)
{
    for (const QString &other : others)
        _refusals.append(
            localizedFormat("%@ is not on this computer and was not opened.", visibleText(other)));
    _inbox.handOver(paths);
    tellRefusals();
}

// A notice takes the place of the one before it.
void MAppDelegate::tellRefusals()
{
    if (_refusals.isEmpty() || _inbox.isCopying())
        return;
    QStringList told = std::exchange(_refusals, {});
    if (const qsizetype more = told.size() - MostRefusalsTold; more > 0)
        told = told.first(MostRefusalsTold)
               << localizedFormat("%@ more could not be opened.", QString::number(more));
    _services.presenter.showNotice(told.join(u' '));
}

bool MAppDelegate::applicationOpenURL(const FileURL &url, const QString &sourceApplication)
{
    log(CVTAMBER_HERE, "info", loggedURL(url) % u' ' % sourceApplication);
    if (_tabController)
        importFile(url);
    else
        _docToOpenURL = url;
    return true;
}

void MAppDelegate::importFile(const FileURL &url)
{
    log(CVTAMBER_HERE, "debug", u"-(void)importFile:"_s % loggedURL(url));
    _imports.push_back(url);
    // Those that come behind another one wait for it without a word.
    const auto tabs = MGlobals::tabBarController();
    if (_imports.size() == 1 && tabs && !mayPresent(*tabs))
        _services.presenter.showNotice(localizedFormat("%@ is waiting. It opens when this is closed.",
                                                       visibleText(url.lastPathComponent())));
    presentImports();
}

// An answer may open something, which goes before.
bool MAppDelegate::mayPresent(const TabBarController &tabs) const
{
    return !tabs.presentedViewController() && !_services.presenter.isAsking();
}

// The first one that waits is read when nothing is above the tabs, and waits on until its editor is there: what is
// presented may be refused.
void MAppDelegate::presentImports()
{
    const auto tabs = MGlobals::tabBarController();
    while (!_imports.empty() && tabs && mayPresent(*tabs)) {
        if (presentImport(*tabs, _imports.front()))
            break;
        _imports.pop_front();
    }
    if (_imports.empty())
        _presentLater.cancel();
    else
        _presentLater.start(PresentationRetry, [this] { presentImports(); });
    tellRefusals();
}

// False when there is nothing to show; the copy has gone then.
bool MAppDelegate::presentImport(TabBarController &tabs, const FileURL &url)
{
    const ImportedText import =
        readTextFile(_services.store.disk, url, _services.preferredLanguages().value(0));
    if (!import.ok()) {
        log(CVTAMBER_HERE, "***ERROR***", loggedURL(url) % u' ' % import.why);
        _refusals.append(whyNotImported(visibleText(url.lastPathComponent()), import));
        removeHandedOver(url);
        return false;
    }
    const auto editor = std::make_shared<MTextEditViewController>(*_context);
    editor->setTitle(url.nameWithoutExtension());
    editor->setDelegate(shared_from_this());
    editor->setShowSaveButton(true);
    const auto navigation = NavigationController::withRoot(_services.presenter, editor);
    navigation->setModalPresentationStyle(PresentationStyle::FormSheet);
    const auto shown = [editor, text = import.text, url, delegate = weak_from_this()] {
        editor->setText(text);
        if (const auto self = delegate.lock())
            self->importShown(url);
    };
    // It is tried again while the file waits.
    tabs.presentViewController(navigation, true, shown, [] {});
    return true;
}

void MAppDelegate::importShown(const FileURL &url)
{
    _imports.erase(std::remove(_imports.begin(), _imports.end(), url), _imports.end());
    removeHandedOver(url);
}

void MAppDelegate::removeHandedOver(const FileURL &url)
{
    // What lies elsewhere is the person's own.
    if (url.isNil() || url.deletingLastPathComponent() != Inbox::folder(_services.locations))
        return;
    _services.store.coordinator.remove(url, [url, delegate = weak_from_this()](const FileResult &result) {
        const auto self = delegate.lock();
        if (self && !result.ok())
            self->log("removeHandedOver", __LINE__, "***ERROR***",
                      loggedURL(url) % u" - "_s % result.message);
    });
}

void MAppDelegate::editViewCancelled()
{
    dismissPresented({});
}

void MAppDelegate::dismissPresented(std::function<void()> completion)
{
    const auto tabs = MGlobals::tabBarController();
    if (!tabs)
        return;
    tabs->dismissViewController(true, [delegate = weak_from_this(), completion = std::move(completion)] {
        if (completion)
            completion();
        if (const auto self = delegate.lock())
            self->presentImports();
    });
}

QString MAppDelegate::waitingText()
{
    const ReadResult read = _services.store.disk.read(_docToOpenURL);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(read.bytes);
    if (read.ok() && !utf8.hasError())
        return text.isNull() ? u""_s : text;
    log(CVTAMBER_HERE, "info", read.ok() ? u"not UTF-8"_s : read.message);
    return {};
}

void MAppDelegate::addWaitingDocument(TamberFilesContainer &container, const QString &text)
{
    const auto saved = [url = _docToOpenURL, isWhole = !text.isNull(),
                        delegate = weak_from_this()](const QString &, const FileResult &result) {
        const auto self = delegate.lock();
        if (self && result.ok() && isWhole)
            self->removeHandedOver(url);
    };
    container.saveUnderFreeTitle(_docToOpenURL.nameWithoutExtension(), text, saved);
}

void MAppDelegate::usersViewControllerUserPicked(MUsersViewController &,
                                                 const std::shared_ptr<TamberUser> &user)
{
    dismissPresented([user, delegate = weak_from_this()] {
        const auto self = delegate.lock();
        if (!self || !user)
            return;
        const QString text = self->waitingText();
        if (!text.isNull())
            self->addWaitingDocument(*user, text);
    });
}

void MAppDelegate::pickUserCancelled()
{
    dismissPresented({});
}

void MAppDelegate::pickUserPicked(const std::shared_ptr<TamberFilesContainer> &container)
{
    dismissPresented([container, delegate = weak_from_this()] {
        const auto self = delegate.lock();
        if (self && container && !self->_docToOpenURL.isNil())
            self->addWaitingDocument(*container, self->waitingText());
    });
}

AlertView MAppDelegate::switchingAlert(int tag)
{
    AlertView alert;
    alert.tag = tag;
    alert.title = localized(tag == 0 ? "iCloud was turned on" : "iCloud was turned off");
    alert.message = localized("What is to be done with the files?");
    alert.buttons = {localized("Move the files"), localized("Copy the files"),
                     localized(tag == 0 ? "Keep the files on this device" : "Keep the files in iCloud")};
    alert.didDismiss = [delegate = weak_from_this()](const AlertView &answered, int button, const QString &) {
        if (const auto self = delegate.lock())
            self->alertViewDidDismissWithButtonIndex(answered, button);
    };
    return alert;
}

void MAppDelegate::alertViewDidDismissWithButtonIndex(const AlertView &alert, int buttonIndex)
{
    AlertView outcome;
    outcome.buttons = {localized("OK")};
    outcome.cancelButtonIndex = 0;
    const auto *const found =
        std::find_if(std::begin(SwitchOutcomes), std::end(SwitchOutcomes), [&](const SwitchOutcome &entry) {
            return entry.tag == alert.tag && entry.button == buttonIndex;
        });
    if (found != std::end(SwitchOutcomes)) {
        _services.defaults.setValue(QLatin1String(found->key), found->value);
        outcome.message = localized(found->message);
    }
    _services.presenter.showAlert(outcome);
}

} // namespace cvtamber
