// SPDX-License-Identifier: MIT
#include "platform/text/rtf_field.h"

#include <QStringList>

namespace quillo {
namespace {

struct Word {
    QString text;
    bool quoted = false;
};

QString quotedText(QStringView instruction, qsizetype& position) {
    QString text;
    for (++position; position < instruction.size() && instruction[position] != u'"'; ++position) {
        const bool escape = instruction[position] == u'\\' && position + 1 < instruction.size();
        position += escape ? 1 : 0;
        text.append(instruction[position]);
    }
    ++position;
    return text;
}

Word nextWord(QStringView instruction, qsizetype& position) {
    while (position < instruction.size() && instruction[position].isSpace()) {
        ++position;
    }
    if (position < instruction.size() && instruction[position] == u'"') {
        return {quotedText(instruction, position), true};
    }
    const qsizetype start = position;
    while (position < instruction.size() && !instruction[position].isSpace()) {
        ++position;
    }
    return {instruction.sliced(start, position - start).toString(), false};
}

bool isSwitch(const Word& word, QChar letter) {
    return !word.quoted && word.text.size() == 2 && word.text.at(0) == u'\\' &&
           word.text.at(1).toLower() == letter;
}

}  // namespace

QString hyperlinkTarget(const QString& instruction) {
    qsizetype position = 0;
    if (nextWord(instruction, position)
            .text.compare(QLatin1StringView("HYPERLINK"), Qt::CaseInsensitive) != 0) {
        return {};
    }
    QString address;
    QString anchor;
    while (position < instruction.size()) {
        const Word word = nextWord(instruction, position);
        if (isSwitch(word, u'l')) {
            anchor = nextWord(instruction, position).text;
        } else if (isSwitch(word, u'o') || isSwitch(word, u't')) {
            static_cast<void>(nextWord(instruction, position));
        } else if (address.isEmpty() && (word.quoted || !word.text.startsWith(u'\\'))) {
            address = word.text;
        }
    }
    return anchor.isEmpty() ? address : address + u'#' + anchor;
}

}  // namespace quillo
