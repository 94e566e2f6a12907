// SPDX-License-Identifier: GPL-3.0-or-later
#include "qml/QmlPresenter.h"

#include "qml/Announcer.h"
#include "qml/BubbleImageProvider.h"
#include "qml/IconProvider.h"
#include "qml/ListAccessible.h"
#include "qml/NavigationStack.h"
#include "qml/PageAccessible.h"
#include "qml/SystemAppearance.h"
#include "qml/ViewRegistry.h"
#include "ui/NavigationController.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>
#include <utility>

// Made by the build from the module's types; named here so that the linker keeps them.
extern void qml_register_types_CVTamber();

namespace cvtamber {
namespace {

constexpr int tabletShortSide = 600;
constexpr QSize WindowSize{1100, 760};
// A notice stays for as long as a slow reader needs: a second to find it, and 12 characters a second.
constexpr std::chrono::milliseconds noticeStart{3000};
constexpr std::chrono::milliseconds noticePerCharacter{80};

NavigationStack *stackOf(QObject *view, const NavigationController &navigation)
{
    const auto stacks = view->findChildren<NavigationStack *>();
    const auto found = std::find_if(stacks.begin(), stacks.end(), [&](const NavigationStack *stack) {
        return stack->controller() == &navigation;
    });
    return found == stacks.end() ? nullptr : *found;
}

// Null where the screen is not on a page of its own.
QQuickItem *pageOf(QObject *view, const ViewController *screen)
{
    for (const NavigationStack *stack : view->findChildren<NavigationStack *>()) {
        if (QQuickItem *page = stack->isVisible() ? stack->pageOf(screen) : nullptr)
            return page;
    }
    return nullptr;
}

} // namespace

QmlPresenter::QmlPresenter(RunLoop &runLoop)
    : Presenter(runLoop)
    , _runLoop(runLoop)
    , _engine(std::make_unique<QQmlEngine>())
    , _questions(std::make_unique<QuestionQueue>(
          [this](const QuestionQueue::Question &question) { return makeQuestion(question); }))
    , _noticeEnd(runLoop)
    , _newsEnd(runLoop)
    , _focusTold(runLoop)
{
    ListAccessible::install();
    PageAccessible::install();
    qml_register_types_CVTamber();
    _engine->addImageProvider(QStringLiteral("cvtamber"), new IconProvider);
    _engine->addImageProvider(QStringLiteral("bubbles"), new BubbleImageProvider);
    ViewRegistry::of(*_engine).load({QStringLiteral("MainWindow"), QStringLiteral("TabsView"),
                                     QStringLiteral("NavigationView"), QStringLiteral("NavigationPage"),
                                     QStringLiteral("TableScreen")});
    connect(_questions.get(), &QuestionQueue::gone, this, &QmlPresenter::giveFocus);
}

QmlPresenter::~QmlPresenter()
{
    delete _window;
}

QQuickWindow *QmlPresenter::window()
{
    if (!std::exchange(_hasMadeWindow, true))
        makeWindow();
    return _window;
}

void QmlPresenter::makeWindow()
{
    QObject *window = ViewRegistry::of(*_engine).createObject(QStringLiteral("MainWindow"), {}, nullptr);
    _window = qobject_cast<QQuickWindow *>(window);
    if (_window) {
        if (_startPlace)
            placeWindow(*_startPlace);
        _window->setTitle(QGuiApplication::applicationDisplayName());
        // Without it the rows that a list makes in advance would be made at once, before the next frame.
        _engine->setIncubationController(_window->incubationController());
        connect(_window, &QWindow::activeChanged, this, &QmlPresenter::tellFocus);
        connect(_window, &QQuickWindow::activeFocusItemChanged, this, &QmlPresenter::watchReadText);
        connect(_window, SIGNAL(keysRequested()), this, SLOT(askForKeys()));
        connect(_window, SIGNAL(filesRequested()), this, SLOT(askForFiles()));
        connect(_window, SIGNAL(dropped(QString)), this, SLOT(takeDropped(QString)));
    }
}

void QmlPresenter::placeWindow(const WindowPlace &place)
{
    const QRect &rect = place.rect;
    const QSize room = _window->screen()->availableSize();
    const bool hasRoom = room.width() >= WindowSize.width() && room.height() >= WindowSize.height();
    _window->resize(rect.isValid() ? rect.size().expandedTo(_window->minimumSize()) : WindowSize);
    if (rect.isValid() && QGuiApplication::screenAt(rect.center()))
        _window->setPosition(rect.topLeft());
    if (place.isMaximized || (!rect.isValid() && !hasRoom))
        _window->setWindowStates(Qt::WindowMaximized);
}

void QmlPresenter::setDesktopLook(const DesktopLook &look)
{
    if (!window()) {
        return;
    }
    QQmlExpression theme(qmlContext(_window), _window, QStringLiteral("Theme.appearance"));
    if (auto *appearance = theme.evaluate().value<SystemAppearance *>()) {
        appearance->setDesktopLook(look);
    }
}

bool QmlPresenter::isTablet() const
{
    return _window && std::min(_window->width(), _window->height()) >= tabletShortSide;
}

void QmlPresenter::drawRoot(const Controller &root)
{
    _root = root;
    QQmlEngine::setObjectOwnership(root.get(), QQmlEngine::CppOwnership);
    if (window()) {
        _window->setProperty("controller", QVariant::fromValue<QObject *>(root.get()));
        giveFocus();
    }
}

void QmlPresenter::present(const Controller &controller, PresentationStyle style, TransitionStyle transition,
                           bool animated, Finished finished)
{
    setTransition(std::move(finished));
    QQmlEngine::setObjectOwnership(controller.get(), QQmlEngine::CppOwnership);
    const bool isFormSheet = style == PresentationStyle::FormSheet;
    const QVariantMap properties{
        {QStringLiteral("controller"), QVariant::fromValue<QObject *>(controller.get())},
        {QStringLiteral("formSheet"), isFormSheet},
        {QStringLiteral("fades"), transition != TransitionStyle::CoverVertical},
        {QStringLiteral("animated"), animated},
        {QStringLiteral("parent"), QVariant::fromValue<QObject *>(room())},
        {QStringLiteral("layer"), static_cast<int>(_modals.size())},
    };
    QObject *view = ViewRegistry::of(*_engine).createObject(QStringLiteral("ModalView"), properties, _window);
    _modals.push_back({controller, view, isFormSheet});
    if (view == nullptr) {
        endTransition();
        return;
    }
    connect(view, SIGNAL(opened()), this, SLOT(modalOpened()));
    connect(view, SIGNAL(closed()), this, SLOT(modalClosed()));
    QMetaObject::invokeMethod(view, "open");
}

void QmlPresenter::dismiss(const Controller &controller, bool animated, Finished finished)
{
    setTransition(std::move(finished));
    const auto first = std::find_if(_modals.begin(), _modals.end(),
                                    [&](const Modal &modal) { return modal.controller == controller; });
    _leaving.assign(first, _modals.end());
    _modals.erase(first, _modals.end());
    coverViews();
    std::vector<QPointer<QObject>> views;
    for (const Modal &modal : _leaving) {
        views.push_back(modal.view);
    }
    if (views.empty()) {
        endTransition();
    }
    // From the top, so that none is left over one that has gone.
    std::reverse(views.begin(), views.end());
    for (const auto &view : views) {
        if (view) {
            view->setProperty("animated", animated);
            QMetaObject::invokeMethod(view, "close");
        }
    }
}

void QmlPresenter::modalOpened()
{
    endTransition();
}

void QmlPresenter::modalClosed()
{
    const QObject *closed = sender();
    const auto gone = std::find_if(_leaving.begin(), _leaving.end(),
                                   [&](const Modal &modal) { return modal.view == closed; });
    if (gone == _leaving.end()) {
        return;
    }
    // The screen stays until its view, which is deleted later, has gone.
    connect(gone->view, &QObject::destroyed, gone->view, [keep = gone->controller] {});
    gone->view->deleteLater();
    _leaving.erase(gone);
    if (_leaving.empty()) {
        endTransition();
    }
}

void QmlPresenter::push(NavigationController &navigation, const Controller &controller, bool animated,
                        Finished finished)
{
    setTransition(std::move(finished));
    NavigationStack *stack = stackOf(topView(), navigation);
    if (stack == nullptr) {
        endTransition();
        return;
    }
    stack->push(*controller, animated, [this] { endTransition(); });
}

void QmlPresenter::pop(NavigationController &navigation, const Controller &controller, bool animated,
                       Finished finished)
{
    setTransition(std::move(finished));
    NavigationStack *stack = stackOf(topView(), navigation);
    if (stack == nullptr) {
        endTransition();
        return;
    }
    stack->pop(*controller, animated, [this] { endTransition(); });
}

void QmlPresenter::showAlert(const AlertView &alert)
{
    _questions->add(alert);
}

void QmlPresenter::showActionSheet(const ActionSheet &sheet)
{
    _questions->add(sheet);
}

void QmlPresenter::showNotice(const QString &text)
{
    if (!window()) {
        return;
    }
    _window->setProperty("notice", text);
    announce(text);
    _noticeEnd.start(noticeStart + noticePerCharacter * text.size(), [this] {
        if (_window) {
            _window->setProperty("notice", QString());
        }
    });
}

// Of a window that comes to the front a screen reader says the title; what has the focus in it is told after that.
void QmlPresenter::tellFocus()
{
    _focusTold.start({}, [this] {
        if (!_window || !_window->isActive() || _window->activeFocusItem() == nullptr)
            return;
        QAccessibleEvent event(_window->activeFocusItem(), QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    });
}

void QmlPresenter::watchReadText()
{
    QQuickItem *const focused = _window->activeFocusItem();
    if (focused && focused->property("readOnly").toBool())
        focused->installEventFilter(this);
}

// Qt's text area claims each key for itself also while it is only read, and the window's keys would do nothing in it.
bool QmlPresenter::eventFilter(QObject *watched, QEvent *event)
{
    const bool isClaim = event->type() == QEvent::ShortcutOverride && watched->property("readOnly").toBool();
    if (isClaim)
        event->ignore();
    return isClaim || QObject::eventFilter(watched, event);
}

// A question is answered first.
void QmlPresenter::askForKeys()
{
    const Controller top = _modals.empty() ? _root : _modals.back().controller;
    if (_commands.showKeys && top && !_questions->isAsking())
        _commands.showKeys(*top);
}

void QmlPresenter::askForFiles()
{
    if (_commands.openFiles && !_questions->isAsking())
        _commands.openFiles();
}

void QmlPresenter::takeDropped(const QString &uris)
{
    QStringList named;
    for (const QString &line : uris.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString uri = line.trimmed();
        // The others are comments.
        if (!uri.isEmpty() && !uri.startsWith(QLatin1Char('#')))
            named.append(uri);
    }
    if (_commands.takeDropped)
        _commands.takeDropped(named);
}

void QmlPresenter::announce(const QString &text)
{
    const auto announcers = _window ? _window->findChildren<Announcer *>() : QList<Announcer *>();
    if (announcers.isEmpty() || text.isEmpty())
        return;
    announcers[_announced++ % announcers.size()]->announce(text);
    // Who goes through the window later does not meet old news.
    _newsEnd.start(noticeStart + noticePerCharacter * text.size(), [this] {
        const auto said = _window ? _window->findChildren<Announcer *>() : QList<Announcer *>();
        for (Announcer *announcer : said)
            announcer->clear();
    });
}

QObject *QmlPresenter::makeQuestion(const QuestionQueue::Question &question)
{
    const auto *alert = std::get_if<AlertView>(&question);
    return alert != nullptr ? makeAlert(*alert) : makeSheet(std::get<ActionSheet>(question));
}

QObject *QmlPresenter::makeAlert(const AlertView &alert)
{
    const AlertTextField field = alert.textField.value_or(AlertTextField{});
    const QVariantMap properties{
        {QStringLiteral("parent"), QVariant::fromValue<QObject *>(room())},
        {QStringLiteral("title"), alert.title},
        {QStringLiteral("message"), alert.message},
        {QStringLiteral("buttons"), alert.buttons},
        {QStringLiteral("cancelIndex"), alert.cancelButtonIndex},
        {QStringLiteral("closesWithoutButton"), alert.closesWithoutButton},
        {QStringLiteral("hasTextField"), alert.textField.has_value()},
        {QStringLiteral("initialText"), field.text},
        {QStringLiteral("selectsAll"), field.selectsAll},
        {QStringLiteral("hasClearButton"), field.hasClearButton},
    };
    return ViewRegistry::of(*_engine).createObject(QStringLiteral("AlertDialog"), properties, _window);
}

QObject *QmlPresenter::makeSheet(const ActionSheet &sheet)
{
    const QVariantMap properties{
        {QStringLiteral("parent"), QVariant::fromValue<QObject *>(room())},
        {QStringLiteral("heading"), sheet.title},
        {QStringLiteral("buttons"), sheet.buttons},
        {QStringLiteral("cancelIndex"), sheet.cancelButtonIndex},
        {QStringLiteral("destructiveIndex"), sheet.destructiveButtonIndex},
        {QStringLiteral("owner"), QVariant::fromValue<QObject *>(ownerOf(sheet.anchor))},
    };
    return ViewRegistry::of(*_engine).createObject(QStringLiteral("SheetPopup"), properties, _window);
}

// Null where there is nothing that the sheet could hang at.
QQuickItem *QmlPresenter::ownerOf(const Anchor &anchor) const
{
    QQuickItem *item = nullptr;
    QQuickItem *page = pageOf(topView(), anchor.screen);
    const bool isOnPage =
        page != nullptr && anchor.kind != Anchor::Kind::TabBar && anchor.kind != Anchor::Kind::Menu;
    QObject *place = isOnPage ? page : topView();
    QMetaObject::invokeMethod(place, "anchorItem", Q_RETURN_ARG(QQuickItem *, item),
                              Q_ARG(int, static_cast<int>(anchor.kind)), Q_ARG(int, anchor.section),
                              Q_ARG(int, anchor.row), Q_ARG(int, anchor.button));
    // A button of the row that has asked for the sheet has the focus.
    QQuickItem *focused = anchor.kind == Anchor::Kind::Row ? _window->activeFocusItem() : nullptr;
    return item != nullptr && focused != nullptr && item->isAncestorOf(focused) ? focused : item;
}

// What the line of notices leaves of the window.
QQuickItem *QmlPresenter::room() const
{
    return _window->property("room").value<QQuickItem *>();
}

QObject *QmlPresenter::topView() const
{
    if (!_modals.empty() && _modals.back().view) {
        return _modals.back().view;
    }
    return _window;
}

void QmlPresenter::setTransition(Finished finished)
{
    _finished = std::move(finished);
    _questions->setHeld(true);
}

void QmlPresenter::endTransition()
{
    transitions().later([this, finished = std::exchange(_finished, nullptr)] {
        coverViews();
        _questions->setHeld(false);
        giveFocus();
        if (finished) {
            finished();
        }
    });
}

// What is covered wholly is neither drawn nor told to screen readers.
void QmlPresenter::coverViews()
{
    bool covered = false;
    std::for_each(_modals.rbegin(), _modals.rend(), [&](const Modal &modal) {
        if (modal.view) {
            modal.view->setProperty("covered", covered);
        }
        covered = covered || !modal.isFormSheet || !isTablet();
    });
    if (_window) {
        _window->setProperty("covered", covered);
    }
}

void QmlPresenter::giveFocus()
{
    if (_window && !_questions->isAsking()) {
        QMetaObject::invokeMethod(topView(), "takeFocus");
    }
}

} // namespace cvtamber
