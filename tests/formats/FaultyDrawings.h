#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>

#include "tests/formats/DrawingText.h"

namespace holdfast::formats {

/// Reads every row's text and compares the error with what the row says.
inline void expectFaults(std::span<const FaultyDrawing> rows) {
    for (const FaultyDrawing& row : rows) {
        SCOPED_TRACE(row.description);
        const std::optional<DrawingError> error = errorOf(row.text);
        if (!error) {
            ADD_FAILURE() << "was read without an error";
            continue;
        }
        EXPECT_EQ(error->place(), row.place) << error->what();
        EXPECT_THAT(error->found(), testing::HasSubstr(row.found));
        EXPECT_THAT(error->expected(), testing::HasSubstr(row.expected));
    }
}

}  // namespace holdfast::formats
