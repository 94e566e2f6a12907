// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StoreNotices.h"

#include "base/ErrorText.h"
#include "base/SystemLog.h"
#include "store/StoreContext.h"
#include "store/StoreNames.h"
#include "ui/Presenter.h"
#include "ui/Texts.h"

#include <cerrno>

namespace cvtamber {

using namespace Qt::StringLiterals;

namespace {

using What = StoreProblem::What;

struct NoticeTexts
{
    What what;
    // With the document's title, and without one for records and directories.
    const char *ofDocument;
    const char *ofOther;
};

// clang-format off
constexpr NoticeTexts Texts[] = {
    {What::Open, "%@ could not be opened.", "A document or record could not be opened."},
    {What::Save, "%@ could not be saved.", "A change could not be saved."},
    {What::KeptOtherVersion, "%@ was changed by another program too. Both versions have been kept.",
     "Another program changed the same document. Both versions have been kept."},
    {What::Delete, "%@ could not be deleted.", "Not everything could be deleted."},
    {What::Rename, "%@ could not be renamed.", "The new name could not be given."},
    {What::Move, "%@ could not be moved.", "Not everything could be moved."},
    {What::Create, "%@ could not be created.", "A folder could not be created."},
    {What::List, "%@ could not be read.", "A folder could not be read, so not all documents are listed."},
    {What::MovedToTrash, "%@ is in the trash now.", "A folder without a user's record is in the trash now."},
    {What::NotMovedToTrash, "%@ holds documents, but belongs to no user.",
     "A folder without a user's record holds documents and could not be put into the trash."},
    {What::Download, "%@ could not be fetched from the cloud.",
     "A document could not be fetched from the cloud."},
};
// clang-format on

struct Reason
{
    QString why;
    const char *key;
};

const char *reasonOf(const QString &why)
{
    const auto of = [](std::errc error) { return errorText(std::make_error_code(error)); };
    static const Reason reasons[] = {
        {of(std::errc::no_space_on_device), "The disk is full."},
#ifdef EDQUOT
        {errorText({EDQUOT, std::generic_category()}), "The disk is full."},
#endif
        {of(std::errc::permission_denied), "There is no permission for it."},
        {of(std::errc::operation_not_permitted), "There is no permission for it."},
        {of(std::errc::read_only_file_system), "Nothing can be written there."},
        {of(std::errc::no_such_file_or_directory), "It or its folder is not there any more."},
        {u"its folder is gone"_s, "It or its folder is not there any more."},
        {u"this title is in use there"_s, "This title is in use there."},
        {u"it is not a file"_s, "It is not a file."},
    };
    const auto *const found = std::find_if(std::begin(reasons), std::end(reasons),
                                           [&why](const Reason &reason) { return reason.why == why; });
    return found == std::end(reasons) ? nullptr : found->key;
}

} // namespace

QString withReason(const QString &sentence, const QString &why)
{
    const char *reason = reasonOf(why);
    return reason ? QString(sentence % u' ' % localized(reason)) : sentence;
}

QString StoreNotices::textOf(const StoreProblem &problem)
{
    const auto *const texts = std::find_if(std::begin(Texts), std::end(Texts), [&](const NoticeTexts &entry) {
        return entry.what == problem.what;
    });
    const bool isDocument = problem.url.pathExtension() == DocumentExtension;
    const QString text = isDocument ? localizedFormat(texts->ofDocument, problem.url.nameWithoutExtension())
                                    : localized(texts->ofOther);
    return withReason(text, problem.why);
}

void StoreNotices::storeProblem(const StoreProblem &problem)
{
    if (!problem.why.isEmpty() && !reasonOf(problem.why))
        _log.error(loggedURL(problem.url) % u" - "_s % problem.why);
    _presenter.showNotice(textOf(problem));
}

} // namespace cvtamber
