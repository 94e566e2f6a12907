// SPDX-License-Identifier: GPL-3.0-or-later
#include "ScreenWalk.h"

#include "store/CloudNames.h"
#include "ui/TableModel.h"

#include <QDirIterator>

#include <algorithm>

namespace cvtamber {

using namespace std::chrono_literals;

namespace {

constexpr int Steps = 60;
// What leads to the device, which does not answer here.
const QStringList Elsewhere{u"4.8"_s, u"4.2"_s, u"Emboss"_s};
const QStringList Titles{u"Letter"_s, u"letter"_s, u"Diary"_s, u""_s, u"a/b"_s};

QString textOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

ScreenWalk::ScreenWalk(quint32 seed)
    : _random(seed)
{
    for (const char *const name : {"Ann", "Bob"}) {
        const QString user =
            u"ActiveUsers/%1%1%1%1%1%1%1%1-1111-1111-1111-111111111111/"_s.arg(name[0] == 'A' ? 1 : 2);
        _bench.put(user % u"user.txt", QByteArray(name) + "\n\n\n");
        _bench.put(user % u"22222222-2222-2222-2222-222222222222/folder.dat", "Maths\n");
        for (const QString &place : {QString(), u"22222222-2222-2222-2222-222222222222/"_s}) {
            const QString text = u"<text %1>"_s.arg(++_texts);
            _bench.put(user % place % u"Letter.tamber", text.toUtf8());
            _owed.insert(text);
        }
    }
    _bench.presenter->setTablet(_random.oneIn(2));
    _bench.launchWhole();
}

ScreenWalk::~ScreenWalk()
{
    const auto tabs = MGlobals::tabBarController();
    while (tabs->presentedViewController()) {
        tabs->dismissViewController(false);
        settle();
    }
}

QString ScreenWalk::run()
{
    for (int i = 0; i < Steps; ++i) {
        step();
        settle();
        QString fault = faultOfLists();
        if (!fault.isNull())
            return fault;
    }
    return lostText();
}

void ScreenWalk::step()
{
    switch (_random.below(20)) {
    case 0:
        return handOver();
    case 1:
        return failCalls();
    case 2:
        return switchStore();
    case 3:
        tell(u"the disk works"_s);
        return _operations.clear();
    case 4:
        _bench.rig.loop.advance(6s);
        return;
    case 5:
        return resize();
    default:
        return press();
    }
}

// A person

void ScreenWalk::press()
{
    const RecordingPresenter &presenter = *_bench.presenter;
    if (presenter.alert())
        return answerAlert();
    if (presenter.sheet())
        return answerSheet();
    auto front = presenter.front();
    const auto beside = front->navigationController();
    if (beside && beside->hasColumns() && _random.oneIn(3))
        front = beside->viewControllers().front();
    if (const auto dialog = std::dynamic_pointer_cast<MEditUserDialog>(front))
        typeNames(*dialog);
    const auto tabs = MGlobals::tabBarController();
    if (presenter.modals().empty() && _random.oneIn(12))
        return tabs->selectTab(_random.below(tabs->count()));
    const auto table = std::dynamic_pointer_cast<TableViewController>(front);
    if (table && !_random.oneIn(3))
        return pressTable(*table);
    const auto navigation = front->navigationController();
    if (navigation && _random.oneIn(3))
        return navigation->backClicked();
    const bool isLeft = _random.oneIn(2);
    const auto &items = isLeft ? front->leftItems() : front->rightItems();
    if (items.empty())
        return;
    const int index = _random.below(static_cast<int>(items.size()));
    tell(u"button "_s % items[index].title);
    if (isLeft)
        front->leftItemClicked(index);
    else
        front->rightItemClicked(index);
}

// To two columns, or back to one.
void ScreenWalk::resize()
{
    tell(u"resize"_s);
    for (const auto &tab : MGlobals::tabBarController()->tabs()) {
        const auto navigation = std::dynamic_pointer_cast<NavigationController>(tab.controller);
        navigation->setHasColumns(!navigation->hasColumns());
    }
}

void ScreenWalk::answerAlert()
{
    const AlertView &alert = *_bench.presenter->alert();
    const int button = _random.below(static_cast<int>(alert.buttons.size()));
    tell(u"alert "_s % alert.title % u": " % alert.buttons[button]);
    if (alert.tag >= MUsersViewController::DeleteConfirmationTag && button != alert.cancelButtonIndex)
        forgivePressed();
    _bench.presenter->answerAlert(button, _random.pick(Titles));
}

void ScreenWalk::answerSheet()
{
    const ActionSheet &sheet = *_bench.presenter->sheet();
    int button = _random.below(static_cast<int>(sheet.buttons.size()));
    if (Elsewhere.contains(sheet.buttons[button]))
        button = sheet.cancelButtonIndex;
    tell(u"sheet "_s % sheet.title % u": " % sheet.buttons[button]);
    if (sheet.buttons[button] == u"Yes")
        forgivePressed();
    _bench.presenter->answerSheet(button);
}

void ScreenWalk::pressTable(TableViewController &table)
{
    const TableModel &model = table.model();
    if (model.rowCount() == 0)
        return;
    const IndexPath path = model.pathOf(_random.below(model.rowCount()));
    remember(table, path);
    const int what = _random.below(6);
    tell(u"press %1 on %2"_s.arg(what).arg(_pressed.title));
    if (what == 0)
        return table.deleteClicked(path.section, path.row);
    if (what == 1)
        return table.renameClicked(path.section, path.row);
    if (what == 2)
        return table.accessoryClicked(path.section, path.row);
    table.rowClicked(path.section, path.row);
    table.controlClicked(path.section, path.row, 0, true);
}

void ScreenWalk::remember(const TableViewController &table, IndexPath path)
{
    const TableModel &model = table.model();
    int row = 0;
    while (!(model.pathOf(row) == path))
        ++row;
    _pressed = {};
    _pressed.title = model.data(model.index(row), TableModel::TextRole).toString();
    if (const auto *const browser = dynamic_cast<const TamberContainerViewController *>(&table)) {
        _pressed.isFolder = browser->sectionsCount() == 2 && path.section == 0;
        const auto container = browser->container();
        _pressed.container = container ? container->url() : FileURL();
        // Its name on the disk may be an older one.
        const auto user = std::dynamic_pointer_cast<TamberUser>(container);
        if (const auto folder = user && _pressed.isFolder ? user->folderAtIndex(path.row) : nullptr)
            _pressed.container = folder->url();
    } else if (const auto *const users = dynamic_cast<const MUsersViewController *>(&table)) {
        // Rows of users are checked by identity after each step, and two may have one name.
        const auto &shown = users->sortedUsers();
        _pressed.isUser = static_cast<size_t>(path.row) < shown.size();
        if (_pressed.isUser)
            _pressed.container = shown[static_cast<size_t>(path.row)]->url();
    }
}

void ScreenWalk::typeNames(MEditUserDialog &dialog)
{
    dialog.firstNameTyped(u"Pupil %1"_s.arg(++_texts));
    dialog.lastNameTyped({});
    dialog.displayNameTyped({});
    if (_random.oneIn(3))
        dialog.saveClicked();
    else if (_random.oneIn(3))
        dialog.cancelClicked();
}

// What happens meanwhile

void ScreenWalk::handOver()
{
    const QString name = u"%1.txt"_s.arg(_random.oneIn(2) ? u"Letter"_s : u"Text"_s);
    const QString text = u"<text %1>"_s.arg(++_texts);
    tell(u"hand over "_s % text);
    _bench.rig.put(name, text.toUtf8());
    _bench.delegate->handOver({_bench.rig.path(name)});
    _bench.rig.settle();
    _bench.rig.erase(name);
}

void ScreenWalk::failCalls()
{
    using Call = FaultyFileOperations::Call;
    static const std::vector<std::errc> errors{std::errc::no_space_on_device, std::errc::permission_denied,
                                               std::errc::read_only_file_system, std::errc::io_error,
                                               std::errc::no_such_device};
    const auto call = static_cast<Call>(_random.below(int(Call::SyncFolder) + 1));
    const auto error = _random.pick(errors);
    const int first = 1 + _random.below(8);
    tell(u"call %1 fails from the %2th on"_s.arg(int(call)).arg(first));
    _operations.add({std::make_error_code(error), call, {}, first, first + _random.below(12)});
}

void ScreenWalk::switchStore()
{
    if (!_random.oneIn(3))
        return;
    tell(u"switch the store"_s);
    _bench.defaults.elsewhere.insert(u"iCloudOn"_s, !_bench.defaults.boolValue(u"iCloudOn"_s));
    _bench.delegate->applicationDidBecomeActive();
}

void ScreenWalk::settle()
{
    _bench.rig.settle();
    reportCloud();
    _bench.rig.settle();
    hearNotices();
    if (const auto editor = _bench.editor())
        _edited = editor->text();
}

void ScreenWalk::reportCloud()
{
    ScriptedCloud &cloud = _bench.rig.cloud;
    std::set<QString> there;
    QDirIterator files(_bench.rig.cloudRoot().path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        there.insert(files.next());
    const QList<MetadataItem> known = cloud.items();
    for (const MetadataItem &item : known)
        if (!there.contains(item.url.path()))
            cloud.removeItem(item.url);
    for (const QString &path : there) {
        const bool isKnown = std::any_of(known.begin(), known.end(),
                                         [&](const MetadataItem &item) { return item.url.path() == path; });
        if (!isKnown)
            cloud.setItem(FileURL::file(path));
    }
    cloud.gather();
    cloud.update();
}

void ScreenWalk::hearNotices()
{
    const QStringList &notices = _bench.presenter->notices();
    for (; _heard < notices.size(); ++_heard) {
        tell(u"notice "_s % notices[_heard]);
        if (notices[_heard].startsWith(u"Saved as"))
            _owed.insert(_edited);
    }
}

// What must be true

QString ScreenWalk::faultOfLists() const
{
    for (const auto &tab : MGlobals::tabBarController()->tabs()) {
        const auto navigation = std::dynamic_pointer_cast<NavigationController>(tab.controller);
        for (const auto &screen : navigation->viewControllers()) {
            const auto *const table = dynamic_cast<const TableViewController *>(screen.get());
            QString fault = table && screen->isViewLoaded() ? faultOf(*table) : QString();
            if (!fault.isNull())
                return fault;
        }
    }
    return {};
}

// What is shown, against what the store has.
QString ScreenWalk::faultOf(const TableViewController &table) const
{
    const TableModel &model = table.model();
    int rows = 0;
    for (int section = 0; section < table.numberOfSections(); ++section)
        rows += table.numberOfRows(section);
    if (rows != model.rowCount())
        return u"%1 rows are shown of %2"_s.arg(model.rowCount()).arg(rows);
    for (int row = 0; row < rows; ++row) {
        const IndexPath path = model.pathOf(row);
        if (model.identityOf(path) != table.rowIdentity(path))
            return u"another row is shown in row %1"_s.arg(row);
    }
    const auto *const browser = dynamic_cast<const TamberContainerViewController *>(&table);
    const auto container = browser ? browser->container() : nullptr;
    std::set<QString> urls;
    for (const auto &file : container ? container->files() : std::vector<std::shared_ptr<TamberDocument>>())
        if (!urls.insert(file->fileURL().path()).second)
            return u"listed twice: "_s % file->name();
    return {};
}

QString ScreenWalk::lostText()
{
    _operations.clear();
    for (int i = 0; i < 3; ++i) {
        _bench.rig.loop.advance(6s);
        settle();
    }
    const QStringList found = texts();
    for (const QString &owed : _owed)
        if (!found.contains(owed))
            return u"lost: "_s % owed;
    return {};
}

QStringList ScreenWalk::texts() const
{
    QStringList found;
    for (const QString &root : {_bench.local.path(), _bench.rig.folder()}) {
        QDirIterator files(root, QDir::Files, QDirIterator::Subdirectories);
        // Hidden ones will be swept.
        while (files.hasNext())
            found.append(textOf(files.next()));
    }
    return found;
}

void ScreenWalk::forgive(const QString &path)
{
    if (!QFileInfo(path).isDir()) {
        _owed.erase(textOf(path));
        return;
    }
    QDirIterator files(path, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        _owed.erase(textOf(files.next()));
}

// The person has said yes to the deletion of what was pressed.
void ScreenWalk::forgivePressed()
{
    const QString container = _pressed.container.path();
    if (_pressed.isUser || _pressed.isFolder)
        forgive(container);
    else
        forgive(container % u'/' % _pressed.title % u".tamber");
}

} // namespace cvtamber
