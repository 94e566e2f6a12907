// SPDX-License-Identifier: GPL-3.0-or-later
#include "BrowserBench.h"

#include "support/Rows.h"

#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;

namespace {

const QString Maths = u"20000000-0000-0000-0000-000000000000"_s;
const QString Art = u"30000000-0000-0000-0000-000000000000"_s;

class PlaceDelegate final : public TamberContainerViewControllerDelegate
{
public:
    void tamberContainerViewControllerUserPicked(TamberContainerViewController &,
                                                 const std::shared_ptr<TamberUser> &user) override
    {
        heard.append(u"user "_s % userDisplayName(user.get()));
    }
    void tamberContainerViewControllerFolderPicked(TamberContainerViewController &,
                                                   const std::shared_ptr<TamberDataFolder> &folder) override
    {
        heard.append(folder ? QString(u"folder "_s % folder->name()) : u"none"_s);
    }

    QStringList heard;
};

// [letter, Apple] in the list, as a scan may leave it, whatever order this file system has.
void leaveUnsorted(BrowserBench &bench)
{
    bench.rig.erase(bench.annsFolder() % u"/letter.tamber");
    bench.putDocument(u"Apple"_s, "A");
    bench.ann->scanForFiles(bench.ann->folder());
    bench.putDocument(u"letter"_s, "L");
}

// The screen reads its lists whenever it comes back.
void appearAgain(BrowserBench &bench)
{
    bench.navigation->pushViewController(std::make_shared<ViewController>(bench.presenter), false);
    bench.settle();
    bench.navigation->popViewController(false);
    bench.settle();
}

} // namespace

class tst_browser : public QObject
{
    Q_OBJECT

private slots:
    void showsAUser();
    void showsAFolder();
    void emptyUserCannotBeEdited();
    void menusInTheirOrder();
    void menuPointsToItsPlace_data();
    void menuPointsToItsPlace();
    void insertionSortsWhatAScanLeft();
    void menuKeepsItsDocument();
    void goneDocumentIsLeftAlone();
    void twoBrowsersOfOneUser();
    void keepsVersions_data();
    void keepsVersions();
    void secondQuestionIsDropped();
    void renames_data();
    void renames();
    void renamesAFolder();
    void foldersOfOneNameAreSpokenApart();
    void editingEndsAfterTheLastRow();
    void deletes_data();
    void deletes();
    void makesFolders_data();
    void makesFolders();
    void picksAPlace();
    void answerAfterTheScreenHasGone();
};

void tst_browser::showsAUser()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "hello");
    bench.putFolder(Maths, "Maths");
    const auto browser = bench.open();

    QCOMPARE(browser->title(), u"Ann Lee"_s);
    QCOMPARE(browser->sectionsCount(), 2);
    QCOMPARE(browser->titleForHeader(0), u"Folders"_s);
    QCOMPARE(browser->titleForHeader(1), u"Files"_s);
    const TableCell folder = browser->cellForRow({0, 0});
    QCOMPARE(folder.text, u"Maths"_s);
    QCOMPARE(folder.accessory, TableCell::Accessory::Disclosure);
    const TableCell file = browser->cellForRow({1, 0});
    QCOMPARE(file.text, u"letter"_s);
    QCOMPARE(file.detail, u"5 B"_s);
    QCOMPARE(file.accessory, TableCell::Accessory::None);
    QVERIFY(BrowserBench::isEditEnabled(*browser));
    QCOMPARE(browser->rightItems().value(0).kind, BarButtonItem::Kind::Add);
    QVERIFY(browser->leftItems().isEmpty());
}

void tst_browser::showsAFolder()
{
    BrowserBench bench;
    bench.putFolder(Maths, "Maths");
    bench.rig.put(bench.annsFolder() % u'/' % Maths % u"/sums.tamber", "1+1");
    bench.open()->rowClicked(0, 0);
    bench.settle();

    const auto inner = bench.presenter.frontAs<TamberContainerViewController>();
    QVERIFY(inner);
    QCOMPARE(inner->title(), u"Maths"_s);
    QCOMPARE(inner->sectionsCount(), 1);
    QCOMPARE(inner->titleForHeader(0), u"Files"_s);
    QCOMPARE(BrowserBench::shown(*inner, 0), QStringList{u"sums"_s});
    QVERIFY(BrowserBench::isEditEnabled(*inner));
    inner->rightItemClicked(0);
    QVERIFY(bench.presenter.sheet());
    QCOMPARE(bench.presenter.sheet()->buttons, (QStringList{u"4.2"_s, u"Cancel"_s}));
}

void tst_browser::emptyUserCannotBeEdited()
{
    BrowserBench bench;
    const auto browser = bench.open();
    QVERIFY(!BrowserBench::isEditEnabled(*browser));
    QVERIFY(!browser->emptyText().isEmpty());
    const auto folder = bench.ann->addFolderWithName(u"New"_s);
    QVERIFY(BrowserBench::isEditEnabled(*browser));
    QCOMPARE(folder->user(), bench.ann);
    bench.ann->deleteFolder(folder);
    bench.settle();
    QVERIFY(!BrowserBench::isEditEnabled(*browser));
    QCOMPARE(browser->model().rowCount(), 0);
}

void tst_browser::menusInTheirOrder()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();

    browser->rowClicked(1, 0);
    QCOMPARE(bench.presenter.sheet()->tag, 1);
    QCOMPARE(bench.presenter.sheet()->title, u"letter"_s);
    QCOMPARE(bench.presenter.sheet()->buttons,
             (QStringList{u"4.7"_s, u"4.8"_s, u"4.9"_s, u"4.10"_s, u"Emboss"_s, u"Cancel"_s}));
    QCOMPARE(bench.presenter.sheet()->cancelButtonIndex, 5);
    QCOMPARE(bench.presenter.sheet()->destructiveButtonIndex, -1);
    QVERIFY(bench.presenter.cancelSheet());

    browser->rightItemClicked(0);
    QCOMPARE(bench.presenter.sheet()->tag, 3);
    QCOMPARE(bench.presenter.sheet()->title, u"4.3"_s);
    QCOMPARE(bench.presenter.sheet()->buttons, (QStringList{u"4.1"_s, u"4.2"_s, u"Cancel"_s}));
    QCOMPARE(bench.presenter.sheet()->anchor.kind, Anchor::Kind::RightBarButton);
    QVERIFY(bench.presenter.cancelSheet());
    QCOMPARE(bench.rig.log.count(u"[info] buttonIndex == 2"_s), 1);
    QVERIFY(!bench.presenter.alert());

    browser->setEditing(true);
    browser->rowClicked(1, 0);
    QCOMPARE(bench.presenter.sheet()->tag, 4);
    QCOMPARE(bench.presenter.sheet()->buttons, (QStringList{u"Delete"_s, u"4.9"_s, u"4.15"_s, u"Cancel"_s}));
    QCOMPARE(bench.presenter.sheet()->destructiveButtonIndex, 0);
    QCOMPARE(bench.presenter.sheet()->cancelButtonIndex, 3);
}

void tst_browser::menuPointsToItsPlace_data()
{
    columns<bool, bool, Anchor::Kind>("isTablet", "isEditing", "kind");
    row("phone", false, false, Anchor::Kind::TabBar);
    row("phone, editing", false, true, Anchor::Kind::TabBar);
    row("tablet", true, false, Anchor::Kind::Row);
    row("tablet, editing", true, true, Anchor::Kind::Row);
}

void tst_browser::menuPointsToItsPlace()
{
    QFETCH(bool, isTablet);
    QFETCH(bool, isEditing);
    QFETCH(Anchor::Kind, kind);
    BrowserBench bench;
    bench.presenter.setTablet(isTablet);
    bench.putDocument(u"letter"_s, "hello");
    const auto browser = bench.open();
    bench.ann->addFileWithName(u"Apple"_s, u"a"_s);
    browser->setEditing(isEditing);
    browser->rowClicked(1, 1);
    const ActionSheet *sheet = bench.presenter.sheet();
    QCOMPARE(sheet->anchor.kind, kind);
    if (isTablet) {
        QCOMPARE(sheet->anchor.section, 1);
        QCOMPARE(sheet->anchor.row, 1);
    }
}

void tst_browser::insertionSortsWhatAScanLeft()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    const auto browser = bench.open();
    leaveUnsorted(bench);
    appearAgain(bench);
    QCOMPARE(BrowserBench::shown(*browser, 1), (QStringList{u"letter"_s, u"Apple"_s}));
    const QSignalSpy resets(&browser->model(), &QAbstractItemModel::modelReset);
    bench.ann->addFileWithName(u"Button"_s, u"B"_s);
    QCOMPARE(BrowserBench::shown(*browser, 1), (QStringList{u"Apple"_s, u"Button"_s, u"letter"_s}));
    QCOMPARE(resets.count(), 0);
    // Its size is there once it is saved.
    const QSignalSpy changes(&browser->model(), &QAbstractItemModel::dataChanged);
    bench.settle();
    QCOMPARE(changes.count(), 1);
}

void tst_browser::menuKeepsItsDocument()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    const auto browser = bench.open();
    browser->setEditing(true);
    browser->rowClicked(1, 0);
    leaveUnsorted(bench);
    bench.ann->addFileWithName(u"Button"_s, u"B"_s);
    QVERIFY(bench.presenter.answerSheet(u"Delete"_s));
    QCOMPARE(bench.presenter.sheet()->title, u"4.11"_s);
    QVERIFY(bench.presenter.answerSheet(u"Yes"_s));
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 1), (QStringList{u"Apple"_s, u"Button"_s}));
    QVERIFY(!bench.rig.has(bench.annsFolder() % u"/letter.tamber"));
}

void tst_browser::goneDocumentIsLeftAlone()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    const auto browser = bench.open();
    browser->deleteClicked(1, 0);
    QCOMPARE(bench.presenter.sheet()->tag, 2);
    bench.ann->deleteFileAtIndex(0);
    bench.ann->addFileWithName(u"other"_s, u"O"_s);
    bench.settle();
    QVERIFY(bench.presenter.answerSheet(u"Yes"_s));
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{u"other"_s});
    QCOMPARE(bench.presenter.notices().size(), 1);
}

// A text is saved to the user from a picker that stands above the browser.
void tst_browser::twoBrowsersOfOneUser()
{
    BrowserBench bench;
    bench.putDocument(u"Letter"_s, "old");
    const auto browser = bench.open();
    auto above = std::make_shared<TamberContainerViewController>(bench.context);
    above->setContainer(bench.ann);
    above->setMode(TamberContainerViewController::Mode::PickFolder);
    bench.presenter.showRoot(above);
    bench.settle();
    bench.ann->addFileWithName(u"Imported"_s, u"new"_s);
    bench.presenter.showRoot(bench.navigation);
    above.reset();
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 1), (QStringList{u"Imported"_s, u"Letter"_s}));
    bench.ann->addFolderWithName(u"Maths"_s);
    QCOMPARE(BrowserBench::shown(*browser, 0), QStringList{u"Maths"_s});
    browser->deleteClicked(1, 1);
    bench.presenter.answerSheet(u"Yes"_s);
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{u"Imported"_s});
    QCOMPARE(bench.rig.bytes(bench.annsFolder() % u"/Imported.tamber"), "new");
}

void tst_browser::keepsVersions_data()
{
    columns<QString, bool, QStringList>("entry", "isAsked", "left");
    row("this one", u"Keep this version"_s, true, QStringList{u"Letter: copy"_s});
    row("the other one", u"Keep the other version"_s, true, QStringList{u"Letter: original"_s});
    row("both", u"Keep both"_s, false, QStringList{u"Letter 2: copy"_s, u"Letter: original"_s});
}

void tst_browser::keepsVersions()
{
    QFETCH(QString, entry);
    QFETCH(bool, isAsked);
    const QString copy = u"Letter.sync-conflict-20261123-101500-ABCDEFG"_s;
    BrowserBench bench;
    bench.putDocument(u"Letter"_s, "original");
    bench.putDocument(copy, "copy");
    const auto browser = bench.open();
    const int row = static_cast<int>(BrowserBench::shown(*browser, 1).indexOf(copy));
    QCOMPARE(browser->cellForRow({1, row}).detail, u"Other version of Letter"_s);
    bench.choose(browser, copy, entry);
    QCOMPARE(bench.presenter.answerSheet(u"Yes"_s), isAsked);
    bench.settle();
    QStringList left;
    for (const QString &title : BrowserBench::shown(*browser, 1))
        left.append(QString(
            title % u": " %
            QString::fromUtf8(bench.rig.bytes(QString(bench.annsFolder() % u'/' % title % u".tamber")))));
    QTEST(left, "left");
}

void tst_browser::secondQuestionIsDropped()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    const auto browser = bench.open();
    browser->rowClicked(1, 0);
    browser->rowClicked(1, 0);
    browser->deleteClicked(1, 0);
    QCOMPARE(bench.presenter.sheetCount(), size_t{1});
    QVERIFY(bench.presenter.cancelSheet());
    browser->deleteClicked(1, 0);
    QCOMPARE(bench.presenter.sheetCount(), size_t{1});
    QCOMPARE(bench.presenter.sheet()->tag, 2);
}

void tst_browser::renames_data()
{
    columns<QString, QString, QString, int>("text", "button", "title", "notices");
    row("OK", u"note"_s, u"OK"_s, u"note"_s, 0);
    row("Cancel renames too", u"note"_s, u"Cancel"_s, u"note"_s, 0);
    row("Escape does not", u"note"_s, u"Escape"_s, u"letter"_s, 0);
    row("empty", u""_s, u"OK"_s, u"letter"_s, 1);
    row("blanks", u" \u00A0\t\u2800"_s, u"OK"_s, u"letter"_s, 1);
    row("unchanged", u"letter"_s, u"Cancel"_s, u"letter"_s, 0);
}

void tst_browser::renames()
{
    QFETCH(QString, text);
    QFETCH(QString, button);
    QFETCH(QString, title);
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    const auto browser = bench.open();
    browser->setEditing(true);
    bench.choose(browser, u"letter"_s, u"4.15"_s);
    const AlertView *alert = bench.presenter.alert();
    QVERIFY(alert && alert->textField);
    QCOMPARE(alert->tag, 4);
    QCOMPARE(alert->title, u"4.17"_s);
    QCOMPARE(alert->message, u"4.18"_s);
    QCOMPARE(alert->textField->text, u"letter"_s);
    QVERIFY(alert->textField->hasClearButton);
    if (button == u"Escape"_s)
        QVERIFY(bench.presenter.cancelAlert(text));
    else
        QVERIFY(bench.presenter.answerAlert(button, text));
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 1), QStringList{title});
    QCOMPARE(bench.rig.bytes(bench.annsFolder() % u'/' % title % u".tamber"), "L");
    QTEST(int(bench.presenter.notices().size()), "notices");
}

void tst_browser::foldersOfOneNameAreSpokenApart()
{
    BrowserBench bench;
    bench.putFolder(Maths, "Maths");
    bench.rig.put(bench.annsFolder() % u'/' % Maths % u"/sums.tamber", "1+1");
    const auto browser = bench.open();
    const auto spoken = [&browser](int row) {
        return browser->model().data(browser->model().index(row), TableModel::AccessibleNameRole).toString();
    };
    QCOMPARE(spoken(0), QString());
    bench.ann->addFolderWithName(u"Maths"_s);
    bench.settle();
    QCOMPARE((QSet<QString>{spoken(0), spoken(1)}),
             (QSet<QString>{u"Maths, 1 document"_s, u"Maths, 0 documents"_s}));
}

void tst_browser::editingEndsAfterTheLastRow()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    const auto browser = bench.open();
    browser->setEditing(true);
    bench.ann->deleteFileAtIndex(0);
    bench.settle();
    QVERIFY(BrowserBench::isEditEnabled(*browser));
    browser->setEditing(false);
    QVERIFY(!BrowserBench::isEditEnabled(*browser));
}

void tst_browser::renamesAFolder()
{
    BrowserBench bench;
    bench.putFolder(Maths, "Maths");
    const auto browser = bench.open();
    browser->setEditing(true);
    browser->rowClicked(0, 0);
    bench.presenter.answerSheet(u"4.15"_s);
    QVERIFY(bench.presenter.answerAlert(u"Cancel"_s, u"Sums"_s));
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 0), QStringList{u"Sums"_s});
    QCOMPARE(bench.rig.bytes(bench.annsFolder() % u'/' % Maths % u"/folder.dat"), "Sums\n");
}

void tst_browser::deletes_data()
{
    columns<int, QString, QString, int>("section", "title", "answer", "left");
    row("a document", 1, u"4.11"_s, u"Yes"_s, 1);
    row("a folder", 0, u"4.12"_s, u"Yes"_s, 1);
    row("not", 0, u"4.12"_s, u"No"_s, 2);
}

void tst_browser::deletes()
{
    QFETCH(int, section);
    QFETCH(QString, title);
    QFETCH(QString, answer);
    QFETCH(int, left);
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    bench.putFolder(Maths, "Maths");
    const auto browser = bench.open();
    browser->deleteClicked(section, 0);
    const ActionSheet *sheet = bench.presenter.sheet();
    QVERIFY(sheet);
    QCOMPARE(sheet->title, title);
    QCOMPARE(sheet->destructiveButtonIndex, 0);
    QCOMPARE(sheet->buttons.value(sheet->cancelButtonIndex), u"No"_s);
    QVERIFY(bench.presenter.answerSheet(answer));
    bench.settle();
    QCOMPARE(browser->model().rowCount(), left);
    QCOMPARE(bench.rig.has(bench.annsFolder() % u"/letter.tamber"), section == 0);
}

void tst_browser::makesFolders_data()
{
    columns<QString, QString, QStringList>("button", "text", "folders");
    row("OK", u"OK"_s, u"Zoo"_s, QStringList{u"Art"_s, u"Zoo"_s});
    row("Cancel", u"Cancel"_s, u"Zoo"_s, QStringList{u"Art"_s});
    row("no name", u"OK"_s, u""_s, QStringList{u"Art"_s});
    row("blanks", u"OK"_s, u" \u00A0"_s, QStringList{u"Art"_s});
}

void tst_browser::makesFolders()
{
    QFETCH(QString, button);
    QFETCH(QString, text);
    QFETCH(QStringList, folders);
    BrowserBench bench;
    bench.putFolder(Art, "Art");
    const auto browser = bench.open();
    browser->rightItemClicked(0);
    QVERIFY(bench.presenter.answerSheet(u"4.1"_s));
    const AlertView *alert = bench.presenter.alert();
    QVERIFY(alert && alert->textField);
    QCOMPARE(alert->tag, 1);
    QCOMPARE(alert->textField->text, u"4.14"_s);
    QVERIFY(alert->textField->selectsAll);
    QVERIFY(bench.presenter.answerAlert(button, text));
    bench.settle();
    QCOMPARE(BrowserBench::shown(*browser, 0), folders);
}

void tst_browser::picksAPlace()
{
    BrowserBench bench;
    bench.putDocument(u"letter"_s, "L");
    bench.putFolder(Maths, "Maths");
    bench.open();
    const auto delegate = std::make_shared<PlaceDelegate>();
    const auto picker = bench.show(bench.ann, TamberContainerViewController::Mode::PickFolder, delegate);
    QCOMPARE(picker->model().rowCount(), 2);
    QCOMPARE(picker->cellForRow({0, 0}).accessory, TableCell::Accessory::None);
    QCOMPARE(picker->editingStyle({0, 0}), TableViewController::EditingStyle::None);
    const TableCell action = picker->cellForRow({1, 0});
    QCOMPARE(action.style, TableCell::Style::Action);
    QCOMPARE(action.controls.value(0).title, u"Here"_s);
    QCOMPARE(picker->rightItems().size(), 1);

    bench.ann->addFileWithName(u"other"_s, u"O"_s);
    bench.ann->deleteFileAtIndex(0);
    bench.settle();
    QCOMPARE(picker->model().rowCount(), 2);
    picker->rowClicked(1, 0);
    QVERIFY(!bench.presenter.sheet());

    picker->rowClicked(0, 0);
    picker->controlClicked(1, 0, action.controls.value(0).id, false);
    picker->leftItemClicked(0);
    QCOMPARE(delegate->heard, (QStringList{u"folder Maths"_s, u"user Ann Lee"_s, u"none"_s}));
    picker->rightItemClicked(0);
    QVERIFY(bench.presenter.alert());
    QCOMPARE(bench.presenter.alert()->tag, 1);
}

void tst_browser::answerAfterTheScreenHasGone()
{
    BrowserBench bench;
    bench.putFolder(Maths, "Maths");
    bench.rig.put(bench.annsFolder() % u'/' % Maths % u"/sums.tamber", "1+1");
    bench.open()->rowClicked(0, 0);
    bench.settle();
    bench.presenter.frontAs<TamberContainerViewController>()->deleteClicked(0, 0);
    QVERIFY(bench.presenter.sheet());
    bench.navigation->popViewController(true);
    bench.settle();
    bench.presenter.answerSheet(u"Yes"_s);
    bench.settle();
    QVERIFY(bench.rig.has(bench.annsFolder() % u'/' % Maths % u"/sums.tamber"));
}

QTEST_GUILESS_MAIN(tst_browser)
#include "tst_browser.moc"
