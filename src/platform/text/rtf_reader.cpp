// SPDX-License-Identifier: MIT
#include "platform/text/rtf_reader.h"

#include "platform/text/rtf_interpreter.h"

namespace quillo {
namespace {

QByteArrayView withoutLeadingSpace(QByteArrayView document) {
    constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
    if (document.startsWith(kByteOrderMark)) {
        document = document.sliced(kByteOrderMark.size());
    }
    while (!document.isEmpty() && QByteArrayView(" \t\r\n").contains(document.front())) {
        document = document.sliced(1);
    }
    return document;
}

}  // namespace

Result<StyledText> styledTextFromRtf(const QByteArray& document) {
    const QByteArrayView rtf = withoutLeadingSpace(document);
    if (!rtf.startsWith("{\\rtf")) {
        return failure(ErrorKind::Malformed, QStringLiteral("not an RTF document"));
    }
    return RtfInterpreter(rtf).run();
}

}  // namespace quillo
