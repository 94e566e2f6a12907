// SPDX-License-Identifier: GPL-3.0-or-later
// A device that answers anything at any time, cut into notifications of any size, under every request of the
// device object.
#include "Require.h"
#include "support/DeviceRig.h"

#include <fuzzer/FuzzedDataProvider.h>

using namespace cvtamber;
using namespace std::chrono_literals;

namespace {

constexpr int MostSteps = 60;
constexpr size_t LongestReply = 700;

class Session
{
public:
    explicit Session(FuzzedDataProvider &data)
        : _data(data)
    {}

    void run()
    {
        connect();
        for (int step = 0; step < MostSteps && _data.remaining_bytes() > 0; ++step)
            takeStep();
        settle();
    }

private:
    QByteArray bytes(size_t longest)
    {
        return QByteArray::fromStdString(_data.ConsumeRandomLengthString(longest));
    }

    QString text(size_t longest) { return QString::fromUtf8(bytes(longest)); }

    // Mostly what a device would say, so that the steps behind it are reached.
    void answer(const QByteArray &expected)
    {
        drain();
        notify(_data.ConsumeIntegralInRange(0, 3) == 0 ? bytes(LongestReply) : expected);
        _rig.loop.advance(2s);
    }

    void notify(const QByteArray &reply)
    {
        qsizetype at = 0;
        while (at < reply.size()) {
            const auto size = _data.PickValueInArray<qsizetype>({20, 20, 1, 0, 31, 32, 512, 7});
            if (_data.ConsumeIntegralInRange(0, 15) == 0)
                _rig.loop.advance(std::chrono::milliseconds(_data.ConsumeIntegralInRange(1, 3000)));
            _rig.peripheral->notify(reply.mid(at, size));
            at += size;
            if (size == 0 && _data.remaining_bytes() == 0)
                return;
        }
    }

    void connect()
    {
        _rig.openLink();
        answer("{PC" + QByteArray(1, static_cast<char>(_data.ConsumeIntegral<uint8_t>())) + "}");
        QByteArray state = "0";
        for (int field = 1; field < 30; ++field)
            state += ", " + QByteArray::number(field == 8 ? _data.ConsumeIntegralInRange(-1, 28) : field % 2);
        answer(state);
        answer(DeviceRig::defaultVersion());
        answer("A.TXT 120\r\nB.TXT #BC\r\n\r\nC.TXT ,1*\r\n");
    }

    void drain()
    {
        while (_rig.peripheral->unconfirmed() > 0)
            _rig.peripheral->confirmWrite();
        for (; _checkedWrites < _rig.peripheral->writes().size(); ++_checkedWrites)
            require(_rig.peripheral->writes().at(_checkedWrites).size() <= 20, "a write is at most 20 bytes");
    }

    void takeStep()
    {
        CVBTDevice &device = *_rig.device;
        const int mode = _data.ConsumeIntegralInRange(0, 2);
        switch (_data.ConsumeIntegralInRange(0, 11)) {
        case 0:
            notify(bytes(LongestReply));
            break;
        case 1:
            _rig.loop.advance(std::chrono::milliseconds(_data.ConsumeIntegralInRange(0, 30'000)));
            break;
        case 2:
            ++_fetches;
            device.getFile(text(20), mode);
            notify(bytes(LongestReply) + "{PC\xFD}");
            break;
        case 3:
            listFiles();
            break;
        case 4:
            device.sendFileWithName(text(20), text(200), mode);
            break;
        case 5:
            device.embossString(text(200), mode);
            break;
        case 6:
            device.deleteFile(device.getFileName(_data.ConsumeIntegralInRange(-1, 3)));
            break;
        case 7:
            _rig.loseLink();
            connect();
            break;
        case 8:
            if (_rig.peripheral->unconfirmed() > 0)
                _rig.peripheral->failWrite(QStringLiteral("refused"));
            break;
        case 9:
            device.disconnectAsCVComm();
            break;
        case 10:
            device.uploadSoundData(bytes(100));
            break;
        default:
            drain();
        }
    }

    void listFiles()
    {
        int answers = 0;
        _rig.device->refreshFilesWithCompletionHandler([&answers] { ++answers; });
        notify(bytes(LongestReply));
        _rig.loop.advance(30s);
        // Only one more wait replaces this one, and none was begun.
        require(answers == 1, "a listing ends once");
        for (const CVFileData &file : _rig.device->files())
            require(!file.name().contains(u' '), "a listed name has no space");
    }

    void settle()
    {
        drain();
        _rig.loop.advance(10min);
        drain();
        const int pending = _rig.device->pendingCommand();
        require(pending == 0 || pending == 8, "every wait ends");
        require(_rig.device->queuedBytes() == 0, "every byte leaves or is dropped");
        require(_rig.device->getFilesCount() == _rig.device->files().size(), "the count is that of the list");
        const auto ended = _rig.told->events.filter(QStringLiteral("outcome ")).size();
        require(ended <= _fetches, "a fetch ends once");
    }

    FuzzedDataProvider &_data;
    DeviceRig _rig;
    qsizetype _checkedWrites = 0;
    qsizetype _fetches = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    Session(provider).run();
    return 0;
}
