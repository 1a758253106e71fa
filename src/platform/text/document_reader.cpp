// SPDX-License-Identifier: MIT
#include "platform/text/document_reader.h"

#include "platform/text/html_reader.h"
#include "platform/text/rtf_reader.h"

namespace quillo {

Result<StyledText> DocumentReader::readRtf(const QByteArray& document) const {
    return styledTextFromRtf(document);
}

Result<StyledText> DocumentReader::readHtml(const QByteArray& document) const {
    return styledTextFromHtml(document);
}

}  // namespace quillo
