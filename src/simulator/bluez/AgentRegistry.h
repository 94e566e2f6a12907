// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "simulator/bluez/BluezContext.h"

#include <QSet>

namespace cvtamber {

// "/org/bluez": where clients register pairing agents and profiles. Nothing here ever asks an agent, since the
// devices do not demand pairing. Owner: BluezSession.
class AgentRegistry final : public BusObject
{
public:
    explicit AgentRegistry(BluezContext &context);
    ~AgentRegistry() override;

    void forgetClient(const QString &client);

private:
    using Entries = QSet<QPair<QString, QString>>; // client and path

    static void enter(Entries &entries, const BusCall &call);
    static void strike(Entries &entries, const BusCall &call);

    BluezContext &_context;
    Entries _agents;
    Entries _profiles;
};

} // namespace cvtamber
