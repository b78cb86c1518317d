#include "apps/window/Bundle.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

namespace holdfast::window {

namespace {

/// Modules of a page that there is not.
std::string bundledOf(const std::map<std::string_view, std::string_view>& modules) {
    return bundled("main.js", [&](std::string_view name) { return modules.at(name); });
}

TEST(Bundle, OfThePageKnowsAllOfItsWays) {
    EXPECT_NO_THROW(bundled("window.js"));
    EXPECT_NO_THROW(bundled("steps.js"));
}

TEST(Bundle, TakesWhatAModuleGivesUnderAnotherName) {
    const std::string text =
        bundledOf({{"main.js", "import { a as b, c, d as e, } from './other.js';\nb(c, e);\n"},
                   {"other.js", "export const a = 1;\nexport function c() {}\nexport class d {}\n"}});
    EXPECT_NE(text.find("const { a: b, c, d: e, } = otherModule;"), std::string::npos) << text;
    EXPECT_NE(text.find("return { a, c, d, };"), std::string::npos) << text;
}

TEST(Bundle, TakesAllThatAModuleGives) {
    const std::string text = bundledOf({{"main.js", "import * as all from './other.js';\n"},
                                        {"other.js", "export async function x(y) { return y; }\n"}});
    EXPECT_NE(text.find("const all = otherModule;"), std::string::npos) << text;
}

TEST(Bundle, RefusesWhatItWouldBreak) {
    for (const std::string_view line :
         {"import all from './other.js';", "import './other.js';", "import { a } from 'other';", "import {",
          "import { a } from \"./other.js\";", "import { a as } from './other.js';",
          "import { a } from './other.js'; a();", "export default a;", "export { a };", "export * from './other.js';",
          "export let a = 1;", "export const { a } = b;", "export", "import{ a } from './other.js';"})
        EXPECT_THROW(bundledOf({{"main.js", line}, {"other.js", ""}}), std::logic_error) << line;
    EXPECT_NO_THROW(bundledOf({{"main.js", "const important = import('./other.js');\n imported();\nexporting();"}}));
}

}  // namespace

}  // namespace holdfast::window
