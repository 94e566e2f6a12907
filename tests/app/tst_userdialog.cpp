// SPDX-License-Identifier: GPL-3.0-or-later
// The user dialog: when it may be saved, what it writes, and that it ends once.
#include "UsersBench.h"
#include "app/MEditUserDialog.h"
#include "support/Rows.h"

#include <QSignalSpy>

using namespace cvtamber;
using namespace Qt::StringLiterals;
using List = MUsersViewController::List;
using Kind = BarButtonItem::Kind;

namespace {

class DialogRecorder final : public MeditUserDialogDelegateProtocol
{
public:
    void userDialogCancelled() override { told.append(u"cancelled"_s); }
    void userDialogDoneWithFirstName(const QString &first, const QString &last,
                                     const QString &display) override
    {
        told.append(first % u'/' % last % u'/' % display);
    }
    void userDialogDoneWithResult(int result) override { told.append(QString::number(result)); }

    QStringList told;
};

} // namespace

class tst_userdialog : public QObject
{
    Q_OBJECT

private slots:
    void init() { _recorder = std::make_shared<DialogRecorder>(); }
    void saveIsEnabledByTyping_data();
    void saveIsEnabledByTyping();
    void fillingIsNoTyping();
    void typingWhileHidden();
    void writesTheNames();
    void leavesAUserAloneWhoHasGone();
    void endsOnce_data();
    void endsOnce();
    void asksBeforeDeletion_data();
    void asksBeforeDeletion();
    void moveButton_data();
    void moveButton();

private:
    std::shared_ptr<MEditUserDialog> show(UsersBench &bench, const std::shared_ptr<TamberUser> &user)
    {
        auto dialog = std::make_shared<MEditUserDialog>(bench.context);
        if (user)
            dialog->setUser(user);
        dialog->setDelegate(_recorder);
        bench.presenter.showRoot(NavigationController::withRoot(bench.presenter, dialog));
        bench.settle();
        return dialog;
    }

    std::shared_ptr<DialogRecorder> _recorder;
};

void tst_userdialog::saveIsEnabledByTyping_data()
{
    columns<QString, QStringList, bool>("field", "typed", "isEnabled");
    for (const auto &field : {u"first"_s, u"last"_s, u"display"_s}) {
        row(qPrintable(field + u" name"), field, QStringList{u"A"_s}, true);
        row(qPrintable(field + u" name cleared again"), field, QStringList{u"A"_s, QString()}, false);
        row(qPrintable(field + u" name, a space"), field, QStringList{u" \u00A0"_s}, false);
    }
}

void tst_userdialog::saveIsEnabledByTyping()
{
    QFETCH(QString, field);
    QFETCH(QStringList, typed);
    UsersBench bench;
    const auto dialog = show(bench, nullptr);
    QVERIFY(!UsersBench::isEnabled(*dialog, Kind::Save));
    dialog->saveClicked();
    QCOMPARE(_recorder->told, QStringList());
    for (const QString &text : typed) {
        if (field == u"first"_s)
            dialog->firstNameTyped(text);
        else if (field == u"last"_s)
            dialog->lastNameTyped(text);
        else
            dialog->displayNameTyped(text);
    }
    QTEST(UsersBench::isEnabled(*dialog, Kind::Save), "isEnabled");
    QTEST(dialog->isSaveEnabled(), "isEnabled");
}

void tst_userdialog::fillingIsNoTyping()
{
    UsersBench bench;
    bench.putUser(u"Ann/Lee/Mrs L"_s);
    bench.openStore();
    const auto dialog = show(bench, bench.user(u"Ann"_s));
    QCOMPARE(dialog->firstName() % u'/' % dialog->lastName() % u'/' % dialog->displayName(),
             u"Ann/Lee/Mrs L"_s);
    QVERIFY(!dialog->isSaveEnabled());
    // What a view says when it is filled with the text that it is given.
    dialog->firstNameTyped(u"Ann"_s);
    QVERIFY(!dialog->isSaveEnabled());
}

void tst_userdialog::typingWhileHidden()
{
    UsersBench bench;
    const auto dialog = std::make_shared<MEditUserDialog>(bench.context);
    dialog->firstNameTyped(u"Ann"_s);
    QVERIFY(dialog->firstName().isEmpty());
    QVERIFY(!dialog->isSaveEnabled());
}

void tst_userdialog::writesTheNames()
{
    UsersBench bench;
    const QString directory = bench.putUser(u"Ann/Lee/"_s);
    bench.openStore();
    const auto dialog = show(bench, bench.user(u"Ann"_s));
    dialog->firstNameTyped(u"  "_s);
    dialog->displayNameTyped(u"Mrs L"_s);
    UsersBench::click(*dialog, Kind::Save);
    bench.settle();
    QCOMPARE(_recorder->told, QStringList{u"/Lee/Mrs L"_s});
    QCOMPARE(bench.rig.bytes(directory + u"/user.txt"_s), QByteArray("\nLee\nMrs L\n"));
}

void tst_userdialog::leavesAUserAloneWhoHasGone()
{
    UsersBench bench;
    const QString directory = bench.putUser(u"Ann/Lee/"_s);
    bench.openStore();
    const auto ann = bench.user(u"Ann"_s);
    const auto dialog = show(bench, ann);
    dialog->firstNameTyped(u"Anna"_s);
    bench.registry()->deleteUser(ann);
    bench.settle();
    UsersBench::click(*dialog, Kind::Save);
    bench.settle();
    QVERIFY(!bench.rig.has(directory));
    QCOMPARE(ann->firstName(), u"Ann"_s);
    QCOMPARE(bench.presenter.notices().size(), 1);
    QCOMPARE(_recorder->told.size(), 1);
}

void tst_userdialog::endsOnce_data()
{
    columns<QString, QString>("button", "told");
    row("cancel", u"cancel"_s, u"cancelled"_s);
    row("save", u"save"_s, u"A/Lee/"_s);
    row("move", u"move"_s, u"0"_s);
    row("delete", u"delete"_s, u"1"_s);
}

void tst_userdialog::endsOnce()
{
    QFETCH(QString, button);
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s);
    bench.openStore();
    const auto dialog = show(bench, bench.user(u"Ann"_s));
    dialog->firstNameTyped(u"A"_s);
    for (int times = 0; times < 2; ++times) {
        if (button == u"cancel"_s)
            UsersBench::click(*dialog, Kind::Cancel);
        else if (button == u"save"_s)
            UsersBench::click(*dialog, Kind::Save);
        else if (button == u"move"_s)
            dialog->moveClicked();
        else
            dialog->deleteClicked();
        bench.presenter.answerAlert(1);
    }
    UsersBench::click(*dialog, Kind::Cancel);
    QTEST(_recorder->told.join(u','), "told");
}

void tst_userdialog::asksBeforeDeletion_data()
{
    columns<int, QStringList>("button", "told");
    row("cancel", 0, QStringList());
    row("delete", 1, QStringList{u"1"_s});
}

void tst_userdialog::asksBeforeDeletion()
{
    QFETCH(int, button);
    UsersBench bench;
    bench.putUser(u"Ann/Lee/Mrs L"_s);
    bench.openStore();
    const auto dialog = show(bench, bench.user(u"Ann"_s));
    dialog->deleteClicked();
    const AlertView *const alert = bench.presenter.alert();
    QVERIFY(alert);
    QCOMPARE(alert->title, u"1.1"_s);
    QCOMPARE(alert->message, u"1.2 Ann Lee  (Mrs L)"_s);
    QCOMPARE(alert->buttons, (QStringList{u"Cancel"_s, u"Delete"_s}));
    bench.presenter.answerAlert(button);
    QTEST(_recorder->told, "told");
}

void tst_userdialog::moveButton_data()
{
    columns<bool, List, bool, QString>("isNew", "list", "isVisible", "title");
    row("active", false, List::Active, true, u"1.10"_s);
    row("archived", false, List::Archived, true, u"1.11"_s);
    row("new", true, List::Active, false, u"1.11"_s);
}

void tst_userdialog::moveButton()
{
    QFETCH(bool, isNew);
    QFETCH(List, list);
    UsersBench bench;
    bench.putUser(u"Ann/Lee/"_s, list);
    bench.openStore();
    const auto dialog = show(bench, isNew ? nullptr : bench.user(u"Ann"_s, list));
    QTEST(dialog->isMoveVisible(), "isVisible");
    QTEST(dialog->isDeleteVisible(), "isVisible");
    QTEST(dialog->moveTitle(), "title");
    dialog->moveClicked();
    dialog->deleteClicked();
    QCOMPARE(_recorder->told.isEmpty() && !bench.presenter.alert(), isNew);
}

QTEST_GUILESS_MAIN(tst_userdialog)
#include "tst_userdialog.moc"
