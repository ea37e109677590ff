// SPDX-License-Identifier: MIT
//
// A caller's ioctl on its way through the bridge, and the BMC's answers to it. Input: a byte whose
// bits say that the command is another one and that the caller has 64 bits; the room for the answer
// in two bytes; the length of the call's bytes in two bytes and the bytes; then responses, each a
// byte with its length, its completion code and its bytes.

#include <cerrno>
#include <cstdlib>

#include "bridge/IoctlStep.h"
#include "fuzz/Input.h"
#include "transport/Session.h"

namespace {

// Without a response left, the BMC does not answer.
class ScriptedBmc : public transport::Controller {
public:
    explicit ScriptedBmc(fuzz::Input& script) : script_(script) {}

    int Exchange(const transport::Request&, transport::Deadline,
                 transport::Response& response) override {
        if (script_.IsEmpty()) return ETIMEDOUT;
        const talvane::ByteView bytes = script_.TakeCounted();
        response.completion = script_.TakeByte();
        response.data.assign(bytes.begin(), bytes.end());
        return 0;
    }

private:
    fuzz::Input& script_;
};

void Serve(talvane::ByteView call, fuzz::Input& script) {
    ScriptedBmc bmc(script);
    transport::Reservation reservation;
    transport::Session session(bmc, reservation);
    transport::Bytes answer;
    // The second time, the session knows what the BMC has refused before.
    for (int time = 0; time < 2; ++time) {
        if (session.Serve(call, answer) != 0) continue;
        const std::size_t longest = transport::kRecordSize + transport::kMaxResponse;
        if (answer.size() < transport::kRecordSize || answer.size() > longest) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr unsigned kOtherCommand = 1;
    constexpr unsigned kWideCaller = 2;
    fuzz::Input input(data, size);
    const unsigned flags = input.TakeByte();
    bridge::IoctlStage stage;
    stage.command = transport::kSendMessage ^ (flags & kOtherCommand);
    stage.callerHas32Bits = (flags & kWideCaller) == 0;
    stage.room = input.TakeLe16();
    stage.call = input.Take(input.TakeLe16());
    const bridge::IoctlStep step = bridge::NextStep(stage);
    if (step.kind == bridge::IoctlStep::Kind::kServe) Serve(stage.call, input);
    return 0;
}
