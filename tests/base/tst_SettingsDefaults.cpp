// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/SettingsDefaults.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace cvtamber;
using namespace Qt::StringLiterals;

class tst_SettingsDefaults : public QObject
{
    Q_OBJECT

private slots:
    void aValueThatWasNeverSetIsNone()
    {
        QTemporaryDir folder;
        SettingsDefaults defaults(folder.filePath(u"settings.ini"_s));
        QVERIFY(!defaults.value(u"iCloudOn"_s).isValid());
        QVERIFY(!defaults.boolValue(u"iCloudOn"_s));
    }

    void aValueIsOnTheDiskAtOnce()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath(u"below/settings.ini"_s);
        SettingsDefaults writer(file);
        writer.setValue(u"iCloudOn"_s, true);
        writer.setValue(u"cloudFolder"_s, u"/home/ann/Łódź, Θ"_s);
        SettingsDefaults reader(file);
        QVERIFY(reader.boolValue(u"iCloudOn"_s));
        QCOMPARE(reader.value(u"cloudFolder"_s).toString(), u"/home/ann/Łódź, Θ"_s);
        QVERIFY(writer.isStored());
    }

    // As the settings window and the application do it.
    void twoProcessesKeepEachOthersChanges()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath(u"settings.ini"_s);
        SettingsDefaults one(file);
        SettingsDefaults other(file);
        one.setValue(u"iCloudOn"_s, true);
        other.setValue(u"selectedTab"_s, 2);
        one.synchronize();
        QCOMPARE(one.value(u"selectedTab"_s).toInt(), 2);
        QVERIFY(other.boolValue(u"iCloudOn"_s));
    }

    void afterAFileThatIsNoSettingsFileThereAreNoValues()
    {
        QTemporaryDir folder;
        const QString file = folder.filePath(u"settings.ini"_s);
        QVERIFY(QDir().mkdir(file));
        SettingsDefaults defaults(file);
        QVERIFY(!defaults.value(u"iCloudOn"_s).isValid());
        defaults.setValue(u"iCloudOn"_s, true);
        QVERIFY(!defaults.isStored());
        QVERIFY(defaults.boolValue(u"iCloudOn"_s));
    }

    void theFileIsInTheConfigurationFolder()
    {
        QVERIFY(QDir::isAbsolutePath(SettingsDefaults::standardFile()));
        QVERIFY(SettingsDefaults::standardFile().endsWith(u"/cvtamber/settings.ini"_s));
    }
};

QTEST_GUILESS_MAIN(tst_SettingsDefaults)
#include "tst_SettingsDefaults.moc"
