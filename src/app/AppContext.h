// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cvtamber {

class CVBTDevice;
class CVBluetoothManager;
class DocumentPreview;
class Locations;
class MailComposer;
class NotificationCenter;
class Presenter;
class Reconnector;
class RunLoop;
class SystemLog;
class UserDefaults;
struct StoreContext;

// What every screen is given. All of it is made at start-up and outlives the screens.
struct AppContext
{
    RunLoop &runLoop;
    Presenter &presenter;
    StoreContext &store;
    CVBTDevice &device;
    CVBluetoothManager &manager;
    UserDefaults &defaults;
    Locations &locations;
    MailComposer &mail;
    DocumentPreview &preview;
    SystemLog &log;
    NotificationCenter &notifications;
    // Makes a lost link again, until somebody stops it.
    Reconnector &reconnector;
};

} // namespace cvtamber
