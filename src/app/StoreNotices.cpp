// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StoreNotices.h"

#include "store/StoreNames.h"
#include "ui/Presenter.h"
#include "ui/Texts.h"

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

} // namespace

QString StoreNotices::textOf(const StoreProblem &problem)
{
    const auto *const texts = std::find_if(std::begin(Texts), std::end(Texts), [&](const NoticeTexts &entry) {
        return entry.what == problem.what;
    });
    const bool isDocument = problem.url.pathExtension() == DocumentExtension;
    const QString text = isDocument ? localizedFormat(texts->ofDocument, problem.url.nameWithoutExtension())
                                    : localized(texts->ofOther);
    return problem.why.isEmpty() ? text : QString(text % u" ("_s % problem.why % u')');
}

void StoreNotices::storeProblem(const StoreProblem &problem)
{
    _presenter.showNotice(textOf(problem));
}

} // namespace cvtamber
