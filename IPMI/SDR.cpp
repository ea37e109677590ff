// SPDX-License-Identifier: MIT
//
// Loads a sensor data record and reads its fields.

#include "IPMI/SDR.h"

#include <algorithm>
#include <cstring>

#include "IPMI/SensorCodes.h"

using namespace talvane;

namespace {

// The ID string's type/length byte (IPMI 2.0, 43.1, byte 48).
constexpr unsigned kIdLengthBits = 0x1F;

constexpr int kMaxIdLength = 15;  // the caller's last byte is the NUL

// A signed value of ten bits: the low eight are `low`, the upper two are bits 7-6 of `high`. The
// other bits of `high` belong to another field.
short TenBits(int low, int high) {
    constexpr int kSign = 0x80;
    constexpr int kOtherFieldWidth = 6;
    if ((high & kSign) == 0) return static_cast<short>((high >> kOtherFieldWidth) * 256 + low);
    // Kept: the two halves are negated separately, and the other field's bits take part in the
    // negation of the upper half. A plain sign extension gives other values.
    const int lowHalf = (256 - low) % 256;
    const int highHalf = (-high >> kOtherFieldWidth) & 0x03;
    return static_cast<short>(-(highHalf * 256 + lowHalf));
}

// A signed value of four bits.
char FourBits(int bits) {
    constexpr int kSign = 0x08;
    return static_cast<char>((bits & kSign) != 0 ? bits - 16 : bits);
}

}  // namespace

SDR::SDR() {}

SDR::SDR(unsigned char* record) : InitOK(0) {
    *this = record;
}

SDR& SDR::operator=(unsigned char* record) {
    if (record == nullptr) {
        InitOK = 0;
        return *this;
    }
    std::memcpy(&header, record, sizeof header);
    std::memcpy(&key, record + sizeof header, sizeof key);
    std::memcpy(&body, record + sizeof header + sizeof key, sizeof body);
    InitOK = 1;
    return *this;
}

unsigned char SDR::IsInitOK() {
    return InitOK;
}

unsigned char SDR::GetSensorRecordType() {
    return InitOK == 0 ? 0xFF : header.type;
}

unsigned char SDR::GetSensorOwnerID() {
    return InitOK == 0 ? 0xFF : key.OwnerID;
}

unsigned char SDR::GetSensorOwnerLUN() {
    return InitOK == 0 ? 0xFF : key.OwnerLUN;
}

unsigned char SDR::GetSensorNumber() {
    return InitOK == 0 ? 0xFF : key.SensorNumber;
}

unsigned char SDR::GetSensorType() {
    return InitOK == 0 ? 0xFF : body.SensorType;
}

unsigned char SDR::GetEventType() {
    return InitOK == 0 ? 0xFF : body.EventType;
}

unsigned char SDR::GetEntityID() {
    return InitOK == 0 ? 0xFF : body.EntityID;
}

unsigned char SDR::GetEntityInstance() {
    return InitOK == 0 ? 0xFF : body.EntityInstance;
}

unsigned short SDR::GetThresholdInfo() {
    return InitOK == 0 ? 0xFFFF : body.DiscreteReadingMask;
}

unsigned char SDR::GetUnit1() {
    return InitOK == 0 ? 0xFF : body.unit1;
}

unsigned char SDR::GetBaseUnit() {
    return InitOK == 0 ? 0xFF : body.BaseUnit;
}

unsigned char SDR::GetModifierUnit() {
    return InitOK == 0 ? 0xFF : body.ModifierUnit;
}

unsigned char SDR::GetLinearization() {
    return InitOK == 0 ? 0xFF : body.linearization;
}

unsigned char SDR::GetM() {
    return InitOK == 0 ? 0xFF : body.M;
}

unsigned char SDR::GetB() {
    return InitOK == 0 ? 0xFF : body.B;
}

unsigned char SDR::GetRExp() {
    return InitOK == 0 ? 0xFF : body.RExp;
}

unsigned char SDR::Gettolerance() {
    return InitOK == 0 ? 0xFF : body.tolerance;
}

unsigned char SDR::Getaccuracy() {
    return InitOK == 0 ? 0xFF : body.accuracy;
}

unsigned char SDR::GetSensorReadingMax() {
    return InitOK == 0 ? 0xFF : body.SensorMaximumReading;
}

unsigned char SDR::GetSensorReadingMin() {
    return InitOK == 0 ? 0xFF : body.SensorMinimumReading;
}

char SDR::IsAnalog() {
    return DataFormatOf(body.unit1) != DataFormat::kNoAnalogReading ? 1 : 0;
}

short SDR::GetValueM() {
    return TenBits(GetM(), Gettolerance());
}

short SDR::GetValueB() {
    return TenBits(GetB(), Getaccuracy());
}

char SDR::GetBExpValue() {
    return FourBits(GetRExp() & 0x0F);
}

char SDR::GetRExpValue() {
    return FourBits(GetRExp() >> 4);
}

int SDR::GetIDstringLen() {
    return 0;  // Kept: the length is that of a type which the type bits cannot state.
}

int SDR::GetIDstring(char* out) {
    if (out == nullptr) return -1;
    const int stated = static_cast<int>(body.IDStringTypeLength & kIdLengthBits);
    std::memcpy(out, body.IDString, static_cast<std::size_t>(std::min(stated, kMaxIdLength)));
    out[kMaxIdLength] = '\0';
    return 0;
}
