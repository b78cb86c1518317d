#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "host/model/Scene.h"

namespace holdfast {

/// What is wrong with the host but for its network.
inline std::string leftovers(Scene& scene) {
    scene.host().clear();
    const auto findings = scene.audit();
    const std::size_t ofNetwork = auditNetwork(scene.process()).size();
    std::string text;
    for (std::size_t k = 0; k + ofNetwork < findings.size(); ++k)
        text += findings[k] + "\n";
    return text;
}

/// Runs a command over and over on a fresh scene while every call that the host receives fails once, in turn: refused,
/// and throwing. The host's error may pass through to the caller, and the network need not be in order where the host
/// itself did not obey; but nothing may stay open, leak, be freed twice or be used against the host's rules.
inline void sweepFaults(const std::string& text, const std::function<void(Scene&)>& command) {
    int calls = 0;
    {
        Scene scene(text);
        command(scene);
        calls = scene.host().calls();
        EXPECT_EQ(leftovers(scene), "");
    }
    ASSERT_GT(calls, 10);
    for (int nth = 1; nth <= calls; ++nth) {
        SCOPED_TRACE(testing::Message() << "host call " << nth << " of " << calls);
        Scene refusing(text);
        refusing.host().refuseCall(nth);
        command(refusing);
        EXPECT_EQ(leftovers(refusing), "");
    }
    for (int nth = 1; nth <= calls; ++nth) {
        SCOPED_TRACE(testing::Message() << "host call " << nth << " of " << calls << " throws");
        Scene throwing(text);
        throwing.host().throwFromCall(nth);
        EXPECT_THROW(command(throwing), HostFailure);
        EXPECT_EQ(leftovers(throwing), "");
    }
}

}  // namespace holdfast
