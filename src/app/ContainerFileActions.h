// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "store/TamberDocument.h"

#include <memory>

namespace cvtamber {

class ContainerScreen;

// What a container browser does with a document beside the device: preview and e-mail.
// Thread: main thread. Owner: the browser.
class ContainerFileActions
{
public:
    explicit ContainerFileActions(ContainerScreen &screen)
        : _screen(screen)
    {}

    // Shows a copy, text with a byte-order mark, in the desktop's program.
    void preview(const std::shared_ptr<TamberDocument> &document);
    // Hands the text to the mail program as an attachment.
    void mail(const std::shared_ptr<TamberDocument> &document);

private:
    void writePreview(const TamberDocument &document);
    void showPreview(const QString &path);
    void compose(const TamberDocument &document, const QString &text);

    ContainerScreen &_screen;
};

} // namespace cvtamber
