// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/BatchVerb.h"
#include "cli/BoardVerb.h"
#include "cli/ChatVerb.h"
#include "cli/DecodeVerb.h"
#include "cli/EmbossVerb.h"
#include "cli/EncodeVerb.h"
#include "cli/GetVerb.h"
#include "cli/GradeVerb.h"
#include "cli/InfoVerb.h"
#include "cli/ListVerb.h"
#include "cli/PinyinVerb.h"
#include "cli/PutVerb.h"
#include "cli/RemoveVerb.h"
#include "cli/ScanVerb.h"

namespace cvtamber {

VerbPtr makeVerb(const VerbContext &context, const VerbRequest &request)
{
    switch (request.verb) {
    case VerbId::Scan:
        return std::make_shared<ScanVerb>(context, request);
    case VerbId::Info:
        return std::make_shared<InfoVerb>(context, request);
    case VerbId::Ls:
        return std::make_shared<ListVerb>(context, request);
    case VerbId::Get:
        return std::make_shared<GetVerb>(context, request);
    case VerbId::Put:
        return std::make_shared<PutVerb>(context, request);
    case VerbId::Emboss:
        return std::make_shared<EmbossVerb>(context, request);
    case VerbId::Rm:
        return std::make_shared<RemoveVerb>(context, request);
    case VerbId::Grade:
        return std::make_shared<GradeVerb>(context, request);
    case VerbId::Chat:
        return std::make_shared<ChatVerb>(context, request);
    case VerbId::Board:
        return std::make_shared<BoardVerb>(context, request);
    case VerbId::Batch:
        return std::make_shared<BatchVerb>(context, request);
    case VerbId::Encode:
        return std::make_shared<EncodeVerb>(context, request);
    case VerbId::Decode:
        return std::make_shared<DecodeVerb>(context, request);
    case VerbId::Pinyin:
        return std::make_shared<PinyinVerb>(context, request);
    }
    return nullptr;
}

} // namespace cvtamber
