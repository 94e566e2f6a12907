// SPDX-License-Identifier: GPL-3.0-or-later
#include "schedules/Walk.h"

#include "chat/Chat2ViewController.h"
#include "chat/ChatViewController.h"
#include "device_ui/CVDeviceTableViewController.h"
#include "device_ui/CVTransferViewController.h"
#include "device_ui/MCVFilesViewController.h"
#include "ui/NavigationController.h"

namespace cvtamber {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Screen = CVDeviceTableViewController;

namespace {

constexpr int MostSteps = 12;
// Longer than a fetch's silence.
constexpr auto RestTime = 60s;

Fault once(Fault::Kind kind, const QByteArray &command = {})
{
    Fault fault;
    fault.kind = kind;
    fault.command = command;
    fault.times = 1;
    // What comes after a reply's silence is live text; a fetch waits longer.
    fault.time = command == "PR" ? 10s : 1500ms;
    return fault;
}

} // namespace

DeviceProfile Walk::profileOf(int index)
{
    DeviceProfile profile;
    profile.name = u"Desk %1"_s.arg(index + 1);
    profile.serial = QByteArray::number(10000001 + index);
    profile.persistent = false;
    profile.files = {{"A.TXT", QByteArray(300, char('a' + index))}, {"B.TXT", "short"}};
    return profile;
}

Walk::Walk(quint32 seed)
    : _dice(seed)
    , _bench(_dice.oneIn(2), {profileOf(0), profileOf(1)})
    , _screen(std::make_shared<Screen>(_bench.context))
    , _navigation(NavigationController::withRoot(_bench.presenter, _screen))
    , _host(std::make_shared<TransferHost>())
    , _embossesTranslated(_dice.oneIn(4))
{
    Chat2ViewController::forgetConversation();
    ChatViewController::forgetTextView();
    _bench.presenter.showRoot(_navigation);
    _bench.advance(1s);
}

Walk::~Walk()
{
    _bench.device.setCvUploadDelegate(nullptr);
    _bench.device.setCvDownloadDelegate(nullptr);
    _bench.device.setDataDelegate(nullptr);
}

QString Walk::run()
{
    const int steps = 3 + _dice.below(MostSteps - 2);
    visit(0);
    for (int i = 0; i < steps && _fault.isNull(); ++i) {
        step();
        if (_fault.isNull())
            _fault = judge();
    }
    return _fault.isNull() ? goHome() : _fault;
}

void Walk::step()
{
    if (_dice.oneIn(10)) {
        // A person makes the window wide or narrow, or turns the tablet.
        _navigation->setHasColumns(!_navigation->hasColumns());
        note(_navigation->hasColumns() ? u"wide"_s : u"narrow"_s);
    }
    if (_dice.oneIn(4))
        disturb();
    else if (!answerQuestion())
        act();
    const auto time = std::chrono::milliseconds(_dice.pick({0, 5, 40, 300, 2000, 7000, 30000}));
    _bench.advance(time);
    note(u"+%1 ms"_s.arg(time.count()));
}

// What is outside: the links, the radio, and a pupil at the device.
void Walk::disturb()
{
    SimulatedDevice *device = linked();
    SimulatedDevice &some = _bench.simulated(_dice.below(Devices));
    switch (_dice.below(9)) {
    case 0:
    case 1:
        note(u"link lost"_s);
        if (device)
            device->dropLink(_dice.oneIn(2));
        break;
    case 2:
        note(u"device leaves"_s);
        some.leave();
        break;
    case 3:
        note(u"devices come back"_s);
        for (const auto &each : _bench.radio->devices())
            each->comeBack();
        break;
    case 4:
        note(u"radio off"_s);
        _bench.radio->switchOff(std::chrono::seconds(1 + _dice.below(20)));
        break;
    case 5:
        note(u"a confirmation is lost"_s);
        some.faults().add(once(Fault::Kind::LoseConfirmation));
        break;
    case 6:
        note(u"a write fails"_s);
        some.faults().add(once(Fault::Kind::FailWrite));
        _isInDoubt = true;
        _hasFailedWrite = true;
        break;
    case 7:
        note(u"an answer is late or missing"_s);
        some.faults().add(once(_dice.pick({Fault::Kind::LateAnswer, Fault::Kind::NoAnswer}),
                               _dice.pick({"DIR", "PR", "PCR"})));
        break;
    default:
        say();
        break;
    }
}

// Somebody writes on the device.
void Walk::say()
{
    SimulatedDevice *device = linked();
    if (!device || device->firmware().activity() != FirmwareModel::Activity::Chat)
        return;
    const QString line = u"said %1"_s.arg(++_number);
    note(line);
    _said.insert(line);
    device->type(line.toLatin1() + "\r\n");
}

bool Walk::answerQuestion()
{
    RecordingPresenter &presenter = _bench.presenter;
    if (const AlertView *alert = presenter.alert()) {
        presenter.answerAlert(_dice.below(static_cast<int>(alert->buttons.size())));
        return true;
    }
    const ActionSheet *sheet = presenter.sheet();
    if (!sheet)
        return false;
    const auto transfer = std::dynamic_pointer_cast<CVTransferViewController>(presenter.front());
    const int button = transfer ? answerFor(*transfer) : _dice.below(static_cast<int>(sheet->buttons.size()));
    note(u"sheet: "_s + sheet->buttons.at(button));
    if (sheet->tag == MCVFilesViewController::DeleteConfirmationTag && button == 0)
        _mayBeGone.insert(_clickedFile.toLatin1());
    presenter.answerSheet(button);
    return true;
}

// What a person can do on the screen in front.
void Walk::act()
{
    const auto front = _bench.presenter.front();
    const bool isBeside = _navigation->hasColumns() && front == _navigation->detail();
    if (front == _screen) {
        actOnDeviceScreen();
    } else if (isBeside && _dice.oneIn(3)) {
        // What the device sends back is on its way; no hand is as quick.
        _bench.advance(50ms);
        actOnDeviceScreen();
    } else if (const auto picker = std::dynamic_pointer_cast<CVBTViewController>(front)) {
        if (_dice.oneIn(4))
            picker->footerButtonClicked();
        else
            picker->rowClicked(0, _dice.below(picker->numberOfRows(0)));
        note(u"picker"_s);
    } else if (const auto dialog = std::dynamic_pointer_cast<CVConnectViewController>(front)) {
        note(u"dialog"_s);
        dialog->doneButtonClicked();
        if (_dice.oneIn(2))
            dialog->retryButtonClicked();
        else
            dialog->cancelButtonClicked();
    } else if (const auto transfer = std::dynamic_pointer_cast<CVTransferViewController>(front)) {
        actOnTransfer(*transfer);
    } else if (const auto files = std::dynamic_pointer_cast<MCVFilesViewController>(front)) {
        note(u"files"_s);
        const int row = _dice.below(files->numberOfRows(0) + 2);
        _clickedFile = _bench.device.getFileName(row);
        if (row < files->numberOfRows(0))
            files->rowClicked(0, row);
        else if (_dice.oneIn(2))
            files->rightItemClicked(0);
        else
            files->leftItemClicked(0);
    } else if (_navigation->topViewController() == front && !_dice.oneIn(3)) {
        write();
    } else {
        note(u"back"_s);
        if (_navigation->topViewController() == front)
            _navigation->popViewController(true);
        else
            front->leftItemClicked(0);
        // What the device sends back is on its way; no hand is as quick.
        _bench.advance(50ms);
    }
}

bool Walk::click(int control)
{
    for (int section = 0; section < _screen->numberOfSections(); ++section) {
        for (int row = 0; row < _screen->numberOfRows(section); ++row) {
            for (const CellControl &each : _screen->cellForRow({section, row}).controls) {
                if (each.id != control || !each.isEnabled)
                    continue;
                note(each.title.isEmpty() ? each.accessibleName : each.title);
                _screen->controlClicked(section, row, control, false);
                return true;
            }
        }
    }
    return false;
}

void Walk::actOnDeviceScreen()
{
    const bool isLinked = _bench.device.turn().isLinked();
    switch (_dice.below(isLinked ? 12 : 2)) {
    case 0:
        click(Screen::ConnectButton);
        break;
    case 1:
    case 2:
        click(Screen::RefreshFilesButton);
        break;
    case 3:
        click(Screen::ShowFilesButton);
        break;
    case 4:
    case 5:
        click(Screen::ChatButton);
        break;
    case 6:
        click(Screen::WhiteboardButton);
        break;
    default:
        startTransfer();
        break;
    }
}

void Walk::startTransfer()
{
    // No way leads to a transfer while live text is open beside the screen.
    if (_navigation->detail())
        return;
    const int size = _dice.pick({3, 60, 400, 4000});
    const QString text(size, QLatin1Char(char('k' + _dice.below(8))));
    const QString name = u"N%1.TXT"_s.arg(++_number);
    auto transfer = CVTransferViewController::withInputTextAndCaption(_bench.context, text, u"caption"_s);
    const int kind = _dice.below(3);
    if (kind == 0)
        transfer = CVTransferViewController::withCorvaneFileToDownload(
            _bench.context, QString::fromLatin1(_dice.pick({"A.TXT", "B.TXT"})));
    else if (kind == 1)
        transfer = CVTransferViewController::withInputTextAndOutputFilename(_bench.context, text, name);
    note(kind == 0 ? u"fetch"_s : kind == 1 ? u"store "_s + name : u"emboss"_s);
    if (kind == 1)
        _stored[name.toLatin1()] = text.toLatin1();
    transfer->setDelegate(_host);
    _screen->presentViewController(transfer, true);
    _bench.advance(1ms);
    if (_bench.presenter.sheet() && !_dice.oneIn(5))
        answerQuestion();
}

// A translated emboss leaves a mark that turns the advanced mode at the end of the next plain transfer, as the device
// expects it: a walk has either that or plain ones.
int Walk::answerFor(const CVTransferViewController &transfer)
{
    const bool isEmboss = !transfer.inputText().isNull() && transfer.remoteOutputFilename().isNull();
    if (_dice.oneIn(8))
        return CVTransferViewController::CancelButton;
    const bool isTranslated = isEmboss || _embossesTranslated ? _embossesTranslated : _dice.oneIn(2);
    return isTranslated ? CVTransferViewController::TranslateButton : CVTransferViewController::AsItIsButton;
}

void Walk::actOnTransfer(CVTransferViewController &transfer)
{
    const QByteArray name = transfer.remoteOutputFilename().toLatin1();
    switch (_dice.below(4)) {
    case 0:
        note(u"cancel"_s);
        transfer.cancelClicked();
        break;
    case 1:
        note(u"again"_s);
        transfer.againClicked();
        break;
    case 2:
        note(u"delete"_s);
        if (transfer.isDeleteVisible())
            _mayBeGone.insert(name);
        transfer.deleteClicked();
        break;
    default:
        note(u"OK"_s);
        transfer.okClicked();
        break;
    }
}

// A line for chat or words for the whiteboard; some hold what the device would obey.
void Walk::write()
{
    const QString words = _dice.oneIn(4) ? u"{DEL A.TXT}"_s : u"words %1"_s.arg(++_number);
    note(u"writes "_s + words);
    if (const auto chat = std::dynamic_pointer_cast<Chat2ViewController>(_bench.presenter.front())) {
        chat->chatTextTyped(words);
        chat->okButtonClicked();
        _said.insert(words);
    } else if (const auto board = std::dynamic_pointer_cast<ChatViewController>(_bench.presenter.front())) {
        for (const QChar character : QString(words + u' '))
            board->page()->insertText(character);
    }
}

// The end

void Walk::endTroubles()
{
    for (const auto &device : _bench.radio->devices()) {
        device->faults() = FaultScript();
        device->comeBack();
    }
    _isInDoubt = false;
}

bool Walk::leaveScreens()
{
    for (int i = 0; i < 20; ++i) {
        _bench.advance(RestTime);
        while (const ActionSheet *sheet = _bench.presenter.sheet()) {
            const auto transfer =
                std::dynamic_pointer_cast<CVTransferViewController>(_bench.presenter.front());
            _bench.presenter.answerSheet(transfer ? answerFor(*transfer)
                                                  : static_cast<int>(sheet->buttons.size()) - 1);
        }
        const auto front = _bench.presenter.front();
        if (front == _screen)
            return true;
        if (const auto transfer = std::dynamic_pointer_cast<CVTransferViewController>(front)) {
            transfer->cancelClicked();
            transfer->okClicked();
        } else if (const auto dialog = std::dynamic_pointer_cast<CVConnectViewController>(front)) {
            dialog->cancelButtonClicked();
            dialog->doneButtonClicked();
        } else if (const auto picker = std::dynamic_pointer_cast<CVBTViewController>(front)) {
            picker->footerButtonClicked();
        } else if (_navigation->topViewController() == front) {
            _navigation->popViewController(true);
        } else {
            front->leftItemClicked(0);
            _bench.advance(1s);
            if (const AlertView *alert = _bench.presenter.alert())
                _bench.presenter.answerAlert(static_cast<int>(alert->buttons.size()) - 1);
        }
    }
    return false;
}

// Through the screens: connects, waits and disconnects.
bool Walk::visit(int index)
{
    if (!click(Screen::ConnectButton))
        return false;
    const auto picker = [this] {
        return std::dynamic_pointer_cast<CVBTViewController>(_bench.presenter.front());
    };
    const auto rowOfDevice = [&, name = profileOf(index).name] {
        const auto shown = picker();
        for (int row = 0; shown && row < shown->numberOfRows(0); ++row) {
            if (shown->cellForRow({0, row}).text == name)
                return row;
        }
        return -1;
    };
    if (!_bench.advanceUntil([&] { return rowOfDevice() >= 0; }, 60s))
        return false;
    picker()->rowClicked(0, rowOfDevice());
    const auto dialog = [this] {
        return std::dynamic_pointer_cast<CVConnectViewController>(_bench.presenter.front());
    };
    if (!_bench.advanceUntil([&] { return dialog() && dialog()->isDoneVisible(); }, 60s))
        return false;
    dialog()->doneButtonClicked();
    _bench.advance(5s);
    return _bench.presenter.front() == _screen && _bench.device.turn().isLinked();
}

QString Walk::goHome()
{
    note(u"home"_s);
    endTroubles();
    if (!leaveScreens())
        return u"a screen cannot be left"_s;
    // Longer than the longest wait for a link.
    _bench.advance(2min);
    if (_bench.device.turn().isLinked() || _bench.reconnector.isAway())
        click(Screen::ConnectButton);
    _bench.advance(RestTime);
    for (int index = 0; index < Devices; ++index) {
        note(u"visits %1"_s.arg(index));
        if (!visit(index))
            return u"device %1 cannot be connected any more"_s.arg(index);
        if (!isQuiet())
            return u"something goes on without an end"_s;
        const QString fault = judge();
        if (!fault.isNull())
            return u"at the end %1"_s.arg(fault);
        click(Screen::ConnectButton);
        _bench.advance(RestTime);
    }
    return _bench.rig.loop.pendingCalls() == 0 ? QString() : u"calls are left"_s;
}

} // namespace cvtamber
