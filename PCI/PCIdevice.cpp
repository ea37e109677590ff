// SPDX-License-Identifier: MIT
//
// The accessors of one PCI function.

#include "PCI/PCIdevice.h"

#include <cstring>

PCIdevice::PCIdevice() : header(), bus(0), dev(0), func(0) {}

PCIdevice::PCIdevice(_HEADER* image) : header(*image), bus(0), dev(0), func(0) {}

PCIdevice& PCIdevice::operator=(const char* image) {
    std::memcpy(&header, image, sizeof header);
    return *this;
}

void PCIdevice::setBusNo(int number) {
    bus = number;
}

void PCIdevice::setDevNo(int number) {
    dev = number;
}

void PCIdevice::setFuncNo(int number) {
    func = number;
}

int PCIdevice::getBusNo() {
    return bus;
}

int PCIdevice::getDevNo() {
    return dev;
}

int PCIdevice::getFuncNo() {
    return func;
}

unsigned short PCIdevice::getVendorID() {
    return header.VendorID;
}

unsigned short PCIdevice::getStatus() {
    return header.Status;
}

unsigned char PCIdevice::getClassCode() {
    return header.ClassCode;
}

unsigned char PCIdevice::getSubClassCode() {
    return header.SubClassCode;
}

unsigned char PCIdevice::getProgIF() {
    return header.ProgIF;
}

unsigned char PCIdevice::getIntLine() {
    return header.INTLine;
}

unsigned char PCIdevice::getRevisionID() {
    return header.RevisionID;
}
