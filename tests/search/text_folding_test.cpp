// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "model/search/text_folding.h"

using namespace Qt::StringLiterals;

namespace quillo::testing {
namespace {

TEST(TextFolding, TextsThatAreOneWhenCaseIsIgnored) {
    struct Row {
        const char* name;
        QString left;
        QString right;
        bool isSame;
        CaseFolding folding = CaseFolding::Default;
    };
    const Row rows[] = {
        {"ascii", u"Hello, World 1"_s, u"hELLO, wORLD 1"_s, true},
        {"sharp s", u"Straße"_s, u"STRASSE"_s, true},
        {"capital sharp s", u"STRAẞE"_s, u"strasse"_s, true},
        {"accents count", u"café"_s, u"cafe"_s, false},
        {"composed and decomposed", u"Caf\u00e9"_s, u"CAFE\u0301"_s, true},
        {"marks in another order", u"q\u0307\u0323"_s, u"Q\u0323\u0307"_s, true},
        {"what folding takes apart", u"\u01f0"_s, u"J\u030c"_s, true},
        {"final sigma", u"ΟΔΟΣ"_s, u"οδος"_s, true},
        {"cyrillic", u"Журнал"_s, u"ЖУРНАЛ"_s, true},
        {"ligature", u"o\ufb03ce"_s, u"OFFICE"_s, true},
        {"dotted capital i", u"İ"_s, u"i"_s, false},
        {"ascii i", u"I"_s, u"i"_s, true},
        {"turkish: I is the dotless i", u"ISPARTA"_s, u"ısparta"_s, true, CaseFolding::Turkic},
        {"turkish: I is not i", u"I"_s, u"i"_s, false, CaseFolding::Turkic},
        {"turkish: dotted capital", u"İzmir"_s, u"izmir"_s, true, CaseFolding::Turkic},
        {"outside the basic plane", u"𐐀"_s, u"𐐨"_s, true},
        {"full width", u"Ａ"_s, u"ａ"_s, true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(foldedText(row.left, row.folding) == foldedText(row.right, row.folding),
                  row.isSame)
            << row.name;
    }
    // Nothing that UTF-8 cannot hold, and nothing lost beside it.
    EXPECT_EQ(foldedText(QString(u"A"_s + QChar(0xd800) + u"B"_s), CaseFolding::Default), "a?b");
}

TEST(TextFolding, TheLocaleDecides) {
    EXPECT_EQ(caseFoldingFor(QLocale(QLocale::Turkish)), CaseFolding::Turkic);
    EXPECT_EQ(caseFoldingFor(QLocale(QLocale::Azerbaijani)), CaseFolding::Turkic);
    EXPECT_EQ(caseFoldingFor(QLocale(QLocale::German)), CaseFolding::Default);
}

}  // namespace
}  // namespace quillo::testing
