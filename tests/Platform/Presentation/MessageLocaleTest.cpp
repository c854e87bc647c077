// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/MessageLocale.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

namespace {

using zef::MessageLocale;

TEST(MessageLocaleTest, PrefersTheClosestTranslation)
{
    const MessageLocale locale("de_AT.UTF-8@euro");

    EXPECT_EQ(locale.distance("de_AT@euro"), 0u);
    EXPECT_LT(locale.distance("de_AT@euro"), locale.distance("de_AT"));
    EXPECT_LT(locale.distance("de_AT"), locale.distance("de@euro"));
    EXPECT_LT(locale.distance("de@euro"), locale.distance("de"));
    EXPECT_LT(locale.distance("de"), MessageLocale::untranslated);
}

TEST(MessageLocaleTest, RefusesOtherLanguagesAndSpellings)
{
    const MessageLocale locale("de_AT.UTF-8@euro");

    for (const auto* tag : { "", "fr", "de_DE", "de_AT.UTF-8@euro", "de_AT@latin", "DE", "d" })
        EXPECT_EQ(locale.distance(tag), MessageLocale::unsuited) << tag;
}

TEST(MessageLocaleTest, KnowsOnlyWhatItWasGiven)
{
    EXPECT_EQ(MessageLocale("sr@latin").distance("sr@latin"), 0u);
    EXPECT_EQ(MessageLocale("sr@latin").distance("sr"), 1u);
    EXPECT_EQ(MessageLocale("pt_BR").distance("pt_BR"), 0u);
    EXPECT_EQ(MessageLocale("pt_BR").distance("pt"), 1u);
    EXPECT_EQ(MessageLocale("pt").distance("pt_BR"), MessageLocale::unsuited);
}

TEST(MessageLocaleTest, HasNoLanguageInTheStandardLocale)
{
    for (const auto* text : { "", "C", "POSIX", "C.UTF-8", "@euro", ".UTF-8" }) {
        EXPECT_EQ(MessageLocale(text).distance("C"), MessageLocale::unsuited) << text;
        EXPECT_EQ(MessageLocale(text).distance(""), MessageLocale::unsuited) << text;
        EXPECT_EQ(MessageLocale(text).distance("@euro"), MessageLocale::unsuited) << text;
    }
}

TEST(MessageLocaleTest, TakesTheFirstVariableThatSaysSomething)
{
    EnvironmentVariable all("LC_ALL", "fr_FR");
    EnvironmentVariable messages("LC_MESSAGES", "de_DE");
    EnvironmentVariable language("LANG", "it_IT");
    EXPECT_EQ(MessageLocale::ofEnvironment().text(), "fr_FR");

    all.set("");
    EXPECT_EQ(MessageLocale::ofEnvironment().text(), "de_DE");

    messages.unset();
    EXPECT_EQ(MessageLocale::ofEnvironment().text(), "it_IT");

    language.unset();
    EXPECT_EQ(MessageLocale::ofEnvironment().text(), "");
}

} // namespace
