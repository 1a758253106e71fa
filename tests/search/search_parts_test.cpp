// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "model/search/long_text_digest.h"
#include "model/search/substring_finder.h"

namespace quillo::testing {
namespace {

// Few letters, so that near misses and hits are common.
QByteArray randomBytes(std::mt19937& random, int longest) {
    QByteArray bytes(std::uniform_int_distribution(0, longest)(random), '\0');
    for (char& byte : bytes) {
        byte = "abc\xff"[std::uniform_int_distribution(0, 3)(random)];
    }
    return bytes;
}

TEST(SubstringFinder, FindsTheFirstPlaceAtEveryLengthAndOffset) {
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        const QByteArray text = randomBytes(random, 90);
        const QByteArray needle = randomBytes(random, 6) + 'a';
        const size_t found = SubstringFinder(needle).find({text.constData(), size_t(text.size())});
        ASSERT_EQ(found == SubstringFinder::npos ? -1 : qsizetype(found), text.indexOf(needle))
            << "round " << round;
    }
}

TEST(LongTextDigest, NeverDeniesWhatIsThere) {
    std::mt19937 random(11);
    int denied = 0;
    for (int round = 0; round < 2'000; ++round) {
        const QByteArray text = randomBytes(random, 400) + "xyz";
        const QByteArray needle = randomBytes(random, 5) + 'x';
        const LongTextDigest::Answer answer = LongTextDigest(text).contains(needle);
        if (text.contains(needle)) {
            ASSERT_NE(answer, LongTextDigest::Answer::No) << "round " << round;
        }
        denied += answer == LongTextDigest::Answer::No ? 1 : 0;
    }
    EXPECT_GT(denied, 500);
    EXPECT_EQ(LongTextDigest("abc").contains("b"), LongTextDigest::Answer::Yes);
    EXPECT_EQ(LongTextDigest("abc").contains("d"), LongTextDigest::Answer::No);
}

}  // namespace
}  // namespace quillo::testing
