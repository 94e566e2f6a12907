// SPDX-License-Identifier: GPL-3.0-or-later
// The least that a window of Qt Quick with three tabs is: what the application is measured against.
#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QQmlApplicationEngine engine(QUrl(QStringLiteral("qrc:/qt/qml/UiControl/UiControl.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
