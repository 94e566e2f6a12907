// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ContainerFileActions.h"

#include "app/ContainerScreen.h"
#include "base/Locations.h"
#include "base/SystemLog.h"
#include "store/FileCoordinator.h"
#include "store/Records.h"
#include "store/StoreContext.h"
#include "store/StoreNames.h"
#include "ui/DocumentPreview.h"
#include "ui/MailComposer.h"
#include "ui/Texts.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

// A name that every program can open: odd bytes of a name that is not UTF-8 become question marks.
QString previewFileName(const TamberDocument &document)
{
    const QString title = document.fileURL().nameWithoutExtension();
    return repairedTitle(QString::fromUtf8(title.toUtf8())) % u".txt"_s;
}

} // namespace

void ContainerFileActions::preview(const std::shared_ptr<TamberDocument> &document)
{
    SystemLog &log = _screen.context().log;
    log.info(u"Show system preview"_s);
    if (!_screen.isStillThere({document, nullptr}))
        return;
    log.debug(u"d.documentState: "_s % QString::number(document->documentState()));
    document->openWithCompletionHandler(
        _screen.whileInUse([this, &log, opened = document.get()](bool success) {
            if (!success) {
                log.info(opened->lastResult().message);
                return;
            }
            log.debug(u"d.documentState: "_s % QString::number(opened->documentState()));
            opened->closeWithCompletionHandler({});
            writePreview(*opened);
        }));
}

void ContainerFileActions::writePreview(const TamberDocument &document)
{
    const QString folder = _screen.context().locations.temporaryFolder();
    const FileURL copy =
        folder.isNull() ? FileURL() : FileURL::directory(folder).appendingFile(previewFileName(document));
    if (copy.isNil()) {
        _screen.context().log.error(u"no temporary folder"_s);
        _screen.tell("The preview could not be made.");
        return;
    }
    if (document.text().isNull()) {
        _screen.tell("This document holds something that is not text.");
        return;
    }
    const QByteArray bytes = QByteArrayLiteral("\xEF\xBB\xBF") + utf8FromText(document.text());
    _screen.context().store.coordinator.replace(
        copy, bytes, {}, StoreDisk::OtherVersion::Replace,
        _screen.whileInUse([this, path = copy.path()](const WriteResult &written) {
            if (written.ok()) {
                showPreview(path);
                return;
            }
            _screen.context().log.error(written.message);
            _screen.tell("The preview could not be made.");
        }));
}

void ContainerFileActions::showPreview(const QString &path)
{
    _screen.context().preview.show(path, _screen.whileAlive([this](bool shown) {
        if (!shown)
            _screen.tell("No program on this device shows text files.");
    }));
}

void ContainerFileActions::mail(const std::shared_ptr<TamberDocument> &document)
{
    if (!_screen.context().mail.canSendMail()) {
        _screen.tell("There is no mail program on this device.");
        return;
    }
    if (!_screen.isStillThere({document, nullptr}))
        return;
    _screen.openText(document, [this, opened = document.get()](const QString &text) {
        opened->closeWithCompletionHandler({});
        compose(*opened, text);
    });
}

void ContainerFileActions::compose(const TamberDocument &document, const QString &text)
{
    MailMessage message;
    message.subject = localizedFormat("0.1", document.name());
    message.attachment = MailAttachment{utf8FromText(text), u"text/plain"_s, document.name()};
    _screen.context().mail.compose(message, _screen.whileAlive([this](bool handedOver) {
        _screen.context().log.info(u"Mail composer finished: "_s % QString::number(int(handedOver)));
        if (!handedOver)
            _screen.tell("The message could not be handed to the mail program.");
    }));
}

} // namespace cvtamber
