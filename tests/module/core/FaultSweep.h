#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

#include "host/model/Scene.h"

namespace holdfast::module {

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

/// What is wrong with the network of a host that no longer fails.
inline std::string networkFindings(Scene& scene) {
    scene.host().clear();
    std::string text;
    for (const std::string& finding : auditNetwork(scene.process()))
        text += finding + "\n";
    return text;
}

/// The same as sweepFaults for a command that leaves every reactor, dependency, node and composite agreed with each
/// other whatever fails. Besides, each operation that it calls fails every time: by an error status, and by a listing
/// that begins with a null entry.
inline void sweepSoundly(const std::string& text, const std::function<void(Scene&)>& command) {
    sweepFaults(text, command);
    std::set<std::string> operations;
    int calls = 0;
    {
        Scene scene(text);
        scene.process().journal().clear();
        command(scene);
        calls = scene.host().calls();
        for (const JournalEntry& entry : scene.process().journal().entries())
            operations.insert(entry.operation);
    }
    for (int nth = 1; nth <= 2 * calls; ++nth) {
        SCOPED_TRACE(testing::Message() << "host call " << (nth + 1) / 2 << " of " << calls);
        Scene scene(text);
        nth % 2 == 0 ? scene.host().throwFromCall(nth / 2) : scene.host().refuseCall((nth + 1) / 2);
        try {
            command(scene);
        } catch (const HostFailure&) {
            // Passes through to the host, which asked for it.
        }
        EXPECT_EQ(networkFindings(scene), "");
    }
    for (const std::string& operation : operations) {
        for (const bool nullEntry : {false, true}) {
            SCOPED_TRACE(operation + (nullEntry ? " lists a null entry" : " answers an error"));
            Scene scene(text);
            if (nullEntry)
                scene.host().answerNullEntry(operation);
            else
                scene.host().answerStatus(operation, Yxrt::eInvalidInput);
            command(scene);
            EXPECT_EQ(leftovers(scene) + networkFindings(scene), "");
        }
    }
}

}  // namespace holdfast::module
