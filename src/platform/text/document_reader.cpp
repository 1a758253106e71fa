// SPDX-License-Identifier: MIT
#include "document_reader.h"

#include "html_reader.h"
#include "rtf_reader.h"

namespace quillo {

Result<StyledText> DocumentReader::readRtf(const QByteArray& document) const {
    return styledTextFromRtf(document);
}

Result<StyledText> DocumentReader::readHtml(const QByteArray& document) const {
    return styledTextFromHtml(document);
}

}  // namespace quillo
