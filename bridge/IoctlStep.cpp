// SPDX-License-Identifier: MIT
//
// How much the kernel has passed shows which stage an ioctl has reached.

#include "bridge/IoctlStep.h"

#include <cerrno>

namespace bridge {

using namespace transport;

IoctlStep NextStep(const IoctlStage& stage) {
    using Kind = IoctlStep::Kind;
    if (stage.command != kSendMessage || !stage.callerHas32Bits) return {Kind::kRefuse, ENOTTY, {}};
    if (stage.call.empty()) return {Kind::kFetchRecord, 0, {}};
    if (stage.call.size() < kRecordSize) return {Kind::kRefuse, EINVAL, {}};

    IoctlStep step;
    step.error = DecodeRecord(stage.call.first<kRecordSize>(), step.record);
    if (step.error != 0) return step;
    step.kind = stage.room == 0 ? Kind::kFetchData : Kind::kServe;
    return step;
}

}  // namespace bridge
