// SPDX-License-Identifier: MIT
//
// The verdict on the sensors, for people, for programs and for monitoring systems.
#ifndef TALVANE_TOOLS_HEALTH_HEALTHTEXT_H
#define TALVANE_TOOLS_HEALTH_HEALTHTEXT_H

#include <string>

#include "tools/base/Json.h"
#include "tools/sensors/Judgement.h"

namespace tool {

// "8 sensors: 0 CRITICAL, 1 WARNING, 0 UNKNOWN, 7 OK".
std::string CountText(const Health& health);

// A section: what is not OK first.
std::string ToText(const Health& health);
Json ToJson(const Health& health);

// The output of a monitoring plugin: one line with the verdict, what is wrong, and the readings as
// performance data; then one line for each sensor that is not OK.
std::string ToNagios(const Health& health);

// A section with every state that has a verdict of its own, as rules name it.
std::string StateTableText();
Json StateTableJson();

}  // namespace tool

#endif
