// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/bluez/AgentRegistry.h"

#include <QDBusObjectPath>

namespace cvtamber {

namespace {

using namespace Qt::StringLiterals;

QPair<QString, QString> entryOf(const BusCall &call)
{
    return {call.client(), call.argument<QDBusObjectPath>(0).path()};
}

} // namespace

AgentRegistry::AgentRegistry(BluezContext &context)
    : BusObject(u"/org/bluez"_s)
    , _context(context)
{
    BusInterface &agents = addInterface(u"org.bluez.AgentManager1"_s);
    agents.method(u"RegisterAgent"_s, u"os"_s, {}, [this](const BusCall &call) { enter(_agents, call); });
    agents.method(u"UnregisterAgent"_s, u"o"_s, {}, [this](const BusCall &call) { strike(_agents, call); });
    agents.method(u"RequestDefaultAgent"_s, u"o"_s, {}, [this](const BusCall &call) {
        if (_agents.contains(entryOf(call)))
            call.reply();
        else
            call.fail(BusErrors::doesNotExist());
    });
    BusInterface &profiles = addInterface(u"org.bluez.ProfileManager1"_s);
    profiles.method(u"RegisterProfile"_s, u"osa{sv}"_s, {},
                    [this](const BusCall &call) { enter(_profiles, call); });
    profiles.method(u"UnregisterProfile"_s, u"o"_s, {},
                    [this](const BusCall &call) { strike(_profiles, call); });
    _context.tree.add(*this);
}

AgentRegistry::~AgentRegistry()
{
    _context.tree.remove(*this);
}

void AgentRegistry::enter(Entries &entries, const BusCall &call)
{
    if (entries.contains(entryOf(call))) {
        call.fail(BusErrors::alreadyExists());
        return;
    }
    entries.insert(entryOf(call));
    call.reply();
}

void AgentRegistry::strike(Entries &entries, const BusCall &call)
{
    if (entries.remove(entryOf(call)))
        call.reply();
    else
        call.fail(BusErrors::doesNotExist());
}

void AgentRegistry::forgetClient(const QString &client)
{
    for (Entries *entries : {&_agents, &_profiles})
        entries->removeIf([&client](const auto &entry) { return entry.first == client; });
}

} // namespace cvtamber
