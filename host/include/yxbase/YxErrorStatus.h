#pragma once

/// What a platform operation answers when it can fail.
namespace Yxrt {
enum ErrorStatus : int {
    eOk = 0,
    eInvalidInput = 1,
    eOutOfRange = 2,
    eNullObjectId = 3,
    eWasErased = 4,
    eNotOpenForWrite = 5,
    eNotApplicable = 6,
    eNotInDatabase = 7,
    eFailed = 8
};
}  // namespace Yxrt
