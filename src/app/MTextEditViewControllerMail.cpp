// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MTextEditViewController.h"

#include "app/AppContext.h"
#include "store/CVFile.h"
#include "text/TextCodec.h"
#include "ui/MailComposer.h"
#include "ui/Texts.h"

namespace cvtamber {

using namespace Qt::StringLiterals;

void MTextEditViewController::actionButtonClicked()
{
    ActionSheet sheet;
    sheet.buttons = {localized("6.4"), localized("6.5"), localized("Cancel")};
    sheet.cancelButtonIndex = ActionCancelButton;
    sheet.anchor.kind = Anchor::Kind::RightBarButton;
    sheet.didDismiss = [this](const ActionSheet &, int buttonIndex) {
        if (buttonIndex == MailTextButton || buttonIndex == MailAttachmentButton)
            mail(buttonIndex == MailAttachmentButton);
    };
    showActionSheet(std::move(sheet));
}

QString MTextEditViewController::mailName() const
{
    if (!_cvFileName.isNull())
        return _cvFileName;
    return _file ? _file->name() : title();
}

void MTextEditViewController::mail(bool asAttachment)
{
    MailComposer &composer = _context.mail;
    if (!composer.canSendMail()) {
        tell("There is no mail program on this device.");
        return;
    }
    MailMessage message;
    message.subject = localizedFormat("0.1", mailName());
    if (asAttachment)
        message.attachment = MailAttachment{attachmentBytes(), u"text/plain"_s, mailName()};
    else
        message.body = _text;
    const std::weak_ptr<MTextEditViewController> editor = self();
    composer.compose(message, [editor](bool handedOver) {
        const auto self = editor.lock();
        if (self && !handedOver)
            self->tell("The message could not be handed to the mail program.");
    });
}

// A file's text may lose characters, a text of the device may not: then nothing is attached.
QByteArray MTextEditViewController::attachmentBytes() const
{
    const bool isLossy = _cvFileName.isNull();
    const EncodedText encoded =
        TextCodec::encodeRaw(isLossy && _file ? _file->text() : _text, StringEncoding::WindowsCP1252);
    if (encoded.replaced == 0)
        return encoded.bytes;
    tell(isLossy ? "Some characters of the text became question marks in the attachment."
                 : "The attachment is empty, because it cannot hold all characters of the text.");
    return isLossy ? encoded.bytes : QByteArray();
}

void MTextEditViewController::tell(const char *key) const
{
    _context.presenter.showNotice(localized(key));
}

} // namespace cvtamber
