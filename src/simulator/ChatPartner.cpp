// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/ChatPartner.h"

#include "text/TextCodec.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace cvtamber {

namespace {

// "*" stands for any text; the first place that fits each part is taken, which is enough when nothing else is special.
bool fits(QStringView text, const QString &pattern)
{
    const QStringList parts = pattern.split(QLatin1Char('*'));
    if (parts.size() == 1)
        return text.compare(pattern, Qt::CaseInsensitive) == 0;
    if (!text.startsWith(parts.constFirst(), Qt::CaseInsensitive))
        return false;
    text = text.sliced(parts.constFirst().size());
    for (qsizetype i = 1; i + 1 < parts.size(); ++i) {
        const qsizetype at = text.indexOf(parts[i], 0, Qt::CaseInsensitive);
        if (at < 0)
            return false;
        text = text.sliced(at + parts[i].size());
    }
    return text.endsWith(parts.constLast(), Qt::CaseInsensitive);
}

} // namespace

ChatPartner::ChatPartner(RunLoop &runLoop, const DeviceProfile &profile, Type type)
    : _language(profile.language)
    , _chat(profile.chat)
    , _board(profile.board)
    , _type(std::move(type))
    , _next(runLoop)
{}

void ChatPartner::activityChanged(FirmwareModel::Activity activity)
{
    _next.cancel();
    _toType.clear();
    _line.clear();
    _isBoard = activity == FirmwareModel::Activity::Board;
    _script = _isBoard ? &_board : activity == FirmwareModel::Activity::Chat ? &_chat : nullptr;
    if (_script == nullptr)
        return;
    for (const PartnerAnswer &answer : *_script) {
        if (answer.when.isNull())
            typeLater(answer);
    }
}

bool ChatPartner::hear(const QByteArray &bytes)
{
    if (_script == nullptr || _script->isEmpty())
        return false;
    for (const char byte : bytes) {
        const bool ends = byte == '\r' || byte == '\n' || (_isBoard && byte == ' ');
        if (!ends)
            _line += byte;
        if (ends || _line.size() == MaximalLine)
            hearLine(std::exchange(_line, {}));
    }
    return true;
}

void ChatPartner::hearLine(const QByteArray &line)
{
    QString text = TextCodec::decode(line, _language).text;
    // The line of a Chinese writer ends with a zero.
    text.remove(QChar::Null);
    text = text.trimmed();
    if (text.isEmpty())
        return;
    const auto answer = std::find_if(_script->cbegin(), _script->cend(), [&text](const PartnerAnswer &entry) {
        return !entry.when.isNull() && fits(text, entry.when);
    });
    if (answer != _script->cend())
        typeLater(*answer);
}

void ChatPartner::typeLater(const PartnerAnswer &answer)
{
    for (const QByteArray &text : answer.say) {
        if (_toType.size() == MostToType)
            break;
        _toType.push_back({answer.after, text});
    }
    typeNext();
}

void ChatPartner::typeNext()
{
    if (_toType.empty() || _next.isActive())
        return;
    _next.start(_toType.front().after, [this] {
        const QByteArray bytes = std::move(_toType.front().bytes);
        _toType.pop_front();
        typeNext();
        _type(bytes);
    });
}

} // namespace cvtamber
