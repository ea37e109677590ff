// SPDX-License-Identifier: MIT
//
// A file in /proc, whose text is made when the file is opened.
#ifndef TALVANE_SIMULATOR_MACHINE_TEXTDEVICE_H
#define TALVANE_SIMULATOR_MACHINE_TEXTDEVICE_H

#include <functional>
#include <string>

#include "simulator/machine/Device.h"

namespace sim {

class TextDevice : public Device {
public:
    explicit TextDevice(std::function<std::string()> text) : text_(std::move(text)) {}
    explicit TextDevice(std::string text) : text_([text = std::move(text)] { return text; }) {}

    // For reading only: EACCES for any other mode.
    std::unique_ptr<OpenFile> Open(int flags, int& error) override;

private:
    std::function<std::string()> text_;
};

}  // namespace sim

#endif
